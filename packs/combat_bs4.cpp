#include "packs/combat_bs4.h"

#include "packaging/wire/order.h"

WIRE_ORDER_CMD(CombatPack_Enroll_Request)
{
    return FIELDS(r.m_GlobalData);
}

WIRE_ORDER_CMD(CombatPack_Enroll_Reply)
{
    return FIELDS(r.m_Msg, r.m_GlobalData);
}

WIRE_ORDER_CMD(CombatPack_QueryEnroll_Reply)
{
    return FIELDS(r.m_Value1);
}

WIRE_ORDER_CMD(CombatPack_QueryGroup_Reply)
{
    return FIELDS(r.m_Value1);
}

WIRE_ORDER_CMD(CombatPack_PlayerSelectGroup_Request)
{
    return FIELDS(r.m_Value1);
}

WIRE_ORDER_CMD(CombatPack_PlayerSelectGroup_Reply)
{
    return FIELDS(r.m_Msg);
}

WIRE_ORDER_CMD(CombatPack_Change_Diamond)
{
    return FIELDS(r.m_Value1, r.m_GlobalData);
}

WIRE_ORDER_CMD(CombatShopGood)
{
    return FIELDS(r.m_GoodId, r.m_Text1, r.m_Text2, r.m_Text3, r.m_Value1, r.m_Value2, r.m_Value3);
}

WIRE_ORDER_CMD(CombatPack_BuyShopGood_Request)
{
    return FIELDS(r.m_Value1, r.m_Value2, r.m_Flag1, r.m_Text1, r.m_Good, r.m_Account, r.m_GlobalData);
}

WIRE_ORDER_CMD(CombatPack_BuyShopGood_Reply)
{
    return FIELDS(r.m_Msg, r.m_Flag1, r.m_Good, r.m_CombatData, r.m_Account, r.m_Value1, r.m_GlobalData);
}

WIRE_ORDER_CMD(CombatPack_TicketGoodConfig_Reply)
{
    return FIELDS(r.m_Msg) && THROUGH_ONE_LOCAL(r.m_Goods1, r.m_Goods2);
}

WIRE_ORDER_CMD(CombatPack_OrderRecord_Reply)
{
    return FIELDS(r.m_Msg) && LIST(r.m_Orders, wire::Untested);
}

WIRE_ORDER_CMD(BS4Pack_GameSeason_Reply)
{
    return FIELDS(r.m_Value1);
}

WIRE_ORDER_CMD(BS4Pack_SelectGroup_Reply)
{
    return FIELDS(r.m_Msg, r.m_BS4Data);
}

WIRE_ORDER_CMD(BS4Pack_GoldenTime_Reply)
{
    return FIELDS(r.m_Value1);
}

WIRE_ORDER_CMD(BS4Pack_GoldenTimeEnd_Notify)
{
    return FIELDS(r.m_Msg);
}

WIRE_ORDER_CMD(BS4Pack_LastStand_Reply)
{
    return FIELDS(r.m_Value1);
}

WIRE_ORDER_CMD(BS4Pack_LastStandEnd_Notify)
{
    return FIELDS(r.m_Value1);
}

WIRE_ORDER_CMD(BS4Pack_MatchEnd_Notify)
{
    return FIELDS(r.m_Value1, r.m_Value2);
}
