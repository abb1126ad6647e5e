#include "commands/login.h"

#include "packaging/wire/order.h"

WIRE_COMMAND(CCmdBaseLogin)
{
    return HEAD(CCmdPlatform) && FIELDS(r.m_Texts);
}

WIRE_COMMAND(CCmdGuestLogin)
{
    return HEAD(CCmdBaseLogin);
}

WIRE_COMMAND(CCmdMacLogin)
{
    return HEAD(CCmdBaseLogin);
}

WIRE_COMMAND(CCmdMobileLogin)
{
    return HEAD(CCmdBaseLogin) && FIELDS(r.m_Text1, r.m_Text2);
}

WIRE_COMMAND(CCmdThirdAccountLogin)
{
    return HEAD(CCmdBaseLogin) && FIELDS(r.m_Text1, r.m_Value1);
}

WIRE_COMMAND(CCmdWechatdAccountLogin)
{
    return HEAD(CCmdBaseLogin) && FIELDS(r.m_Text1, r.m_Text2);
}

WIRE_COMMAND(CCmdLogin)
{
    return HEAD(CCmdPlatform) && FIELDS(r.m_Text1, r.m_Text2, r.m_Text3, r.m_Text4, r.m_Text5);
}

WIRE_COMMAND(CCmdLoginSuccess)
{
    return HEAD(CCmdPlatform) && FIELDS(r.m_Id1, r.m_GlobalData, r.m_LingYuanGouData, r.m_Account, r.m_GameShop,
                                        r.m_Value1, r.m_Flag1, r.m_Value2);
}

WIRE_COMMAND(CCmdLoginFail)
{
    return HEAD(CCmdPlatform) && FIELDS(r.m_Text1, r.m_Value1, r.m_Value2);
}

WIRE_COMMAND(CCmdLoginHPWD)
{
    return HEAD(CCmdPlatform) && FIELDS(r.m_Text1, r.m_Value1);
}

WIRE_COMMAND(CCmdLoginCheck)
{
    return HEAD(CCmdPlatform) && FIELDS(r.m_Text1, r.m_Value1);
}

WIRE_COMMAND(CCmdHpwdLoginSuccess)
{
    return HEAD(CCmdPlatform) && FIELDS(r.m_Id1, r.m_GlobalData, r.m_LingYuanGouData, r.m_Account, r.m_GameShop,
                                        r.m_Value1, r.m_Flag1, r.m_Value2, r.m_Text1, r.m_Text2, r.m_Text3);
}

WIRE_COMMAND(CCmdHpwdLoginCancel)
{
    return HEAD(CCmdPlatform) && FIELDS(r.m_Text1);
}

WIRE_COMMAND(CCmdLogout)
{
    return HEAD(CCmdPlatform) &&
           FIELDS(r.m_Value1, r.m_Text1, r.m_Text2, r.m_Text3, r.m_GlobalData, r.m_LingYuanGouData, r.m_Account);
}

WIRE_COMMAND(CCmdAccountKickOut)
{
    return HEAD(CCmdPlatform);
}

WIRE_COMMAND(CCmdLoginStateRequest)
{
    return HEAD(CCmdPlatform);
}

WIRE_COMMAND(CCmdLoginStateReply)
{
    return HEAD(CCmdPlatform) && FIELDS(r.m_Value1);
}
