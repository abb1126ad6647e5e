// One connection over a UDP port, and the stack that stands on it.
#pragma once

#include "net/quic/server.h"

namespace zet
{

namespace inner
{
class UdpLink;
} // namespace inner

// A stream of bytes in either direction. No task: its server's tick ticks it, in each tick in which something has
// come, fallen due or was left unread. What is sent is queued and leaves at the end of the tick. A connection may be
// closed or let go of at any time, also within its own calls; one that lives on the stack not within its own calls.
class COMMONGROUND_API UdpServer::UdpConnection : public virtual Unknown
{
public:
    // The same numbers as those of a TcpConnection.
    enum ConnectionState
    {
        // No connection: never made, or closed on this side.
        kDown = 0,
        kConnecting = 1,
        kEstablished = 2,
        // The peer has ended it, and all that it sent was received.
        kClosedByPeer = 3,
        // It broke: the peer was silent for too long or fell out of the protocol, or the server was closed.
        kBroken = 4,
        // The peer refused, is not who he should be, or did not answer.
        kConnectFailed = 5
    };

    // Bytes that wait to be sent, or to be confirmed, at which a send fails; below them a send of any size is taken.
    static constexpr size_t kDefaultOutputLimit = 4 * 1024 * 1024;

    UdpConnection() = default;
    // Closes as close() does.
    ~UdpConnection() override;
    UdpConnection(const UdpConnection&) = delete;
    UdpConnection& operator=(const UdpConnection&) = delete;

    // Looks at what has happened: calls onReceive() where bytes wait that came since the last tick, onSend() where
    // the peer has confirmed bytes since then, and onClose(), once, where the connection has ended by itself and
    // nothing is left to read.
    virtual void onTick(unsigned int tick);
    // Begins a connection from the port of a server to a numeric address or a host name. The peer gets the id before
    // it accepts. The connection is connecting when this returns true. False changes nothing: it has a connection
    // already, the server has no port, or the address is not valid. A name is resolved on another thread meanwhile; the
    // first IPv4 address counts, or the first IPv6 one if there is none. A name that has no address ends as
    // kConnectFailed.
    virtual bool connect(UdpServer* server, const wchar_t* ip, unsigned short port, const Uuid& id);
    // Takes bytes that have come, up to size; 0 when there are none; -1 once the connection is down.
    virtual int receive(void* data, int size);
    // Queues the bytes, also on a connection still on its way up. Returns size, or 0 where the connection is down or
    // the queue is full.
    virtual int send(const void* data, int size);
    // Ends the connection. What waits to be sent goes on its way without this object for the server's linger time;
    // on a connection still on its way up it is lost. What has come and was not read is forgotten.
    virtual void close();
    // The peer has confirmed bytes, so there is room in the queue.
    virtual void onSend();
    // Bytes have come.
    virtual void onReceive();
    // Bytes that receive() gives at once.
    virtual int available() const;
    // The connection has ended, not by close().
    virtual void onClose();

    ConnectionState getConnectionState() const { return m_State; }
    // The id that connect() was given, here or at the other end; all zero before the first connection.
    const Uuid& getConnectionId() const { return m_ConnectionId; }
    // "192.168.0.1:8000" or "[2001:db8::1]:8000"; empty before the first connection, and the last peer's after it.
    String_T<wchar_t> getPeerName() const;
    // The four address bytes of an IPv4 peer as they lie in memory, in network order, and 0 for an IPv6 one; the port.
    unsigned int getPeerAddress() const;
    // The address of an IPv6 peer. False, and nothing changed, for any other.
    bool getPeerAddressIPv6(sockaddr_in6& address) const;
    unsigned short getPeerPort() const { return m_PeerPort; }

    void setOutputLimit(size_t bytes) { m_OutputLimit = bytes; }
    // Bytes that wait to be sent or to be confirmed.
    size_t getOutputSize() const;

protected:
    // The bytes that have come, in one piece; null for none. Valid until the connection is next touched.
    const unsigned char* getInput() const;
    // Takes bytes that have come, without copying them; at most as many as are there.
    void consume(int size);
    // Ends the connection as broken, for what the peer has done. What has come can still be read; the tick behind that
    // calls onClose(), and its server's onEnd() follows. Nothing on a connection that has ended.
    void breakOff();
    // Whether a connection has begun, by connect() or by a server's accept(), since this was last asked.
    bool takeBeginning();

private:
    friend class UdpServer;
    friend class inner::UdpLink;

    inner::Endpoint getPeer() const;
    // Whether there is no connection, or it has ended and everything was read.
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
};

// In order, nothing twice, nothing lost. The transport below does it for every connection; this is its place in the
// stack.
class COMMONGROUND_API UdpReliableConnection : public UdpServer::UdpConnection
{
};

// Encrypted, and proven as far as the TLS contexts of both sides ask; also the transport's doing.
class COMMONGROUND_API UdpSecureConnection : public UdpReliableConnection
{
};

} // namespace zet
