// One TCP connection, outgoing or accepted, run as a task.
#pragma once

#include "framework/peer_log.h"
#include "net/connection_events.h"
#include "net/socket.h"

#include <memory>

struct sockaddr_in6;

namespace zet
{

class TcpServer;
class TlsContext;
struct NetLimits;

namespace inner
{
class BlockPool;
class Crowd;
class OutputQueue;
class PacketTick;
class Reactor;
class ReadyList;
struct Endpoint;
struct TcpBounds;
struct TcpLink;
} // namespace inner

// Never blocks. All operations belong to the run thread. A connection started in a System learns from the System's
// ticks what is ready; one in no System asks the operating system with each onTick(); an accepted one is ticked by its
// server. Sent bytes are queued and leave at the end of the tick in one system call; outside a tick, with the next one.
// A long queue starts to leave earlier, and a long send at once if nothing is queued before it and no TLS encrypts it.
// What happens to it is reported by the functions of ConnectionEvents.
class COMMONGROUND_API TcpConnection : public Socket, public ConnectionEvents
{
public:
    enum ConnectionState
    {
        // No connection: never made, or closed or detached on this side.
        kDown = 0,
        // connect() was called, and the connection is not established yet.
        kConnecting = 1,
        kEstablished = 2,
        // The peer has closed it, and all that it sent was received.
        kClosedByPeer = 3,
        // It was reset, or the operating system reported another failure.
        kBroken = 4,
        // The peer refused or was not reached.
        kConnectFailed = 5
    };

    // Bytes in the output queue at which a send fails; below it a send of any size is accepted.
    static constexpr size_t kDefaultOutputLimit = 64 * 1024 * 1024;
    // Bytes in the output queue from which on isOutputHigh() is true.
    static constexpr size_t kDefaultOutputMark = 1024 * 1024;

    // Without a connection and without limits of its own.
    TcpConnection();
    ~TcpConnection() override;

    bool start(System* system) override;
    bool init() override;
    // Completes what is ready: a connect, queued output.
    void onTick(unsigned int tick) override;
    // Takes over a connected handle; the connection is established then. Called with the handle as soon as an outgoing
    // connection is established or an accepted one is taken over; overrides call this first. False leaves the handle
    // with the caller, and getEndCause() unchanged.
    bool attach(unsigned int handle) override;
    // Returns the handle without closing it. Queued output is lost.
    unsigned int detach() override;
    // Sends as much of the queue as the operating system accepts now, and ends the connection. Unread input is
    // discarded first: closing a socket with unread input would reset the connection, and sent bytes would be lost.
    void close() override;
    // Calls close(); the cause of the end is kHost with this number.
    void closeFor(unsigned short reason);

    // Starts a connection to a numeric address ("192.168.0.1", "::1", "[::1]") or a host name, with keep-alive probes
    // on or off. True if it is connecting or established; onEnd() will follow. False, with a log line and without an
    // event: the address is invalid or the connection failed at once, and getEndCause() says why; or a handle is held
    // already, and then the connection that has it goes on unchanged. A name is resolved on another thread. Its
    // addresses are tried in turn, IPv6 and IPv4 alternating: the next one when one has failed or has not answered for
    // 250 ms. The first one that answers is kept, and getHandle() changes then; the ticks of this connection do that. A
    // name without an address, or none of whose addresses answers, ends as kConnectFailed.
    virtual bool connect(const wchar_t* ip, unsigned short port, bool keepAlive);
    // Limits of its own for the next connections of connect() or of a host's handle; NetLimits says which fields count.
    // The probes are those of connect() with keepAlive; without it no probes are sent. An accepted connection has the
    // limits of its port instead. Times are checked by the ticks. A connect that takes too long ends as kConnectFailed,
    // one that is idle as kBroken, both with EndCause::kTimedOut. False, and nothing changed, while a connection is
    // held. Throws std::bad_alloc, and nothing is changed then.
    bool setLimits(const NetLimits& limits);
    // Receives up to size bytes. Returns their number, 0 if there are none, -1 if the connection is down.
    virtual int receive(void* data, int size);
    // Queues the bytes, also while connecting. Returns size, or 0 if the connection is down or the queue is full. If
    // the operating system has refused bytes of this connection, later ones are discarded until the input that arrived
    // before is read; then the connection is broken.
    virtual int send(const void* data, int size);

