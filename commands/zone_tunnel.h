// Tunnels for a client's commands through a zone to a game server, and for the replies.
// A tunnel contains one whole frame of the tunneled command, with id, addresses and length. The zone forwards the
// tunnel without reading that frame.
#pragma once

#include "dispatch/command_process.h"
#include "dispatch/ids/zone_tunnel.h"
#include "framework/buffer.h"
#include "packaging/command_head.h"

// Client to game server: a command from the client, passed on by the zone while a game runs.
class COMMONGROUND_API CCmdGZ_clientToServer : public CCmdPlatform
{
public:
    CCmdGZ_clientToServer() : CCmdPlatform(command_id::CCmdGZ_clientToServer) {}
    COMMAND_INTERFACE(CCmdGZ_clientToServer)

    // One whole frame, see CCmdPackager_packageToBuffer and CCmdPackager_bufferToPackage; or empty, for no command.
    zet::Buffer m_Data1;
    // CCmdGZ_serverToClient has no such text.
    zet::String_T<wchar_t> m_Text1;
};

// Game server to client: a command from the server, passed on by the zone while a game runs.
class COMMONGROUND_API CCmdGZ_serverToClient : public CCmdPlatform
{
public:
    CCmdGZ_serverToClient() : CCmdPlatform(command_id::CCmdGZ_serverToClient) {}
    COMMAND_INTERFACE(CCmdGZ_serverToClient)

    // One whole frame, or empty.
    zet::Buffer m_Data1;
};

// Stores the whole frame of the command in m_Data1 of the tunnel. False if the command cannot be written; the tunnel is
// unchanged then. Also false, after an error in the log, if the frame exceeds the limits of a packager.
COMMONGROUND_API bool toCCmdGZ_clientToServer(CCmdHead* cmd, CCmdGZ_clientToServer* tunnel);
COMMONGROUND_API bool toCCmdGZ_serverToClient(CCmdHead* cmd, CCmdGZ_serverToClient* tunnel);
