#include "packs/match4.h"

#include "packaging/wire/order.h"

WIRE_ORDER_CMD(Match4Pack_EnterYundonghui_Request)
{
    return FIELDS(r.m_Text1, r.m_Account, r.m_Flag1, r.m_GlobalData);
}

WIRE_ORDER_CMD(Match4Pack_EnterYundonghui_Reply)
{
    return FIELDS(r.m_Text1, r.m_Text2, r.m_Account, r.m_MatchData4, r.m_Flag1, r.m_Text3, r.m_GlobalData);
}

WIRE_ORDER_CMD(Match4Pack_ExitYundonghui_Request)
{
    return FIELDS(r.m_Text1, r.m_MatchData4, r.m_Account);
}

WIRE_ORDER_CMD(Match4Pack_ExitYundonghui_Reply)
{
    return FIELDS(r.m_Text1, r.m_Text2, r.m_MatchData4, r.m_Account);
}

WIRE_ORDER_CMD(Match4Pack_GetAccuntInfo_Request)
{
    return FIELDS(r.m_Text1);
}

WIRE_ORDER_CMD(Match4Pack_GetAccuntInfo_Reply)
{
    return FIELDS(r.m_Text1, r.m_Text2, r.m_MatchData4);
}

WIRE_ORDER_CMD(Match4Pack_SaveMatchData_Request)
{
    return FIELDS(r.m_Text1, r.m_MatchData4, r.m_Account, r.m_GlobalData);
}

WIRE_ORDER_CMD(Match4Pack_SaveMatchData_Reply)
{
    return FIELDS(r.m_Msg);
}

WIRE_ORDER_CMD(Match4Pack_DeductEnergy_Request)
{
    return FIELDS(r.m_Value1);
}

WIRE_ORDER_CMD(Match4Pack_DeductEnergy_Reply)
{
    return FIELDS(r.m_Msg, r.m_Account);
}

WIRE_ORDER_CMD(Match4Pack_EndGameCalculate_Reply)
{
    return FIELDS(r.m_Msg, r.m_MatchData4);
}

WIRE_ORDER_CMD(Match4Pack_FindMate_Request)
{
    return FIELDS(r.m_Account, r.m_MatchData4);
}

WIRE_ORDER_CMD(Match4Pack_FindMate_Reply)
{
    return FIELDS(r.m_MatchData4, r.m_Text1, r.m_Text2, r.m_Value1);
}

WIRE_ORDER_CMD(Match4HistoryRec)
{
    return FIELDS(r.m_Text1, r.m_Text2, r.m_Flag1, r.m_Text3, r.m_Value1);
}

WIRE_ORDER_CMD(Match4Pack_CheckHstryRec_Request)
{
    return FIELDS(r.m_Text1);
}

WIRE_ORDER_CMD(Match4Pack_CheckHstryRec_Reply)
{
    return FIELDS(r.m_Text1, r.m_Text2) && LIST(r.m_History2, wire::IntoExistingSlots, wire::Untested) &&
           LIST(r.m_History1, wire::IntoExistingSlots, wire::Untested);
}

WIRE_ORDER_CMD(Match4Pack_CheckBeWeekend_Reply)
{
    return FIELDS(r.m_Msg, r.m_Flag1, r.m_Value1);
}

WIRE_ORDER_CMD(Match4Pack_RememberStateIn_Request)
{
    return FIELDS(r.m_Value1);
}

WIRE_ORDER_CMD(Match4Pack_SportRank_Reply)
{
    return FIELDS(r.m_Value1, r.m_Value2, r.m_Value3, r.m_Value4, r.m_Msg, r.m_Self, r.m_Flag1, r.m_Flag2, r.m_Value5,
                  r.m_Value6, r.m_Value7) &&
           TABLE(wire::SaidRows(Match4Pack_SportRank_Reply::kBoards, Match4Pack_SportRank_Reply::kRanks), r.m_Table1,
                 r.m_Table2);
}
