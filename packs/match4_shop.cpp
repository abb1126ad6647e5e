#include "packs/match4_shop.h"

#include "packaging/wire/order.h"

WIRE_ORDER_CMD(Match4ShopGood)
{
    return FIELDS(r.m_GoodId, r.m_Text1, r.m_Text2, r.m_Text3, r.m_Value1, r.m_Value2, r.m_Value3);
}

WIRE_ORDER_CMD(Match4Pack_BuyShopGood_Request)
{
    return FIELDS(r.m_Value1, r.m_Value2, r.m_Flag1, r.m_Text1, r.m_Good, r.m_Account);
}

WIRE_ORDER_CMD(Match4Pack_BuyShopGood_Reply)
{
    return FIELDS(r.m_Msg, r.m_Flag1, r.m_Good, r.m_MatchData4, r.m_Account, r.m_Value1);
}

WIRE_ORDER_CMD(Match4Pack_TicketGoodConfig_Reply)
{
    return FIELDS(r.m_Msg) && THROUGH_ONE_LOCAL(r.m_Goods1, r.m_Goods2);
}

WIRE_ORDER_CMD(Match4Pack_OrderRecord_Reply)
{
    return FIELDS(r.m_Msg) && LIST(r.m_Orders, wire::Untested);
}
