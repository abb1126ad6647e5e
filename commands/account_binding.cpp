#include "commands/account_binding.h"

#include "packaging/wire/order.h"

WIRE_COMMAND(CCmdBindPhone)
{
    return HEAD(CCmdPlatform) && FIELDS(r.m_Text1, r.m_Text2, r.m_Text3, r.m_Text4, r.m_Text5);
}

WIRE_COMMAND(CCmdBindPhoneSuccess)
{
    return HEAD(CCmdPlatform) && FIELDS(r.m_Text1, r.m_Text2, r.m_Text3, r.m_Flag1, r.m_GlobalData);
}

WIRE_COMMAND(CCmdBindPhoneFail)
{
    return HEAD(CCmdPlatform) && FIELDS(r.m_Text1, r.m_Value1);
}

WIRE_COMMAND(CCmdUnBindPhoneRequest)
{
    return HEAD(CCmdPlatform);
}

WIRE_COMMAND(CCmdUnBindPhoneReply)
{
    return HEAD(CCmdPlatform) && FIELDS(r.m_Text1);
}

WIRE_COMMAND(CCmdUnBindUserRequest)
{
    return HEAD(CCmdPlatform) && FIELDS(r.m_Text1);
}

WIRE_COMMAND(CCmdUnBindUserReply)
{
    return HEAD(CCmdPlatform) && FIELDS(r.m_Text1);
}

WIRE_COMMAND(CCmdQueryPhoneRequest)
{
    return HEAD(CCmdPlatform) && FIELDS(r.m_Text1);
}

WIRE_COMMAND(CCmdQueryPhoneReply)
{
    return HEAD(CCmdPlatform) && FIELDS(r.m_Flag1, r.m_Text1, r.m_Text2, r.m_Text3, r.m_Text4, r.m_Value1, r.m_Value2,
                                        r.m_Value3, r.m_Value4, r.m_Text5, r.m_Value5);
}

WIRE_COMMAND(CCmdBindThirdAccountRequest)
{
    return HEAD(CCmdPlatform) && FIELDS(r.m_Text1, r.m_Text2, r.m_Text3, r.m_Text4, r.m_Value1, r.m_Text5);
}

WIRE_COMMAND(CCmdBindThirdAccountReply)
{
    return HEAD(CCmdPlatform) && FIELDS(r.m_Text1, r.m_Text2, r.m_Text3, r.m_Text4, r.m_Text5, r.m_Value1, r.m_Value2,
                                        r.m_Flag1, r.m_GlobalData);
}
