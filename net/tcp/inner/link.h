// What stands behind an open TCP connection: the socket, its readiness and its bytes.
#pragma once

#include "net/inner/blocks.h"
#include "net/inner/counted.h"
#include "net/inner/watched.h"
#include "net/tcp/inner/crowd.h"
#include "net/tcp/inner/race.h"

namespace zet
{
class TcpConnection;
}

namespace zet::inner
{

// A connection and the reactor's list of what to flush share a link by its count, which is touched by the reactor's
// thread only.
struct TcpLink final : Counted<TcpLink>, Watched
{
    explicit TcpLink(Reactor& reactor, Door::Handle handle = Door::kNoHandle) : Watched(reactor, handle) {}
    ~TcpLink() { leaveCrowd(); }

    // From now on the owner is told when input comes. True where it is so already.
    bool watch() { return isWatched() || startWatch(kReadyInput); }
    // The owner has found the socket empty, or full, and is told of the change. A read that was cut short has found it
    // empty only where nothing but bytes can follow.
    void waitForInput(bool isCutShort);
    void waitForOutput();
    // Begins a connection with an open socket; the owner learns when the answer is there. False where there is no way.
    bool connect(const Endpoint& peer);
    // The same to a host name, whose addresses the owner learns of first: then beginNamed() begins the connection.
    bool connectByName(Reactor& reactor, const char* name, unsigned short port);
    bool isNamed() const { return m_Race && m_Race->isLookingUp(); }
    bool beginNamed();
    // After that, while the name has several addresses: race() tries them, to be called with each report and each tick.
    // The link takes the winner's handle and address.
    bool isRacing() const { return m_Race != nullptr; }
    TcpRace::State race();
    void reportAttempt();
    void close()
    {
        m_Race.reset();
        Watched::close();
    }
    // Once the answer is there, and only once: whether it was yes.
    bool isConnected();
    void onReady(unsigned char ready) override;
    void flushOwner();
    // The owner counts as broken.
    void failOwner();
    void leaveCrowd()
    {
        if (m_Seat)
            m_Seat->leave();
        m_Seat = Ref<Seat>();
    }
    // Options of every connection of ours. A socket that has no such option goes without it.
    void prepare() { door().setOption(getHandle(), Door::kNoDelay, 1); }

    // The peer of a connection that was accepted or begun.
    Endpoint m_Peer;
    TcpConnection* m_Owner = nullptr;
    // Of an accepted connection.
    Ref<Seat> m_Seat;
    InputBuffer m_Input;
    OutputQueue m_Output;
    // What of the output a secure layer has sealed; it leaves first.
    OutputQueue m_Sealed;
    // Nothing was told since the socket was found empty, or full. A new socket counts as empty.
    bool m_IsInputWaited = true;
    bool m_IsOutputWaited = false;
    // In the reactor's list of what to flush.
    bool m_IsListed = false;
    TcpLink* m_NextUnflushed = nullptr;

private:
    void report(unsigned char pending);

    std::unique_ptr<TcpRace> m_Race;
    bool m_IsConnecting = false;
    // After the bytes that were read may be what no event reports.
    bool m_HasTail = false;
};

using TcpLinkRef = Ref<TcpLink>;

} // namespace zet::inner
