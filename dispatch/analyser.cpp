#include "dispatch/analyser.h"

#include "dispatch/inner/boundary.h"
#include "dispatch/inner/observed_dispatch.h"
#include "framework/log.h"
#include "framework/peer_log.h"
#include "framework/string_helper.h"
#include "packaging/cmd_packager.h"

#include <cassert>

namespace
{

// Logs an exception of a handler or a fallback; null for one without a text.
void tellThrown(const char* what)
{
    if (what)
        zet::Log::error(L"Exception in a command handler: %s", zet::StringHelper::utf8ToWide(what));
    else
        zet::Log::error(L"Exception in a command handler");
}

// Logs a command that is not handled, within its peer's share. Not inline: it is rare, and its arguments, which the log
// takes by reference, would put a guarded frame on the stack of each dispatch.
[[gnu::noinline, gnu::cold]] void reportId(const wchar_t* pattern, unsigned short id)
{
    if (zet::PeerLog::takesLine())
        zet::Log::error(pattern, id);
}

// Out of line, so that the usual path has no code of it. Takes values and a function without captures, so that the
// usual path keeps them in registers.
template <class Dispatch>
[[gnu::noinline]] void dispatchObserved(const ObserverSlot& observer, const CCmdAnalyser& analyser, CCmdPackager& pk,
                                        unsigned long arg1, unsigned long arg2, Dispatch dispatch)
{
    ObservedDispatch report(observer, pk);
    report.setOutcome(dispatch(analyser, pk, arg1, arg2));
}

} // namespace

void CCmdAnalyser::Install(unsigned short id, CmdProcess process, CmdHandler handler)
{
    if (id >= kCommandIdLimit)
    {
        zet::Log::error(L"CCmdAnalyser cannot Install CMD(0x%04x)", id);
        assert(id < kCommandIdLimit);
        return;
    }
    m_Commands[id] = {process, handler};
}

// Inline at both places: a call more is 4 % of the instructions of a small command.
[[gnu::always_inline]] inline CommandObserver::Outcome CCmdAnalyser::dispatchPlain(CCmdPackager& pk, unsigned long arg1,
                                                                                   unsigned long arg2) const
{
    const unsigned short id = pk.GetCmdID();
    if (id >= kCommandIdLimit)
    {
        reportId(L"CCmdAnalyser cannot Analyse OverFlow CMD(0x%04x)", id);
        return CommandObserver::kUnknown;
    }
    const Entry& entry = m_Commands[id];
    if (!entry.m_Process)
    {
        if (m_pfnUnknownCmd)
            m_pfnUnknownCmd(&pk, arg1, arg2);
        else
            reportId(L"CCmdAnalyser cannot Analyse NULL command(0x%04x)", id);
        return CommandObserver::kUnknown;
    }
    if (entry.m_Process(&pk, entry.m_Handler, arg1, arg2))
        return CommandObserver::kHandled;
    // The second closing parenthesis belongs to the text.
    if (m_pfnErrorCmd)
        m_pfnErrorCmd(&pk, arg1, arg2);
    else
        reportId(L"CCmdAnalyser cannot Analyse ERROR command(0x%04x))", pk.GetCmdID());
    return CommandObserver::kRefused;
}

inline void CCmdAnalyser::dispatch(CCmdPackager& pk, unsigned long arg1, unsigned long arg2) const
{
    if (!m_Observer.get())
    {
        dispatchPlain(pk, arg1, arg2);
        return;
    }
    dispatchObserved(m_Observer, *this, pk, arg1, arg2,
                     [](const CCmdAnalyser& analyser, CCmdPackager& received, unsigned long first, unsigned long second)
                     { return analyser.dispatchPlain(received, first, second); });
}

int CCmdAnalyser::Analyse(CCmdPackager& pk, unsigned long arg1, unsigned long arg2) const
{
    withinBoundary(
        [&]
        {
            dispatch(pk, arg1, arg2);
            return true;
        },
        tellThrown);
    return 0;
}

int CCmdAnalyser::Analyse(const void* data, int size, unsigned long arg1, unsigned long arg2) const
{
    withinBoundary(
        [&]
        {
            dispatch(data, size, arg1, arg2);
            return true;
        },
        tellThrown);
    return 0;
}

void CCmdAnalyser::dispatch(const void* data, int size, unsigned long arg1, unsigned long arg2) const
{
    if (!data)
    {
        zet::Log::error(L"CCmdAnalyser cannot Analyse NULL data");
        return;
    }
    CCmdPackager pk;
    if (pk.Unpack(data, size) <= 0)
    {
        if (zet::PeerLog::takesLine())
            zet::Log::error(L"cmdPackager Unpack data error");
        return;
    }
    dispatch(pk, arg1, arg2);
}
