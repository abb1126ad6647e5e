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

// Request in CCmdMatchPackRequest: a player logs in to the match service; has no bytes. Answered by
// MatchPackType_Login_Reply.
struct COMMONGROUND_API MatchPackType_Login_Request
{
    WIRE_INTERFACE_CMD
};

// Reply in CCmdMatchPackReply to MatchPackType_Login_Request: the player's match record.
struct COMMONGROUND_API MatchPackType_Login_Reply
{
    WIRE_INTERFACE_CMD

    AccountMatchData m_MatchData;
    int m_Value1 = 0;
    zet::String_T<wchar_t> m_Msg;
};

// Request in CCmdMatchPackRequest: a player logs out of the match service; has no bytes. Answered by
// MatchPackType_Logout_Reply.
struct COMMONGROUND_API MatchPackType_Logout_Request
{
    WIRE_INTERFACE_CMD
};

// Reply in CCmdMatchPackReply to MatchPackType_Logout_Request: a result text.
struct COMMONGROUND_API MatchPackType_Logout_Reply
{
    WIRE_INTERFACE_CMD

    zet::String_T<wchar_t> m_Msg;
};

// Request in CCmdMatchPackRequest: asks for the state of the match; has no bytes. Answered by
// MatchPackType_QueryMatchState_Reply.
struct COMMONGROUND_API MatchPackType_QueryMatchState_Request
{
    WIRE_INTERFACE_CMD
};

// Reply in CCmdMatchPackReply to MatchPackType_QueryMatchState_Request: the match.
struct COMMONGROUND_API MatchPackType_QueryMatchState_Reply
{
    WIRE_INTERFACE_CMD

    MatchData m_Match;
    zet::String_T<wchar_t> m_Msg;
};

// Request in CCmdMatchPackRequest: selects a team. Answered by MatchPackType_SelectTeam_Reply.
struct COMMONGROUND_API MatchPackType_SelectTeam_Request
{
    WIRE_INTERFACE_CMD

    int m_TeamId = 0;
};

// Reply in CCmdMatchPackReply to MatchPackType_SelectTeam_Request: the changed record.
struct COMMONGROUND_API MatchPackType_SelectTeam_Reply
{
    WIRE_INTERFACE_CMD

    AccountMatchData m_MatchData;
    zet::String_T<wchar_t> m_Msg;
};

// Request in CCmdMatchPackRequest: starts a game for the team. Answered by MatchPackType_StartGame_Reply.
struct COMMONGROUND_API MatchPackType_StartGame_Request
{
    WIRE_INTERFACE_CMD

    int m_Value1 = 0;
    bool m_Flag1 = false;
};

// Reply in CCmdMatchPackReply to MatchPackType_StartGame_Request: a result text.
struct COMMONGROUND_API MatchPackType_StartGame_Reply
{
    WIRE_INTERFACE_CMD

    zet::String_T<wchar_t> m_Msg;
};

// Request in CCmdMatchPackRequest: ends a game for the team. Answered by MatchPackType_EndGame_Reply.
struct COMMONGROUND_API MatchPackType_EndGame_Request
{
    WIRE_INTERFACE_CMD

    int m_Value1 = 0;
    float m_Float1 = 0;
    int m_Value2 = 0;
};

// Reply in CCmdMatchPackReply to MatchPackType_EndGame_Request.
struct COMMONGROUND_API MatchPackType_EndGame_Reply
{
    WIRE_INTERFACE_CMD

    int m_Value1 = 0;
    bool m_Flag1 = false;
    bool m_Flag2 = false;
    bool m_Flag3 = false;
    zet::String_T<wchar_t> m_Msg;
};

// Reply in CCmdMatchPackReply: the states of two teams. A request with an empty payload fits.
struct COMMONGROUND_API MatchPackType_QueryTeamState_Reply
{
    WIRE_INTERFACE_CMD

    TeamMatchData m_Team1;
    TeamMatchData m_Team2;
    zet::String_T<wchar_t> m_Msg;
};

// Reply in CCmdMatchPackReply: updates the state of a team. A request with an empty payload fits.
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

// Request in CCmdMatchPackRequest: asks for the ranks of the teams; has no bytes. Answered by
// MatchPackType_QueryTeamRank_Reply.
struct COMMONGROUND_API MatchPackType_QueryTeamRank_Request
{
    WIRE_INTERFACE_CMD
};

// Reply in CCmdMatchPackReply to MatchPackType_QueryTeamRank_Request: the ranks. Unlike the other lists of this file,
// every element decides the result.
struct COMMONGROUND_API MatchPackType_QueryTeamRank_Reply
{
    WIRE_INTERFACE_CMD

    std::vector<TeamMatchRankData> m_RankList;
    zet::String_T<wchar_t> m_Msg;
};

// Request in CCmdMatchPackRequest: asks for the ranks of players in a team. Answered by
// MatchPackType_QueryPersonTeamRank_Reply.
struct COMMONGROUND_API MatchPackType_QueryPersonTeamRank_Request
{
    WIRE_INTERFACE_CMD

    int m_Value1 = 0;
};

// Reply in CCmdMatchPackReply to MatchPackType_QueryPersonTeamRank_Request: two lists of ranks. The lists do not affect
// the result.
struct COMMONGROUND_API MatchPackType_QueryPersonTeamRank_Reply
{
    WIRE_INTERFACE_CMD

    std::vector<AccountMatchRankData> m_RankList1;
    std::vector<AccountMatchRankData> m_RankList2;
    int m_Value1 = 0;
    zet::String_T<wchar_t> m_Msg;
};

// Reply in CCmdMatchPackReply: two lists of the total ranking. A request with an empty payload fits. The lists do not
// affect the result.
struct COMMONGROUND_API MatchPackType_QueryTotalScoreRank_Reply
{
    WIRE_INTERFACE_CMD

    std::vector<MatchTotalScoreRank> m_RankList1;
    std::vector<MatchTotalScoreRank> m_RankList2;
    zet::String_T<wchar_t> m_Msg;
};

// Reply in CCmdMatchPackReply: three numbers of a rank. A request with an empty payload fits.
struct COMMONGROUND_API MatchPackType_QueryGameStopRank_Reply
{
    WIRE_INTERFACE_CMD

    int m_Value1 = 0;
    int m_Value2 = 0;
    int m_Value3 = 0;
    zet::String_T<wchar_t> m_Msg;
};

// Reply in CCmdMatchPackReply: the schedule. A request with an empty payload fits. The list does not affect the result.
struct COMMONGROUND_API MatchPackType_QuerySchedule_Reply
{
    WIRE_INTERFACE_CMD

    std::vector<TeamMatchScheduleData> m_Schedule;
    zet::String_T<wchar_t> m_Msg;
};

// Request in CCmdMatchPackRequest. It has no reply message of its own.
struct COMMONGROUND_API MatchPackType_QueryPersonClearedInfo_Request
{
    WIRE_INTERFACE_CMD

    zet::String_T<wchar_t> m_Text1;
};

// Request in CCmdMatchPackRequest: asks for awards. Answered by MatchPackType_QueryAwardsReply.
struct COMMONGROUND_API MatchPackType_QueryAwardsRequest
{
    WIRE_INTERFACE_CMD

    int m_Value1 = 0;
};

// Reply in CCmdMatchPackReply to MatchPackType_QueryAwardsRequest: the awards. The list does not affect the result.
struct COMMONGROUND_API MatchPackType_QueryAwardsReply
{
    WIRE_INTERFACE_CMD

    std::vector<MatchQueryAwards> m_Awards;
    int m_Value1 = 0;
};
