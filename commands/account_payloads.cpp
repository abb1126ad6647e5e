#include "commands/account_payloads.h"

#include "packaging/wire/order.h"

WIRE_ORDER_DATA(CmdCreateCharactorRequest)
{
    return FIELDS(r.m_Text1, r.m_Value1, r.m_Text2);
}

WIRE_ORDER_DATA(CmdCreateCharactorReply)
{
    return FIELDS(r.m_Text1, r.m_Value1, r.m_Value2, r.m_Text2, r.m_Text3);
}

WIRE_ORDER_DATA(CmdRandomNickRequest)
{
    return FIELDS(r.m_Flag1);
}

WIRE_ORDER_DATA(CmdRandomNickReply)
{
    return FIELDS(r.m_Text1, r.m_Text2);
}

WIRE_ORDER_DATA(CmdGetUserDataReply)
{
    return FIELDS(r.m_Text1, r.m_Account, r.m_GlobalData);
}

WIRE_ORDER_DATA(CmdGetV5UserDataRequest)
{
    return FIELDS(r.m_Value1);
}

WIRE_ORDER_DATA(CmdGetV5UserDataReply)
{
    return FIELDS(r.m_Account);
}

WIRE_ORDER_DATA(CmdUserAddressRequest)
{
    return NO_FIELDS;
}

WIRE_ORDER_DATA(CmdUserAddressReply)
{
    return FIELDS(r.m_Text1, r.m_Text2, r.m_Text3, r.m_Text4);
}

WIRE_ORDER_DATA(CmdCommitPhoneRequest)
{
    return FIELDS(r.m_Text1);
}

WIRE_ORDER_DATA(CmdCommitQuestionnaireRequest)
{
    return FIELDS(r.m_Value1, r.m_Value2, r.m_Value3);
}

WIRE_ORDER_DATA(CmdCommitQuestionnaireReply)
{
    return FIELDS(r.m_Value1, r.m_Text1);
}

WIRE_ORDER_DATA(CmdServerDateRequest)
{
    return FIELDS(r.m_Value1);
}

WIRE_ORDER_DATA(CmdServerDateReply)
{
    return FIELDS(r.m_Text1);
}
