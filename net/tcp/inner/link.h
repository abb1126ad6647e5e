// What an open TCP connection has: the socket, its readiness and its bytes.
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

// A connection, the lists of its crowd and the reactor's list of links to flush share it by its count. Belongs to the
// reactor's thread. The order of bases and small members leaves no gaps: a server has thousands of links.
struct TcpLink final : Watched, Seat, Counted<TcpLink>
{
    explicit TcpLink(Reactor& reactor, Door::Handle handle = Door::kNoHandle) : Watched(reactor, handle) {}

    // Null unless the connection is in the crowd of a port that accepted it. The owner leaves the crowd.
    Seat* seat() { return isIn() ? this : nullptr; }

    // From now on input is reported to the owner. True also if it was before.
    bool watch() { return isWatched() || startWatch(kReadyInput); }
    // The owner has found the socket empty, or full; the change will be reported. After a read that returned fewer
    // bytes than asked for (isCutShort) an end may already follow, which the poller reports again if need be.
    void waitForInput(bool isCutShort);
    void waitForOutput();
    // Starts a connection with an open socket; its result is reported to the owner. False if it failed at once.
    bool connect(const Endpoint& peer, Door::Fault& fault);
    // The same to a host name: the owner gets kConnected once the name is resolved, and calls beginNamed().
    bool connectByName(Reactor& reactor, const char* name, unsigned short port);
    bool isNamed() const { return m_Race && m_Race->isLookingUp(); }
    // The lookup has found an address.
    bool isResolved() const { return m_Race->hasFound(); }
    bool beginNamed(Door::Fault& fault);
    const char* getRaceName() const { return m_Race->getName(); }
    unsigned short getRacePort() const { return m_Race->getPort(); }
    // After that, while the name has several addresses: race() tries them, to be called with each report and each tick.
    // The link takes the winner's handle and address.
    bool isRacing() const { return m_Race != nullptr; }
    // If no attempt was established, fault is that of the last one; none if memory was short.
    TcpRace::State race(Door::Fault& fault);
    void reportAttempt();
    void close()
    {
        m_Race.reset();
        Watched::close();
    }
    // Whether the connection failed; called once, after its result was reported.
    Door::Fault endConnect() { return door().endConnect(getHandle()); }
    void onReady(unsigned char ready) override;
    void loadAhead() const override;
    void flushOwner();
    // Ends the owner as kBroken.
    void failOwner();
    // Options of every connection. A socket without such an option is used without it.
    void prepare() { door().setOption(getHandle(), Door::kNoDelay, 1); }

    // The socket was found full, and no space was reported since.
    bool m_IsOutputWaited = false;
    // In the reactor's list of links to flush.
    bool m_IsListed = false;
    // The result of connect() is not known yet.
    bool m_IsConnecting = false;
    // An end or a fault, which no further event reports, may follow the bytes.
    bool m_HasTail = false;
    TcpConnection* m_Owner = nullptr;
    InputBuffer m_Input;
    OutputQueue m_Output;
    // The queue of the secure layer, which leaves first. Null if output leaves as it is.
    OutputQueue* m_Sealed = nullptr;
    TcpLink* m_NextUnflushed = nullptr;

private:
    void report(unsigned int pending);

    std::unique_ptr<TcpRace> m_Race;
};

using TcpLinkRef = Ref<TcpLink>;

} // namespace zet::inner
