// Phones and external accounts: binding to an account, query, removal. Client and platform server agree on the content
// of the texts, flags and numbers.
#pragma once

#include "dispatch/command_process.h"
#include "dispatch/ids/account_binding.h"
#include "packaging/command_head.h"
#include "playerdata/account_global.h"

// Client to platform server: binds a phone to the account. Answered by CCmdBindPhoneSuccess or, on failure,
// CCmdBindPhoneFail.
class COMMONGROUND_API CCmdBindPhone : public CCmdPlatform
{
public:
    CCmdBindPhone() : CCmdPlatform(command_id::CCmdBindPhone) {}
    COMMAND_INTERFACE(CCmdBindPhone)

    zet::String_T<wchar_t> m_Text1;
    zet::String_T<wchar_t> m_Text2;
    zet::String_T<wchar_t> m_Text3;
    zet::String_T<wchar_t> m_Text4;
    zet::String_T<wchar_t> m_Text5;
};

// Answers CCmdBindPhone: the phone is bound.
class COMMONGROUND_API CCmdBindPhoneSuccess : public CCmdPlatform
{
public:
    CCmdBindPhoneSuccess() : CCmdPlatform(command_id::CCmdBindPhoneSuccess) {}
    COMMAND_INTERFACE(CCmdBindPhoneSuccess)

    zet::String_T<wchar_t> m_Text1;
    zet::String_T<wchar_t> m_Text2;
    zet::String_T<wchar_t> m_Text3;
    bool m_Flag1 = false;
    AccountGlobalData m_GlobalData;
};

// Answers CCmdBindPhone: the phone is not bound. The hosts define the failure code.
class COMMONGROUND_API CCmdBindPhoneFail : public CCmdPlatform
{
public:
    CCmdBindPhoneFail() : CCmdPlatform(command_id::CCmdBindPhoneFail) {}
    COMMAND_INTERFACE(CCmdBindPhoneFail)

    zet::String_T<wchar_t> m_Text1;
    int m_Value1 = 0;
};

// Client to platform server: removes the binding of a phone. Answered by CCmdUnBindPhoneReply.
class COMMONGROUND_API CCmdUnBindPhoneRequest : public CCmdPlatform
{
public:
    CCmdUnBindPhoneRequest() : CCmdPlatform(command_id::CCmdUnBindPhoneRequest) {}
    COMMAND_INTERFACE(CCmdUnBindPhoneRequest)
};

// Answers CCmdUnBindPhoneRequest.
class COMMONGROUND_API CCmdUnBindPhoneReply : public CCmdPlatform
{
public:
    CCmdUnBindPhoneReply() : CCmdPlatform(command_id::CCmdUnBindPhoneReply) {}
    COMMAND_INTERFACE(CCmdUnBindPhoneReply)

    zet::String_T<wchar_t> m_Text1;
};

// Client to platform server: removes the binding of a user. Answered by CCmdUnBindUserReply.
class COMMONGROUND_API CCmdUnBindUserRequest : public CCmdPlatform
{
public:
    CCmdUnBindUserRequest() : CCmdPlatform(command_id::CCmdUnBindUserRequest) {}
    COMMAND_INTERFACE(CCmdUnBindUserRequest)

    zet::String_T<wchar_t> m_Text1;
};

// Answers CCmdUnBindUserRequest.
class COMMONGROUND_API CCmdUnBindUserReply : public CCmdPlatform
{
public:
    CCmdUnBindUserReply() : CCmdPlatform(command_id::CCmdUnBindUserReply) {}
    COMMAND_INTERFACE(CCmdUnBindUserReply)

    zet::String_T<wchar_t> m_Text1;
};

// Client to platform server: queries a phone. Answered by CCmdQueryPhoneReply.
class COMMONGROUND_API CCmdQueryPhoneRequest : public CCmdPlatform
{
public:
    CCmdQueryPhoneRequest() : CCmdPlatform(command_id::CCmdQueryPhoneRequest) {}
    COMMAND_INTERFACE(CCmdQueryPhoneRequest)

    zet::String_T<wchar_t> m_Text1;
};

// Answers CCmdQueryPhoneRequest.
class COMMONGROUND_API CCmdQueryPhoneReply : public CCmdPlatform
{
public:
    CCmdQueryPhoneReply() : CCmdPlatform(command_id::CCmdQueryPhoneReply) {}
    COMMAND_INTERFACE(CCmdQueryPhoneReply)

    bool m_Flag1 = false;
    zet::String_T<wchar_t> m_Text1;
    zet::String_T<wchar_t> m_Text2;
    zet::String_T<wchar_t> m_Text3;
    zet::String_T<wchar_t> m_Text4;
    int m_Value1 = 0;
    int m_Value2 = 0;
    int m_Value3 = 0;
    int m_Value4 = 0;
    zet::String_T<wchar_t> m_Text5;
    int m_Value5 = 0;
};

// Client to platform server: binds an account of an external service. Answered by CCmdBindThirdAccountReply.
class COMMONGROUND_API CCmdBindThirdAccountRequest : public CCmdPlatform
{
public:
    CCmdBindThirdAccountRequest() : CCmdPlatform(command_id::CCmdBindThirdAccountRequest) {}
    COMMAND_INTERFACE(CCmdBindThirdAccountRequest)

    zet::String_T<wchar_t> m_Text1;
    zet::String_T<wchar_t> m_Text2;
    zet::String_T<wchar_t> m_Text3;
    zet::String_T<wchar_t> m_Text4;
    int m_Value1 = 0;
    zet::String_T<wchar_t> m_Text5;
};

// Answers CCmdBindThirdAccountRequest.
class COMMONGROUND_API CCmdBindThirdAccountReply : public CCmdPlatform
{
public:
    CCmdBindThirdAccountReply() : CCmdPlatform(command_id::CCmdBindThirdAccountReply) {}
    COMMAND_INTERFACE(CCmdBindThirdAccountReply)

    zet::String_T<wchar_t> m_Text1;
    zet::String_T<wchar_t> m_Text2;
    zet::String_T<wchar_t> m_Text3;
    zet::String_T<wchar_t> m_Text4;
    zet::String_T<wchar_t> m_Text5;
    int m_Value1 = 0;
    int m_Value2 = 0;
    bool m_Flag1 = false;
    AccountGlobalData m_GlobalData;
};
