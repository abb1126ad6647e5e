// A UDP port with connections on top, run as a task.
#pragma once

#include "framework/uuid.h"
#include "net/accept_counts.h"
#include "net/end_cause.h"
#include "net/limits.h"
#include "net/socket.h"
#include "net/tls/context.h"

#include <memory>

struct sockaddr_in;
struct sockaddr_in6;

namespace zet
{

namespace inner
{
class DoorHandle;
class EndCounts;
class QuicRouter;
class UdpRouter;
struct Endpoint;
} // namespace inner

// Carries any number of connections over one port, outgoing and accepted, each with one stream of bytes in either
// direction: encrypted, in order, without loss or repetition. It ticks the connections from its own tick, and only
// those with input or an expired timer. Nothing here waits, and an idle port makes no system call. Everything belongs
// to the thread of the server's System; a server in no System looks for itself with each onTick(). An exception of an
// override here or of a connection, within a tick or while the server closes, is logged and goes no further.
//
// The connections are QUIC version 1. These datagrams are theirs: one that names a connection of this port by its 16
// random bytes, at the place where a packet has them; any other packet with a long header (first byte 0xC0 or more) of
// version 1 or 0; and one with a long header of an unknown version in 1,200 bytes or more, which is answered with the
// supported version. All else is user data, also a packet so late that its connection is forgotten: a host must check
// what it is given.
//
// A peer must first show that it receives at its address: until it has returned a token that is sent there, the port
// keeps no state for it and sends it fewer bytes than it received.
//
// Without a TLS context a port makes its own certificate and trusts any. That encrypts, but does not authenticate;
// contexts with a certificate and with authorities do.
class COMMONGROUND_API UdpServer : public Socket
{
public:
    class UdpConnection;

    // Bytes of the longest datagram of user data, either way; a longer one is not sent, and dropped on arrival.
    static constexpr int kMostUserData = 2048;
    // Datagrams that one tick takes at most, and the milliseconds that it may take for them; the rest waits for the
    // next tick.
    static constexpr int kDatagramsPerTick = 128;
    static constexpr unsigned int kReceiveTime = 20;
    // First packets of each kind that one tick processes: those without a token, which get one, those whose token is to
    // be checked, and those of an unknown version. Others are dropped; a peer repeats them.
    static constexpr int kGreetingsPerTick = 32;
    // Peers with a token whose handshake one tick begins, or refuses, at most, where NetLimits does not say fewer; the
    // others wait for the next tick.
    static constexpr int kAdmissionsPerTick = 16;

    // Times and sizes of the connections of a port.
    struct Settings
    {
        // Milliseconds without a packet from the peer after which a connection ends; the smaller number of both sides
        // applies. 0 waits for ever.
        unsigned int m_IdleTimeout = 30000;
        // Milliseconds without traffic after which a PING is sent; 0 sends none.
        unsigned int m_KeepAlive = 10000;
        // Milliseconds in which a connection must be established, and one that a peer opened also accepted.
        unsigned int m_ConnectTimeout = 10000;
        // Milliseconds for which a connection closed on this side continues to send its queued output.
        unsigned int m_LingerTime = 5000;
        // Connections opened by peers at once; more are refused. 0 accepts none. NetLimits has another number, and
        // those per address and per subnet.
        int m_ConnectionLimit = 20000;
        // Bytes that a peer may send before the host has read them.
        int m_InputLimit = 256 * 1024;
    };

    // Datagrams and bytes, of connections and of user data.
    struct Traffic
    {
        unsigned long long m_DatagramsIn = 0;
        unsigned long long m_BytesIn = 0;
        unsigned long long m_DatagramsOut = 0;
        unsigned long long m_BytesOut = 0;
        // Of m_DatagramsIn, user data from IPv6 addresses that was dropped, since onUserDataIPv6() is not overridden.
        unsigned long long m_DatagramsDropped = 0;
    };

    // Without a port.
    UdpServer();
    ~UdpServer() override;

    // False where the library was built without connections over UDP, or if the module zet_Secure cannot be loaded from
    // its folder, which this tries; then no server gets a port.
    static bool isAvailable();

    bool start(System* system) override;
    // Takes pending datagrams, calls onAccept() for each pending connection, ticks the connections that have something
    // to do, and sends.
    void onTick(unsigned int tick) override;
    // Takes a bound handle over.
    bool attach(unsigned int handle) override;
    // Gives the handle back, open; its connections end as by close().
    unsigned int detach() override;
    // Ends all connections: each peer is sent its end, once. Each connection's onClose() is called.
    void close() override;

    // Takes the port on the address that setBindAddress() was given, otherwise on all addresses of this machine, of
    // IPv4 and, where the system has it, of IPv6. 0 takes a free port. False, and no handle, if it has a port already,
    // the port cannot be bound, or this build has no connections over UDP.
    virtual bool listen(unsigned short port);
    // Gives the connection that has been pending longest to an object without a connection. False changes nothing.
    virtual bool accept(UdpConnection* connection);
    // Begins a connection from this port, as UdpConnection::connect() does.
    virtual bool connect(UdpConnection* connection, const wchar_t* ip, unsigned short port, const Uuid& id);
    // A connection is pending: an override passes accept() an object for it. A connection that is not accepted here
    // stays pending, with those after it, and is announced again with the next tick, until m_ConnectTimeout after its
    // first packet: then it is refused. One that its peer ends earlier is forgotten, with all that was received on it,
    // also what was confirmed.
    virtual void onAccept();
    // A datagram from an IPv4 address that belongs to no connection. The bytes are valid during the call.
    virtual void onUserData(const sockaddr_in& address, const void* data, int size);
    // A connection of this port has ended by itself or with the server, and its onClose() was called; or it was closed
    // within its own tick, that is, by a handler of what was received on it.
    virtual void onEnd(UdpConnection* connection);
    // The same as onUserData() for a datagram from an IPv6 address; without an override it is dropped and counted.
    virtual void onUserDataIPv6(const sockaddr_in6& address, const void* data, int size);

