// The dispatch table of stream sockets: like CCmdAnalyser, but the handler is given the socket as well.
#pragma once

#include "dispatch/command_id_limit.h"
#include "dispatch/command_process.h"
#include "framework/platform/export.h"
#include "framework/shared_ptr.h"

namespace zet
{
class InputStream;
}

// A copy shares its processors with its source. Read-only while in use, as CCmdAnalyser.
class COMMONGROUND_API CCmdAnalyserSocket
{
public:
    // What is installed for an id: the two functions and the handler's arguments.
    struct CCmdProcessor
    {
        SocketCmdProcess m_Process;
        SocketCmdHandler m_Handler;
        unsigned long m_Arg1;
        unsigned long m_Arg2;
    };

    // The fallbacks may be null; a line is logged instead.
    explicit CCmdAnalyserSocket(SocketCmdFallback unknownCmd = nullptr, unsigned long unknownArg1 = 0,
                                unsigned long unknownArg2 = 0, SocketCmdFallback errorCmd = nullptr,
                                unsigned long errorArg1 = 0, unsigned long errorArg2 = 0);

    // Replaces the entry of an id, which must be below kCommandIdLimit: another one is refused and logged, and fails
    // an assertion. The arguments are the handler's.
    void Install(unsigned short id, SocketCmdProcess process, SocketCmdHandler handler, unsigned long arg1,
                 unsigned long arg2);

    // Hands the command to its handler or a fallback. False and a line in the log where there is neither, or where one
    // threw: the exception goes no further.
    bool Analyse(CCommandSocket* socket, CCmdPackager& pk) const;
    // The same for one stream frame, in a stream or at the start of size bytes in memory; bytes after it are
    // ignored. False for a frame that cannot be received, too.
    bool Analyse(CCommandSocket* socket, zet::InputStream& stream) const;
    bool Analyse(CCommandSocket* socket, const void* frame, int size) const;

private:
    template <class... Frame>
    bool analyseFrame(CCommandSocket* socket, Frame... frame) const;
    bool dispatch(CCommandSocket* socket, CCmdPackager& pk) const;

    zet::SharedPtr<CCmdProcessor> m_Commands[kCommandIdLimit];
    SocketCmdFallback m_pfnUnknownCmd;
    unsigned long m_UnknownArg1;
    unsigned long m_UnknownArg2;
    SocketCmdFallback m_pfnErrorCmd;
    unsigned long m_ErrorArg1;
    unsigned long m_ErrorArg2;
};
