#include "packs/match_type.h"

#include "packaging/wire/order.h"

WIRE_ORDER_CMD(MatchPackType_Login_Request)
{
    return NO_FIELDS;
}

WIRE_ORDER_CMD(MatchPackType_Login_Reply)
{
    return FIELDS(r.m_MatchData, r.m_Value1, r.m_Msg);
}

WIRE_ORDER_CMD(MatchPackType_Logout_Request)
{
    return NO_FIELDS;
}

WIRE_ORDER_CMD(MatchPackType_Logout_Reply)
{
    return FIELDS(r.m_Msg);
}

WIRE_ORDER_CMD(MatchPackType_QueryMatchState_Request)
{
    return NO_FIELDS;
}

WIRE_ORDER_CMD(MatchPackType_QueryMatchState_Reply)
{
    return FIELDS(r.m_Match, r.m_Msg);
}

WIRE_ORDER_CMD(MatchPackType_SelectTeam_Request)
{
    return FIELDS(r.m_TeamId);
}

WIRE_ORDER_CMD(MatchPackType_SelectTeam_Reply)
{
    return FIELDS(r.m_MatchData, r.m_Msg);
}

WIRE_ORDER_CMD(MatchPackType_StartGame_Request)
{
    return FIELDS(r.m_Value1, r.m_Flag1);
}

WIRE_ORDER_CMD(MatchPackType_StartGame_Reply)
{
    return FIELDS(r.m_Msg);
}

WIRE_ORDER_CMD(MatchPackType_EndGame_Request)
{
    return FIELDS(r.m_Value1, r.m_Float1, r.m_Value2);
}

WIRE_ORDER_CMD(MatchPackType_EndGame_Reply)
{
    return FIELDS(r.m_Value1, r.m_Flag1, r.m_Flag2, r.m_Flag3, r.m_Msg);
}

WIRE_ORDER_CMD(MatchPackType_QueryTeamState_Reply)
{
    return FIELDS(r.m_Team1, r.m_Team2, r.m_Msg);
}

WIRE_ORDER_CMD(MatchPackType_UpdateTeamState_Reply)
{
    return FIELDS(r.m_Value1, r.m_Value2, r.m_Text1, r.m_Value3, r.m_Text2, r.m_Value4, r.m_Text3);
}

WIRE_ORDER_CMD(MatchPackType_QueryTeamRank_Request)
{
    return NO_FIELDS;
}

WIRE_ORDER_CMD(MatchPackType_QueryTeamRank_Reply)
{
    return LIST(r.m_RankList, wire::ClearedFirst) && FIELDS(r.m_Msg);
}

WIRE_ORDER_CMD(MatchPackType_QueryPersonTeamRank_Request)
{
    return FIELDS(r.m_Value1);
}

WIRE_ORDER_CMD(MatchPackType_QueryPersonTeamRank_Reply)
{
    return LIST(r.m_RankList1, wire::Untested) && LIST(r.m_RankList2, wire::Untested) && FIELDS(r.m_Value1, r.m_Msg);
}

WIRE_ORDER_CMD(MatchPackType_QueryTotalScoreRank_Reply)
{
    return LIST(r.m_RankList1, wire::Untested) && LIST(r.m_RankList2, wire::Untested) && FIELDS(r.m_Msg);
}

WIRE_ORDER_CMD(MatchPackType_QueryGameStopRank_Reply)
{
    return FIELDS(r.m_Value1, r.m_Value2, r.m_Value3, r.m_Msg);
}

WIRE_ORDER_CMD(MatchPackType_QuerySchedule_Reply)
{
    return LIST(r.m_Schedule, wire::Untested) && FIELDS(r.m_Msg);
}

WIRE_ORDER_CMD(MatchPackType_QueryPersonClearedInfo_Request)
{
    return FIELDS(r.m_Text1);
}

WIRE_ORDER_CMD(MatchPackType_QueryAwardsRequest)
{
    return FIELDS(r.m_Value1);
}

WIRE_ORDER_CMD(MatchPackType_QueryAwardsReply)
{
    return LIST(r.m_Awards, wire::Untested) && FIELDS(r.m_Value1);
}