    // Sends a datagram as it is, now or at the end of the tick. False without a port, or for a datagram that has not 1
    // to kMostUserData bytes. Its arrival is not reported. Its first byte should distinguish it from a packet, as
    // above.
    bool sendUserData(const sockaddr_in& address, const void* data, int size);
    // The same to an IPv6 address. A port of IPv4 alone loses it.
    bool sendUserDataIPv6(const sockaddr_in6& address, const void* data, int size);
    // Handles a datagram as though it had arrived at the port just now.
    void deliver(const sockaddr_in& address, const void* data, int size);
    void deliverIPv6(const sockaddr_in6& address, const void* data, int size);

    // The id that the peer sent whose connection accept() would take now; all zero if no connection is pending.
    Uuid getVisitorId() const;
    // The address of that peer. False, and nothing changed, if no connection is pending or it has the other family.
    bool getVisitorAddress(sockaddr_in& address) const;
    bool getVisitorAddressIPv6(sockaddr_in6& address) const;

    // The address of this machine that the next listen() takes, numeric, of IPv4 or IPv6. Empty, or "::", takes all
    // addresses of both families, "0.0.0.0" all of IPv4. False, and nothing changed, for any other text.
    bool setBindAddress(const wchar_t* address);

    // Whether the next listen() shares its port with other servers that do so too, as TcpServer::setSharedPort() does.
    // The operating system divides the datagrams by the address and port of the peer and by the number of servers on
    // the port. So all servers listen before the first peer arrives, and none closes before the last one has left; a
    // connection whose peer gets another address or port ends by its idle time; and connections that this side opens
    // need a port that is not shared. Linux only.
    void setSharedPort(bool isShared) { m_IsPortShared = isShared; }

    // The port in use, also if listen() chose it; 0 without one.
    unsigned short getPort() const { return m_UdpPort; }
    // Established and connecting connections, in both directions.
    int getConnectionCount() const;
    // What the port has sent and received since listen().
    Traffic getTraffic() const;

    // Why the last listen() or attach() returned false, or a connection was last refused; kNone before the first one.
    // listen() also logs it.
    const EndCause& getFault() const { return m_Fault; }
    // The connections opened by peers that have ended by this cause, or that this port refused by it, since its
    // construction. One that was not accepted in time counts too.
    unsigned long long getEndCount(EndCause::Code code) const;
    // The connections that this port accepted, and the handshakes of peers that have shown that they receive at their
    // addresses.
    const AcceptCounts& getAcceptCounts() const { return m_Accepts; }
    // Packets with bytes of connections in both directions that were sent since listen() and declared lost, some of
    // them too early. Visits each connection.
    unsigned long long getLostPackets() const;

    // The certificate and the authorities that the next listen() or attach() uses; null for none, as above. A context
    // with a certificate shows that to peers; otherwise they are shown one that the port makes, which no authority has
    // signed. connect() trusts only the context's authorities, for the name or address that it was given; if the
    // context has none it fails, with a log line. Clients' certificates are requested as the context says. Its
    // handshake time does not apply here: Settings::m_ConnectTimeout does; and no session is resumed. The context
    // counts as used from then on.
    void setTlsContext(TlsContext* context) { m_TlsContext = context; }
    // The argument of the last setTlsContext(); null at first.
    TlsContext* getTlsContext() const { return m_TlsContext; }

    // Bounds on the connections that peers open: in all (the smaller number of these and of the settings applies), per
    // address and per subnet, where each was when it was opened; more are refused. And on the handshakes that a tick
    // begins, by number and time. The rest does not apply here. New limits apply to later connections.
    void setLimits(const NetLimits& limits) { m_Limits = limits; }
    // The limits set last; the defaults at first.
    const NetLimits& getLimits() const { return m_Limits; }

    // New settings apply to later connections.
    void setSettings(const Settings& settings) { m_Settings = settings; }
    // The settings set last; the defaults at first.
    const Settings& getSettings() const { return m_Settings; }

private:
    friend class inner::QuicRouter;

    // No cause if the port is open.
    EndCause open(inner::DoorHandle& handle);
    void forget();
    EndCause takePort(unsigned short port);
    void countEnd(EndCause cause);
    // A limit refuses a connection from this address.
    void noteRefused(const inner::Endpoint& peer);

    Settings m_Settings;
    NetLimits m_Limits;
    Unknown::Handle_T<TlsContext> m_TlsContext;
    std::shared_ptr<inner::UdpRouter> m_Router;
    // Null for all.
    std::unique_ptr<inner::Endpoint> m_BindAddress;
    const std::unique_ptr<inner::EndCounts> m_Ends;
    AcceptCounts m_Accepts;
    EndCause m_Fault;
    unsigned short m_UdpPort = 0;
    bool m_IsPortShared = false;
};

} // namespace zet
