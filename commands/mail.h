// Letters to and from the mail store, and short messages between players.
#pragma once

#include "dispatch/command_process.h"
#include "dispatch/ids/mail.h"
#include "packaging/command_head.h"
#include "playerdata/letter.h"

#include <vector>

// To the mail store: a letter. Answered by CCmdMailSendReply.
class COMMONGROUND_API CCmdMailSendRequest : public CCmdPlatform
{
public:
    CCmdMailSendRequest() : CCmdPlatform(command_id::CCmdMailSendRequest) {}
    COMMAND_INTERFACE(CCmdMailSendRequest)

    CLetter m_Letter;
};

// Answers CCmdMailSendRequest.
class COMMONGROUND_API CCmdMailSendReply : public CCmdPlatform
{
public:
    CCmdMailSendReply() : CCmdPlatform(command_id::CCmdMailSendReply) {}
    COMMAND_INTERFACE(CCmdMailSendReply)

    zet::String_T<wchar_t> m_Text1;
};

// To the mail store: asks for letters. Answered by CCmdMailReceiveReply.
class COMMONGROUND_API CCmdMailReceiveRequest : public CCmdPlatform
{
public:
    CCmdMailReceiveRequest() : CCmdPlatform(command_id::CCmdMailReceiveRequest) {}
    COMMAND_INTERFACE(CCmdMailReceiveRequest)

    int m_Value1 = 0;
    zet::String_T<wchar_t> m_Text1;
};

// Answers CCmdMailReceiveRequest: the letters. A truncated list is a valid reply with as many letters as the count
// says: a truncated letter has what was read of it, a missing one is default-constructed. For a count above 1,024 at
// most one more letter is created than the payload could hold.
class COMMONGROUND_API CCmdMailReceiveReply : public CCmdPlatform
{
public:
    CCmdMailReceiveReply() : CCmdPlatform(command_id::CCmdMailReceiveReply) {}
    COMMAND_INTERFACE(CCmdMailReceiveReply)

    zet::String_T<wchar_t> m_Text1;
    std::vector<CLetter> m_Letters;
};

// Between clients: a short message of a player, as sent.
class COMMONGROUND_API CCmdMessageSend : public CCmdPlatform
{
public:
    CCmdMessageSend() : CCmdPlatform(command_id::CCmdMessageSend) {}
    COMMAND_INTERFACE(CCmdMessageSend)

    int m_Value1 = 0;
    zet::String_T<wchar_t> m_Text1;
    zet::String_T<wchar_t> m_Text2;
    zet::String_T<wchar_t> m_Text3;
};

// Between clients: a short message of a player, as received.
class COMMONGROUND_API CCmdMessageRecv : public CCmdPlatform
{
public:
    CCmdMessageRecv() : CCmdPlatform(command_id::CCmdMessageRecv) {}
    COMMAND_INTERFACE(CCmdMessageRecv)

    int m_Value1 = 0;
    zet::String_T<wchar_t> m_Text1;
    zet::String_T<wchar_t> m_Text2;
    zet::String_T<wchar_t> m_Text3;
};
