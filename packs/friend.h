// The messages of the friend feature. Every field is a text, including counts, limits, identifiers and flags; a list is
// one text whose form client and friend service agree on.
#pragma once

#include "framework/export.h"
#include "framework/string.h"
#include "packaging/wire_interface.h"

// Request in CCmdFriendSystemPackRequest: adds a friend.
struct COMMONGROUND_API FriendSystemPack_FriendAddRequest
{
    WIRE_INTERFACE_CMD

    zet::String_T<wchar_t> m_Text1;
    zet::String_T<wchar_t> m_Text2;
    zet::String_T<wchar_t> m_Text3;
};

// Request in CCmdFriendSystemPackRequest: adds a friend, with the information that goes with it.
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

// Request in CCmdFriendSystemPackRequest: deletes a friend.
struct COMMONGROUND_API FriendSystemPack_FriendDeleteRequest
{
    WIRE_INTERFACE_CMD

    zet::String_T<wchar_t> m_Text1;
    zet::String_T<wchar_t> m_Text2;
};

// Reply in CCmdFriendSystemPackReply: the friend list as one text. It has no request message of its own.
struct COMMONGROUND_API FriendSystemPack_FriendListReply
{
    WIRE_INTERFACE_CMD

    zet::String_T<wchar_t> m_Text1;
};

// Request in CCmdFriendSystemPackRequest: asks for the limit of the friend list. Answered by
// FriendSystemPack_FriendLimitRespond.
struct COMMONGROUND_API FriendSystemPack_FriendLimitRequest
{
    WIRE_INTERFACE_CMD

    zet::String_T<wchar_t> m_Text1;
};

// Reply in CCmdFriendSystemPackReply to FriendSystemPack_FriendLimitRequest: the limit.
struct COMMONGROUND_API FriendSystemPack_FriendLimitRespond
{
    WIRE_INTERFACE_CMD

    zet::String_T<wchar_t> m_Text1;
};

// Request in CCmdFriendSystemPackRequest: asks for the information about a friend. Answered by
// FriendSystemPack_FriendInfoRespond.
struct COMMONGROUND_API FriendSystemPack_FriendInfoRequest
{
    WIRE_INTERFACE_CMD

    zet::String_T<wchar_t> m_Text1;
};

// Reply in CCmdFriendSystemPackReply to FriendSystemPack_FriendInfoRequest: that information.
struct COMMONGROUND_API FriendSystemPack_FriendInfoRespond
{
    WIRE_INTERFACE_CMD

    zet::String_T<wchar_t> m_Text1;
    zet::String_T<wchar_t> m_Text2;
    zet::String_T<wchar_t> m_Text3;
    zet::String_T<wchar_t> m_Text4;
};

// Request in CCmdFriendSystemPackRequest: asks for the basic information about a friend. Answered by
// FriendSystemPack_BasicFriendInfoRespond.
struct COMMONGROUND_API FriendSystemPack_BasicFriendInfoRequest
{
    WIRE_INTERFACE_CMD

    zet::String_T<wchar_t> m_Text1;
};

// Reply in CCmdFriendSystemPackReply to FriendSystemPack_BasicFriendInfoRequest: that information.
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

// Request in CCmdFriendSystemPackRequest: sends a message.
struct COMMONGROUND_API FriendSystemPack_SendMsgRequest
{
    WIRE_INTERFACE_CMD

    zet::String_T<wchar_t> m_Text1;
    zet::String_T<wchar_t> m_Text2;
};

// Request in CCmdFriendSystemPackRequest: fetches messages. Answered by FriendSystemPack_FetchMsgRespond.
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

// Reply in CCmdFriendSystemPackReply to FriendSystemPack_FetchMsgRequest: the messages.
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

// Request in CCmdFriendSystemPackRequest: fetches the operator's messages. Answered by
// FriendSystemPack_FetchOfficalMsgRespond.
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

// Reply in CCmdFriendSystemPackReply to FriendSystemPack_FetchOfficalMsgRequest: the messages.
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

// Reply in CCmdFriendSystemPackReply: a message that the server pushes without a request.
struct COMMONGROUND_API FriendSystemPack_MsgPush
{
    WIRE_INTERFACE_CMD

    zet::String_T<wchar_t> m_Text1;
};

// Request in CCmdFriendSystemPackRequest: publishes a moment of one's own.
struct COMMONGROUND_API FriendSystemPack_SelfMomentMsgRequest
{
    WIRE_INTERFACE_CMD

    zet::String_T<wchar_t> m_Text1;
    zet::String_T<wchar_t> m_Text2;
};

// Reply in CCmdFriendSystemPackReply: the player's own id in this feature. It has no request message of its own.
struct COMMONGROUND_API FriendSystemPack_SelfIdRespond
{
    WIRE_INTERFACE_CMD

    zet::String_T<wchar_t> m_Text1;
};

// Request in CCmdFriendSystemPackRequest: sets one's prestige.
struct COMMONGROUND_API FriendSystemPack_SetSelfPrestige
{
    WIRE_INTERFACE_CMD

    zet::String_T<wchar_t> m_Text1;
};

// Request in CCmdFriendSystemPackRequest: sets one's VIP level.
struct COMMONGROUND_API FriendSystemPack_SetSelfVip
{
    WIRE_INTERFACE_CMD

    zet::String_T<wchar_t> m_Text1;
};
