// A listening port: its handle and its readiness.
#pragma once

#include "net/inner/watched.h"

namespace zet
{
class TcpServer;
}

namespace zet::inner
{

// Its server owns it.
struct TcpListener final : Watched
{
    TcpListener(TcpServer& owner, Reactor& reactor, Door::Handle handle) : Watched(reactor, handle), m_Owner(owner) {}

    // Begins to report pending connections to the owner. False if the system does not watch the port.
    bool watch() { return startWatch(kReadyInput); }
    // Requests a report of the next pending connection, once the owner has found none.
    void waitForPeer() { poller().want(*this, kReadyInput); }
    void onReady(unsigned char ready) override;

    TcpServer& m_Owner;
    // The peer of the connection that the owner was told to accept.
    Endpoint m_PendingPeer;
};

} // namespace zet::inner
