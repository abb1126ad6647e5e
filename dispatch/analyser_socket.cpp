#include "dispatch/analyser_socket.h"

#include "dispatch/inner/boundary.h"
#include "dispatch/inner/observed_dispatch.h"
#include "dispatch/inner/socket_seam.h"
#include "framework/inner/fast_paths.h"
#include "framework/log.h"
#include "framework/peer_log.h"
#include "framework/string_helper.h"
#include "packaging/cmd_packager.h"
#include "packaging/wire/access.h"

#include <cassert>

namespace
{

// Runs the dispatch of a command of this socket and catches exceptions of handlers and fallbacks.
template <class Dispatch>
[[gnu::always_inline]] inline bool guarded(CCommandSocket* socket, Dispatch dispatch)
{
    return withinBoundary(dispatch,
                          [socket](const char* what)
                          {
                              if (what)
                                  zet::Log::error(L"Exception in a command handler: %s (%s)",
                                                  zet::StringHelper::utf8ToWide(what), PeerNameOf(socket));
                              else
                                  zet::Log::error(L"Exception in a command handler (%s)", PeerNameOf(socket));
                          });
}

bool receive(CCmdPackager& pk, zet::InputStream& stream)
{
    return pk.Receive(stream);
}

// Receive() reports what is missing in a frame that cannot be shown.
bool receive(CCmdPackager& pk, const void* frame, int size)
{
    return (zet::inner::kHasFastPaths && wire::Access::show(pk, frame, size)) || pk.Receive(frame, size);
}

} // namespace

CCmdAnalyserSocket::CCmdAnalyserSocket(SocketCmdFallback unknownCmd, unsigned long unknownArg1,
                                       unsigned long unknownArg2, SocketCmdFallback errorCmd, unsigned long errorArg1,
                                       unsigned long errorArg2)
    : m_pfnUnknownCmd(unknownCmd), m_UnknownArg1(unknownArg1), m_UnknownArg2(unknownArg2), m_pfnErrorCmd(errorCmd),
      m_ErrorArg1(errorArg1), m_ErrorArg2(errorArg2)
{
}

void CCmdAnalyserSocket::Install(unsigned short id, SocketCmdProcess process, SocketCmdHandler handler,
                                 unsigned long arg1, unsigned long arg2)
{
    if (id >= kCommandIdLimit)
    {
        zet::Log::error(L"CCmdAnalyserSocket cannot Install CMD(0x%04x)", id);
        assert(id < kCommandIdLimit);
        return;
    }
    m_Commands[id] = std::make_shared<CCmdProcessor>(CCmdProcessor{process, handler, arg1, arg2});
}

// The socket must not be null.
inline bool CCmdAnalyserSocket::dispatch(CCommandSocket* socket, CCmdPackager& pk) const
{
    if (m_pObserver)
        return dispatchObserved(socket, pk);
    CommandObserver::Outcome unused;
    return dispatchPlain(socket, pk, unused);
}

// Out of line, so that the usual path has no code of it.
[[gnu::noinline]] bool CCmdAnalyserSocket::dispatchObserved(CCommandSocket* socket, CCmdPackager& pk) const
{
    ObservedDispatch report(m_pObserver, pk);
    auto outcome = CommandObserver::kHandled;
    const bool result = dispatchPlain(socket, pk, outcome);
    report.setOutcome(outcome);
    return result;
}

// Sets the outcome unless the command is handled.
inline bool CCmdAnalyserSocket::dispatchPlain(CCommandSocket* socket, CCmdPackager& pk,
                                              CommandObserver::Outcome& outcome) const
{
    // The log takes its arguments by reference; a copy keeps the original in a register.
    const unsigned short id = pk.GetCmdID();
    if (id >= kCommandIdLimit)
    {
        if (zet::PeerLog::takesLine())
            zet::Log::error(L"CCmdAnalyserSocket cannot Analyse OverFlow CMD(0x%04x) \t(%s)", pk.GetCmdID(),
                            PeerNameOf(socket));
        outcome = CommandObserver::kUnknown;
        return false;
    }
    // Commands without a handler count as received traffic too.
    CountReceivedCommand(socket, pk.GetDataSize());

    const CCmdProcessor* const processor = m_Commands[id].get();
    if (!processor)
    {
        outcome = CommandObserver::kUnknown;
        if (!m_pfnUnknownCmd)
        {
            if (zet::PeerLog::takesLine())
                zet::Log::error(L"CCmdAnalyserSocket cannot Analyse NULL command(0x%04x) \t(%s)", pk.GetCmdID(),
                                PeerNameOf(socket));
            return false;
        }
        m_pfnUnknownCmd(socket, &pk, m_UnknownArg1, m_UnknownArg2);
        return true;
    }
    if (!processor->m_Process(socket, &pk, processor->m_Handler, processor->m_Arg1, processor->m_Arg2))
    {
        outcome = CommandObserver::kRefused;
        if (!m_pfnErrorCmd)
        {
            if (zet::PeerLog::takesLine())
                zet::Log::error(L"CCmdAnalyserSocket cannot Analyse ERROR command(0x%04x) \t(%s)", pk.GetCmdID(),
                                PeerNameOf(socket));
            return false;
        }
        m_pfnErrorCmd(socket, &pk, m_ErrorArg1, m_ErrorArg2);
    }
    return true;
}

template <class... Frame>
[[gnu::always_inline]] inline bool CCmdAnalyserSocket::analyseFrame(CCommandSocket* socket, Frame... frame) const
{
    if (!socket)
    {
        zet::Log::error(L"CCmdAnalyserSocket error Socket NULL");
        return false;
    }
    // All of it is inline: a call would copy what the lambda has captured just after it was stored, and a processor
    // waits for that, about a tenth of the time of a small command. The GNU form of the attribute, since a standard one
    // there belongs to the type of the function.
    return guarded(
        socket, [&]() __attribute__((always_inline)) {
            CCmdPackager pk = wire::Access::makeShown();
            if (receive(pk, frame...))
                return dispatch(socket, pk);
            if (zet::PeerLog::takesLine())
                zet::Log::error(L"Error:CmdPackager analyze error! (%s)", PeerNameOf(socket));
            return false;
        });
}

bool CCmdAnalyserSocket::Analyse(CCommandSocket* socket, CCmdPackager& pk) const
{
    if (!socket)
    {
        zet::Log::error(L"CCmdAnalyserSocket cannot Analyse CMD(0x%04x), Socket NULL", pk.GetCmdID());
        return false;
    }
    return guarded(socket, [&] { return dispatch(socket, pk); });
}

bool CCmdAnalyserSocket::Analyse(CCommandSocket* socket, zet::InputStream& stream) const
{
    return analyseFrame<zet::InputStream&>(socket, stream);
}

bool CCmdAnalyserSocket::Analyse(CCommandSocket* socket, const void* frame, int size) const
{
    return analyseFrame(socket, frame, size);
}
