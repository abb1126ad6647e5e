#include "commands/game_zone.h"

#include "packaging/wire/order.h"

WIRE_COMMAND(CCmdGZ_regGameServer)
{
    return HEAD(CCmdPlatform) && FIELDS(r.m_GameSvrInfo);
}

WIRE_COMMAND(CCmdGZ_regGameServerOk)
{
    return HEAD(CCmdPlatform);
}

WIRE_COMMAND(CCmdGZ_ZoneInfoRequest)
{
    return HEAD(CCmdPlatform);
}

WIRE_COMMAND(CCmdGZ_ZoneInfoResponse)
{
    return HEAD(CCmdPlatform) && FIELDS(r.m_Text1, r.m_Text2);
}

WIRE_COMMAND(CCmdGZ_createGame)
{
    return HEAD(CCmdPlatform) && FIELDS(r.m_Id1, r.m_Text1, r.m_Value1);
}

WIRE_COMMAND(CCmdGZ_createGameOk)
{
    return HEAD(CCmdPlatform) && FIELDS(r.m_Text1, r.m_Id1);
}

WIRE_COMMAND(CCmdGZ_createGameFail)
{
    return HEAD(CCmdPlatform) && FIELDS(r.m_Text1);
}

WIRE_COMMAND(CCmdGZ_gameOver)
{
    return HEAD(CCmdPlatform) && FIELDS(r.m_Id1);
}

WIRE_COMMAND(CCmdGZ_destroyGame)
{
    return HEAD(CCmdPlatform) && FIELDS(r.m_Id1);
}

WIRE_COMMAND(CCmdGZ_destroyGameOk)
{
    return HEAD(CCmdPlatform) && FIELDS(r.m_Id1);
}

WIRE_COMMAND(CCmdGZ_ConnectGameSvr)
{
    return HEAD(CCmdPlatform) && FIELDS(r.m_Text1, r.m_Word1, r.m_Id1, r.m_Text2, r.m_Flag1, r.m_CombatData);
}

WIRE_COMMAND(CCmdGZ_StartGameRequest)
{
    return HEAD(CCmdPlatform) && FIELDS(r.m_Value1);
}

WIRE_COMMAND(CCmdGZ_StartGameReply)
{
    return HEAD(CCmdPlatform) && FIELDS(r.m_Text1, r.m_Account);
}
