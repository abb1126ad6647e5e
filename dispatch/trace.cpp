#include "dispatch/trace.h"

#include "framework/platform/platform.h"
#include "framework/string_helper.h"
#include "packaging/command_head.h"

#ifdef COMMONGROUND_TRACE_COMMANDS
const bool kTraceCommands = true;
#else
const bool kTraceCommands = false;
#endif

void TraceCommand(const CCmdHead& command)
{
    const zet::platform::LocalTime now = zet::platform::getLocalTime();
    const auto line = zet::formatText("*** %04d/%02d/%02d %02d:%02d:%02d.%03d *** <<<\n", now.m_Year, now.m_Month,
                                      now.m_Day, now.m_Hour, now.m_Minute, now.m_Second, now.m_Milliseconds);
    std::fputs(line.getBuffer(), stdout);
    command.OutDebug(stdout);
}

void TraceSocketCommand(const CCmdHead& command, const zet::String_T<wchar_t>& peer)
{
    const zet::platform::LocalTime now = zet::platform::getLocalTime();
    const auto line = zet::formatText(L"*** %04d/%02d/%02d %02d:%02d:%02d.%03d *** <<< (%s)", now.m_Year, now.m_Month,
                                      now.m_Day, now.m_Hour, now.m_Minute, now.m_Second, now.m_Milliseconds, peer);
    // Written to the same stream as the fields, so that line and fields keep their order.
    std::fputs(zet::StringHelper::wideToUtf8(line.getBuffer()).getBuffer(), stdout);
    command.OutDebug(stdout);
}
