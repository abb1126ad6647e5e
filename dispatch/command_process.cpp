#include "dispatch/command_process.h"

#include "dispatch/trace.h"
#include "framework/log.h"
#include "packaging/cmd_packager.h"
#include "packaging/command_head.h"
#include "packaging/socket_seam.h"

namespace
{

// Sender and receiver must agree on the fields exactly: bytes left over are as wrong as bytes missing.
bool readsExactly(CCmdHead& command, CCmdPackager* pk)
{
    return command.Read(pk) && pk->GetReadPointer() == pk->GetDataSize();
}

} // namespace

bool ProcessCommand(CCmdHead& command, CCmdPackager* pk, CmdHandler handler, unsigned long arg1, unsigned long arg2)
{
    if (!readsExactly(command, pk))
    {
        zet::Log::message(L"指令(0x%04x)解析出错", command.GetID());
        zet::Log::whistle(false);
        return false;
    }
    if constexpr (kTraceCommands)
        TraceCommand(command);
    handler(&command, arg1, arg2);
    return true;
}

bool ProcessSocketCommand(CCmdHead& command, CCommandSocket* socket, CCmdPackager* pk, SocketCmdHandler handler,
                          unsigned long arg1, unsigned long arg2)
{
    if (!readsExactly(command, pk))
    {
        zet::Log::message(L"指令(0x%04x)解析出错 (%s)", command.GetID(), PeerNameOf(socket));
        zet::Log::whistle(false);
        return false;
    }
    if constexpr (kTraceCommands)
        TraceSocketCommand(command, PeerNameOf(socket));
    handler(socket, &command, arg1, arg2);
    return true;
}
