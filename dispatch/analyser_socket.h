// The dispatch table of stream sockets: like CCmdAnalyser, but the handler also gets the socket.
#pragma once

#include "dispatch/command_id_limit.h"
#include "dispatch/command_observer.h"
#include "dispatch/command_process.h"
#include "framework/export.h"
#include "framework/shared_ptr.h"

namespace zet
{
class InputStream;
}

// A copy shares its processors with its source. Read-only while in use, like CCmdAnalyser.
class COMMONGROUND_API CCmdAnalyserSocket
{
public:
    // The entry of an id: the two functions and the handler's arguments.
    struct CCmdProcessor
    {
        SocketCmdProcess m_Process;
        SocketCmdHandler m_Handler;
        unsigned long m_Arg1;
        unsigned long m_Arg2;
    };

    // The fallbacks may be null; then the case is logged.
    explicit CCmdAnalyserSocket(SocketCmdFallback unknownCmd = nullptr, unsigned long unknownArg1 = 0,
                                unsigned long unknownArg2 = 0, SocketCmdFallback errorCmd = nullptr,
                                unsigned long errorArg1 = 0, unsigned long errorArg2 = 0);

    // Replaces the entry of an id. An id of kCommandIdLimit or more is refused, logged, and fails an assertion. The
    // arguments are passed to the handler.
    void Install(unsigned short id, SocketCmdProcess process, SocketCmdHandler handler, unsigned long arg1,
                 unsigned long arg2);

    // Reports to the observer from now on; null for none, the default, which costs one comparison per command. Copies
    // of the analyser made later share the observer. Not while another thread dispatches.
    void SetObserver(zet::SharedPtr<CommandObserver> observer) { m_pObserver = std::move(observer); }
    CommandObserver* GetObserver() const { return m_pObserver.get(); }

    // Passes the command to its handler or a fallback. False, and logged, if there is neither, or if one throws; the
    // exception is caught.
    bool Analyse(CCommandSocket* socket, CCmdPackager& pk) const;
    // The same for one stream frame, in a stream or at the start of size bytes in memory; bytes after the frame are
    // ignored. Also false for a frame that cannot be received. A frame in memory is not copied: it stays unchanged
    // until the call returns.
    bool Analyse(CCommandSocket* socket, zet::InputStream& stream) const;
    bool Analyse(CCommandSocket* socket, const void* frame, int size) const;

private:
    template <class... Frame>
    bool analyseFrame(CCommandSocket* socket, Frame... frame) const;
    bool dispatch(CCommandSocket* socket, CCmdPackager& pk) const;
    bool dispatchPlain(CCommandSocket* socket, CCmdPackager& pk, CommandObserver::Outcome& outcome) const;
    bool dispatchObserved(CCommandSocket* socket, CCmdPackager& pk) const;

    zet::SharedPtr<CCmdProcessor> m_Commands[kCommandIdLimit];
    SocketCmdFallback m_pfnUnknownCmd;
    unsigned long m_UnknownArg1;
    unsigned long m_UnknownArg2;
    SocketCmdFallback m_pfnErrorCmd;
    unsigned long m_ErrorArg1;
    unsigned long m_ErrorArg2;
    zet::SharedPtr<CommandObserver> m_pObserver;
};
