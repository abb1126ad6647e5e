// A connection that carries messages.
#pragma once

#include "framework/event.h"
#include "framework/message.h"
#include "net/connection_events.h"
#include "net/session/address.h"
#include "net/session/event.h"
#include "net/tls/context.h"

#include <memory>

namespace zet
{

class NetModule;
struct NetLimits;

namespace inner
{
class NetLink;
}

// One packet is one message, preceded by its class name. The connecting side sends a greeting with the id passed to
// connect(), the accepting side replies with the same greeting, and then both get Evt_NetConnectOk.
//
// All operations belong to the run thread of the module's System, and so do the events and messages. A handler may
// close this or any other session, or release the last handle to this one. A message of an unregistered class, or with
// a form that its class refuses, is logged and dropped. There is no lock in this class.
//
// The functions of ConnectionEvents report the same as the events: onEstablished() after Evt_NetConnectOk, and onEnd(),
// with the cause, after the event of the end; onEnd() also after close(), which has no event.
class COMMONGROUND_API NetSession : public virtual Unknown, public virtual ConnectionEvents
{
public:
    // Milliseconds from connect() or accept() after which an attempt without the greetings fails.
    static constexpr unsigned int kGreetingTime = 10000;
    // Milliseconds that one tick handles messages, tested before each one.
    static constexpr unsigned int kDispatchTime = 100;

    enum State
    {
        // No connection.
        kDown,
        // The connection is connecting, or the greetings have not arrived.
        kConnecting,
        kEstablished
    };

    // The module is not owned and outlives the connects, accepts and sends of the session.
    static Unknown::Handle_T<NetSession> createInstance(NetModule* module);
    // Closes without an event.
    ~NetSession() override;
    NetSession(const NetSession&) = delete;
    NetSession& operator=(const NetSession&) = delete;

    // The next connect() goes through TLS; null for a plain one. An accepted session does as its module does.
    void setTlsContext(TlsContext* context) { m_TlsContext = context; }
    // Limits of its own for the next connect(), as TcpConnection::setLimits() has them; the greeting keeps its
    // kGreetingTime. An accepted session has those of its module. Throws std::bad_alloc, and nothing is changed then.
    void setLimits(const NetLimits& limits);
    // Accepts the module's next pending connection. False if none is pending, or the session has a connection.
    virtual bool accept();
    // Starts a connection, which is established with Evt_NetConnectOk or ends with Evt_NetConnectFail. The accepting
    // side gets the id. False, without an event, if the session has a connection, the module is in no System, or the
    // address is invalid or failed at once.
    virtual bool connect(const NetAddress& address, const Uuid& id);
    // Ends the connection without an event here; queued output is sent as far as the operating system accepts it now.
    // The peer gets Evt_NetClosed.
    virtual void close();
    // Queues a message, which is written within the call and stays the caller's. False if it is null, the session is
    // not established, the message has no stream form or is too long, or another thread calls; also if the queue is
    // full, which ends the session with Evt_NetError.
    virtual bool send(Message* message);
    // Calls close(); the cause of the end is kHost with this number.
    void closeFor(unsigned short reason);
    // Called with each received message; passes it to the subscribers of its class. The message lives until the call
    // returns, unless a handle holds it.
    virtual void onMessage(Message* message);

    // For subscriptions to the events of this session, and to the classes of its messages. They live as long as the
    // session.
    EventDispenser& getEventDispenser() { return m_Events; }
    MessageDispenser& getMessageDispenser() { return m_Messages; }

    // The state now.
    State getState() const;
    // The id passed to connect(), on both sides; all zero before the greeting has arrived.
    const Uuid& getConnectionId() const { return m_ConnectionId; }
    // The peer as text, for logs; empty without a connection.
    String_T<wchar_t> getPeerName() const;

    const wchar_t* getClassName() const override { return L"zet::NetSession"; }

protected:
    // As createInstance().
    explicit NetSession(NetModule* module);

private:
    friend class inner::NetLink;

    Unknown::Handle_T<inner::NetLink> makeLink(bool isAccepting);
    // Why there can be no connection now; kNone if there can.
    EndCause getHindrance() const;
    void drop();
    void dispense(NetEvent& event);
    // The link has ended: reports the event and releases the link, unless a handler has done so.
    void finish(NetEvent& event);

    NetModule* m_Module;
    Unknown::Handle_T<inner::NetLink> m_Link;
    EventDispenser m_Events;
    MessageDispenser m_Messages;
    Uuid m_ConnectionId;
    Unknown::Handle_T<TlsContext> m_TlsContext;
    // Null without limits of its own.
    std::unique_ptr<NetLimits> m_Limits;
};

} // namespace zet
