// A race on a game server: joining, leaving, the players, chat, the final balance and the reward.
// The pawns are in race_pawn.h. Game server and client agree on the content of numbers and texts.
#pragma once

#include "dispatch/command_process.h"
#include "dispatch/ids/race.h"
#include "packaging/command_head.h"
#include "packs/changing_room.h"
#include "playerdata/account_core.h"
#include "playerdata/account_global.h"
#include "playerdata/account_other.h"

// Client to game server: joins the game that the zone named in CCmdGZ_ConnectGameSvr. Answered by CCmdGS_joinGameOk or,
// on failure, CCmdGS_joinGameFail.
class COMMONGROUND_API CCmdGS_joinGame : public CCmdPlatform
{
public:
    CCmdGS_joinGame() : CCmdPlatform(command_id::CCmdGS_joinGame) {}
    COMMAND_INTERFACE(CCmdGS_joinGame)

    // The game.
    zet::Uuid m_Id1;
    zet::String_T<wchar_t> m_Text1;
};

// Answers CCmdGS_joinGame: the player has joined.
class COMMONGROUND_API CCmdGS_joinGameOk : public CCmdPlatform
{
public:
    CCmdGS_joinGameOk() : CCmdPlatform(command_id::CCmdGS_joinGameOk) {}
    COMMAND_INTERFACE(CCmdGS_joinGameOk)
};

// Answers CCmdGS_joinGame: a code and a text.
class COMMONGROUND_API CCmdGS_joinGameFail : public CCmdPlatform
{
public:
    CCmdGS_joinGameFail() : CCmdPlatform(command_id::CCmdGS_joinGameFail) {}
    COMMAND_INTERFACE(CCmdGS_joinGameFail)

    int m_Value1 = 0;
    zet::String_T<wchar_t> m_Text1;
};

// Client to game server: leaves the game. Answered by CCmdGS_exitGameOk or, on failure, CCmdGS_exitGameFail.
class COMMONGROUND_API CCmdGS_exitGame : public CCmdPlatform
{
public:
    CCmdGS_exitGame() : CCmdPlatform(command_id::CCmdGS_exitGame) {}
    COMMAND_INTERFACE(CCmdGS_exitGame)

    zet::String_T<wchar_t> m_Text1;
};

// Answers CCmdGS_exitGame: the player has left.
class COMMONGROUND_API CCmdGS_exitGameOk : public CCmdPlatform
{
public:
    CCmdGS_exitGameOk() : CCmdPlatform(command_id::CCmdGS_exitGameOk) {}
    COMMAND_INTERFACE(CCmdGS_exitGameOk)
};

// Answers CCmdGS_exitGame on failure.
class COMMONGROUND_API CCmdGS_exitGameFail : public CCmdPlatform
{
public:
    CCmdGS_exitGameFail() : CCmdPlatform(command_id::CCmdGS_exitGameFail) {}
    COMMAND_INTERFACE(CCmdGS_exitGameFail)
};

// Between client and game server: announces a new player to the others, with that player's records.
class COMMONGROUND_API CCmdGS_OtherJoin : public CCmdPlatform
{
public:
    CCmdGS_OtherJoin() : CCmdPlatform(command_id::CCmdGS_OtherJoin) {}
    COMMAND_INTERFACE(CCmdGS_OtherJoin)

    AccountCombatData m_CombatData;
    AccountData m_Account;
    AccountGlobalData m_GlobalData;
};

// Between client and game server: describes a player in the game.
class COMMONGROUND_API CCmdGS_PlayerEnter : public CCmdPlatform
{
public:
    CCmdGS_PlayerEnter() : CCmdPlatform(command_id::CCmdGS_PlayerEnter) {}
    COMMAND_INTERFACE(CCmdGS_PlayerEnter)

    zet::String_T<wchar_t> m_Text1;
    int m_Value1 = 0;
    int m_Value2 = 0;
    int m_Value3 = 0;
    zet::String_T<wchar_t> m_Text2;
};

// Between client and game server: describes a player in the game, with the look of the player's character.
class COMMONGROUND_API CCmdGS_GamePlayer : public CCmdPlatform
{
public:
    CCmdGS_GamePlayer() : CCmdPlatform(command_id::CCmdGS_GamePlayer) {}
    COMMAND_INTERFACE(CCmdGS_GamePlayer)

