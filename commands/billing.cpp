#include "commands/billing.h"

#include "packaging/wire/order.h"

WIRE_COMMAND(CCmdCurrencyQuery)
{
    return HEAD(CCmdPlatform) && FIELDS(r.m_Value1);
}

WIRE_COMMAND(CCmdCurrencyReply)
{
    return HEAD(CCmdPlatform) && FIELDS(r.m_Value1, r.m_Flag1, r.m_Text1, r.m_GlobalData, r.m_Account);
}

WIRE_COMMAND(CCmdCurrencyAdd)
{
    return HEAD(CCmdPlatform) && FIELDS(r.m_Value1, r.m_Value2);
}

WIRE_COMMAND(CCmdBillSuccess)
{
    return HEAD(CCmdPlatform) && FIELDS(r.m_Text1, r.m_Text2, r.m_Text3, r.m_Value1, r.m_Text4, r.m_Text5, r.m_Text6,
                                        r.m_Text7, r.m_Text8, r.m_GlobalData, r.m_Account, r.m_GameTrade);
}

WIRE_COMMAND(CCmdBillFail)
{
    return HEAD(CCmdPlatform) && FIELDS(r.m_Value1, r.m_Value2, r.m_Text1, r.m_Text2, r.m_Text3);
}

WIRE_COMMAND(CCmdBillReusltNotify)
{
    return HEAD(CCmdPlatform) && FIELDS(r.m_Text1, r.m_Text2, r.m_Text3, r.m_Text4, r.m_Text5, r.m_Value1);
}

WIRE_COMMAND(CCmdBillExchangeCodeRequest)
{
    return HEAD(CCmdPlatform) && FIELDS(r.m_Text1, r.m_Value1, r.m_Value2, r.m_Text2, r.m_Value3, r.m_Text3, r.m_Text4,
                                        r.m_Text5, r.m_Text6, r.m_Text7);
}

WIRE_COMMAND(CCmdBillExchangeCodeReply)
{
    return HEAD(CCmdPlatform) && FIELDS(r.m_Text1, r.m_Value1, r.m_Value2, r.m_Text2, r.m_Value3, r.m_Text3, r.m_Text4,
                                        r.m_Text5, r.m_Text6, r.m_Text7, r.m_Text8);
}

WIRE_COMMAND(CCmdTrovCardRequest)
{
    return HEAD(CCmdPlatform) && FIELDS(r.m_Text1, r.m_Text2, r.m_Text3, r.m_Value1, r.m_Account);
}

WIRE_COMMAND(CCmdTrovCardReply)
{
    return HEAD(CCmdPlatform) && FIELDS(r.m_Text1, r.m_Text2, r.m_Text3, r.m_Text4, r.m_Text5, r.m_Value1, r.m_Value2,
                                        r.m_Value3, r.m_Account, r.m_GlobalData);
}
