// Records of the match feature other than a player's own: matches, lottery, rankings, awards and teams.
// All fields are carried: copied without being interpreted.
#pragma once

#include "framework/export.h"
#include "framework/string.h"
#include "packaging/wire_interface.h"
#include "playerdata/game_target.h"

// Complete in playerdata/match_data.h.
class AccountMatchData;

// The numbers of a match's lottery. Sent in MatchData.
class COMMONGROUND_API LotteryInfo
{
public:
    static constexpr int kRowA = 4;
    static constexpr int kRowB = 7;

    WIRE_INTERFACE_CMD

    int m_LotteryRowA[kRowA] = {};
    int m_LotteryRowB[kRowB] = {};
    int m_LotteryValue0 = 0;
    int m_LotteryValue1 = 0;
};

// A match with its start and end, three difficulties and three targets. Sent in MatchPackType_QueryMatchState_Reply.
class COMMONGROUND_API MatchData
{
public:
    static constexpr int kDifficulties = 3;
    static constexpr int kTargets = 3;

    WIRE_INTERFACE_CMD

    int m_MatchKind = 0;
    int m_MatchRound = 0;
    unsigned long m_StartTime = 0;
    zet::String_T<wchar_t> m_MatchTitle;
    zet::String_T<wchar_t> m_MatchNote;
    unsigned long m_EndTime = 0;
    GameDifficulty m_GameDifficultys[kDifficulties];
    GameTarget m_GameTargets[kTargets];
    LotteryInfo m_LotteryInfo;
};

// A line of the rank tables of Match4Pack_SportRank_Reply.
class COMMONGROUND_API MatchRankData
{
public:
    WIRE_INTERFACE_BOTH

    zet::String_T<wchar_t> m_RankName;
    int m_RankValue0 = 0;
    int m_RankValue1 = 0;
};

// A row of the total ranking. Sent in MatchPackType_QueryTotalScoreRank_Reply.
class COMMONGROUND_API MatchTotalScoreRank
{
public:
    WIRE_INTERFACE_CMD

    // Whether this is the row of the given record's player: compares only the first texts.
    bool operator==(const AccountMatchData& data) const;

    zet::String_T<wchar_t> m_Text1;
    zet::String_T<wchar_t> m_Text2;
    int m_Value1 = 0;
    int m_Value2 = 0;
    zet::String_T<wchar_t> m_Text3;
};

// A prize that is a code. Sent in MatchPack_StampChangeGoodsReply.
class COMMONGROUND_API MatchAwardsCodeInfo
{
public:
    WIRE_INTERFACE_CMD

    // Whether both texts and the value are equal.
    bool operator==(const MatchAwardsCodeInfo& other) const;

    zet::String_T<wchar_t> m_Text1;
    zet::String_T<wchar_t> m_Text2;
    int m_Value1 = 0;
};

// An award. Sent in MatchPackType_QueryAwardsReply.
class COMMONGROUND_API MatchQueryAwards
{
public:
    WIRE_INTERFACE_CMD

    zet::String_T<wchar_t> m_Text1;
    zet::String_T<wchar_t> m_Text2;
    zet::String_T<wchar_t> m_Text3;
    zet::String_T<wchar_t> m_Text4;
    int m_Value1 = 0;
};

// Goods of the match shop. Sent in MatchPack_StampChangeGoodsReply.
class COMMONGROUND_API MatchShopAwardsInfo
{
public:
    WIRE_INTERFACE_CMD

    int m_Value1 = 0;
    zet::String_T<wchar_t> m_Text1;
    zet::String_T<wchar_t> m_Text2;
    zet::String_T<wchar_t> m_Text3;
    int m_Value2 = 0;
    int m_Value3 = 0;
    int m_Value4 = 0;
    int m_Value5 = 0;
};

// A team by number and name.
class COMMONGROUND_API TeamIdData
{
public:
    WIRE_INTERFACE_CMD

    int m_TeamId = -1;
    zet::String_T<wchar_t> m_TeamName;
};

// The state of a team in a match. Sent in MatchPackType_QueryTeamState_Reply.
class COMMONGROUND_API TeamMatchData
{
public:
    WIRE_INTERFACE_CMD

    int m_TeamId = -1;
    zet::String_T<wchar_t> m_TeamName;
    int m_Value1 = 0;
    int m_Value2 = 0;
    int m_Value3 = 0;
    int m_Value4 = -1;
    zet::String_T<wchar_t> m_Text1;
    int m_Value5 = 0;
    int m_Value6 = -1;
    int m_Value7 = 0;
    int m_Value8 = 0;
    zet::String_T<wchar_t> m_Text2;
};

// The rank of a team. Sent in MatchPackType_QueryTeamRank_Reply.
class COMMONGROUND_API TeamMatchRankData
{
public:
    WIRE_INTERFACE_CMD

    int m_TeamId = 0;
    zet::String_T<wchar_t> m_TeamName;
    int m_Value1 = 0;
    int m_Value2 = 0;
    zet::String_T<wchar_t> m_Text1;
    zet::String_T<wchar_t> m_Text2;
    zet::String_T<wchar_t> m_Text3;
};

// A match of two teams, and its result.
class COMMONGROUND_API TeamMatchResultData
{
public:
    WIRE_INTERFACE_CMD

    int m_TeamId1 = 0;
    zet::String_T<wchar_t> m_TeamName1;
    int m_TeamId2 = 0;
    zet::String_T<wchar_t> m_TeamName2;
    int m_Value1 = 0;
    int m_Value2 = 0;
    int m_Value3 = 0;
    int m_Value4 = 0;
};

// An entry of the schedule. Sent in MatchPackType_QuerySchedule_Reply.
class COMMONGROUND_API TeamMatchScheduleData
{
public:
    WIRE_INTERFACE_CMD

    int m_Value1 = 0;
    int m_Value2 = 0;
    zet::String_T<wchar_t> m_Text1;
};
