#include "commands/server_choice.h"

#include "packaging/wire/order.h"

WIRE_COMMAND(CCmdServerListRequest)
{
    return HEAD(CCmdPlatform);
}

WIRE_COMMAND(CCmdServerListReply)
{
    return HEAD(CCmdPlatform) && FIELDS(r.m_Value1, r.m_Text1) &&
           LIST(r.m_PlatformServerInfos, wire::ClearedFirst, wire::KeyedBy(&PlatformServerInfo::m_Node));
}

WIRE_COMMAND(CCmdSelectServerRequest)
{
    return HEAD(CCmdPlatform) && FIELDS(r.m_Value1, r.m_Value2, r.m_Text1, r.m_Text2, r.m_Text3);
}

WIRE_COMMAND(CCmdSelectServerReply)
{
    return HEAD(CCmdPlatform) && FIELDS(r.m_Text1, r.m_Value1, r.m_Value2, r.m_Value3);
}
