// Records of the match feature other than a player's own: matches, lottery, rankings, awards and teams.
// All fields are carried: copied without being interpreted.
#pragma once

#include "framework/export.h"
#include "framework/string.h"
#include "packaging/wire_interface.h"
#include "playerdata/game_target.h"

class AccountMatchData;

// The numbers of a match's lottery.
class COMMONGROUND_API LotteryInfo
{
public:
    WIRE_INTERFACE_CMD

    int m_LotteryRowA[4] = {};
    int m_LotteryRowB[7] = {};
    int m_LotteryValue0 = 0;
    int m_LotteryValue1 = 0;
};

// A match and its times in seconds since 1970, with three difficulties and three targets.
class COMMONGROUND_API MatchData
{
public:
    WIRE_INTERFACE_CMD

    int m_MatchKind = 0;
    int m_MatchRound = 0;
    unsigned long m_StartTime = 0;
    zet::String_T<wchar_t> m_MatchTitle;
    zet::String_T<wchar_t> m_MatchNote;
    unsigned long m_EndTime = 0;
    GameDifficulty m_GameDifficultys[3];
    GameTarget m_GameTargets[3];
    LotteryInfo m_LotteryInfo;
};

class COMMONGROUND_API MatchRankData
{
public:
    WIRE_INTERFACE_BOTH

    zet::String_T<wchar_t> m_RankName;
    int m_RankValue0 = 0;
    int m_RankValue1 = 0;
};

// A row of the total ranking.
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

// A prize that is a code.
class COMMONGROUND_API MatchAwardsCodeInfo
{
public:
    WIRE_INTERFACE_CMD

    bool operator==(const MatchAwardsCodeInfo& other) const;

    zet::String_T<wchar_t> m_Text1;
    zet::String_T<wchar_t> m_Text2;
    int m_Value1 = 0;
};

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

// Goods of the match shop.
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

class COMMONGROUND_API TeamIdData
{
public:
    WIRE_INTERFACE_CMD

    int m_TeamId = -1;
    zet::String_T<wchar_t> m_TeamName;
};

// The state of a team in a match.
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

class COMMONGROUND_API TeamMatchScheduleData
{
public:
    WIRE_INTERFACE_CMD

    int m_Value1 = 0;
    int m_Value2 = 0;
    zet::String_T<wchar_t> m_Text1;
};
