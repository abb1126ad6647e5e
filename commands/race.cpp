#include "commands/race.h"

#include "packaging/wire/order.h"

WIRE_COMMAND(CCmdGS_joinGame)
{
    return HEAD(CCmdPlatform) && FIELDS(r.m_Id1, r.m_Text1);
}

WIRE_COMMAND(CCmdGS_joinGameOk)
{
    return HEAD(CCmdPlatform);
}

WIRE_COMMAND(CCmdGS_joinGameFail)
{
    return HEAD(CCmdPlatform) && FIELDS(r.m_Value1, r.m_Text1);
}

WIRE_COMMAND(CCmdGS_exitGame)
{
    return HEAD(CCmdPlatform) && FIELDS(r.m_Text1);
}

WIRE_COMMAND(CCmdGS_exitGameOk)
{
    return HEAD(CCmdPlatform);
}

WIRE_COMMAND(CCmdGS_exitGameFail)
{
    return HEAD(CCmdPlatform);
}

WIRE_COMMAND(CCmdGS_OtherJoin)
{
    return HEAD(CCmdPlatform) && FIELDS(r.m_CombatData, r.m_Account, r.m_GlobalData);
}

WIRE_COMMAND(CCmdGS_PlayerEnter)
{
    return HEAD(CCmdPlatform) && FIELDS(r.m_Text1, r.m_Value1, r.m_Value2, r.m_Value3, r.m_Text2);
}

WIRE_COMMAND(CCmdGS_GamePlayer)
{
    return HEAD(CCmdPlatform) && FIELDS(r.m_Value1, r.m_Text1, r.m_Value2, r.m_Value3, r.m_Value4, r.m_Flag1, r.m_Flag2,
                                        r.m_Text2, r.m_Flag3, r.m_Float1, r.m_Value5, r.m_ChangingRoomEquip);
}

WIRE_COMMAND(CCmdGS_PlayerRaceData)
{
    return HEAD(CCmdPlatform) && FIELDS(r.m_Text1, r.m_Value1, r.m_Float1, r.m_Float2);
}

WIRE_COMMAND(CCmdGS_PlayerReward)
{
    return HEAD(CCmdPlatform) && FIELDS(r.m_Text1, r.m_Value1, r.m_Value2, r.m_Value3);
}

WIRE_COMMAND(CCmdGS_PlayersChat)
{
    return HEAD(CCmdPlatform) && FIELDS(r.m_Text1);
}

WIRE_COMMAND(CCmdGS_RaceBalanceRequest)
{
    return HEAD(CCmdPlatform) && FIELDS(r.m_Text1, r.m_Value1);
}

WIRE_COMMAND(CCmdGS_RaceBalanceOK)
{
    return HEAD(CCmdPlatform);
}

WIRE_COMMAND(CCmdGS_PlayerEquipAttribute)
{
    return HEAD(CCmdPlatform) && FIELDS(r.m_Text1, r.m_ChangingRoomEquip);
}

WIRE_COMMAND(CCmdGS_test)
{
    return HEAD(CCmdPlatform) && FIELDS(r.m_Value1);
}

WIRE_COMMAND(CCmdGS_testSyncPos)
{
    return HEAD(CCmdPlatform) && FIELDS(r.m_Text1, r.m_Float1, r.m_Float2);
}
