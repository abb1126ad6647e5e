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

struct COMMONGROUND_API CmdUnlockGameRequest final
{
    WIRE_INTERFACE_DATA_VIRTUAL

    int m_Value1 = 0;
    int m_Value2 = 0;
    int m_Value3 = 0;
    int m_Value4 = 0;
    AccountData m_Account;
};

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

// The games are keyed by their ids. Their reads do not affect the result, as in AccountData.
struct COMMONGROUND_API CmdDropScoreNotVIPRequest final
{
    WIRE_INTERFACE_DATA_VIRTUAL

    bool m_Flag1 = false;
    std::map<int, FGameTraining> m_TrainingMap;
};

struct COMMONGROUND_API CmdDropScoreNotVIPReply final
{
    WIRE_INTERFACE_DATA_VIRTUAL

    bool m_Flag1 = false;
    std::map<int, FGameTraining> m_TrainingMap;
};

struct COMMONGROUND_API CmdUpdateTrainGameMapReply
{
    WIRE_INTERFACE_DATA

    std::map<int, FGameTraining> m_TrainingMap;
};

struct COMMONGROUND_API CmdUpdateKinectGameReply
{
    WIRE_INTERFACE_DATA

    FGameKinect m_GameKinect;
};

struct COMMONGROUND_API CmdTrainGameScoreRankReply
{
    WIRE_INTERFACE_DATA

    float m_Float1 = 0.0f;
};

// A player of a match. Reading one never fails.
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

struct COMMONGROUND_API CmdMatchPlayerRequest
{
    WIRE_INTERFACE_DATA

    MatchPlayerInfo m_MatchPlayerInfo;
};

struct COMMONGROUND_API CmdMatchPlayerReply
{
    WIRE_INTERFACE_DATA

    std::vector<MatchPlayerInfo> m_MatchPlayerInfos;
};
