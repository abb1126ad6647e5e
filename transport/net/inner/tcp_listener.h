// What stands behind a listening port: the acceptor and its wait.
#pragma once

#include "transport/net/inner/counted.h"
#include "transport/net/inner/reactor.h"

#include <asio/ip/tcp.hpp>

namespace zet
{
class TcpServer;
}

namespace zet::inner
{

// Shared by a server and the wait under way, as a link is.
struct TcpListener : Counted<TcpListener>
{
    using Acceptor = asio::basic_socket_acceptor<asio::ip::tcp, asio::io_context::executor_type>;

    explicit TcpListener(Reactor& reactor) : m_Acceptor(reactor.context().get_executor()) {}

    void waitForVisitor();

    Acceptor m_Acceptor;
    TcpServer* m_Owner = nullptr;
    bool m_IsWaited = false;
};

} // namespace zet::inner
