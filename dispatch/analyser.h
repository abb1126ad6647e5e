// The dispatch table of traffic without a command socket: datagrams and net messages.
#pragma once

#include "dispatch/command_id_limit.h"
#include "dispatch/command_process.h"
#include "framework/platform/export.h"

// One entry for every id, held inside the object. Read-only while in use: Install is for start-up, and from then on
// any number of threads may share one analyser.
class COMMONGROUND_API CCmdAnalyser
{
public:
    // The fallbacks may be null; a line is logged instead.
    explicit CCmdAnalyser(CmdFallback unknownCmd = nullptr, CmdFallback errorCmd = nullptr);

    // Replaces the entry of an id, which must be below kCommandIdLimit: another one is refused and logged, and fails
    // an assertion.
    void Install(unsigned short id, CmdProcess process, CmdHandler handler);

    // Hands the command to its handler with the two arguments. Always 0: the result carries no information. What a
    // handler throws is logged and goes no further.
    int Analyse(CCmdPackager& pk, unsigned long arg1, unsigned long arg2) const;
    // The same for one datagram frame of size bytes.
    int Analyse(const void* data, int size, unsigned long arg1, unsigned long arg2) const;

private:
    struct Entry
    {
        CmdProcess m_Process = nullptr;
        CmdHandler m_Handler = nullptr;
    };

    void dispatch(CCmdPackager& pk, unsigned long arg1, unsigned long arg2) const;
    void dispatch(const void* data, int size, unsigned long arg1, unsigned long arg2) const;

    Entry m_Commands[kCommandIdLimit];
    CmdFallback m_pfnUnknownCmd;
    CmdFallback m_pfnErrorCmd;
};
