// Payloads of CCmdVoidDataRequest and CCmdVoidDataReply about games: locks, cool-downs, scores, opponents.
// Hosts define the numbers that distinguish the payloads.
#pragma once

#include "framework/export.h"
#include "framework/string.h"
#include "packaging/wire_interface.h"
#include "playerdata/account_core.h"
#include "playerdata/game_training.h"

#include <map>
#include <vector>

// Request in CCmdVoidDataRequest: unlocks a game. Answered by CmdUnlockGameReply.
struct COMMONGROUND_API CmdUnlockGameRequest final
{
    WIRE_INTERFACE_DATA_VIRTUAL

    int m_Value1 = 0;
    int m_Value2 = 0;
    int m_Value3 = 0;
    int m_Value4 = 0;
    AccountData m_Account;
};

// Reply in CCmdVoidDataReply to CmdUnlockGameRequest: the account.
struct COMMONGROUND_API CmdUnlockGameReply final
{
    WIRE_INTERFACE_DATA_VIRTUAL

    zet::String_T<wchar_t> m_Text1;
    int m_Value1 = 0;
    int m_Value2 = 0;
    int m_Value3 = 0;
    int m_Value4 = 0;
    AccountData m_Account;
};

// Request in CCmdVoidDataRequest: cancels a cool-down. Answered by CmdCancelCDReply.
struct COMMONGROUND_API CmdCancelCDRequest final
{
    WIRE_INTERFACE_DATA_VIRTUAL

    int m_Value1 = 0;
    int m_Value2 = 0;
    int m_Value3 = 0;
    int m_Value4 = 0;
    int m_Value5 = 0;
    AccountData m_Account;
};

// Reply in CCmdVoidDataReply to CmdCancelCDRequest: the account.
struct COMMONGROUND_API CmdCancelCDReply final
{
    WIRE_INTERFACE_DATA_VIRTUAL

    zet::String_T<wchar_t> m_Text1;
    int m_Value1 = 0;
    int m_Value2 = 0;
    int m_Value3 = 0;
    int m_Value4 = 0;
    AccountData m_Account;
};

// Request in CCmdVoidDataRequest: drops the scores of a player without VIP. Answered by CmdDropScoreNotVIPReply. The
// games are keyed by their ids. Their reads do not affect the result, as in AccountData.
struct COMMONGROUND_API CmdDropScoreNotVIPRequest final
{
    WIRE_INTERFACE_DATA_VIRTUAL

    bool m_Flag1 = false;
    std::map<int, FGameTraining> m_TrainingMap;
};

// Reply in CCmdVoidDataReply to CmdDropScoreNotVIPRequest. The same form as the request.
struct COMMONGROUND_API CmdDropScoreNotVIPReply final
{
    WIRE_INTERFACE_DATA_VIRTUAL

    bool m_Flag1 = false;
    std::map<int, FGameTraining> m_TrainingMap;
};

// Reply in CCmdVoidDataReply: training games, keyed by their ids. It has no request message of its own.
struct COMMONGROUND_API CmdUpdateTrainGameMapReply
{
    WIRE_INTERFACE_DATA

    std::map<int, FGameTraining> m_TrainingMap;
};

// Reply in CCmdVoidDataReply: a camera game. It has no request message of its own.
struct COMMONGROUND_API CmdUpdateKinectGameReply
{
    WIRE_INTERFACE_DATA

    FGameKinect m_GameKinect;
};

// Reply in CCmdVoidDataReply. It has no request message of its own.
struct COMMONGROUND_API CmdTrainGameScoreRankReply
{
    WIRE_INTERFACE_DATA

    float m_Float1 = 0.0f;
};

// A player of a match, in CmdMatchPlayerRequest and its reply. Reading one never fails; a count below 1 keeps the map.
struct COMMONGROUND_API MatchPlayerInfo
{
    WIRE_INTERFACE_DATA

    zet::String_T<wchar_t> m_Text1;
    zet::String_T<wchar_t> m_Text2;
    float m_Float1 = 0.0f;
    float m_Float2 = 0.0f;
    float m_Float3 = 0.0f;
    std::map<int, int> m_ValueMap;
    // Not sent.
    int m_Value1 = 0;
};

// Request in CCmdVoidDataRequest: asks for players of a match. Answered by CmdMatchPlayerReply.
struct COMMONGROUND_API CmdMatchPlayerRequest
{
    WIRE_INTERFACE_DATA

    MatchPlayerInfo m_MatchPlayerInfo;
};

// Reply in CCmdVoidDataReply to CmdMatchPlayerRequest: the players.
struct COMMONGROUND_API CmdMatchPlayerReply
{
    WIRE_INTERFACE_DATA

    std::vector<MatchPlayerInfo> m_MatchPlayerInfos;
};
