// The log module that shows each line on the console of the process as it comes.
#include "framework/modules/log_line.h"

#include "framework/log_module.h"

namespace zet
{

namespace
{

void setParam(const wchar_t*, const wchar_t*) {}

void start() {}

void stop() {}

void write(int level, const wchar_t* line, int)
{
    const String_T<wchar_t> text = formatLogLine(platform::getLocalTime(), level, line);
    platform::writeConsole(text.getBuffer(), text.getLength());
}

// Each line went out when it came, so nothing is held.
void whistle(int) {}

constexpr LogModule kModule = {LogModule::kVersion, L"ConsoleLog", setParam, start, stop, write, whistle};

} // namespace

} // namespace zet

extern "C" ZET_MODULE_EXPORT const zet::LogModule* zet_getLogModule()
{
    return &zet::kModule;
}
