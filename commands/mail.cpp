#include "commands/mail.h"

#include "packaging/wire/order.h"

WIRE_COMMAND(CCmdMailSendRequest)
{
    return HEAD(CCmdPlatform) && FIELDS(r.m_Letter);
}

WIRE_COMMAND(CCmdMailSendReply)
{
    return HEAD(CCmdPlatform) && FIELDS(r.m_Text1);
}

WIRE_COMMAND(CCmdMailReceiveRequest)
{
    return HEAD(CCmdPlatform) && FIELDS(r.m_Value1, r.m_Text1);
}

WIRE_COMMAND(CCmdMailReceiveReply)
{
    return HEAD(CCmdPlatform) && FIELDS(r.m_Text1) && LIST(r.m_Letters, wire::UntestedOnRead);
}

WIRE_COMMAND(CCmdMessageSend)
{
    return HEAD(CCmdPlatform) && FIELDS(r.m_Value1, r.m_Text1, r.m_Text2, r.m_Text3);
}

WIRE_COMMAND(CCmdMessageRecv)
{
    return HEAD(CCmdPlatform) && FIELDS(r.m_Value1, r.m_Text1, r.m_Text2, r.m_Text3);
}
