// What happens to a net session, told to those who subscribed at its event dispenser.
#pragma once

#include "framework/class_id.h"
#include "framework/event.h"

namespace zet
{

class NetSession;

// The base of a session's events.
class COMMONGROUND_API NetEvent : public Event
{
public:
    // The session that it happened to; not owned, and there as long as the call lasts.
    NetSession* m_Session = nullptr;
};

// What the events have beside their names.
template <class Kind>
class COMMONGROUND_API NetEvent_T : public NetEvent
{
public:
    static Unknown::Handle_T<Kind> createInstance() { return new Kind; }
    static const wchar_t* getClassName_() { return Kind::kClassName; }
    static unsigned long getClassId_() { return classIdOf(Kind::kClassName); }

    const wchar_t* getClassName() const override { return Kind::kClassName; }
    unsigned long getClassId() const override { return getClassId_(); }
    Unknown* rtCreateInstance() const override { return new Kind; }
    Unknown* clone() const override { return new Kind(static_cast<const Kind&>(*this)); }
};

// The connection stands, on either side: messages may be sent from now on.
class COMMONGROUND_API Evt_NetConnectOk : public NetEvent_T<Evt_NetConnectOk>
{
public:
    static constexpr const wchar_t* kClassName = L"zet::Evt_NetConnectOk";
};

// The peer was not reached, refused, or did not greet as a session does.
class COMMONGROUND_API Evt_NetConnectFail : public NetEvent_T<Evt_NetConnectFail>
{
public:
    static constexpr const wchar_t* kClassName = L"zet::Evt_NetConnectFail";
};

// The peer has ended the session, and all that it sent was received.
class COMMONGROUND_API Evt_NetClosed : public NetEvent_T<Evt_NetClosed>
{
public:
    static constexpr const wchar_t* kClassName = L"zet::Evt_NetClosed";
};

// The session is of no use any more: the peer's bytes are no packets, or it took none of ours until the queue was full.
class COMMONGROUND_API Evt_NetError : public NetEvent_T<Evt_NetError>
{
public:
    static constexpr const wchar_t* kClassName = L"zet::Evt_NetError";
};

// The connection broke, by the operating system's word.
class COMMONGROUND_API Evt_NetAbort : public NetEvent_T<Evt_NetAbort>
{
public:
    static constexpr const wchar_t* kClassName = L"zet::Evt_NetAbort";
};

} // namespace zet
