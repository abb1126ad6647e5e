#include "packs/match_stamps.h"

#include "packaging/wire/order.h"

WIRE_ORDER_BOTH(MatchPack_ExchangeStampRequest)
{
    return FIELDS(r.m_Value1, r.m_Value2, r.m_Value3, r.m_Value4, r.m_MatchData);
}

WIRE_ORDER_BOTH(MatchPack_ExchangeStampReply)
{
    return FIELDS(r.m_Msg, r.m_Value1, r.m_Value2, r.m_Value3, r.m_Value4, r.m_MatchData);
}

WIRE_ORDER_CMD(MatchPack_NotEnoughStockReply)
{
    return FIELDS(r.m_Value1, r.m_Value2, r.m_Value3);
}

WIRE_ORDER_CMD(MatchPack_StampChangeGoodsRequest)
{
    return FIELDS(r.m_Value1);
}

WIRE_ORDER_CMD(MatchPack_StampChangeGoodsReply)
{
    return FIELDS(r.m_ShopAwards, r.m_AwardsCode, r.m_Value1, r.m_Value2, r.m_Value3, r.m_Msg);
}
