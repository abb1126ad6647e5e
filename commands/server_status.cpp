#include "commands/server_status.h"

#include "packaging/wire/order.h"

WIRE_ORDER_CMD(PlatformServerInfo)
{
    return FIELDS(r.m_Enabled, r.m_Value1, r.m_Value2, r.m_Value3, r.m_Value4, r.m_Name, r.m_Node);
}

WIRE_ORDER_CMD(GameSvrInfo)
{
    return FIELDS(r.m_Name, r.m_Node, r.m_IP, r.m_Port, r.m_Text, r.m_Value1, r.m_Value2, r.m_Value3);
}

WIRE_COMMAND(CCmdInGamePlayerCountRequest)
{
    return HEAD(CCmdPlatform) && FIELDS(r.m_Value1);
}

WIRE_COMMAND(CCmdInGamePlayerCountResponse)
{
    return HEAD(CCmdPlatform) && FIELDS(r.m_Value1, r.m_Value2);
}

WIRE_COMMAND(CCmdPlayerCountOnLineRequest)
{
    return HEAD(CCmdPlatform);
}

WIRE_COMMAND(CCmdPlayerCountOnLineResponse)
{
    return HEAD(CCmdPlatform) && FIELDS(r.m_Value1);
}

WIRE_COMMAND(CCmdServerBusy)
{
    return HEAD(CCmdPlatform) && FIELDS(r.m_Text1);
}

WIRE_COMMAND(CCmdUdpServerConnectOk)
{
    return HEAD(CCmdPlatform) && FIELDS(r.m_Text1);
}

WIRE_COMMAND(CCmdUdpServerConnectFail)
{
    return HEAD(CCmdPlatform) && FIELDS(r.m_Text1);
}