    // The state now. It changes in ticks and by the operations of this class.
    ConnectionState getConnectionState() const { return static_cast<ConnectionState>(m_State); }
    // "192.168.0.1:8000" or "[2001:db8::1]:8000"; empty before the first connection, and the last peer's after it.
    String_T<wchar_t> getPeerName() const;
    // The four address bytes of an IPv4 peer as they lie in memory, in network order, and 0 for an IPv6 one; the port.
    unsigned int getPeerAddress() const;
    // The address of an IPv6 peer. False, and nothing changed, for any other.
    bool getPeerAddressIPv6(sockaddr_in6& address) const;
    // The port of that peer; 0 before the first connection.
    unsigned short getPeerPort() const { return m_PeerPort; }

    // The thread that owns the connection; 0 before it is started, attached or connected.
    unsigned long getRunThreadId() const { return m_RunThreadId; }
    // Makes another thread the owner, by its number, for a connection in no System. start() sets that of the System.
    void bindRunThreadId(unsigned long thread) { m_RunThreadId = static_cast<unsigned int>(thread); }

    // Bytes in the output queue at which a send fails, at most 4,294,967,295; kDefaultOutputLimit at first. A send also
    // fails if the output queues of all connections of the accepting port reach the port's limit while this connection
    // holds more than its equal share.
    void setOutputLimit(size_t bytes) { m_OutputLimit = clampBytes(bytes); }
    // The high mark of the output queue, which should be below the limit; its half is the low mark. Once the queue has
    // reached the high mark, isOutputHigh() is true until it has fallen to the low mark; then onWritable() is called. A
    // host that produces more than a peer reads stops sending meanwhile.
    void setOutputMark(size_t bytes) { m_OutputMark = clampBytes(bytes); }
    using ConnectionEvents::isOutputHigh;
    // Bytes in the output queue.
    size_t getOutputSize() const;
    // Nothing has happened since the last tick, and nothing is left to do: a tick would change nothing.
    bool isQuiet() const { return m_Pending == 0 && (m_State == kEstablished || m_State == kConnecting); }
    // The limits of the port that accepted this connection, as of then; null for any other connection.
    const NetLimits* getPortLimits() const;
    // The same, and for any other connection those of setLimits(); null without either.
    const NetLimits* getLimits() const;
    // The packets of the connection, or of the last one, that were refused by NetLimits::kRefuse.
    unsigned long long getRefusedPackets() const;

protected:
    // For a tick of a derived class: asks the operating system what is ready, if no System did for this tick.
    void look()
    {
        if (m_LooksItself)
            lookNow();
    }
    // onTick() for a derived class that talks to a proxy first: onEstablished() waits for the first full tick.
    void tickBelow()
    {
        tickConnection();
        if (m_State > kEstablished)
            reportEnd();
    }
    // Whether receive() may return anything but 0.
    bool isWorthReceiving() const { return isPending(kReadable | kSecureInput | kOutputLost); }
    // Asks for the next tick at once.
    void hurry();
    // For a derived class that talks to a proxy: while it is held, NetLimits::m_ConnectTime goes on.
    void holdConnectTime(bool isHeld);
    // The memory of its output; null without a handle.
    std::shared_ptr<inner::BlockPool> getOutputPool() const;

    // A ConnectionState.
    unsigned char m_State = kDown;

private:
    friend class inner::Crowd;
    friend class inner::PacketTick;
    friend class inner::ReadyList;
    friend struct inner::TcpLink;
    friend class TcpSecureConnection;
    friend class TcpServer;
    friend class TcpStream;

    // What a tick has to do.
    enum Pending : unsigned short
    {
        // The socket may have bytes, or its end.
        kReadable = 1,
        kWritable = 2,
        kConnected = 4,
        // Output waits for the end of the tick.
        kOutput = 8,
        // Received bytes are left for the next tick.
        kUnread = 16,
        // A handshake is under way; its time is limited.
        kSecuring = 32,
        // A send has failed: no more output leaves, and the connection ends once its input is read.
        kOutputLost = 64,
        // After kOutputLost, a receive has found no more input: the next one ends the connection.
        kInputOver = 128,
        // The secure layer holds input that receive() has not returned yet.
        kSecureInput = 256,
        // onEstablished() is to be called.
        kEstablishedNow = 512,
        // onWritable() is to be called.
        kWritableAgain = 1024,
        // Times of the connection's own limits are checked by each tick.
        kTimed = 2048
    };

