#include "dispatch/command_process.h"

#include "dispatch/inner/socket_seam.h"
#include "framework/log.h"
#include "framework/peer_log.h"
#include "packaging/command_head.h"

bool RefuseCommand(const CCmdHead& command, CCommandSocket* socket)
{
    if (!zet::PeerLog::takesLine())
        return false;
    if (socket)
        zet::Log::message(L"指令(0x%04x)解析出错 (%s)", command.GetID(), PeerNameOf(socket));
    else
        zet::Log::message(L"指令(0x%04x)解析出错", command.GetID());
    zet::Log::whistle(false);
    return false;
}

void TraceReceivedCommand(const CCmdHead& command, CCommandSocket* socket)
{
    if (socket)
        TraceSocketCommand(command, PeerNameOf(socket));
    else
        TraceCommand(command);
}
