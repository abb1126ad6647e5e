#include "commands/progress.h"

#include "packaging/wire/order.h"

WIRE_COMMAND(CCmdRequestStartGame)
{
    return HEAD(CCmdPlatform) &&
           FIELDS(r.m_Value1, r.m_Value2, r.m_Value3, r.m_Value4, r.m_Value5, r.m_Text1, r.m_Text2);
}

WIRE_COMMAND(CCmdReplyStartGame)
{
    return HEAD(CCmdPlatform) && FIELDS(r.m_Value1, r.m_Text1, r.m_Value2, r.m_Value3, r.m_Account);
}

WIRE_COMMAND(CCmdRequestEndGame)
{
    return HEAD(CCmdPlatform) && FIELDS(r.m_Value1, r.m_Value2, r.m_Value3, r.m_Value4, r.m_Value5, r.m_Float1,
                                        r.m_Float2, r.m_Flag1, r.m_Text1, r.m_Text2);
}

WIRE_COMMAND(CCmdReplyEndGame)
{
    return HEAD(CCmdPlatform) &&
           FIELDS(r.m_Value1, r.m_Value2, r.m_Value3, r.m_Value4, r.m_Flag1, r.m_Value5, r.m_Account, r.m_MatchData3,
                  r.m_GlobalData, r.m_Text1) &&
           NOT_SENT(r.m_MatchData4);
}

WIRE_COMMAND(CCmdRequestFinishMission)
{
    return HEAD(CCmdPlatform) && FIELDS(r.m_Value1, r.m_Value2);
}

WIRE_COMMAND(CCmdReplyFinishMission)
{
    return HEAD(CCmdPlatform) && FIELDS(r.m_Text1, r.m_Flag1, r.m_Value1, r.m_Value2, r.m_Account);
}

WIRE_COMMAND(CCmdRequestSaveTodayMission)
{
    return HEAD(CCmdPlatform) && FIELDS(r.m_Text1);
}

WIRE_COMMAND(CCmdReplySaveTodayMission)
{
    return HEAD(CCmdPlatform) && FIELDS(r.m_Text1, r.m_Account);
}

WIRE_COMMAND(CCmdEnergyRequest)
{
    return HEAD(CCmdPlatform) && FIELDS(r.m_Value1, r.m_Value2, r.m_Value3, r.m_Value4);
}

WIRE_COMMAND(CCmdEnergyReply)
{
    return HEAD(CCmdPlatform) && FIELDS(r.m_Value1, r.m_Value2, r.m_Value3, r.m_Float1, r.m_Text1, r.m_Text2);
}

WIRE_COMMAND(CCmdSaveAccount)
{
    return HEAD(CCmdPlatform) && FIELDS(r.m_Account);
}
