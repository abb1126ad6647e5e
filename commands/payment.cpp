#include "commands/payment.h"

#include "packaging/wire/order.h"

WIRE_COMMAND(CCmdOrderRequest)
{
    return HEAD(CCmdPlatform) &&
           FIELDS(r.m_Value1, r.m_Value2, r.m_Value3, r.m_Value4, r.m_Text1, r.m_Text2, r.m_Text3, r.m_Text4, r.m_Text5,
                  r.m_Text6, r.m_Text7, r.m_Text8, r.m_Text9, r.m_Text10, r.m_Text11, r.m_Text12, r.m_Text13);
}

WIRE_COMMAND(CCmdOrderReturn)
{
    return HEAD(CCmdPlatform) &&
           FIELDS(r.m_Value1, r.m_Text1, r.m_Value2, r.m_Value3, r.m_Value4, r.m_Value5, r.m_Text2, r.m_Text3,
                  r.m_Text4, r.m_Text5, r.m_Text6, r.m_Text7, r.m_Text8, r.m_Text9, r.m_Text10, r.m_Text11, r.m_Text12);
}

WIRE_COMMAND(CCmdPayOrderQuery)
{
    return HEAD(CCmdPlatform);
}

WIRE_COMMAND(CCmdPayOrderReply)
{
    return HEAD(CCmdPlatform) && FIELDS(r.m_Value1, r.m_Text1, r.m_Text2, r.m_Text3, r.m_Text4, r.m_Text5);
}

WIRE_COMMAND(CCmdPayPrice)
{
    return HEAD(CCmdPlatform) && FIELDS(r.m_Value1);
}

WIRE_COMMAND(CCmdRequestPaytoKen)
{
    return HEAD(CCmdPlatform);
}

WIRE_COMMAND(CCmdReplayPaytoKen)
{
    return HEAD(CCmdPlatform) && FIELDS(r.m_Text1, r.m_Text2, r.m_Text3, r.m_Text4, r.m_Text5, r.m_Text6, r.m_Text7);
}
