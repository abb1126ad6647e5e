// The engine's log, separate from the process's log. A host with an engine passes the lines on to it.
#pragma once

#include "framework/format.h"
#include "framework/string.h"

#include <functional>

namespace Quillo
{

// Receives one formatted line, on the thread that logs.
using AppLogSink = std::function<void(const zet::String_T<wchar_t>&)>;

// Sets the sink; an empty sink drops the lines, as before the first call. Any thread.
COMMONGROUND_API void setAppLogSink(AppLogSink sink);
// Passes a formatted line to the sink. Any thread.
COMMONGROUND_API void writeAppLog(const zet::String_T<wchar_t>& line);

// Logs a line in the engine's log, printf-style by the rules of framework/format.h.
template <class... Args>
void appLog(const wchar_t* pattern, const Args&... args)
{
    writeAppLog(zet::formatText(pattern, args...));
}

} // namespace Quillo
