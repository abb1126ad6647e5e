#include "packs/friend.h"

#include "packaging/wire/order.h"

WIRE_ORDER_CMD(FriendSystemPack_FriendAddRequest)
{
    return FIELDS(r.m_Text1, r.m_Text2, r.m_Text3);
}

WIRE_ORDER_CMD(FriendSystemPack_FriendAddWithInfoRequest)
{
    return FIELDS(r.m_Text1, r.m_Text2, r.m_Text3, r.m_Text4, r.m_Text5, r.m_Text6, r.m_Text7, r.m_Text8, r.m_Text9,
                  r.m_Text10, r.m_Text11, r.m_Text12, r.m_Text13);
}

WIRE_ORDER_CMD(FriendSystemPack_FriendDeleteRequest)
{
    return FIELDS(r.m_Text1, r.m_Text2);
}

WIRE_ORDER_CMD(FriendSystemPack_FriendListReply)
{
    return FIELDS(r.m_Text1);
}

WIRE_ORDER_CMD(FriendSystemPack_FriendLimitRequest)
{
    return FIELDS(r.m_Text1);
}

WIRE_ORDER_CMD(FriendSystemPack_FriendLimitRespond)
{
    return FIELDS(r.m_Text1);
}

WIRE_ORDER_CMD(FriendSystemPack_FriendInfoRequest)
{
    return FIELDS(r.m_Text1);
}

WIRE_ORDER_CMD(FriendSystemPack_FriendInfoRespond)
{
    return FIELDS(r.m_Text1, r.m_Text2, r.m_Text3, r.m_Text4);
}

WIRE_ORDER_CMD(FriendSystemPack_BasicFriendInfoRequest)
{
    return FIELDS(r.m_Text1);
}

WIRE_ORDER_CMD(FriendSystemPack_BasicFriendInfoRespond)
{
    return FIELDS(r.m_Text1, r.m_Text2, r.m_Text3, r.m_Text4, r.m_Text5, r.m_Text6, r.m_Text7, r.m_Text8, r.m_Text9,
                  r.m_Text10);
}

WIRE_ORDER_CMD(FriendSystemPack_SendMsgRequest)
{
    return FIELDS(r.m_Text1, r.m_Text2);
}

WIRE_ORDER_CMD(FriendSystemPack_FetchMsgRequest)
{
    return FIELDS(r.m_Text1, r.m_Text2, r.m_Text3, r.m_Text4, r.m_Text5, r.m_Text6);
}

WIRE_ORDER_CMD(FriendSystemPack_FetchMsgRespond)
{
    return FIELDS(r.m_Text1, r.m_Text2, r.m_Text3, r.m_Text4, r.m_Text5, r.m_Text6, r.m_Text7);
}

WIRE_ORDER_CMD(FriendSystemPack_FetchOfficalMsgRequest)
{
    return FIELDS(r.m_Text1, r.m_Text2, r.m_Text3, r.m_Text4, r.m_Text5, r.m_Text6);
}

WIRE_ORDER_CMD(FriendSystemPack_FetchOfficalMsgRespond)
{
    return FIELDS(r.m_Text1, r.m_Text2, r.m_Text3, r.m_Text4, r.m_Text5, r.m_Text6, r.m_Text7);
}

WIRE_ORDER_CMD(FriendSystemPack_MsgPush)
{
    return FIELDS(r.m_Text1);
}

WIRE_ORDER_CMD(FriendSystemPack_SelfMomentMsgRequest)
{
    return FIELDS(r.m_Text1, r.m_Text2);
}

WIRE_ORDER_CMD(FriendSystemPack_SelfIdRespond)
{
    return FIELDS(r.m_Text1);
}

WIRE_ORDER_CMD(FriendSystemPack_SetSelfPrestige)
{
    return FIELDS(r.m_Text1);
}

WIRE_ORDER_CMD(FriendSystemPack_SetSelfVip)
{
    return FIELDS(r.m_Text1);
}
