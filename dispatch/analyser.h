// The dispatch table for input without a socket: datagrams and net messages.
#pragma once

#include "dispatch/command_id_limit.h"
#include "dispatch/command_observer.h"
#include "dispatch/command_process.h"
#include "dispatch/observer_slot.h"
#include "framework/export.h"

// One entry per id, inside the object. Read-only while in use: call Install at start-up; from then on any number of
// threads may share one analyser.
class COMMONGROUND_API CCmdAnalyser
{
public:
    // The fallbacks may be null; then the case is logged.
    // Constant, so that a static analyser is not filled when a program starts.
    constexpr explicit CCmdAnalyser(CmdFallback unknownCmd = nullptr, CmdFallback errorCmd = nullptr)
        : m_pfnUnknownCmd(unknownCmd), m_pfnErrorCmd(errorCmd)
    {
    }

    // Replaces the entry of an id. An id of kCommandIdLimit or more is refused, logged, and fails an assertion.
    void Install(unsigned short id, CmdProcess process, CmdHandler handler);

    // As CCmdAnalyserSocket::SetObserver(): reports received commands, and those that a UdpClientSocket or CNetSession
    // with this analyser sends. The argument is a zet::SharedPtr<CommandObserver>. Not while another thread dispatches;
    // a command whose handler replaces the observer is reported to the new one. Throws std::bad_alloc, and changes
    // nothing then.
    template <class Pointer>
    void SetObserver(Pointer observer)
    {
        m_Observer.set(std::move(observer));
    }
    CommandObserver* GetObserver() const { return m_Observer.get(); }

    // Passes the command to its handler with the two arguments. The result is always 0. An exception from a handler is
    // caught and logged.
    int Analyse(CCmdPackager& pk, unsigned long arg1, unsigned long arg2) const;
    // The same for one datagram frame of size bytes.
    int Analyse(const void* data, int size, unsigned long arg1, unsigned long arg2) const;

private:
    struct Entry
    {
        CmdProcess m_Process = nullptr;
        CmdHandler m_Handler = nullptr;
    };

    void dispatch(CCmdPackager& pk, unsigned long arg1, unsigned long arg2) const;
    void dispatch(const void* data, int size, unsigned long arg1, unsigned long arg2) const;
    CommandObserver::Outcome dispatchPlain(CCmdPackager& pk, unsigned long arg1, unsigned long arg2) const;

    Entry m_Commands[kCommandIdLimit];
    CmdFallback m_pfnUnknownCmd;
    CmdFallback m_pfnErrorCmd;
    ObserverSlot m_Observer;
};
