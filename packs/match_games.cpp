#include "packs/match_games.h"

#include "packaging/wire/order.h"

WIRE_ORDER_CMD(MatchPack_SelectBrainGame_Request)
{
    return FIELDS(r.m_Value1);
}

WIRE_ORDER_CMD(MatchPack_SelectBrainGame_Reply)
{
    return FIELDS(r.m_Value1, r.m_Value2, r.m_Value3, r.m_Value4, r.m_Value5, r.m_Text1, r.m_Text2);
}

WIRE_ORDER_CMD(MatchPack_StartBrainGame_Request)
{
    return FIELDS(r.m_Value1, r.m_Value2);
}

WIRE_ORDER_CMD(MatchPack_StartBrainGame_Reply)
{
    return FIELDS(r.m_Value1, r.m_Value2, r.m_Msg);
}

WIRE_ORDER_CMD(MatchPack_BuyTool_Request)
{
    return FIELDS(r.m_Value1, r.m_Value2, r.m_Account, r.m_MatchData3);
}

WIRE_ORDER_CMD(MatchPack_BuyTool_Reply)
{
    return FIELDS(r.m_Value1, r.m_MatchData3, r.m_Account, r.m_Value2, r.m_Msg);
}

WIRE_ORDER_CMD(MatchPack_TryAgainGame_Request)
{
    return FIELDS(r.m_Value1, r.m_Value2);
}

WIRE_ORDER_CMD(MatchPack_TryAgainGame_Reply)
{
    return FIELDS(r.m_Value1, r.m_Value2, r.m_Account, r.m_Msg);
}

WIRE_ORDER_CMD(MatchPack_PlayerList_Request)
{
    return FIELDS(r.m_Value1, r.m_Value2);
}

WIRE_ORDER_CMD(MatchPack_PlayerList_Reply)
{
    return FIELDS(r.m_Value1, r.m_Value2, r.m_Value3, r.m_Msg, r.m_Value4, r.m_Value5, r.m_SelfSort) &&
           LIST(r.m_SortList, wire::Untested);
}