    int m_Value1 = 0;
    zet::String_T<wchar_t> m_Text1;
    int m_Value2 = 0;
    int m_Value3 = 0;
    int m_Value4 = 0;
    bool m_Flag1 = false;
    bool m_Flag2 = false;
    zet::String_T<wchar_t> m_Text2;
    bool m_Flag3 = false;
    float m_Float1 = 0.0f;
    int m_Value5 = 0;
    ChangingRoomEquip m_ChangingRoomEquip;
};

// Between client and game server: sent while the race runs.
class COMMONGROUND_API CCmdGS_PlayerRaceData : public CCmdPlatform
{
public:
    CCmdGS_PlayerRaceData() : CCmdPlatform(command_id::CCmdGS_PlayerRaceData) {}
    COMMAND_INTERFACE(CCmdGS_PlayerRaceData)

    zet::String_T<wchar_t> m_Text1;
    int m_Value1 = 0;
    float m_Float1 = 0.0f;
    float m_Float2 = 0.0f;
};

// Between client and game server: the reward of a player at the end of the race.
class COMMONGROUND_API CCmdGS_PlayerReward : public CCmdPlatform
{
public:
    CCmdGS_PlayerReward() : CCmdPlatform(command_id::CCmdGS_PlayerReward) {}
    COMMAND_INTERFACE(CCmdGS_PlayerReward)

    zet::String_T<wchar_t> m_Text1;
    int m_Value1 = 0;
    int m_Value2 = 0;
    int m_Value3 = 0;
};

// Between client and game server: chat of the players, at any time.
class COMMONGROUND_API CCmdGS_PlayersChat : public CCmdPlatform
{
public:
    CCmdGS_PlayersChat() : CCmdPlatform(command_id::CCmdGS_PlayersChat) {}
    COMMAND_INTERFACE(CCmdGS_PlayersChat)

    zet::String_T<wchar_t> m_Text1;
};

// Between client and game server: closes the balance at the end of the race. Answered by CCmdGS_RaceBalanceOK.
class COMMONGROUND_API CCmdGS_RaceBalanceRequest : public CCmdPlatform
{
public:
    CCmdGS_RaceBalanceRequest() : CCmdPlatform(command_id::CCmdGS_RaceBalanceRequest) {}
    COMMAND_INTERFACE(CCmdGS_RaceBalanceRequest)

    zet::String_T<wchar_t> m_Text1;
    int m_Value1 = 0;
};

// Answers CCmdGS_RaceBalanceRequest: the balance is closed.
class COMMONGROUND_API CCmdGS_RaceBalanceOK : public CCmdPlatform
{
public:
    CCmdGS_RaceBalanceOK() : CCmdPlatform(command_id::CCmdGS_RaceBalanceOK) {}
    COMMAND_INTERFACE(CCmdGS_RaceBalanceOK)
};

// Between client and game server: the look of a player's character, at any time.
class COMMONGROUND_API CCmdGS_PlayerEquipAttribute : public CCmdPlatform
{
public:
    CCmdGS_PlayerEquipAttribute() : CCmdPlatform(command_id::CCmdGS_PlayerEquipAttribute) {}
    COMMAND_INTERFACE(CCmdGS_PlayerEquipAttribute)

    zet::String_T<wchar_t> m_Text1;
    ChangingRoomEquip m_ChangingRoomEquip;
};

// Between client and game server: tests the connection.
class COMMONGROUND_API CCmdGS_test : public CCmdPlatform
{
public:
    CCmdGS_test() : CCmdPlatform(command_id::CCmdGS_test) {}
    COMMAND_INTERFACE(CCmdGS_test)

    unsigned long m_Value1 = 0;
};

// Between client and game server: tests the synchronisation of positions.
class COMMONGROUND_API CCmdGS_testSyncPos : public CCmdPlatform
{
public:
    CCmdGS_testSyncPos() : CCmdPlatform(command_id::CCmdGS_testSyncPos) {}
    COMMAND_INTERFACE(CCmdGS_testSyncPos)

    zet::String_T<wchar_t> m_Text1;
    float m_Float1 = 0.0f;
    float m_Float2 = 0.0f;
};
