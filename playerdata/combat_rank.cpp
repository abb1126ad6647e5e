#include "playerdata/combat_rank.h"

#include "packaging/wire/order.h"

WIRE_ORDER_BOTH(CombatRankData)
{
    return FIELDS(r.m_Name, r.m_Value1, r.m_Value2);
}

WIRE_ORDER_CMD(CombatRankData_Pack_Reply)
{
    return FIELDS(r.m_Value1, r.m_Value2, r.m_Value3, r.m_Value4, r.m_Msg, r.m_Self, r.m_Flag1, r.m_Flag2, r.m_Value5,
                  r.m_Value6, r.m_Value7) &&
           TABLE(wire::SaidRows(CombatRankData_Pack_Reply::kRows, CombatRankData_Pack_Reply::kColumns),
                 r.m_CombatRankDatas1, r.m_CombatRankDatas2, r.m_CombatRankDatas3);
}

WIRE_ORDER_CMD(BS4RankData_Pack_Reply)
{
    return FIELDS(r.m_Msg, r.m_Value1, r.m_Self) &&
           TABLE(wire::SaidRows(BS4RankData_Pack_Reply::kRows), r.m_CombatRankDatas1, r.m_CombatRankDatas2);
}
