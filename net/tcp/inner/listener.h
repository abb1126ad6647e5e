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

    // From now on the owner learns of pending connections. False where the system does not watch the port.
    bool watch() { return startWatch(kReadyInput); }
    // The owner has found no pending connection, and learns of the next one.
    void waitForPeer() { poller().want(*this, kReadyInput); }
    void onReady(unsigned char ready) override;

    TcpServer& m_Owner;
};

} // namespace zet::inner
