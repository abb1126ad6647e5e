#include "commands/logs.h"

#include "packaging/wire/order.h"

WIRE_COMMAND(CCmdAddLog)
{
    return HEAD(CCmdPlatform) && FIELDS(r.m_Text1, r.m_Text2, r.m_Text3, r.m_Value1, r.m_Text4, r.m_Text5, r.m_Value2,
                                        r.m_Value3, r.m_Text6, r.m_Text7, r.m_Text8, r.m_Text9, r.m_Text10, r.m_Value4,
                                        r.m_Float1, r.m_Value5, r.m_Value6, r.m_Value7, r.m_Value8, r.m_Value9);
}

WIRE_COMMAND(CCmdLogLobby)
{
    return HEAD(CCmdPlatform) && FIELDS(r.m_Text1, r.m_Text2, r.m_Text3, r.m_Text4);
}

WIRE_COMMAND(CCmdLogMatch)
{
    return HEAD(CCmdPlatform) && FIELDS(r.m_Text1, r.m_Text2, r.m_Text3, r.m_Text4, r.m_MatchData3);
}

WIRE_COMMAND(CCmdLogPay)
{
    return HEAD(CCmdPlatform) && FIELDS(r.m_Text1, r.m_Text2, r.m_Text3, r.m_Text4, r.m_Text5, r.m_Value1, r.m_Value2,
                                        r.m_Value3, r.m_Text6, r.m_Text7, r.m_Flag1);
}

WIRE_COMMAND(CCmdLogLingYuanGou)
{
    return HEAD(CCmdPlatform) && FIELDS(r.m_Text1, r.m_Text2, r.m_Text3, r.m_Text4);
}

WIRE_COMMAND(CCmdLogAccount)
{
    return HEAD(CCmdPlatform) && FIELDS(r.m_Text1, r.m_Text2, r.m_Text3, r.m_Text4, r.m_GlobalData, r.m_Account);
}

WIRE_COMMAND(CCmdMaintainRequest)
{
    return HEAD(CCmdPlatform) && FIELDS(r.m_Value1, r.m_Text1);
}

WIRE_COMMAND(CCmdMaintainReply)
{
    return HEAD(CCmdPlatform) && FIELDS(r.m_Value1, r.m_Text1, r.m_Text2, r.m_Account, r.m_MatchData3, r.m_GlobalData);
}
