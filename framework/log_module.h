// The binary interface between the library and a loadable log module: plain C, so that a module needs no more than
// this.
#pragma once

#include "framework/platform/export.h"

namespace zet
{

// What a module gives of itself. All operations are called one at a time, in order, on a thread that the log keeps for
// the module: a call that blocks does not block the threads that log. What a module itself logs comes too late for it,
// so it reports faults as the result of m_Flush.
struct LogModule
{
    // Rises with every change of this structure; a module of another version is not taken.
    static constexpr int kVersion = 2;

    int m_Version;
    // The name that Log::setparam knows it by, such as "FileLog".
    const wchar_t* m_Name;
    void (*m_SetParam)(const wchar_t* name, const wchar_t* value);
    // Between start and stop the module gets lines.
    void (*m_Start)();
    void (*m_Stop)();
    // time is when the line was logged, in milliseconds since 1970 UTC, level a Log::Level; the line holds length units
    // and a terminator. A module may gather lines until m_Flush.
    void (*m_Write)(long long time, int level, const wchar_t* line, int length);
    // 0: a serious fault was reported; its lines are put out already.
    void (*m_Whistle)(int on);
    // Called behind the last of the lines that wait: puts out what was gathered. Null, or what stands in the way, as a
    // text that lasts until the next call; the lines gathered are lost then.
    const wchar_t* (*m_Flush)();
};

// A module that has this entry point is a log module.
using LogModuleEntry = const LogModule* (*)();
constexpr char kLogModuleEntryName[] = "zet_getLogModule";

// Adds a module to the log for the rest of the process; a second time changes nothing. False for a foreign version.
COMMONGROUND_API bool registerLogModule(const LogModule* module);

} // namespace zet
