#include "commands/game_centre.h"

#include "packaging/wire/order.h"

WIRE_ORDER_CMD(GameZoneInfo)
{
    return FIELDS(r.m_Text1, r.m_Text2);
}

WIRE_COMMAND(CCmdGC_regGameZone)
{
    return HEAD(CCmdPlatform) && FIELDS(r.m_GameZoneInfo);
}

WIRE_COMMAND(CCmdGC_regGameZoneOk)
{
    return HEAD(CCmdPlatform);
}

WIRE_COMMAND(CCmdGC_regGameZoneFail)
{
    return HEAD(CCmdPlatform);
}

WIRE_COMMAND(CCmdGC_gameZoneListRequest)
{
    return HEAD(CCmdPlatform);
}

WIRE_COMMAND(CCmdGC_gameZoneListResponse)
{
    return HEAD(CCmdPlatform) && LIST(r.m_GameZoneInfos, wire::SizedFirst, wire::ElementsUntested);
}
