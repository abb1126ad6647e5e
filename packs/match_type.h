// The team side of the match feature: login, the choice of a team, its games, ranks, schedule and awards.
// The lottery messages are in match_lottery.h.
#pragma once

#include "framework/export.h"
#include "framework/string.h"
#include "packaging/wire_interface.h"
#include "packs/match_lottery.h"
#include "playerdata/match_data.h"
#include "playerdata/match_records.h"

#include <vector>

struct COMMONGROUND_API MatchPackType_Login_Request
{
    WIRE_INTERFACE_CMD
};

struct COMMONGROUND_API MatchPackType_Login_Reply
{
    WIRE_INTERFACE_CMD

    AccountMatchData m_MatchData;
    int m_Value1 = 0;
    zet::String_T<wchar_t> m_Msg;
};

struct COMMONGROUND_API MatchPackType_Logout_Request
{
    WIRE_INTERFACE_CMD
};

struct COMMONGROUND_API MatchPackType_Logout_Reply
{
    WIRE_INTERFACE_CMD

    zet::String_T<wchar_t> m_Msg;
};

struct COMMONGROUND_API MatchPackType_QueryMatchState_Request
{
    WIRE_INTERFACE_CMD
};

struct COMMONGROUND_API MatchPackType_QueryMatchState_Reply
{
    WIRE_INTERFACE_CMD

    MatchData m_Match;
    zet::String_T<wchar_t> m_Msg;
};

struct COMMONGROUND_API MatchPackType_SelectTeam_Request
{
    WIRE_INTERFACE_CMD

    int m_TeamId = 0;
};

struct COMMONGROUND_API MatchPackType_SelectTeam_Reply
{
    WIRE_INTERFACE_CMD

    AccountMatchData m_MatchData;
    zet::String_T<wchar_t> m_Msg;
};

struct COMMONGROUND_API MatchPackType_StartGame_Request
{
    WIRE_INTERFACE_CMD

    int m_Value1 = 0;
    bool m_Flag1 = false;
};

struct COMMONGROUND_API MatchPackType_StartGame_Reply
{
    WIRE_INTERFACE_CMD

    zet::String_T<wchar_t> m_Msg;
};

struct COMMONGROUND_API MatchPackType_EndGame_Request
{
    WIRE_INTERFACE_CMD

    int m_Value1 = 0;
    float m_Float1 = 0;
    int m_Value2 = 0;
};

struct COMMONGROUND_API MatchPackType_EndGame_Reply
{
    WIRE_INTERFACE_CMD

    int m_Value1 = 0;
    bool m_Flag1 = false;
    bool m_Flag2 = false;
    bool m_Flag3 = false;
    zet::String_T<wchar_t> m_Msg;
};

struct COMMONGROUND_API MatchPackType_QueryTeamState_Reply
{
    WIRE_INTERFACE_CMD

    TeamMatchData m_Team1;
    TeamMatchData m_Team2;
    zet::String_T<wchar_t> m_Msg;
};

struct COMMONGROUND_API MatchPackType_UpdateTeamState_Reply
{
    WIRE_INTERFACE_CMD

    int m_Value1 = 0;
    int m_Value2 = 0;
    zet::String_T<wchar_t> m_Text1;
    int m_Value3 = 0;
    zet::String_T<wchar_t> m_Text2;
    int m_Value4 = 0;
    zet::String_T<wchar_t> m_Text3;
};

struct COMMONGROUND_API MatchPackType_QueryTeamRank_Request
{
    WIRE_INTERFACE_CMD
};

struct COMMONGROUND_API MatchPackType_QueryTeamRank_Reply
{
    WIRE_INTERFACE_CMD

    std::vector<TeamMatchRankData> m_RankList;
    zet::String_T<wchar_t> m_Msg;
};

struct COMMONGROUND_API MatchPackType_QueryPersonTeamRank_Request
{
    WIRE_INTERFACE_CMD

    int m_Value1 = 0;
};

struct COMMONGROUND_API MatchPackType_QueryPersonTeamRank_Reply
{
    WIRE_INTERFACE_CMD

    std::vector<AccountMatchRankData> m_RankList1;
    std::vector<AccountMatchRankData> m_RankList2;
    int m_Value1 = 0;
    zet::String_T<wchar_t> m_Msg;
};

struct COMMONGROUND_API MatchPackType_QueryTotalScoreRank_Reply
{
    WIRE_INTERFACE_CMD

    std::vector<MatchTotalScoreRank> m_RankList1;
    std::vector<MatchTotalScoreRank> m_RankList2;
    zet::String_T<wchar_t> m_Msg;
};

struct COMMONGROUND_API MatchPackType_QueryGameStopRank_Reply
{
    WIRE_INTERFACE_CMD

    int m_Value1 = 0;
    int m_Value2 = 0;
    int m_Value3 = 0;
    zet::String_T<wchar_t> m_Msg;
};

struct COMMONGROUND_API MatchPackType_QuerySchedule_Reply
{
    WIRE_INTERFACE_CMD

    std::vector<TeamMatchScheduleData> m_Schedule;
    zet::String_T<wchar_t> m_Msg;
};

struct COMMONGROUND_API MatchPackType_QueryPersonClearedInfo_Request
{
    WIRE_INTERFACE_CMD

    zet::String_T<wchar_t> m_Text1;
};

struct COMMONGROUND_API MatchPackType_QueryAwardsRequest
{
    WIRE_INTERFACE_CMD

    int m_Value1 = 0;
};

struct COMMONGROUND_API MatchPackType_QueryAwardsReply
{
    WIRE_INTERFACE_CMD

    std::vector<MatchQueryAwards> m_Awards;
    int m_Value1 = 0;
};
