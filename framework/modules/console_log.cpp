// The log module that writes to the console of the process.
#include "framework/modules/log_line.h"

#include "framework/log_module.h"

namespace zet
{

namespace
{

// Used by the module's thread only. Never destroyed, since that thread may outlive the process's globals.
struct ConsoleLog
{
    // Lines buffered since the last flush.
    String_T<wchar_t> m_Text;
    bool m_HasFailed = false;
};

// Buffered lines of that many units are written without waiting for the flush.
constexpr int kMostGathered = 16384;

ConsoleLog& getConsoleLog()
{
    static ConsoleLog* const consoleLog = new ConsoleLog;
    return *consoleLog;
}

void putOut(ConsoleLog& log)
{
    if (!log.m_Text.isEmpty() && !platform::writeConsole(log.m_Text.getBuffer(), log.m_Text.getLength()))
        log.m_HasFailed = true;
    log.m_Text = String_T<wchar_t>();
}

void setParam(const wchar_t*, const wchar_t*) {}

void start() {}

void stop() {}

void write(long long time, int level, const wchar_t* line, int length)
{
    ConsoleLog& log = getConsoleLog();
    log.m_Text += formatLogLine(time, level, line, length);
    if (log.m_Text.getLength() > kMostGathered)
        putOut(log);
}

void whistle(int) {}

const wchar_t* flush()
{
    ConsoleLog& log = getConsoleLog();
    putOut(log);
    const bool hasFailed = log.m_HasFailed;
    log.m_HasFailed = false;
    return hasFailed ? L"cannot write to the console" : nullptr;
}

constexpr LogModule kModule = {LogModule::kVersion, L"ConsoleLog", setParam, start, stop, write, whistle, flush};

} // namespace

} // namespace zet

extern "C" ZET_MODULE_EXPORT const zet::LogModule* zet_getLogModule()
{
    return &zet::kModule;
}
