#include "commands/account_access.h"

#include "packaging/wire/order.h"

WIRE_COMMAND(CCmdFindPassword)
{
    return HEAD(CCmdPlatform) && FIELDS(r.m_Text1);
}

WIRE_COMMAND(CCmdFindPasswordSuccess)
{
    return HEAD(CCmdPlatform) && FIELDS(r.m_Text1, r.m_Text2);
}

WIRE_COMMAND(CCmdFindPasswordFail)
{
    return HEAD(CCmdPlatform) && FIELDS(r.m_Text1, r.m_Value1);
}

WIRE_COMMAND(CCmdUpdatePassword)
{
    return HEAD(CCmdPlatform) && FIELDS(r.m_Value1, r.m_Text1, r.m_Text2);
}

WIRE_COMMAND(CCmdUpdatePasswordSuccess)
{
    return HEAD(CCmdPlatform) && FIELDS(r.m_Value1, r.m_Text1);
}

WIRE_COMMAND(CCmdUpdatePasswordFail)
{
    return HEAD(CCmdPlatform) && FIELDS(r.m_Text1, r.m_Value1);
}

WIRE_COMMAND(CCmdSwitchAccount)
{
    return HEAD(CCmdPlatform) && FIELDS(r.m_Text1, r.m_Text2, r.m_Value1, r.m_Text3, r.m_Text4, r.m_Text5, r.m_Text6,
                                        r.m_Flag1, r.m_Value2, r.m_Text7, r.m_Text8);
}

WIRE_COMMAND(CCmdSwitchAccountSuccess)
{
    return HEAD(CCmdPlatform) && FIELDS(r.m_Id1, r.m_Value1, r.m_GlobalData, r.m_LingYuanGouData, r.m_GameShop,
                                        r.m_Value2, r.m_Text1, r.m_Flag1);
}

WIRE_COMMAND(CCmdSwitchAccountFail)
{
    return HEAD(CCmdPlatform) && FIELDS(r.m_Text1, r.m_Value1, r.m_Value2);
}

WIRE_COMMAND(CCmdFetchAccountRequest)
{
    return HEAD(CCmdPlatform) && FIELDS(r.m_Value1, r.m_Text1);
}

WIRE_COMMAND(CCmdFetchAccountReply)
{
    return HEAD(CCmdPlatform) && FIELDS(r.m_Text1, r.m_Value1, r.m_Text2, r.m_Account);
}
