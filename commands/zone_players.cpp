#include "commands/zone_players.h"

#include "packaging/wire/order.h"

WIRE_COMMAND(CCmdGZ_playerEnter)
{
    return HEAD(CCmdPlatform) && FIELDS(r.m_Account, r.m_GlobalData);
}

WIRE_COMMAND(CCmdGZ_playerEnterOk)
{
    return HEAD(CCmdPlatform) && FIELDS(r.m_BS4Data);
}

WIRE_COMMAND(CCmdGZ_playerEnterFail)
{
    return HEAD(CCmdPlatform);
}

WIRE_COMMAND(CCmdGZ_playerExit)
{
    return HEAD(CCmdPlatform) && FIELDS(r.m_Text1);
}

WIRE_COMMAND(CCmdGZ_playerExitOk)
{
    return HEAD(CCmdPlatform) && FIELDS(r.m_GlobalData, r.m_Account);
}

WIRE_COMMAND(CCmdGZ_playerExitFail)
{
    return HEAD(CCmdPlatform);
}

WIRE_COMMAND(CCmdGZ_gameReady)
{
    return HEAD(CCmdPlatform) && FIELDS(r.m_Text1, r.m_Value1);
}

WIRE_COMMAND(CCmdGZ_gameReadyOk)
{
    return HEAD(CCmdPlatform);
}

WIRE_COMMAND(CCmdGZ_gameReadyFail)
{
    return HEAD(CCmdPlatform);
}

WIRE_COMMAND(CCmdGZ_gameUnready)
{
    return HEAD(CCmdPlatform) && FIELDS(r.m_Text1);
}

WIRE_COMMAND(CCmdGZ_gameUnreadyOk)
{
    return HEAD(CCmdPlatform);
}

WIRE_COMMAND(CCmdGZ_gameUnreadyFail)
{
    return HEAD(CCmdPlatform);
}
