// Reports one command to the observer of its analyser.
#pragma once

#include "dispatch/command_observer.h"
#include "framework/platform/platform.h"
#include "packaging/cmd_packager.h"

// Reports the command when it is destroyed, also while an exception passes: as thrown, unless an outcome was set. The
// observer is the one that the analyser has then, since a handler may replace it; a copy of the pointer would cost two
// atomic operations per command.
template <class Pointer>
class ObservedDispatch
{
public:
    ObservedDispatch(const Pointer& observer, const CCmdPackager& pk)
        : m_Observer(observer), m_Id(pk.GetCmdID()), m_Size(pk.GetDataSize())
    {
    }
    ~ObservedDispatch()
    {
        if (CommandObserver* const observer = m_Observer.get())
            observer->onReceived(m_Id, m_Size, m_Outcome, zet::platform::getMonotonicNanoseconds() - m_Begin);
    }
    ObservedDispatch(const ObservedDispatch&) = delete;
    ObservedDispatch& operator=(const ObservedDispatch&) = delete;

    void setOutcome(CommandObserver::Outcome outcome) { m_Outcome = outcome; }

private:
    const Pointer& m_Observer;
    const unsigned short m_Id;
    const int m_Size;
    CommandObserver::Outcome m_Outcome = CommandObserver::kThrown;
    const unsigned long long m_Begin = zet::platform::getMonotonicNanoseconds();
};
