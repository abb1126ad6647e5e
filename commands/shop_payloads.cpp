#include "commands/shop_payloads.h"

#include "packaging/wire/order.h"

WIRE_ORDER_DATA(CmdShopListRequest)
{
    return FIELDS(r.m_Value1);
}

WIRE_ORDER_DATA(CmdShopListReply)
{
    return FIELDS(r.m_Text1, r.m_GameShop);
}

WIRE_ORDER_DATA(LingyuangouBuyEntry)
{
    return FIELDS(r.m_Text1, r.m_Text2, r.m_Text3, r.m_Text4, r.m_Text5, r.m_Text6, r.m_Value1, r.m_Text7);
}

WIRE_ORDER_DATA(CmdLingyuangouBuyListRequest)
{
    return FIELDS(r.m_Text1);
}

WIRE_ORDER_DATA(CmdLingyuangouBuyListReply)
{
    return FIELDS(r.m_Text1) && LIST(r.m_Entries);
}

WIRE_ORDER_DATA(CmdBuyItemRequest)
{
    return FIELDS(r.m_Value1, r.m_Value2);
}

WIRE_ORDER_DATA(CmdBuyItemReply)
{
    return FIELDS(r.m_Text1, r.m_Value1, r.m_Value2, r.m_Account);
}

WIRE_ORDER_DATA(CmdUseItemRequest)
{
    return FIELDS(r.m_Value1, r.m_Value2, r.m_Account, r.m_GlobalData);
}

WIRE_ORDER_DATA(CmdUseItemReply)
{
    return FIELDS(r.m_Text1, r.m_Value1, r.m_Value2, r.m_Account, r.m_GlobalData);
}

WIRE_ORDER_DATA(CmdUseGiftRequest)
{
    return FIELDS(r.m_Value1);
}

WIRE_ORDER_DATA(CmdUseGiftReply)
{
    return FIELDS(r.m_Text1, r.m_Account);
}

WIRE_ORDER_DATA(CmdExchangeGoldRequest)
{
    return FIELDS(r.m_Value1, r.m_Value2, r.m_Value3, r.m_Value4, r.m_Account);
}

WIRE_ORDER_DATA(CmdExchangeGoldReply)
{
    return FIELDS(r.m_Text1, r.m_Value1, r.m_Value2, r.m_Account);
}

WIRE_ORDER_DATA(CmdUpdateGoldRequest)
{
    return FIELDS(r.m_Value1);
}

WIRE_ORDER_DATA(CmdUpdateGoldReply)
{
    return FIELDS(r.m_Value1);
}

WIRE_ORDER_DATA(CmdUpdateDiamondRequest)
{
    return FIELDS(r.m_Value1, r.m_Value2);
}

WIRE_ORDER_DATA(CmdUpdateDiamondReply)
{
    return FIELDS(r.m_Value1, r.m_Value2, r.m_Text1);
}

WIRE_ORDER_DATA(CmdActivityRequest)
{
    return FIELDS(r.m_Value1, r.m_Value2);
}

WIRE_ORDER_DATA(CmdActivityReply)
{
    return FIELDS(r.m_Value1, r.m_Value2, r.m_Account, r.m_Text1);
}

WIRE_ORDER_DATA(CmdBigTableRequest)
{
    return FIELDS(r.m_Value1, r.m_Value2, r.m_Account, r.m_Text1);
}

WIRE_ORDER_DATA(CmdBigTableReply)
{
    return FIELDS(r.m_Value1, r.m_Value2, r.m_Text1, r.m_Value3, r.m_Account, r.m_Text2);
}

WIRE_ORDER_DATA(CmdTurnTableRewardRequest)
{
    return FIELDS(r.m_Text1, r.m_Value1, r.m_Value2);
}

WIRE_ORDER_DATA(CmdTurnTableRewardReply)
{
    return FIELDS(r.m_Text1, r.m_Value1, r.m_Value2, r.m_Account, r.m_Text2, r.m_Value3);
}
