// A UDP port with connections on top, run as a task.
#pragma once

#include "framework/uuid.h"
#include "net/limits.h"
#include "net/socket.h"
#include "net/tls/context.h"

#include <memory>

struct sockaddr_in;

namespace zet
{

namespace inner
{
class UdpRouter;
}

// Carries any number of connections over one port, those that it began and those that came, each with one stream of
// bytes in either direction: encrypted, in order, nothing twice, nothing lost. It ticks the connections from its own
// tick, and only those on which something has come or fallen due. Nothing here waits, and an idle port calls nothing
// of the operating system. Everything belongs to the thread of the server's System; a server in no System looks for
// itself with each onTick(). What an override here or a connection's own throws within a tick, or while the server
// closes, is logged and goes no further.
//
// The connections are QUIC version 1. Theirs is a datagram that names a connection of this port by its 16 random
// bytes, where a packet has them; any other packet with a long head (first byte 0xC0 or more) of version 1 or 0; and
// one with a long head of an unknown version in 1,200 bytes or more, which is answered with the version there is. All
// else is user data, also a packet that comes so late that its connection is forgotten: a host looks twice at what it
// is given.
//
// A visitor must first show that his address is his: until he has returned a token that is sent there, nothing is
// kept of him, and he gets fewer bytes than he sent.
//
// Without a TLS context a port makes its own certificate and believes any. That keeps what is said between the two
// from others, and proves to no one who the other is; contexts with a certificate and with authorities prove it.
class COMMONGROUND_API UdpServer : public Socket
{
public:
    class UdpConnection;

    // Bytes of the longest datagram of user data, either way; a longer one is not sent, and dropped when it comes.
    static constexpr int kMostUserData = 2048;
    // Datagrams that one tick takes at most, and the milliseconds that it may take for them; the rest comes with the
    // next one.
    static constexpr int kDatagramsPerTick = 128;
    static constexpr unsigned int kReceiveTime = 20;
    // Of each kind of a visitor's first packets, those that one tick looks at: those without a token, which get one,
    // those whose token is to be checked, and those of an unknown version. Others are dropped, and come again by
    // themselves.
    static constexpr int kGreetingsPerTick = 32;
    // Peers with a token whose handshake one tick begins, or refuses, at most, where NetLimits does not say fewer; the
    // others wait for the next tick.
    static constexpr int kAdmissionsPerTick = 16;

    struct Settings
    {
        // Milliseconds without a sign of the peer after which a connection counts as dead; the smaller one of both
        // sides holds. 0 waits for ever.
        unsigned int m_IdleTimeout = 30000;
        // Milliseconds without traffic after which a sign of life is sent; 0 sends none.
        unsigned int m_KeepAlive = 10000;
        // Milliseconds that a connection may take to come up; for a visitor also until he is accepted.
        unsigned int m_ConnectTimeout = 10000;
        // Milliseconds that a connection closed on this side goes on sending what waited.
        unsigned int m_LingerTime = 5000;
        // Connections of visitors that there may be at once; more are refused. 0 accepts nobody. NetLimits has another
        // number, and those of one address and of one subnet.
        int m_ConnectionLimit = 20000;
        // Bytes that a peer may send ahead of the reader.
        int m_InputLimit = 256 * 1024;
    };

    struct Traffic
    {
        unsigned long long m_DatagramsIn = 0;
        unsigned long long m_BytesIn = 0;
        unsigned long long m_DatagramsOut = 0;
        unsigned long long m_BytesOut = 0;
    };

    UdpServer();
    ~UdpServer() override;

    // False where the library was built without connections over UDP; then no server gets a port.
    static bool isAvailable();

    bool start(System* system) override;
    // Takes the datagrams that have come, calls onAccept() for each visitor, ticks the connections that have
    // something to do, and sends.
    void onTick(unsigned int tick) override;
    // Takes a bound handle over.
    bool attach(unsigned int handle) override;
    // Gives the handle back, open; its connections end as by close().
    unsigned int detach() override;
    // Ends all connections: the peers are told, once. Each connection's onClose() is called.
    void close() override;

    // Takes the port on all addresses of this machine; 0 takes a free one. False, and no handle, where it has a port
    // already, the port is not to be had, or this build has no connections over UDP.
    virtual bool listen(unsigned short port);
    // Gives the visitor who has waited longest to an object without a connection. False changes nothing.
    virtual bool accept(UdpConnection* connection);
    // Begins a connection from this port, as UdpConnection::connect() does.
    virtual bool connect(UdpConnection* connection, const wchar_t* ip, unsigned short port, const Uuid& id);
    // Someone has come: an override hands accept() an object for him. Who is not accepted here waits, those behind
    // him too, and is announced again with the next tick, until m_ConnectTimeout after his first packet: then he is
    // turned away. One who ends before he is accepted is forgotten, with all that he sent, also what was confirmed.
    virtual void onAccept();
    // A datagram that belongs to no connection. The bytes are valid during the call.
    virtual void onUserData(const sockaddr_in& address, const void* data, int size);
    // A connection of this port has ended by itself or with the server, and its onClose() was called; or it was closed
    // within its own tick, so by a handler of what came on it.
    virtual void onEnd(UdpConnection* connection);

    // Sends a datagram as it is, now or at the end of the tick. False where there is no port, or no datagram of 1 to
    // kMostUserData bytes. Nobody learns whether it arrives. Its first byte should tell it from a packet, as above.
    bool sendUserData(const sockaddr_in& address, const void* data, int size);
    // Hands a datagram over as though it had come to the port just now.
    void deliver(const sockaddr_in& address, const void* data, int size);

    // The id that the visitor told whom accept() would take now; all zero where nobody waits. And his address, which
    // is not touched where nobody waits.
    Uuid getVisitorId() const;
    bool getVisitorAddress(sockaddr_in& address) const;

    // The port in use, also where listen() chose it; 0 where there is none.
    unsigned short getPort() const { return m_UdpPort; }
    // Connections that stand or are on their way up, in both directions.
    int getConnectionCount() const;
    // What has passed the port since listen().
    Traffic getTraffic() const;

    // The certificate and the authorities that the next listen() or attach() takes up; null for none, as above. With a
    // certificate visitors are shown that one, without they get one of the port's own making, which no authority
    // knows. connect() believes none but the context's authorities, for the name or address that it was given; where
    // the context has none it fails, with a log line. Clients' certificates are asked for as the context says. Its
    // handshake time does not count here: Settings::m_ConnectTimeout does; and no session is resumed. The context
    // counts as used from then on.
    void setTlsContext(TlsContext* context) { m_TlsContext = context; }
    TlsContext* getTlsContext() const { return m_TlsContext; }

    // What visitors may take of the port: their connections in all (the smaller number of these and of the settings
    // holds), of an address and of a subnet, as they were when they came, more of which are refused; and the handshakes
    // that a tick begins, by number and time. Of the rest nothing counts here. Visitors that come later go by new ones.
    void setLimits(const NetLimits& limits) { m_Limits = limits; }
    const NetLimits& getLimits() const { return m_Limits; }

    // Later connections go by new settings.
    void setSettings(const Settings& settings) { m_Settings = settings; }
    const Settings& getSettings() const { return m_Settings; }

private:
    bool open(unsigned short port, unsigned int handle);
    void forget();

    Settings m_Settings;
    NetLimits m_Limits;
    Unknown::Handle_T<TlsContext> m_TlsContext;
    std::shared_ptr<inner::UdpRouter> m_Router;
    unsigned short m_UdpPort = 0;
};

} // namespace zet