    bool isPending(unsigned int flags) const { return (m_Pending & flags) != 0; }
    void setPending(unsigned int flags) { m_Pending = static_cast<unsigned short>(m_Pending | flags); }
    void clearPending(unsigned int flags) { m_Pending = static_cast<unsigned short>(m_Pending & ~flags); }
    // Lists the connection for its server's next walk.
    void list()
    {
        if (m_ReadyList && !m_IsListed)
            listReady();
    }
    // Whether the queue has space, and the connection is connecting or established or only the peer has closed it.
    bool takesOutput() const;
    // Ensures that queued output leaves.
    void announceOutput();
    // Sends the queue, as much as the operating system accepts.
    virtual void flush();
    // The same for one queue; true once it is empty.
    bool sendQueue(inner::OutputQueue& queue);
    // For a receive that finds no input after kOutputLost: the second one ends the connection and gets true, since the
    // caller of the first may still have a packet to handle.
    bool endLost();
    // Receives from the socket. 0 if it has no bytes, -1 at its end, whose state is set and whose cause is noted.
    int receiveNow(void* data, int size, ConnectionState& end);
    static unsigned int clampBytes(size_t bytes)
    {
        return bytes < 0xFFFFFFFF ? static_cast<unsigned int>(bytes) : 0xFFFFFFFF;
    }
    // onTick() without the events.
    void tickConnection();
    // Calls the events that are due: first onEstablished() and onWritable(), then onEnd().
    void reportOpen()
    {
        if (isPending(kEstablishedNow | kWritableAgain))
            reportOpenNow();
    }
    void reportEvents()
    {
        reportOpen();
        if (m_State > kEstablished)
            reportEnd();
    }
    void reportOpenNow();
    // Logs the end and calls onEnd(), once. The object may not exist any more afterwards.
    void reportEnd();
    // The cause is final from now on, and counts.
    void settleEnd(EndCause otherwise);
    // close() and detach() without the event.
    void shut();
    unsigned int releaseHandle();
    // connect() has failed: logs and counts it.
    bool failConnect(EndCause cause, const wchar_t* host, unsigned short port);
    // Marks that the connection has reached the state kEstablished.
    void setEstablished();
    // Called before a connection is made: with the host passed to connect(), or with null and the TLS context, if any,
    // of the accepting server. False refuses the connection.
    virtual bool expect(const wchar_t* host, TlsContext* context);
    // Moves to the reactor of a System that was joined meanwhile.
    void joinReactor();
    void discardInput();
    void fail(ConnectionState state, EndCause cause);
    // Tells the port that this many bytes are queued. False if that is too much for it.
    bool holdOutput(size_t size);
    bool queueOutput(const void* data, int size);
    // A send() that is long enough to leave without a copy.
    int sendLarge(const unsigned char* data, int size);
    void lookNow();
    void listReady();
    void setLink(inner::TcpLink* link);
    bool finishConnect();
    bool sendPieces(inner::OutputQueue& queue);
    void loseOutput(EndCause cause);
    // Takes over an accepted link, by attach().
    bool take(inner::TcpLink* link, const inner::Endpoint& peer, const std::shared_ptr<inner::Reactor>& reactor,
              TlsContext* context);
    void takePeer(const inner::Endpoint& peer);
    inner::Endpoint getPeer() const;
    // Otherwise notes the cause.
    bool beginConnect(bool hasBegun, EndCause otherwise);
    inner::TcpBounds& bounds();
    // The connection is established: its rates and its idle time begin.
    void beginBounds();
    void beginConnectTime();
    // Sets the probes of its own limits.
    void watchPeer();
    void checkTimes();
    // Input was received from the peer.
    void noteInput();
    // Lets the next tick come when the rate of the input allows one more packet.
    void waitForRate();
    void refusePacket(size_t size);
    // By the limits of the connection, for its PeerLog.
    static PeerLog::Rate logRateOf(const void* connection);
    // The host name has no address. False.
    bool failNamed();
    void drop();

    bool m_LooksItself = true;
    unsigned short m_Pending = 0;
    bool m_KeepAlive = false;
    bool m_IsListed = false;
    // Of the last peer; the bytes are those of an inner::Endpoint.
    unsigned short m_PeerPort = 0;
    unsigned char m_PeerBytes[16] = {};
    unsigned int m_PeerScope = 0;
    inner::TcpLink* m_Link = nullptr;
    std::shared_ptr<inner::Reactor> m_Reactor;
    inner::ReadyList* m_ReadyList = nullptr;
    // Null without limits of its own and without a limit on its rate.
    std::unique_ptr<inner::TcpBounds> m_Bounds;
    unsigned int m_OutputLimit = kDefaultOutputLimit;
    unsigned int m_OutputMark = kDefaultOutputMark;
};

} // namespace zet
