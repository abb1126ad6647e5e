// A listening TCP port, run as a task.
#pragma once

#include "net/accept_counts.h"
#include "net/address_filter.h"
#include "net/limits.h"
#include "net/tcp/connection.h"
#include "net/tls/context.h"

#include <memory>
#include <utility>

struct in6_addr;
struct in_addr;
struct sockaddr_in;
struct sockaddr_in6;

namespace zet
{

namespace inner
{
class Crowd;
class DoorHandle;
class Proxied;
struct Endpoint;
struct TcpListener;
} // namespace inner

// The part of a TcpServer for IPv6: a base of its own, so that the virtual operations of a server keep their order, and
// those of derived classes too.
class COMMONGROUND_API TcpServerIPv6
{
public:
    // Whether an IPv6 address may connect. An address on a list of subnets is decided as TcpServer::permission()
    // decides by its lists. An address on neither is decided by permission(0.0.0.0, with the peer's port), also by an
    // override of it: a host that allows only listed addresses refuses IPv6 peers until it adds subnets or overrides
    // this.
    virtual bool permissionIPv6(const sockaddr_in6& address);

protected:
    ~TcpServerIPv6() = default;
};

// Accepts pending connections with each tick, up to a number; the rest wait for the next tick. A server started in a
// System learns from it when a connection is pending; one in no System looks with each tick.
class COMMONGROUND_API TcpServer : public Socket, public TcpServerIPv6
{
public:
    // Connections that one tick accepts at most.
    static constexpr int kAcceptsPerTick = 16;
    // Milliseconds after which a tick accepts no further one.
    static constexpr unsigned int kAcceptTime = 20;
    // Milliseconds for which accepting pauses when the operating system has no handle left.
    static constexpr unsigned int kRestTime = 100;

    // Does not listen, and has the default limits.
    TcpServer();
    ~TcpServer() override;

    bool start(System* system) override;
    // Handshakes under way continue with the ticks of their connections.
    void stop() override;
    // Calls onAccept() for each pending connection that is permitted.
    void onTick(unsigned int tick) override;
    // Takes a listening handle over.
    bool attach(unsigned int handle) override;
    unsigned int detach() override;
    // Stops listening; accepted connections stay.
    void close() override;

    // Listens on the address that setBindAddress() was given, otherwise on all addresses of this machine, of IPv4 and,
    // where the system has it, of IPv6. Port 0 takes a free port; a backlog of 0 or less takes the system's largest.
    // False, and no handle, if it listens already or the port cannot be bound.
    virtual bool listen(unsigned short port, int backlog);
    // Gives the next pending connection to an object without a connection, through that object's attach(). False, and
    // nothing changed, if no connection is pending or the object has a connection. False if attach() returns false, or
    // the server requires TLS and the object has no TLS layer: then the pending connection is closed.
    virtual bool accept(TcpConnection* connection);
    // Whether an IPv4 address may connect; permissionIPv6() decides on the others. An address on the reject list may
    // not, unless it is on the permission list too; an address on neither may. So with a reject rule of 0.0.0.0 0.0.0.0
    // only the permission list may connect.
    virtual bool permission(const sockaddr_in& address);
    // A connection is pending: an override passes accept() an object for it. A connection that is not accepted here
    // stays pending, with those after it, and is announced again with the next tick.
    virtual void onAccept();

    // A network and a mask; an address is on the list when it equals the network in all bits of the mask.
    void addRejectAddress(in_addr address, in_addr mask);
    void addPermissionAddress(in_addr address, in_addr mask);
    // A network of IPv6 and the number of bits, 0 to 128, in which an address on the list equals it; false, and nothing
    // added, for any other number. A network of mapped IPv4 addresses (::ffff:0:0/96 and longer) is a rule of IPv4.
    bool addRejectAddress(const in6_addr& address, int bits);
    bool addPermissionAddress(const in6_addr& address, int bits);
    // A subnet of either family as text: "2001:db8::/32", "10.0.0.0/8", or an address alone for itself. False, and
    // nothing added, for any other text.
    bool addRejectSubnet(const wchar_t* subnet);
    bool addPermissionSubnet(const wchar_t* subnet);
    // The same by the four bytes, first number first.
    void addRejectAddress(const unsigned char (&address)[4], const unsigned char (&mask)[4]);
    void addPermissionAddress(const unsigned char (&address)[4], const unsigned char (&mask)[4]);
    // Replaces all rules, those of files too, for the connections that are accepted from now on; established ones stay.
    void setAddressFilter(AddressFilter filter) { m_Filter = std::move(filter); }
    // The present rules with their hits.
    const AddressFilter& getAddressFilter() const { return m_Filter; }

    // Connections accepted from now on use TLS with this context; null for plain connections. Those accepted before do
    // not change. False, and nothing changed, if it lacks what a server needs, and in a library without TLS.
    bool setTlsContext(TlsContext* context);
    // The context in use; null for plain connections.
    TlsContext* getTlsContext() const { return m_TlsContext; }

