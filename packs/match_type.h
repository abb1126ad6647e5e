// The team side of the match feature: login, the choice of a team, its games, ranks, schedule and awards.
// The lottery messages are in match_lottery.h.
#pragma once

#include "framework/platform/export.h"
#include "framework/string.h"
#include "packs/match_lottery.h"
#include "playerdata/match_data.h"
#include "playerdata/match_records.h"

#include <vector>

class CCmdPackager;
namespace wire
{
struct Schema;
}

struct COMMONGROUND_API MatchPackType_Login_Request
{
    bool Write(CCmdPackager* pk) const;
    bool Read(CCmdPackager* pk);
    static const wire::Schema& Wire();
};

struct COMMONGROUND_API MatchPackType_Login_Reply
{
    bool Write(CCmdPackager* pk) const;
    bool Read(CCmdPackager* pk);
    static const wire::Schema& Wire();

    AccountMatchData m_MatchData;
    int m_Value1 = 0;
    zet::String_T<wchar_t> m_Msg;
};

struct COMMONGROUND_API MatchPackType_Logout_Request
{
    bool Write(CCmdPackager* pk) const;
    bool Read(CCmdPackager* pk);
    static const wire::Schema& Wire();
};

struct COMMONGROUND_API MatchPackType_Logout_Reply
{
    bool Write(CCmdPackager* pk) const;
    bool Read(CCmdPackager* pk);
    static const wire::Schema& Wire();

    zet::String_T<wchar_t> m_Msg;
};

struct COMMONGROUND_API MatchPackType_QueryMatchState_Request
{
    bool Write(CCmdPackager* pk) const;
    bool Read(CCmdPackager* pk);
    static const wire::Schema& Wire();
};

struct COMMONGROUND_API MatchPackType_QueryMatchState_Reply
{
    bool Write(CCmdPackager* pk) const;
    bool Read(CCmdPackager* pk);
    static const wire::Schema& Wire();

    MatchData m_Match;
    zet::String_T<wchar_t> m_Msg;
};

struct COMMONGROUND_API MatchPackType_SelectTeam_Request
{
    bool Write(CCmdPackager* pk) const;
    bool Read(CCmdPackager* pk);
    static const wire::Schema& Wire();

    int m_TeamId = 0;
};

struct COMMONGROUND_API MatchPackType_SelectTeam_Reply
{
    bool Write(CCmdPackager* pk) const;
    bool Read(CCmdPackager* pk);
    static const wire::Schema& Wire();

    AccountMatchData m_MatchData;
    zet::String_T<wchar_t> m_Msg;
};

struct COMMONGROUND_API MatchPackType_StartGame_Request
{
    bool Write(CCmdPackager* pk) const;
    bool Read(CCmdPackager* pk);
    static const wire::Schema& Wire();

    int m_Value1 = 0;
    bool m_Flag1 = false;
};

struct COMMONGROUND_API MatchPackType_StartGame_Reply
{
    bool Write(CCmdPackager* pk) const;
    bool Read(CCmdPackager* pk);
    static const wire::Schema& Wire();

    zet::String_T<wchar_t> m_Msg;
};

struct COMMONGROUND_API MatchPackType_EndGame_Request
{
    bool Write(CCmdPackager* pk) const;
    bool Read(CCmdPackager* pk);
    static const wire::Schema& Wire();

    int m_Value1 = 0;
    float m_Float1 = 0;
    int m_Value2 = 0;
};

struct COMMONGROUND_API MatchPackType_EndGame_Reply
{
    bool Write(CCmdPackager* pk) const;
    bool Read(CCmdPackager* pk);
    static const wire::Schema& Wire();

    int m_Value1 = 0;
    bool m_Flag1 = false;
    bool m_Flag2 = false;
    bool m_Flag3 = false;
    zet::String_T<wchar_t> m_Msg;
};

struct COMMONGROUND_API MatchPackType_QueryTeamState_Reply
{
    bool Write(CCmdPackager* pk) const;
    bool Read(CCmdPackager* pk);
    static const wire::Schema& Wire();

    TeamMatchData m_Team1;
    TeamMatchData m_Team2;
    zet::String_T<wchar_t> m_Msg;
};

struct COMMONGROUND_API MatchPackType_UpdateTeamState_Reply
{
    bool Write(CCmdPackager* pk) const;
    bool Read(CCmdPackager* pk);
    static const wire::Schema& Wire();

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
    bool Write(CCmdPackager* pk) const;
    bool Read(CCmdPackager* pk);
    static const wire::Schema& Wire();
};

struct COMMONGROUND_API MatchPackType_QueryTeamRank_Reply
{
    bool Write(CCmdPackager* pk) const;
    bool Read(CCmdPackager* pk);
    static const wire::Schema& Wire();

    std::vector<TeamMatchRankData> m_RankList;
    zet::String_T<wchar_t> m_Msg;
};

struct COMMONGROUND_API MatchPackType_QueryPersonTeamRank_Request
{
    bool Write(CCmdPackager* pk) const;
    bool Read(CCmdPackager* pk);
    static const wire::Schema& Wire();

    int m_Value1 = 0;
};

struct COMMONGROUND_API MatchPackType_QueryPersonTeamRank_Reply
{
    bool Write(CCmdPackager* pk) const;
    bool Read(CCmdPackager* pk);
    static const wire::Schema& Wire();

    std::vector<AccountMatchRankData> m_RankList1;
    std::vector<AccountMatchRankData> m_RankList2;
    int m_Value1 = 0;
    zet::String_T<wchar_t> m_Msg;
};

struct COMMONGROUND_API MatchPackType_QueryTotalScoreRank_Reply
{
    bool Write(CCmdPackager* pk) const;
    bool Read(CCmdPackager* pk);
    static const wire::Schema& Wire();

    std::vector<MatchTotalScoreRank> m_RankList1;
    std::vector<MatchTotalScoreRank> m_RankList2;
    zet::String_T<wchar_t> m_Msg;
};

struct COMMONGROUND_API MatchPackType_QueryGameStopRank_Reply
{
    bool Write(CCmdPackager* pk) const;
    bool Read(CCmdPackager* pk);
    static const wire::Schema& Wire();

    int m_Value1 = 0;
    int m_Value2 = 0;
    int m_Value3 = 0;
    zet::String_T<wchar_t> m_Msg;
};

struct COMMONGROUND_API MatchPackType_QuerySchedule_Reply
{
    bool Write(CCmdPackager* pk) const;
    bool Read(CCmdPackager* pk);
    static const wire::Schema& Wire();

    std::vector<TeamMatchScheduleData> m_Schedule;
    zet::String_T<wchar_t> m_Msg;
};

struct COMMONGROUND_API MatchPackType_QueryPersonClearedInfo_Request
{
    bool Write(CCmdPackager* pk) const;
    bool Read(CCmdPackager* pk);
    static const wire::Schema& Wire();

    zet::String_T<wchar_t> m_Text1;
};

struct COMMONGROUND_API MatchPackType_QueryAwardsRequest
{
    bool Write(CCmdPackager* pk) const;
    bool Read(CCmdPackager* pk);
    static const wire::Schema& Wire();

    int m_Value1 = 0;
};

struct COMMONGROUND_API MatchPackType_QueryAwardsReply
{
    bool Write(CCmdPackager* pk) const;
    bool Read(CCmdPackager* pk);
    static const wire::Schema& Wire();

    std::vector<MatchQueryAwards> m_Awards;
    int m_Value1 = 0;
};
