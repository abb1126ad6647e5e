// One TCP connection, outgoing or accepted, run as a task.
#pragma once

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
class Crowd;
class OutputQueue;
class Reactor;
class ReadyList;
struct Endpoint;
struct TcpLink;
} // namespace inner

// Non-blocking throughout. All operations belong to the run thread. A connection started in a System learns from the
// System's ticks what is ready; one in no System looks for itself with each onTick(); an accepted one is ticked by its
// server. What is sent is queued and leaves at the end of the tick, in one system call; outside a tick, with the next
// one. Where much is queued, it begins to leave earlier.
class COMMONGROUND_API TcpConnection : public Socket
{
public:
    enum ConnectionState
    {
        // No connection: never made, or closed or detached on this side.
        kDown = 0,
        // connect() was called, the peer has not answered yet.
        kConnecting = 1,
        kEstablished = 2,
        // The peer has ended it, and all that it sent was received.
        kClosedByPeer = 3,
        // It broke: reset, or failed by the operating system's word.
        kBroken = 4,
        // The peer refused or was not reached.
        kConnectFailed = 5
    };

    // Bytes that wait to be sent at which a send fails; below them a send of any size is taken.
    static constexpr size_t kDefaultOutputLimit = 64 * 1024 * 1024;

    TcpConnection() = default;
    ~TcpConnection() override;

    bool start(System* system) override;
    bool init() override;
    // Finishes what is ready: a connection on its way up, output that waited.
    void onTick(unsigned int tick) override;
    // Takes a connected handle over: established from now on. Called with the handle as soon as an outgoing connection
    // stands or an accepted one is taken on; overrides call this first. False leaves the handle with the caller.
    bool attach(unsigned int handle) override;
    // Gives the handle back without closing it. What waits to be sent is lost.
    unsigned int detach() override;
    // Hands what waits to be sent to the operating system, as far as it takes it now, and ends the connection. What has
    // come meanwhile is thrown away first, since ending on unread bytes would take back what was sent.
    void close() override;

    // Begins a connection to a numeric address ("192.168.0.1", "::1", "[::1]") or a host name with keep-alive probes on
    // or off. The connection is connecting when this returns true, or is established already. False leaves no handle: a
    // handle was held already, the address is not valid, or the peer refused at once. A name is resolved on another
    // thread meanwhile. Of several addresses, IPv6 and IPv4 in turn, the next one is tried when one has failed or has
    // not answered for 250 ms, and the first one that answers is kept; the ticks of this connection do that, and
    // getHandle() changes then. A name without an address, or none of whose addresses answers, ends as kConnectFailed.
    virtual bool connect(const wchar_t* ip, unsigned short port, bool keepAlive);
    // Bytes received, up to size, as they come from the network; 0 when there are none; -1 once the connection is down.
    virtual int receive(void* data, int size);
    // Queues the bytes, also on a connection still on its way up. Returns size, or 0 where the connection is down or
    // the queue is full. Where the operating system has refused bytes of this connection, those that follow are thrown
    // away until what had come before is received; then the connection is broken.
    virtual int send(const void* data, int size);

    ConnectionState getConnectionState() const { return static_cast<ConnectionState>(m_State); }
    // "192.168.0.1:8000" or "[2001:db8::1]:8000"; empty before the first connection, and the last peer's after it.
    String_T<wchar_t> getPeerName() const;
    // The four address bytes of an IPv4 peer as they lie in memory, in network order, and 0 for an IPv6 one; the port.
    unsigned int getPeerAddress() const;
    // The address of an IPv6 peer. False, and nothing changed, for any other.
    bool getPeerAddressIPv6(sockaddr_in6& address) const;
    unsigned short getPeerPort() const { return m_PeerPort; }

    // The thread that owns the connection; 0 before it is started, attached or connected.
    unsigned long getRunThreadId() const { return m_RunThreadId; }
    void bindRunThreadId(unsigned long thread) { m_RunThreadId = thread; }

