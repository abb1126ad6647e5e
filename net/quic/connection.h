// One connection of a UDP port, and the classes of the stack on top of it.
#pragma once

#include "net/connection_events.h"
#include "net/quic/server.h"

namespace zet
{

namespace inner
{
class UdpLink;
} // namespace inner

// A stream of bytes in each direction. Not a task: the onTick() of its server ticks it, in each tick in which bytes
// have arrived, a timer has expired or input was left unread. What is sent is queued and leaves at the end of the tick.
//
// OWNERSHIP: the host's; the server does not keep it alive. A connection may be closed or released at any time, also
// within its own calls; an object on the stack must outlive its own calls. THREADS: the server's.
//
// The functions of ConnectionEvents report what happens to it; onClose() comes before onEnd().
class COMMONGROUND_API UdpServer::UdpConnection : public virtual Unknown, public virtual ConnectionEvents
{
public:
    // The same numbers as those of a TcpConnection.
    enum ConnectionState
    {
        // No connection: never made, or closed on this side.
        kDown = 0,
        kConnecting = 1,
        kEstablished = 2,
        // The peer has ended the connection, and everything it sent was received.
        kClosedByPeer = 3,
        // The peer was silent for too long or violated the protocol, or the server was closed.
        kBroken = 4,
        // The peer refused, failed the verification of its certificate, or did not answer; or the name has no address.
        kConnectFailed = 5
    };

    // Bytes queued or unconfirmed from which on a send fails. Below the limit a send of any size succeeds.
    static constexpr size_t kDefaultOutputLimit = 4 * 1024 * 1024;
    // Bytes queued or unconfirmed from which on isOutputHigh() is true.
    static constexpr size_t kDefaultOutputMark = 1024 * 1024;

    UdpConnection() = default;
    // Closes as close() does; onClose() is not called.
    ~UdpConnection() override;
    UdpConnection(const UdpConnection&) = delete;
    UdpConnection& operator=(const UdpConnection&) = delete;

    // Reports what has happened since the last tick: calls onReceive() if bytes have arrived, onSend() if the peer has
    // confirmed bytes, and onClose(), once, if the connection has ended by itself and nothing is left to read.
    virtual void onTick(unsigned int tick);
    // Opens a connection from the server's port to a numeric address or a host name. The peer gets the id before it
    // accepts. True: the connection is connecting; onEnd() will follow. False, with a log line, and no connection: it
    // has a connection already, the server has no port, or the address or port is not valid. A name is resolved on
    // another thread: its first IPv4 address is used, or its first IPv6 one if it has no IPv4 address. A name without
    // an address ends as kConnectFailed.
    virtual bool connect(UdpServer* server, const wchar_t* ip, unsigned short port, const Uuid& id);
    // Reads up to size received bytes. Returns their number, 0 if there are none, -1 once the connection is down.
    virtual int receive(void* data, int size);
    // Queues the bytes, also while connecting. Returns size, or 0 if the connection is down, the queue has reached the
    // output limit, memory is short, or size is not positive; then nothing is queued.
    virtual int send(const void* data, int size);
    // Ends the connection without onClose(). Queued bytes are still sent, without this object, for at most the server's
    // m_LingerTime; while connecting they are lost. Unread bytes are lost.
    virtual void close();
    // Calls close(); the cause of the end is kHost with this number.
    void closeFor(unsigned short reason);
    // Called when the peer has confirmed bytes, so the queue has space again.
    virtual void onSend();
    // Called when bytes have arrived.
    virtual void onReceive();
    // Bytes that receive() can return at once.
    virtual int available() const;
    // Called once when the connection has ended other than by close(). The object may connect again.
    virtual void onClose();

    // The state now. It changes in ticks and by the operations of this class.
    ConnectionState getConnectionState() const { return m_State; }
    // The id given to connect(), here or on the peer's side; all zero before the first connection.
    const Uuid& getConnectionId() const { return m_ConnectionId; }
    // "192.168.0.1:8000" or "[2001:db8::1]:8000"; empty before the first connection, and the last peer's afterwards.
    String_T<wchar_t> getPeerName() const;
    // The four address bytes of an IPv4 peer as they are in memory, in network order, and 0 for an IPv6 one; the port.
    unsigned int getPeerAddress() const;
    // The address of an IPv6 peer. False, and nothing changed, for any other.
    bool getPeerAddressIPv6(sockaddr_in6& address) const;
    // The port of that peer; 0 before the first connection.
    unsigned short getPeerPort() const { return m_PeerPort; }

    // Bytes; kDefaultOutputLimit at first.
    void setOutputLimit(size_t bytes) { m_OutputLimit = bytes; }
    // The high mark of the output, which should be below the limit; its half is the low mark. Once the output has
    // reached the high mark, isOutputHigh() is true until it has fallen to the low mark; then onWritable() is called.
    void setOutputMark(size_t bytes) { m_OutputMark = bytes; }
    using ConnectionEvents::isOutputHigh;
    // Bytes queued or sent and not confirmed yet.
    size_t getOutputSize() const;
    // Microseconds from a packet to its acknowledgement, smoothed; 0 without a connection and before the first one.
    unsigned long long getRoundTripTime() const;

protected:
    // The received bytes in one piece, available() of them; null if there are none. Valid until the next call of this
    // object.
    const unsigned char* getInput() const;
    // Discards up to size received bytes without a copy.
    void consume(int size);
    // Ends the connection as broken, by default because of what the peer has sent. Received bytes can still be read;
    // the next tick after that calls onClose(), and the server's onEnd() follows. No effect on a connection that has
    // ended.
    void breakOff(EndCause cause = {EndCause::kMalformed, 0});
    // Whether connect() or a server's accept() has given this object a connection since the last call.
    bool takeBeginning();

private:
    friend class UdpServer;
    friend class inner::UdpLink;

    inner::Endpoint getPeer() const;
    // Calls onClose(), if it is due, and then onEnd(), once. The object may not exist any more afterwards.
    void reportEnd();
    // connect() has failed: logs and counts it. False.
    bool failConnect(EndCause cause, const wchar_t* ip, unsigned short port);
    // True without a connection, and if it has ended and everything was read.
    bool isOver() const;

    inner::UdpLink* m_Link = nullptr;
    ConnectionState m_State = kDown;
    bool m_IsEndTold = true;
    bool m_HasBegun = false;
    unsigned short m_PeerPort = 0;
    // Of the last peer; the bytes are those of an inner::Endpoint.
    unsigned char m_PeerBytes[16] = {};
    unsigned int m_PeerScope = 0;
    Uuid m_ConnectionId;
    size_t m_OutputLimit = kDefaultOutputLimit;
    size_t m_OutputMark = kDefaultOutputMark;
};

// Bytes arrive in order, once, and completely. QUIC does this for every connection; the class exists for its place in
// the stack.
class COMMONGROUND_API UdpReliableConnection : public UdpServer::UdpConnection
{
};

// Encrypted, and authenticated as far as the TLS contexts of both sides demand. QUIC does this, too.
class COMMONGROUND_API UdpSecureConnection : public UdpReliableConnection
{
};

} // namespace zet
