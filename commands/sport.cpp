#include "commands/sport.h"

#include "packaging/wire/order.h"

WIRE_ORDER_BOTH(CSportScore)
{
    return LIST(r.m_Values);
}

int CSportScore::getTotalScore() const
{
    long long total = 0;
    for (int value : m_Values)
        total += value;
    return static_cast<int>(total);
}

WIRE_ORDER_DATA(CSportActEffectData)
{
    return FIELDS(r.m_Value1, r.m_Value2, r.m_Value3);
}

WIRE_ORDER_CMD(CSportPlayerData)
{
    return FIELDS(r.m_Text1, r.m_Text2, r.m_Text3, r.m_Byte1, r.m_SportScore);
}

WIRE_ORDER_CMD(CSportRoomData)
{
    return FIELDS(r.m_Id1, r.m_Text1, r.m_Text2);
}

WIRE_ORDER_BOTH(CSportGameServerInfo)
{
    return FIELDS(r.m_Flag1, r.m_Value1, r.m_Value2, r.m_Value3, r.m_Text1, r.m_Word1, r.m_Text2, r.m_Data1);
}

WIRE_COMMAND(CCmdSport_AskServerInfoRequest)
{
    return HEAD(CCmdPlatform);
}

WIRE_COMMAND(CCmdSport_AskServerInfoReply)
{
    return HEAD(CCmdPlatform) && FIELDS(r.m_Byte1, r.m_SportGameServerInfo);
}

WIRE_COMMAND(CCmdSport_StartSessionRequest)
{
    return HEAD(CCmdPlatform) && FIELDS(r.m_SportRoomData) && LIST(r.m_SportPlayerDatas);
}

WIRE_COMMAND(CCmdSport_StartSessionReply)
{
    return HEAD(CCmdPlatform) && FIELDS(r.m_Byte1, r.m_Id1, r.m_Id2);
}

WIRE_COMMAND(CCmdSport_GameOverMessage)
{
    return HEAD(CCmdPlatform) && FIELDS(r.m_Id1) && LIST(r.m_Entries, wire::Pairs);
}

WIRE_COMMAND(CCmdSport_UserDisconnectNotify)
{
    return HEAD(CCmdPlatform) && FIELDS(r.m_Text1);
}
