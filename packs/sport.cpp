#include "packs/sport.h"

#include "packaging/wire/order.h"

WIRE_ORDER_DATA(CmdStartSessionAction)
{
    return FIELDS(r.m_Text1);
}

WIRE_ORDER_DATA(CmdEnterLobbyAction)
{
    return FIELDS(r.m_Text1, r.m_Text2, r.m_Text3);
}

WIRE_ORDER_DATA(CmdEnterRoomAction)
{
    return FIELDS(r.m_Text1);
}

WIRE_ORDER_DATA(CmdAutoMatchAction)
{
    return FIELDS(r.m_Word1);
}

WIRE_ORDER_DATA(CmdPrepareGameAction)
{
    return FIELDS(r.m_Id1);
}

WIRE_ORDER_DATA(CmdSetReadyAction)
{
    return FIELDS(r.m_Flag1);
}

WIRE_ORDER_DATA(CmdEndGameAction)
{
    return FIELDS(r.m_SportScore);
}

WIRE_ORDER_DATA(CmdSubmitActEffectDataAction)
{
    return FIELDS(r.m_SportActEffectData);
}

WIRE_ORDER_DATA(CmdSportCommonResult)
{
    return FIELDS(r.m_Byte1, r.m_Text1);
}

WIRE_ORDER_DATA(CmdSessionStartedNotify)
{
    return FIELDS(r.m_Text1, r.m_Word1, r.m_Id1);
}

WIRE_ORDER_DATA(CmdCreateRoomNotify)
{
    return FIELDS(r.m_Text1);
}

WIRE_ORDER_DATA(CmdEnterRoomNotify)
{
    return FIELDS(r.m_Text1, r.m_Text2, r.m_Text3);
}

WIRE_ORDER_DATA(CmdActEffectNotify)
{
    return FIELDS(r.m_Text1, r.m_SportActEffectData);
}

WIRE_ORDER_DATA(CmdGameOverNotify)
{
    return LIST(r.m_Entries, wire::Pairs);
}

WIRE_ORDER_DATA(CmdSportCommonNotify)
{
    return FIELDS(r.m_Text1);
}
