// The binary interface between the library and a loadable log module: plain C, so that a module needs nothing else.
#pragma once

#include "framework/export.h"

namespace zet
{

// The operations of a module, called one at a time, in order, on a thread that the log keeps for the module: a blocking
// call does not block the threads that log. A module cannot log its own faults in time, so it returns them from
// m_Flush.
struct LogModule
{
    // Incremented with every change of this structure; a module of another version is refused.
    static constexpr int kVersion = 2;

    int m_Version;
    // The name for Log::setparam, such as "FileLog".
    const wchar_t* m_Name;
    void (*m_SetParam)(const wchar_t* name, const wchar_t* value);
    // The module gets lines between start and stop.
    void (*m_Start)();
    void (*m_Stop)();
    // time is when the line was logged, in milliseconds since 1970 UTC, level a Log::Level; the line holds length units
    // and a terminator. A module may buffer lines until m_Flush.
    void (*m_Write)(long long time, int level, const wchar_t* line, int length);
    // 0: a serious fault was reported; its lines are already written.
    void (*m_Whistle)(int on);
    // Called after the last waiting line: writes the buffered lines. Returns null, or the fault as a text that is valid
    // until the next call; the buffered lines are lost then.
    const wchar_t* (*m_Flush)();
};

// A module that exports this entry point is a log module.
using LogModuleEntry = const LogModule* (*)();
constexpr char kLogModuleEntryName[] = "zet_getLogModule";

// Adds a module to the log until the process ends; a second call has no effect. False for another version.
COMMONGROUND_API bool registerLogModule(const LogModule* module);

} // namespace zet
