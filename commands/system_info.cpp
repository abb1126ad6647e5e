#include "commands/system_info.h"

#include "packaging/wire/order.h"

WIRE_ORDER_CMD(cSystemInfo)
{
    return FIELDS(r.m_Text1, r.m_Text2, r.m_Text3, r.m_Text4);
}

WIRE_COMMAND(CCmdSystemInfoRequest)
{
    return HEAD(CCmdPlatform) && FIELDS(r.m_Text1);
}

WIRE_COMMAND(CCmdSystemInfoReply)
{
    return LIST(r.m_SystemInfos, wire::ClearedFirst) && HEAD(CCmdPlatform) &&
           FIELDS(r.m_Flag1, r.m_Value1, r.m_Flag2, r.m_Value2);
}
