#include "playerdata/match_records.h"

#include "packaging/wire/order.h"
#include "playerdata/match_data.h"

WIRE_ORDER_CMD(LotteryInfo)
{
    return FIELDS(r.m_LotteryRowA, r.m_LotteryRowB, r.m_LotteryValue0, r.m_LotteryValue1);
}

WIRE_ORDER_CMD(MatchData)
{
    return FIELDS(r.m_MatchKind, r.m_MatchRound, r.m_StartTime, r.m_MatchTitle, r.m_MatchNote, r.m_EndTime,
                  r.m_GameDifficultys, r.m_GameTargets, r.m_LotteryInfo);
}

WIRE_ORDER_BOTH(MatchRankData)
{
    return FIELDS(r.m_RankName, r.m_RankValue0, r.m_RankValue1);
}

WIRE_ORDER_CMD(MatchTotalScoreRank)
{
    return FIELDS(r.m_Text1, r.m_Text2, r.m_Value1, r.m_Value2, r.m_Text3);
}

bool MatchTotalScoreRank::operator==(const AccountMatchData& data) const
{
    return m_Text1 == data.m_MatchText0;
}

WIRE_ORDER_CMD(MatchAwardsCodeInfo)
{
    return FIELDS(r.m_Text1, r.m_Text2, r.m_Value1);
}

bool MatchAwardsCodeInfo::operator==(const MatchAwardsCodeInfo& other) const
{
    return m_Text1 == other.m_Text1 && m_Text2 == other.m_Text2 && m_Value1 == other.m_Value1;
}

WIRE_ORDER_CMD(MatchQueryAwards)
{
    return FIELDS(r.m_Text1, r.m_Text2, r.m_Text3, r.m_Text4, r.m_Value1);
}

WIRE_ORDER_CMD(MatchShopAwardsInfo)
{
    return FIELDS(r.m_Value1, r.m_Text1, r.m_Text2, r.m_Text3, r.m_Value2, r.m_Value3, r.m_Value4, r.m_Value5);
}

WIRE_ORDER_CMD(TeamIdData)
{
    return FIELDS(r.m_TeamId, r.m_TeamName);
}

WIRE_ORDER_CMD(TeamMatchData)
{
    return FIELDS(r.m_TeamId, r.m_TeamName, r.m_Value1, r.m_Value2, r.m_Value3, r.m_Value4, r.m_Text1, r.m_Value5,
                  r.m_Value6, r.m_Value7, r.m_Value8, r.m_Text2);
}

WIRE_ORDER_CMD(TeamMatchRankData)
{
    return FIELDS(r.m_TeamId, r.m_TeamName, r.m_Value1, r.m_Value2, r.m_Text1, r.m_Text2, r.m_Text3);
}

WIRE_ORDER_CMD(TeamMatchResultData)
{
    return FIELDS(r.m_TeamId1, r.m_TeamName1, r.m_TeamId2, r.m_TeamName2, r.m_Value1, r.m_Value2, r.m_Value3,
                  r.m_Value4);
}

WIRE_ORDER_CMD(TeamMatchScheduleData)
{
    return FIELDS(r.m_Value1, r.m_Value2, r.m_Text1);
}
