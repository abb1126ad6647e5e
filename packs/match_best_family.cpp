#include "packs/match_best_family.h"

#include "packaging/wire/order.h"

WIRE_ORDER_CMD(MatchPack_EnterBestFamily_Request)
{
    return FIELDS(r.m_Text1, r.m_Account, r.m_Flag1);
}

WIRE_ORDER_CMD(MatchPack_EnterBestFamily_Reply)
{
    return FIELDS(r.m_Text1, r.m_Text2, r.m_Account, r.m_MatchData3, r.m_Flag1);
}

WIRE_ORDER_CMD(MatchPack_ExitBestFamily_Request)
{
    return FIELDS(r.m_Text1, r.m_MatchData3, r.m_Account);
}

WIRE_ORDER_CMD(MatchPack_ExitBestFamily_Reply)
{
    return FIELDS(r.m_Text1, r.m_Text2, r.m_MatchData3, r.m_Account);
}

WIRE_ORDER_CMD(MatchPack_BestFamilyRandomDice_Request)
{
    return FIELDS(r.m_Text1);
}

WIRE_ORDER_CMD(MatchPack_BestFamilyRandomDice_Reply)
{
    return FIELDS(r.m_Text1, r.m_Text2, r.m_MatchData3);
}

WIRE_ORDER_CMD(MatchPack_BestFamilySetDice_Request)
{
    return FIELDS(r.m_Text1, r.m_Value1);
}

WIRE_ORDER_CMD(MatchPack_BestFamilySetDice_Reply)
{
    return FIELDS(r.m_Text1, r.m_Text2, r.m_MatchData3);
}

WIRE_ORDER_CMD(MatchPack_BestFamilyTigerMachine_Request)
{
    return FIELDS(r.m_Text1);
}

WIRE_ORDER_CMD(MatchPack_BestFamilyTigerMachine_Reply)
{
    return FIELDS(r.m_Text1, r.m_Text2, r.m_MatchData3);
}

WIRE_ORDER_CMD(MatchPack_BestFamilyTask_Request)
{
    return FIELDS(r.m_Text1, r.m_Value1);
}

WIRE_ORDER_CMD(MatchPack_BestFamilyTask_Reply)
{
    return FIELDS(r.m_Text1, r.m_Text2, r.m_MatchData3);
}

WIRE_ORDER_CMD(MatchPack_BestFamilyCheckGameResult_Request)
{
    return FIELDS(r.m_Text1, r.m_Value1, r.m_Value2, r.m_Char1);
}

WIRE_ORDER_CMD(MatchPack_BestFamilyCheckGameResult_Reply)
{
    return FIELDS(r.m_Text1, r.m_Text2, r.m_MatchData3);
}

WIRE_ORDER_CMD(MatchPack_BestFamilyCountDownTime_Request)
{
    return FIELDS(r.m_Text1);
}

WIRE_ORDER_CMD(MatchPack_BestFamilyCountDownTime_Reply)
{
    return FIELDS(r.m_Text1, r.m_Text2, r.m_MatchData3);
}

WIRE_ORDER_CMD(MatchPack_ModifyCountDownTime_Reply)
{
    return FIELDS(r.m_Text1, r.m_Text2, r.m_MatchData3);
}
