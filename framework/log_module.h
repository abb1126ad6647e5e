// The binary interface between the library and a loadable log module: plain C, so that a module needs no more than
// this.
#pragma once

#include "framework/platform/export.h"

namespace zet
{

// What a module gives of itself. All operations are called one at a time, on whichever thread logs.
struct LogModule
{
    // Rises with every change of this structure; a module of another version is not taken.
    static constexpr int kVersion = 1;

    int m_Version;
    // The name that Log::setparam knows it by, such as "FileLog".
    const wchar_t* m_Name;
    void (*m_SetParam)(const wchar_t* name, const wchar_t* value);
    // Between start and stop the module gets lines.
    void (*m_Start)();
    void (*m_Stop)();
    // level is a Log::Level; the line holds length units and a terminator.
    void (*m_Write)(int level, const wchar_t* line, int length);
    // 0: put out all that is held.
    void (*m_Whistle)(int on);
};

// A module that has this entry point is a log module.
using LogModuleEntry = const LogModule* (*)();
constexpr char kLogModuleEntryName[] = "zet_getLogModule";

// Adds a module to the log for the rest of the process; a second time changes nothing. False for a foreign version.
COMMONGROUND_API bool registerLogModule(const LogModule* module);

} // namespace zet
