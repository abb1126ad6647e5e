// A listening TCP port, run as a task.
#pragma once

#include "net/limits.h"
#include "net/tcp/connection.h"
#include "net/tls/context.h"

#include <memory>
#include <vector>

struct in_addr;
struct sockaddr_in;

namespace zet
{

namespace inner
{
class Crowd;
struct TcpListener;
} // namespace inner

// Accepts what has come with each tick, up to a number; the rest comes with the next one. A server started in a System
// learns from it when someone has come; one in no System looks with each tick.
class COMMONGROUND_API TcpServer : public Socket
{
public:
    // Connections that one tick accepts at most.
    static constexpr int kAcceptsPerTick = 16;
    // Milliseconds after which a tick accepts no further one.
    static constexpr unsigned int kAcceptTime = 20;
    // Milliseconds that accepting rests once the operating system has no handle left.
    static constexpr unsigned int kRestTime = 100;

    TcpServer();
    ~TcpServer() override;

    bool start(System* system) override;
    // Handshakes that are under way go on with the ticks of their connections.
    void stop() override;
    // Calls onAccept() for each connection that has come and has permission.
    void onTick(unsigned int tick) override;
    // Takes a listening handle over.
    bool attach(unsigned int handle) override;
    unsigned int detach() override;
    // Stops listening; accepted connections stay.
    void close() override;

    // Listens on the address that setBindAddress() was given, else on all addresses of this machine. Port 0 takes a
    // free one; a backlog of 0 or less takes the system's largest. False, and no handle, where it listens already or
    // the port is not to be had.
    virtual bool listen(unsigned short port, int backlog);
    // Gives the next connection that has come to an object without one, through that object's attach(). False where
    // nobody has come and where the object has a connection, which changes nothing; and where attach() is false, or the
    // server wants TLS and the object has no layer for it, which turns the visitor away.
    virtual bool accept(TcpConnection* connection);
    // Whether an address may connect. One on the reject list may not, unless it is on the permission list too; one on
    // neither may. So a reject rule of 0.0.0.0 0.0.0.0 lets in the permission list alone.
    virtual bool permission(const sockaddr_in& address);
    // Someone has come: an override hands accept() an object for it. Who is not accepted here waits, those behind him
    // too, and is announced again with the next tick.
    virtual void onAccept();

    // A network and a mask; an address is on the list when it equals the network in all bits of the mask.
    void addRejectAddress(in_addr address, in_addr mask);
    void addPermissionAddress(in_addr address, in_addr mask);
    // The same by the four bytes, first number first.
    void addRejectAddress(const unsigned char (&address)[4], const unsigned char (&mask)[4]);
    void addPermissionAddress(const unsigned char (&address)[4], const unsigned char (&mask)[4]);

    // Accepted connections go through TLS with this context from now on, those there are stay as they are; null for
    // plain ones. False, and nothing changed, where it lacks what a server needs, and in a library without TLS.
    bool setTlsContext(TlsContext* context);
    TlsContext* getTlsContext() const { return m_TlsContext; }

    // The one address of this machine that the next listen() takes, as four numbers with points; empty for all of them.
    // False, and nothing changed, for what is no such address. "127.0.0.1" lets in this machine alone.
    bool setBindAddress(const wchar_t* address);

    // What this port takes from peers that it does not know. The numbers of connections and of steps count from now on;
    // the rest is what a connection keeps that is accepted from now on.
    void setLimits(const NetLimits& limits);
    const NetLimits& getLimits() const;

    // The port listened on, also where listen() chose it; 0 when not listening.
    unsigned short getPort() const { return m_ListenPort; }

protected:
    // Learns what is ready for this server and its connections where no System has looked for this tick.
    void look();
    // Asks for the next tick at once.
    void hurry();

private:
    friend struct inner::TcpListener;

    // In network order.
    struct Rule
    {
        unsigned int m_Address;
        unsigned int m_Mask;
    };
    enum Visit
    {
        kNobody,
        kRefused,
        kCome
    };

    static Rule ruleOf(const unsigned char* address, const unsigned char* mask);
    static bool holds(const std::vector<Rule>& rules, unsigned int address);
    bool setListener(std::unique_ptr<inner::TcpListener>& listener);
    void joinReactor();
    void acceptVisitors();
    Visit visit();
    void dismiss();
    void drop();

    std::vector<Rule> m_Rejected;
    std::vector<Rule> m_Permitted;
    std::unique_ptr<inner::TcpListener> m_Listener;
    inner::TcpLink* m_Visitor = nullptr;
    std::shared_ptr<inner::Reactor> m_Reactor;
    const std::shared_ptr<inner::Crowd> m_Crowd;
    Unknown::Handle_T<TlsContext> m_TlsContext;
    // In network order; 0 for all.
    unsigned int m_BindAddress = 0;
    // Changes when listening ends.
    unsigned int m_Listening = 0;
    unsigned int m_RestUntil = 0;
    unsigned short m_ListenPort = 0;
    bool m_IsReady = false;
    bool m_IsResting = false;
};

} // namespace zet