    // Also once the output of all connections of the port that accepted this one reaches the port's sum, and this one
    // holds more than its equal part of it, a send fails.
    void setOutputLimit(size_t bytes) { m_OutputLimit = bytes; }
    // Bytes that wait to be sent.
    size_t getOutputSize() const;
    // Those of the port that accepted this connection, as they were then; null for any other connection.
    const NetLimits* getPortLimits() const;

protected:
    // What onTick() has to look at.
    enum Pending : unsigned char
    {
        kReadable = 1,
        kWritable = 2,
        kConnected = 4,
        // Output to flush.
        kOutput = 8,
        // Input was left unread for the next tick.
        kUnread = 16,
        // A handshake above this connection is under way and its time runs.
        kSecuring = 32,
        // A send has failed: nothing leaves any more, and the end shows behind what has come before it.
        kOutputLost = 64,
        // With that, a receive has found nothing more: who asks again has used up what came.
        kInputOver = 128
    };

    // Nothing has happened since the last tick, and nothing was left to do: a tick would change nothing.
    bool isQuiet() const { return m_Pending == 0 && (m_State == kEstablished || m_State == kConnecting); }
    // Learns what is ready where no System has looked for this tick.
    void look()
    {
        if (m_LooksItself)
            lookNow();
    }
    // Lists the connection with its owner, where it has one that asks.
    void ring()
    {
        if (m_ReadyList && !m_IsListed)
            listReady();
    }
    // Asks for the next tick at once.
    void hurry();
    // Whether there is room in the queue and the connection stands, or will, or only the peer has ended its side.
    bool takesOutput() const;
    // Sees to it that what is queued leaves.
    void announceOutput();
    // Sends what is queued, as far as the operating system takes it.
    virtual void flush();
    // The same with one queue; true once it is empty.
    bool sendQueue(inner::OutputQueue& queue);
    // Whether a receive() would do more than say that there is nothing.
    bool isWorthReceiving() const { return (m_Pending & (kReadable | kOutputLost)) != 0; }
    // A connection whose output is lost has nothing more to be received. It ends, and true is returned, with the second
    // call: who looks whether something follows a packet still has the packet to handle.
    bool endLost();
    // Bytes off the socket; 0 where it has none, -1 at its end, which it names.
    int receiveNow(void* data, int size, ConnectionState& end);
    // Comes before a connection is made: with what connect() was given, or with null and the TLS context, if any, of
    // the server that accepts. False refuses it.
    virtual bool expect(const wchar_t* host, TlsContext* context);
    // Moves to the reactor of a System that was joined meanwhile.
    void joinReactor();
    void discardInput();
    void fail(ConnectionState state);
    // Tells the port how much waits to be sent. False where that is too much for it.
    bool countOutput();

    unsigned char m_State = kDown;
    unsigned char m_Pending = 0;
    bool m_LooksItself = true;
    bool m_KeepAlive = false;
    inner::TcpLink* m_Link = nullptr;
    std::shared_ptr<inner::Reactor> m_Reactor;

private:
    friend class inner::Crowd;
    friend class inner::ReadyList;
    friend struct inner::TcpLink;
    friend class TcpServer;

    void lookNow();
    void listReady();
    void setLink(inner::TcpLink* link);
    bool finishConnect();
    bool sendPieces(inner::OutputQueue& queue);
    void loseOutput();
    // Takes an accepted link on, by attach().
    bool take(inner::TcpLink* link, const std::shared_ptr<inner::Reactor>& reactor, TlsContext* context);
    void takePeer();
    inner::Endpoint getPeer() const;
    bool beginConnect(bool hasBegun);
    void drop();

    inner::ReadyList* m_ReadyList = nullptr;
    bool m_IsListed = false;
    // Of the last peer; the bytes are those of an inner::Endpoint.
    unsigned char m_PeerBytes[16] = {};
    unsigned int m_PeerScope = 0;
    unsigned short m_PeerPort = 0;
    unsigned long m_RunThreadId = 0;
    size_t m_OutputLimit = kDefaultOutputLimit;
};

} // namespace zet
