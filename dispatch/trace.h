// The trace of received commands on the standard output, a switch of the build that stands at off.
#pragma once

#include "framework/platform/export.h"
#include "framework/string.h"

class CCmdHead;

#ifdef COMMONGROUND_TRACE_COMMANDS
inline constexpr bool kTraceCommands = true;
#else
inline constexpr bool kTraceCommands = false;
#endif

// Print the local time, the peer where there is one, and the command's OutDebug.
COMMONGROUND_API void TraceCommand(const CCmdHead& command);
COMMONGROUND_API void TraceSocketCommand(const CCmdHead& command, const zet::String_T<wchar_t>& peer);