    // The address of this machine that the next listen() takes, numeric, of IPv4 or IPv6. Empty, or "::", takes all
    // addresses of both families, "0.0.0.0" all of IPv4. False, and nothing changed, for any other text, also for a
    // name. With "127.0.0.1" or "::1" only this machine can connect.
    bool setBindAddress(const wchar_t* address);

    // Whether the next listen() shares its port with other servers that do so too, of any System or process of this
    // user: the first one may listen on port 0, the others then listen on its getPort(). The operating system divides
    // the new connections among them by the addresses of the peers, and each connection stays with the server that
    // accepted it. Connections that are pending when their server closes are reset. Linux only: on other systems such a
    // listen() is false, and the log says so.
    void setSharedPort(bool isShared) { m_IsPortShared = isShared; }

    // Connections accepted from now on come through a proxy and start with the header of the PROXY protocol, version 2.
    // The peer is then the one that the header names: to permission() and its lists, the limits per address, logs and
    // the operations of the connection. Where it names none (a check of the proxy's own), the peer is the proxy. TLS
    // and packets follow the header. The networks are those of the proxies, as for addRejectSubnet(), with blanks
    // between them: a connection from elsewhere is refused, so with an empty text all are. So is one with a malformed
    // header, or one that is longer than 232 bytes, or not complete within NetLimits::m_ProxyHeaderTime. Null, as at
    // first, for connections without a header. Either closes those whose header is not complete. False, and nothing
    // changed, if a network is not valid.
    bool expectProxyHeader(const wchar_t* networks);

    // What this port accepts from peers that it does not know. The numbers of connections and of steps apply from now
    // on; a connection keeps the rest from when it was accepted.
    void setLimits(const NetLimits& limits);
    // The limits set last; the defaults at first.
    const NetLimits& getLimits() const;

    // Why the last listen() or attach() returned false, an accept() could not take over a pending connection, or a
    // pending connection was last refused; kNone before the first one. listen() also logs it. An accept() that finds no
    // pending connection, or gets an object that has a connection, does not change it.
    const EndCause& getFault() const { return m_Fault; }
    // The connections of this port that have ended by this cause, or that it refused by it, since its construction.
    unsigned long long getEndCount(EndCause::Code code) const;
    // The connections that this port accepted, and their handshakes.
    const AcceptCounts& getAcceptCounts() const;

    // The packets of this port's peers that were refused by NetLimits::kRefuse, since its construction.
    unsigned long long getRefusedPackets() const;

    // The port listened on, also where listen() chose it; 0 when not listening.
    unsigned short getPort() const { return m_ListenPort; }

protected:
    // Learns what is ready for this server and its connections where no System has looked for this tick.
    void look();
    // Sends what connections have queued, in a tick outside of the tick of the System.
    void flushOutsideTick();
    // Asks for the next tick at once.
    void hurry();

private:
    friend struct inner::TcpListener;
    friend class TcpServerIPv6;

    enum Pending
    {
        kNone,
        kRefused,
        kWaiting
    };

    EndCause beginListening(unsigned short port, int backlog);
    // Counts a refused connection; false for a caller that returns it.
    bool noteFault(EndCause cause);
    bool setListener(std::unique_ptr<inner::TcpListener>& listener);
    void joinReactor();
    void acceptPending();
    void prepareListener();
    void setNextTick();
    Pending takePending();
    // The peer of a connection is known.
    Pending admit(inner::DoorHandle& handle, const inner::Endpoint& peer, bool isPrepared);
    // Counts and logs a refused connection; the reason is null for the text of the cause.
    void refuse(const inner::Endpoint& peer, EndCause cause, const wchar_t* reason = nullptr);
    void awaitProxyHeader(inner::DoorHandle& handle, const inner::Endpoint& proxy, bool isPrepared);
    void readProxyHeaders();
    // Whether a connection may be pending.
    bool mayAccept() const;
    bool isPermitted(const inner::Endpoint& peer);
    bool isPermittedIPv6(const inner::Endpoint& peer);
    void closePending();
    void drop();

    AddressFilter m_Filter;
    std::unique_ptr<inner::TcpListener> m_Listener;
    // The connection that onAccept() is called for.
    inner::TcpLink* m_Pending = nullptr;
    std::shared_ptr<inner::Reactor> m_Reactor;
    const std::shared_ptr<inner::Crowd> m_Crowd;
    // Null if no header is expected. It ends before the reactor.
    std::unique_ptr<inner::Proxied> m_Proxied;
    Unknown::Handle_T<TlsContext> m_TlsContext;
    // Null for all.
    std::unique_ptr<inner::Endpoint> m_BindAddress;
    // Changes when listening ends.
    unsigned int m_Listening = 0;
    unsigned int m_RestUntil = 0;
    EndCause m_Fault;
    unsigned short m_ListenPort = 0;
    bool m_IsReady = false;
    bool m_IsResting = false;
    // New connections have the options of the present limits from the listening socket.
    bool m_IsInherited = false;
    // Connections that arrived before it had these options may be pending.
    bool m_HasEarlier = false;
    bool m_IsPortShared = false;
};

} // namespace zet
