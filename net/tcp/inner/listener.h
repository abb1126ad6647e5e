// A listening port: its handle and its readiness.
#pragma once

#include "net/inner/reactor.h"

namespace zet
{
class TcpServer;
}

namespace zet::inner
{

// Its server owns it. unwatch() comes before the handle is closed or released.
struct TcpListener final : Watch
{
    TcpListener(TcpServer& owner, Reactor& reactor, Door::Handle handle)
        : m_Owner(owner), m_Poller(reactor.poller()), m_Handle(reactor.door(), handle)
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
    DoorHandle m_Handle;

private:
    bool m_IsWatched = false;
};

} // namespace zet::inner
