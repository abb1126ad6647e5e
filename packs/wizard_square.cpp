#include "packs/wizard_square.h"

#include "packaging/wire/order.h"

WIRE_ORDER_CMD(WizardPack_Login_Request)
{
    return NO_FIELDS;
}

WIRE_ORDER_CMD(WizardPack_Login_Reply)
{
    return FIELDS(r.m_Msg);
}

WIRE_ORDER_CMD(WizardPack_Logout_Request)
{
    return NO_FIELDS;
}

WIRE_ORDER_CMD(WizardPack_Logout_Reply)
{
    return FIELDS(r.m_Msg);
}

WIRE_ORDER_CMD(WizardPack_GoWar_Request)
{
    return FIELDS(r.m_Value1) && LIST(r.m_Numbers, wire::Appends);
}

WIRE_ORDER_CMD(WorldSquarePack_Login_Request)
{
    return NO_FIELDS;
}

WIRE_ORDER_CMD(WorldSquarePack_Login_Reply)
{
    return FIELDS(r.m_Msg);
}

WIRE_ORDER_CMD(WorldSquarePack_Logout_Request)
{
    return NO_FIELDS;
}

WIRE_ORDER_CMD(WorldSquarePack_Logout_Reply)
{
    return FIELDS(r.m_Msg);
}

WIRE_ORDER_CMD(WorldSquarePack_PlayerInfo)
{
    return FIELDS(r.m_Text1, r.m_Text2, r.m_Text3, r.m_Text4, r.m_Text5, r.m_Text6);
}

WIRE_ORDER_CMD(WorldSquarePack_TransmisData)
{
    return FIELDS(r.m_Text1);
}
