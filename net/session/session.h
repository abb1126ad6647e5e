// A connection that carries messages.
#pragma once

#include "framework/event.h"
#include "framework/message.h"
#include "net/session/address.h"
#include "net/session/event.h"
#include "net/tls/context.h"

namespace zet
{

class NetModule;

namespace inner
{
class NetLink;
}

// One packet is one message, with its class name in front. The side that connects greets with the id that connect()
// was given, the accepting side answers with the same greeting, and then both have Evt_NetConnectOk.
//
// All operations belong to the run thread of the module's System, and so do the events and messages. A handler may
// close this or any other session, or let go of the last handle to this one. A message of a class that is not
// registered here, or with a form that its class refuses, costs its log line and no more. There is no lock in this
// class.
class COMMONGROUND_API NetSession : public virtual Unknown
{
public:
    // Milliseconds from connect() or accept() until the greetings must have come, else the attempt has failed.
    static constexpr unsigned int kGreetingTime = 10000;
    // Milliseconds that one tick hands messages over, looked at before each one.
    static constexpr unsigned int kDispatchTime = 100;

    enum State
    {
        // No connection.
        kDown,
        // The connection is on its way up, or the greetings are.
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
    // Takes the module's next visitor. False where nobody waits, and where the session has a connection.
    virtual bool accept();
    // Begins a connection, which stands with Evt_NetConnectOk or ends with Evt_NetConnectFail. The id reaches the
    // accepting side. False, and no event, where the session has a connection, the module is in no System, or the
    // address is none or refused at once.
    virtual bool connect(const NetAddress& address, const Uuid& id);
    // Ends the connection without an event here; what waits to be sent goes as far as the operating system takes it
    // now. The peer gets Evt_NetClosed.
    virtual void close();
    // Queues a message; it is written within the call and stays the caller's. False where it is null, the connection
    // does not stand, the message has no stream form or is too long, or the call comes from another thread; and where
    // the queue is full, which ends the session with Evt_NetError.
    virtual bool send(Message* message);
    // Called with each message that has come; hands it to the subscribers of its class. The message lives as long as
    // the call, unless a handle holds it.
    virtual void onMessage(Message* message);

    EventDispenser& getEventDispenser() { return m_Events; }
    MessageDispenser& getMessageDispenser() { return m_Messages; }

    State getState() const;
    // The id that connect() was given, on both sides; all zero before the greeting has come.
    const Uuid& getConnectionId() const { return m_ConnectionId; }
    // The peer as text, for logs; empty without a connection.
    String_T<wchar_t> getPeerName() const;

    const wchar_t* getClassName() const override { return L"zet::NetSession"; }

protected:
    explicit NetSession(NetModule* module);

private:
    friend class inner::NetLink;

    Unknown::Handle_T<inner::NetLink> makeLink(bool isAccepting);
    bool isReady() const;
    void drop();
    void tell(NetEvent& event);
    // The link has ended: tells it and lets go of the link, unless a handler has done so.
    void finish(NetEvent& event);

    NetModule* m_Module;
    Unknown::Handle_T<inner::NetLink> m_Link;
    EventDispenser m_Events;
    MessageDispenser m_Messages;
    Uuid m_ConnectionId;
    Unknown::Handle_T<TlsContext> m_TlsContext;
};

} // namespace zet
