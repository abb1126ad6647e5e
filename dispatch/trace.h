// The trace of received commands on the standard output, off by default: the option COMMONGROUND_TRACE_COMMANDS of the
// library's build.
#pragma once

#include "framework/export.h"
#include "framework/string.h"

class CCmdHead;

// Whether the library was built with the trace. The same value in every file of a process, whoever compiled it.
extern COMMONGROUND_API const bool kTraceCommands;

// Prints the local time, the peer if there is one, and the command's OutDebug.
COMMONGROUND_API void TraceCommand(const CCmdHead& command);
COMMONGROUND_API void TraceSocketCommand(const CCmdHead& command, const zet::String_T<wchar_t>& peer);
