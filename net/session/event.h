// The events of a net session, for subscribers of its event dispenser.
#pragma once

#include "framework/class_id.h"
#include "framework/event.h"
#include "net/end_cause.h"

namespace zet
{

class NetSession;

// The base of a session's events.
class COMMONGROUND_API NetEvent : public Event
{
public:
    // The session of the event; not owned, valid during the call.
    NetSession* m_Session = nullptr;
    // Why the session ended; kNone in Evt_NetConnectOk.
    EndCause m_Cause;
};

// The members of all events.
template <class Kind>
class COMMONGROUND_API NetEvent_T : public NetEvent
{
public:
    // A new event without a session.
    static Unknown::Handle_T<Kind> createInstance() { return new Kind; }
    // The name of the class, and its number.
    static const wchar_t* getClassName_() { return Kind::kClassName; }
    static unsigned long getClassId_() { return classIdOf(Kind::kClassName); }

    const wchar_t* getClassName() const override { return Kind::kClassName; }
    unsigned long getClassId() const override { return getClassId_(); }
    Unknown* rtCreateInstance() const override { return new Kind; }
    Unknown* clone() const override { return new Kind(static_cast<const Kind&>(*this)); }
};

// The session is established, on either side: messages can be sent from now on.
class COMMONGROUND_API Evt_NetConnectOk : public NetEvent_T<Evt_NetConnectOk>
{
public:
    static constexpr const wchar_t* kClassName = L"zet::Evt_NetConnectOk";
};

// The peer was not reached, refused, or did not send a valid greeting in time.
class COMMONGROUND_API Evt_NetConnectFail : public NetEvent_T<Evt_NetConnectFail>
{
public:
    static constexpr const wchar_t* kClassName = L"zet::Evt_NetConnectFail";
};

// The peer has closed the session, and all that it sent was received.
class COMMONGROUND_API Evt_NetClosed : public NetEvent_T<Evt_NetClosed>
{
public:
    static constexpr const wchar_t* kClassName = L"zet::Evt_NetClosed";
};

// The session cannot be used any more: the peer's bytes are not valid packets, or the output queue is full.
class COMMONGROUND_API Evt_NetError : public NetEvent_T<Evt_NetError>
{
public:
    static constexpr const wchar_t* kClassName = L"zet::Evt_NetError";
};

// The operating system reported that the connection is broken.
class COMMONGROUND_API Evt_NetAbort : public NetEvent_T<Evt_NetAbort>
{
public:
    static constexpr const wchar_t* kClassName = L"zet::Evt_NetAbort";
};

} // namespace zet
