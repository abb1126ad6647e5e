// A zone and its games: game servers register here, games are created, started and removed.
#pragma once

#include "commands/server_status.h"
#include "dispatch/command_process.h"
#include "dispatch/ids/game_zone.h"
#include "packaging/command_head.h"
#include "playerdata/account_core.h"
#include "playerdata/account_other.h"

// Game server to zone: registers the game server. Answered by CCmdGZ_regGameServerOk.
class COMMONGROUND_API CCmdGZ_regGameServer : public CCmdPlatform
{
public:
    CCmdGZ_regGameServer() : CCmdPlatform(command_id::CCmdGZ_regGameServer) {}
    COMMAND_INTERFACE(CCmdGZ_regGameServer)

    GameSvrInfo m_GameSvrInfo;
};

// Answers CCmdGZ_regGameServer: the game server is registered. Shares its id with the request; a host serves one of the
// two.
class COMMONGROUND_API CCmdGZ_regGameServerOk : public CCmdPlatform
{
public:
    CCmdGZ_regGameServerOk() : CCmdPlatform(command_id::CCmdGZ_regGameServerOk) {}
    COMMAND_INTERFACE(CCmdGZ_regGameServerOk)
};

// From the client: asks for one zone, as CCmdGC_gameZoneListRequest asks for all. Answered by CCmdGZ_ZoneInfoResponse.
class COMMONGROUND_API CCmdGZ_ZoneInfoRequest : public CCmdPlatform
{
public:
    CCmdGZ_ZoneInfoRequest() : CCmdPlatform(command_id::CCmdGZ_ZoneInfoRequest) {}
    COMMAND_INTERFACE(CCmdGZ_ZoneInfoRequest)
};

// Answers CCmdGZ_ZoneInfoRequest: the zone.
class COMMONGROUND_API CCmdGZ_ZoneInfoResponse : public CCmdPlatform
{
public:
    CCmdGZ_ZoneInfoResponse() : CCmdPlatform(command_id::CCmdGZ_ZoneInfoResponse) {}
    COMMAND_INTERFACE(CCmdGZ_ZoneInfoResponse)

    zet::String_T<wchar_t> m_Text1;
    zet::String_T<wchar_t> m_Text2;
};

// Zone to game server: asks for a game. Answered by CCmdGZ_createGameOk or, on failure, CCmdGZ_createGameFail. Zone and
// game server agree on the text and the number.
class COMMONGROUND_API CCmdGZ_createGame : public CCmdPlatform
{
public:
    CCmdGZ_createGame() : CCmdPlatform(command_id::CCmdGZ_createGame) {}
    COMMAND_INTERFACE(CCmdGZ_createGame)

    // The game.
    zet::Uuid m_Id1;
    zet::String_T<wchar_t> m_Text1;
    int m_Value1 = 0;
};

// Answers CCmdGZ_createGame: the game was created.
class COMMONGROUND_API CCmdGZ_createGameOk : public CCmdPlatform
{
public:
    CCmdGZ_createGameOk() : CCmdPlatform(command_id::CCmdGZ_createGameOk) {}
    COMMAND_INTERFACE(CCmdGZ_createGameOk)

    zet::String_T<wchar_t> m_Text1;
    // The game.
    zet::Uuid m_Id1;
};

// Answers CCmdGZ_createGame: no game was created.
class COMMONGROUND_API CCmdGZ_createGameFail : public CCmdPlatform
{
public:
    CCmdGZ_createGameFail() : CCmdPlatform(command_id::CCmdGZ_createGameFail) {}
    COMMAND_INTERFACE(CCmdGZ_createGameFail)

    zet::String_T<wchar_t> m_Text1;
};

// Reports the end of a game.
class COMMONGROUND_API CCmdGZ_gameOver : public CCmdPlatform
{
public:
    CCmdGZ_gameOver() : CCmdPlatform(command_id::CCmdGZ_gameOver) {}
    COMMAND_INTERFACE(CCmdGZ_gameOver)

    // The game.
    zet::Uuid m_Id1;
};

// Removes a game. Answered by CCmdGZ_destroyGameOk.
class COMMONGROUND_API CCmdGZ_destroyGame : public CCmdPlatform
{
public:
    CCmdGZ_destroyGame() : CCmdPlatform(command_id::CCmdGZ_destroyGame) {}
    COMMAND_INTERFACE(CCmdGZ_destroyGame)

    // The game.
    zet::Uuid m_Id1;
};

// Answers CCmdGZ_destroyGame: the game is removed.
class COMMONGROUND_API CCmdGZ_destroyGameOk : public CCmdPlatform
{
public:
    CCmdGZ_destroyGameOk() : CCmdPlatform(command_id::CCmdGZ_destroyGameOk) {}
    COMMAND_INTERFACE(CCmdGZ_destroyGameOk)

    // The game.
    zet::Uuid m_Id1;
};

// Zone to client: where to open the connection to the game. The client then joins with CCmdGS_joinGame.
class COMMONGROUND_API CCmdGZ_ConnectGameSvr : public CCmdPlatform
{
public:
    CCmdGZ_ConnectGameSvr() : CCmdPlatform(command_id::CCmdGZ_ConnectGameSvr) {}
    COMMAND_INTERFACE(CCmdGZ_ConnectGameSvr)

    // Address and port on which the client opens its game connection.
    zet::String_T<wchar_t> m_Text1;
    unsigned short m_Word1 = 0;
    // The game.
    zet::Uuid m_Id1;
    zet::String_T<wchar_t> m_Text2;
    bool m_Flag1 = false;
    AccountCombatData m_CombatData;
};

// Starts the game proper. Answered by CCmdGZ_StartGameReply.
class COMMONGROUND_API CCmdGZ_StartGameRequest : public CCmdPlatform
{
public:
    CCmdGZ_StartGameRequest() : CCmdPlatform(command_id::CCmdGZ_StartGameRequest) {}
    COMMAND_INTERFACE(CCmdGZ_StartGameRequest)

    int m_Value1 = 0;
};

// Answers CCmdGZ_StartGameRequest.
class COMMONGROUND_API CCmdGZ_StartGameReply : public CCmdPlatform
{
public:
    CCmdGZ_StartGameReply() : CCmdPlatform(command_id::CCmdGZ_StartGameReply) {}
    COMMAND_INTERFACE(CCmdGZ_StartGameReply)

    zet::String_T<wchar_t> m_Text1;
    AccountData m_Account;
};
