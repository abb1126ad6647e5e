#include "commands/zone_combat.h"

#include "packaging/wire/order.h"

WIRE_COMMAND(CCmdGZ_CombatStart)
{
    return HEAD(CCmdPlatform) && FIELDS(r.m_Flag1, r.m_Id1);
}

WIRE_ORDER_CMD(CombatPlayerEntry)
{
    return UNTESTED(r.m_GlobalData, r.m_Account, r.m_CombatData);
}

WIRE_COMMAND(CCmdGZ_SetGameUse)
{
    // Nothing is tested in either direction, not even the head.
    return EITHER_WAY(HEAD(CCmdPlatform)) && UNTESTED(r.m_Id1) && LIST(r.m_Entries, wire::Untested);
}

WIRE_COMMAND(CCmdGZ_SaveResultData)
{
    return HEAD(CCmdPlatform) && FIELDS(r.m_BS4Data, r.m_Value1);
}

WIRE_COMMAND(CCmdGZ_SaveResultReply)
{
    return HEAD(CCmdPlatform) && FIELDS(r.m_BS4Data);
}

WIRE_COMMAND(CCmdGZ_CBRankDataPackRequest)
{
    return HEAD(CCmdPlatform);
}

WIRE_COMMAND(CCmdGZ_CBRankDataPackReply)
{
    return HEAD(CCmdPlatform) && FIELDS(r.m_BS4RankData_Pack_Reply, r.m_BS4Data);
}
