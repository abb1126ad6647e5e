#include "packs/match_lottery.h"

#include "packaging/wire/order.h"

WIRE_ORDER_CMD(MatchPackType_LotteryBaseNum)
{
    return FIELDS(r.m_Value1, r.m_Value2, r.m_Value3, r.m_Value4, r.m_Text1, r.m_Value5);
}

WIRE_ORDER_CMD(MatchPackType_LotteryAllNum)
{
    return TABLE(wire::OwnRows, r.m_Table1) && TABLE(wire::OwnRows, r.m_Table2) && TABLE(wire::OwnRows, r.m_Row1) &&
           TABLE(wire::OwnRows, r.m_Names1) && TABLE(wire::OwnRows, r.m_Names2) && TABLE(wire::OwnRows, r.m_Row2) &&
           TABLE(wire::OwnRows, r.m_Row3) && FIELDS(r.m_Msg, r.m_Value1, r.m_Value2);
}

WIRE_ORDER_CMD(MatchPackType_LotteryReset)
{
    return FIELDS(r.m_Value1, r.m_Value2, r.m_Text1);
}

WIRE_ORDER_CMD(MatchPackType_LotteryRevealer)
{
    return LIST(r.m_Numbers1, wire::Untested) && LIST(r.m_Names, wire::Untested) &&
           LIST(r.m_Numbers2, wire::Untested) && LIST(r.m_Numbers3, wire::Untested) &&
           FIELDS(r.m_Value1, r.m_Value2, r.m_Value3, r.m_Value4);
}

WIRE_ORDER_CMD(MatchPackType_IsCanRevealer)
{
    return FIELDS(r.m_Value1, r.m_Text1);
}
