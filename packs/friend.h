// The messages of the friend feature. Every field is a text, including counts, limits, identifiers and flags; a list is
// one text whose form client and friend service agree on.
#pragma once

#include "framework/platform/export.h"
#include "framework/string.h"

class CCmdPackager;
namespace wire
{
struct Schema;
}

struct COMMONGROUND_API FriendSystemPack_FriendAddRequest
{
    bool Write(CCmdPackager* pk) const;
    bool Read(CCmdPackager* pk);
    static const wire::Schema& Wire();

    zet::String_T<wchar_t> m_Text1;
    zet::String_T<wchar_t> m_Text2;
    zet::String_T<wchar_t> m_Text3;
};

// Adds a friend with a description.
struct COMMONGROUND_API FriendSystemPack_FriendAddWithInfoRequest
{
    bool Write(CCmdPackager* pk) const;
    bool Read(CCmdPackager* pk);
    static const wire::Schema& Wire();

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
    bool Write(CCmdPackager* pk) const;
    bool Read(CCmdPackager* pk);
    static const wire::Schema& Wire();

    zet::String_T<wchar_t> m_Text1;
    zet::String_T<wchar_t> m_Text2;
};

// The whole list in one text.
struct COMMONGROUND_API FriendSystemPack_FriendListReply
{
    bool Write(CCmdPackager* pk) const;
    bool Read(CCmdPackager* pk);
    static const wire::Schema& Wire();

    zet::String_T<wchar_t> m_Text1;
};

// Requests the maximum number of friends.
struct COMMONGROUND_API FriendSystemPack_FriendLimitRequest
{
    bool Write(CCmdPackager* pk) const;
    bool Read(CCmdPackager* pk);
    static const wire::Schema& Wire();

    zet::String_T<wchar_t> m_Text1;
};

struct COMMONGROUND_API FriendSystemPack_FriendLimitRespond
{
    bool Write(CCmdPackager* pk) const;
    bool Read(CCmdPackager* pk);
    static const wire::Schema& Wire();

    zet::String_T<wchar_t> m_Text1;
};

struct COMMONGROUND_API FriendSystemPack_FriendInfoRequest
{
    bool Write(CCmdPackager* pk) const;
    bool Read(CCmdPackager* pk);
    static const wire::Schema& Wire();

    zet::String_T<wchar_t> m_Text1;
};

struct COMMONGROUND_API FriendSystemPack_FriendInfoRespond
{
    bool Write(CCmdPackager* pk) const;
    bool Read(CCmdPackager* pk);
    static const wire::Schema& Wire();

    zet::String_T<wchar_t> m_Text1;
    zet::String_T<wchar_t> m_Text2;
    zet::String_T<wchar_t> m_Text3;
    zet::String_T<wchar_t> m_Text4;
};

struct COMMONGROUND_API FriendSystemPack_BasicFriendInfoRequest
{
    bool Write(CCmdPackager* pk) const;
    bool Read(CCmdPackager* pk);
    static const wire::Schema& Wire();

    zet::String_T<wchar_t> m_Text1;
};

struct COMMONGROUND_API FriendSystemPack_BasicFriendInfoRespond
{
    bool Write(CCmdPackager* pk) const;
    bool Read(CCmdPackager* pk);
    static const wire::Schema& Wire();

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
    bool Write(CCmdPackager* pk) const;
    bool Read(CCmdPackager* pk);
    static const wire::Schema& Wire();

    zet::String_T<wchar_t> m_Text1;
    zet::String_T<wchar_t> m_Text2;
};

struct COMMONGROUND_API FriendSystemPack_FetchMsgRequest
{
    bool Write(CCmdPackager* pk) const;
    bool Read(CCmdPackager* pk);
    static const wire::Schema& Wire();

    zet::String_T<wchar_t> m_Text1;
    zet::String_T<wchar_t> m_Text2;
    zet::String_T<wchar_t> m_Text3;
    zet::String_T<wchar_t> m_Text4;
    zet::String_T<wchar_t> m_Text5;
    zet::String_T<wchar_t> m_Text6;
};

struct COMMONGROUND_API FriendSystemPack_FetchMsgRespond
{
    bool Write(CCmdPackager* pk) const;
    bool Read(CCmdPackager* pk);
    static const wire::Schema& Wire();

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
    bool Write(CCmdPackager* pk) const;
    bool Read(CCmdPackager* pk);
    static const wire::Schema& Wire();

    zet::String_T<wchar_t> m_Text1;
    zet::String_T<wchar_t> m_Text2;
    zet::String_T<wchar_t> m_Text3;
    zet::String_T<wchar_t> m_Text4;
    zet::String_T<wchar_t> m_Text5;
    zet::String_T<wchar_t> m_Text6;
};

struct COMMONGROUND_API FriendSystemPack_FetchOfficalMsgRespond
{
    bool Write(CCmdPackager* pk) const;
    bool Read(CCmdPackager* pk);
    static const wire::Schema& Wire();

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
    bool Write(CCmdPackager* pk) const;
    bool Read(CCmdPackager* pk);
    static const wire::Schema& Wire();

    zet::String_T<wchar_t> m_Text1;
};

// Publishes one of the player's moments.
struct COMMONGROUND_API FriendSystemPack_SelfMomentMsgRequest
{
    bool Write(CCmdPackager* pk) const;
    bool Read(CCmdPackager* pk);
    static const wire::Schema& Wire();

    zet::String_T<wchar_t> m_Text1;
    zet::String_T<wchar_t> m_Text2;
};

// The player's own identifier among friends.
struct COMMONGROUND_API FriendSystemPack_SelfIdRespond
{
    bool Write(CCmdPackager* pk) const;
    bool Read(CCmdPackager* pk);
    static const wire::Schema& Wire();

    zet::String_T<wchar_t> m_Text1;
};

struct COMMONGROUND_API FriendSystemPack_SetSelfPrestige
{
    bool Write(CCmdPackager* pk) const;
    bool Read(CCmdPackager* pk);
    static const wire::Schema& Wire();

    zet::String_T<wchar_t> m_Text1;
};

struct COMMONGROUND_API FriendSystemPack_SetSelfVip
{
    bool Write(CCmdPackager* pk) const;
    bool Read(CCmdPackager* pk);
    static const wire::Schema& Wire();

    zet::String_T<wchar_t> m_Text1;
};
