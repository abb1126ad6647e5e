// What stands behind a listening port: the acceptor and its readiness.
#pragma once

#include "transport/net/inner/reactor.h"

#include <asio/ip/tcp.hpp>

namespace zet
{
class TcpServer;
}

namespace zet::inner
{

// Its server owns it. unwatch() comes before the acceptor is closed or released.
struct TcpListener final : Watch
{
    using Acceptor = asio::basic_socket_acceptor<asio::ip::tcp, asio::io_context::executor_type>;

    TcpListener(TcpServer& owner, Reactor& reactor)
        : m_Owner(owner), m_Poller(reactor.poller()), m_Acceptor(reactor.context().get_executor())
    {
    }
    ~TcpListener() { unwatch(); }

    // From now on the owner is told when a visitor comes. False where the system does not watch the port.
    bool watch();
    // No more of it; before the port is closed or given away.
    void unwatch();
    // The owner has found nobody, and is told of the next one.
    void waitForVisitor();
    void onReady(unsigned char ready) override;

    TcpServer& m_Owner;
    Poller& m_Poller;
    Acceptor m_Acceptor;

private:
    bool m_IsWatched = false;
};

} // namespace zet::inner
