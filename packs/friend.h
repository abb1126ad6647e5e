// The messages of the friend feature. Every field is a text, including counts, limits, identifiers and flags; a list is
// one text whose form client and friend service agree on.
#pragma once

#include "framework/export.h"
#include "framework/string.h"
#include "packaging/wire_interface.h"

struct COMMONGROUND_API FriendSystemPack_FriendAddRequest
{
    WIRE_INTERFACE_CMD

    zet::String_T<wchar_t> m_Text1;
    zet::String_T<wchar_t> m_Text2;
    zet::String_T<wchar_t> m_Text3;
};

// Adds a friend with a description.
struct COMMONGROUND_API FriendSystemPack_FriendAddWithInfoRequest
{
    WIRE_INTERFACE_CMD

    zet::String_T<wchar_t> m_Text1;
    zet::String_T<wchar_t> m_Text2;
    zet::String_T<wchar_t> m_Text3;
    zet::String_T<wchar_t> m_Text4;
    zet::String_T<wchar_t> m_Text5;
    zet::String_T<wchar_t> m_Text6;
    zet::String_T<wchar_t> m_Text7;
    zet::String_T<wchar_t> m_Text8;
    zet::String_T<wchar_t> m_Text9;
    zet::String_T<wchar_t> m_Text10;
    zet::String_T<wchar_t> m_Text11;
    zet::String_T<wchar_t> m_Text12;
    zet::String_T<wchar_t> m_Text13;
};

struct COMMONGROUND_API FriendSystemPack_FriendDeleteRequest
{
    WIRE_INTERFACE_CMD

    zet::String_T<wchar_t> m_Text1;
    zet::String_T<wchar_t> m_Text2;
};

// The whole list in one text.
struct COMMONGROUND_API FriendSystemPack_FriendListReply
{
    WIRE_INTERFACE_CMD

    zet::String_T<wchar_t> m_Text1;
};

// Requests the maximum number of friends.
struct COMMONGROUND_API FriendSystemPack_FriendLimitRequest
{
    WIRE_INTERFACE_CMD

    zet::String_T<wchar_t> m_Text1;
};

struct COMMONGROUND_API FriendSystemPack_FriendLimitRespond
{
    WIRE_INTERFACE_CMD

    zet::String_T<wchar_t> m_Text1;
};

struct COMMONGROUND_API FriendSystemPack_FriendInfoRequest
{
    WIRE_INTERFACE_CMD

    zet::String_T<wchar_t> m_Text1;
};

struct COMMONGROUND_API FriendSystemPack_FriendInfoRespond
{
    WIRE_INTERFACE_CMD

    zet::String_T<wchar_t> m_Text1;
    zet::String_T<wchar_t> m_Text2;
    zet::String_T<wchar_t> m_Text3;
    zet::String_T<wchar_t> m_Text4;
};

struct COMMONGROUND_API FriendSystemPack_BasicFriendInfoRequest
{
    WIRE_INTERFACE_CMD

    zet::String_T<wchar_t> m_Text1;
};

struct COMMONGROUND_API FriendSystemPack_BasicFriendInfoRespond
{
    WIRE_INTERFACE_CMD

    zet::String_T<wchar_t> m_Text1;
    zet::String_T<wchar_t> m_Text2;
    zet::String_T<wchar_t> m_Text3;
    zet::String_T<wchar_t> m_Text4;
    zet::String_T<wchar_t> m_Text5;
    zet::String_T<wchar_t> m_Text6;
    zet::String_T<wchar_t> m_Text7;
    zet::String_T<wchar_t> m_Text8;
    zet::String_T<wchar_t> m_Text9;
    zet::String_T<wchar_t> m_Text10;
};

struct COMMONGROUND_API FriendSystemPack_SendMsgRequest
{
    WIRE_INTERFACE_CMD

    zet::String_T<wchar_t> m_Text1;
    zet::String_T<wchar_t> m_Text2;
};

struct COMMONGROUND_API FriendSystemPack_FetchMsgRequest
{
    WIRE_INTERFACE_CMD

    zet::String_T<wchar_t> m_Text1;
    zet::String_T<wchar_t> m_Text2;
    zet::String_T<wchar_t> m_Text3;
    zet::String_T<wchar_t> m_Text4;
    zet::String_T<wchar_t> m_Text5;
    zet::String_T<wchar_t> m_Text6;
};

struct COMMONGROUND_API FriendSystemPack_FetchMsgRespond
{
    WIRE_INTERFACE_CMD

    zet::String_T<wchar_t> m_Text1;
    zet::String_T<wchar_t> m_Text2;
    zet::String_T<wchar_t> m_Text3;
    zet::String_T<wchar_t> m_Text4;
    zet::String_T<wchar_t> m_Text5;
    zet::String_T<wchar_t> m_Text6;
    zet::String_T<wchar_t> m_Text7;
};

// Fetches the messages of the operator.
struct COMMONGROUND_API FriendSystemPack_FetchOfficalMsgRequest
{
    WIRE_INTERFACE_CMD

    zet::String_T<wchar_t> m_Text1;
    zet::String_T<wchar_t> m_Text2;
    zet::String_T<wchar_t> m_Text3;
    zet::String_T<wchar_t> m_Text4;
    zet::String_T<wchar_t> m_Text5;
    zet::String_T<wchar_t> m_Text6;
};

struct COMMONGROUND_API FriendSystemPack_FetchOfficalMsgRespond
{
    WIRE_INTERFACE_CMD

    zet::String_T<wchar_t> m_Text1;
    zet::String_T<wchar_t> m_Text2;
    zet::String_T<wchar_t> m_Text3;
    zet::String_T<wchar_t> m_Text4;
    zet::String_T<wchar_t> m_Text5;
    zet::String_T<wchar_t> m_Text6;
    zet::String_T<wchar_t> m_Text7;
};

// A message that the server sends without a request.
struct COMMONGROUND_API FriendSystemPack_MsgPush
{
    WIRE_INTERFACE_CMD

    zet::String_T<wchar_t> m_Text1;
};

// Publishes one of the player's moments.
struct COMMONGROUND_API FriendSystemPack_SelfMomentMsgRequest
{
    WIRE_INTERFACE_CMD

    zet::String_T<wchar_t> m_Text1;
    zet::String_T<wchar_t> m_Text2;
};

// The player's own identifier among friends.
struct COMMONGROUND_API FriendSystemPack_SelfIdRespond
{
    WIRE_INTERFACE_CMD

    zet::String_T<wchar_t> m_Text1;
};

struct COMMONGROUND_API FriendSystemPack_SetSelfPrestige
{
    WIRE_INTERFACE_CMD

    zet::String_T<wchar_t> m_Text1;
};

struct COMMONGROUND_API FriendSystemPack_SetSelfVip
{
    WIRE_INTERFACE_CMD

    zet::String_T<wchar_t> m_Text1;
};
