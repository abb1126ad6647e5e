// Passwords, switching to another account within a session, and fetching an account.
#pragma once

#include "dispatch/command_process.h"
#include "dispatch/ids/account_access.h"
#include "packaging/command_head.h"
#include "playerdata/account_core.h"
#include "playerdata/account_global.h"
#include "playerdata/account_other.h"
#include "playerdata/shop.h"

// Client to platform server: finds a password. Answered by CCmdFindPasswordSuccess or, on failure,
// CCmdFindPasswordFail.
class COMMONGROUND_API CCmdFindPassword : public CCmdPlatform
{
public:
    CCmdFindPassword() : CCmdPlatform(command_id::CCmdFindPassword) {}
    COMMAND_INTERFACE(CCmdFindPassword)

    zet::String_T<wchar_t> m_Text1;
};

// Answers CCmdFindPassword on success.
class COMMONGROUND_API CCmdFindPasswordSuccess : public CCmdPlatform
{
public:
    CCmdFindPasswordSuccess() : CCmdPlatform(command_id::CCmdFindPasswordSuccess) {}
    COMMAND_INTERFACE(CCmdFindPasswordSuccess)

    zet::String_T<wchar_t> m_Text1;
    zet::String_T<wchar_t> m_Text2;
};

// Answers CCmdFindPassword on failure. The hosts define the failure code.
class COMMONGROUND_API CCmdFindPasswordFail : public CCmdPlatform
{
public:
    CCmdFindPasswordFail() : CCmdPlatform(command_id::CCmdFindPasswordFail) {}
    COMMAND_INTERFACE(CCmdFindPasswordFail)

    zet::String_T<wchar_t> m_Text1;
    int m_Value1 = 0;
};

// Client to platform server: updates a password. Answered by CCmdUpdatePasswordSuccess or, on failure,
// CCmdUpdatePasswordFail.
class COMMONGROUND_API CCmdUpdatePassword : public CCmdPlatform
{
public:
    CCmdUpdatePassword() : CCmdPlatform(command_id::CCmdUpdatePassword) {}
    COMMAND_INTERFACE(CCmdUpdatePassword)

    int m_Value1 = 0;
    zet::String_T<wchar_t> m_Text1;
    zet::String_T<wchar_t> m_Text2;
};

// Answers CCmdUpdatePassword on success.
class COMMONGROUND_API CCmdUpdatePasswordSuccess : public CCmdPlatform
{
public:
    CCmdUpdatePasswordSuccess() : CCmdPlatform(command_id::CCmdUpdatePasswordSuccess) {}
    COMMAND_INTERFACE(CCmdUpdatePasswordSuccess)

    int m_Value1 = 0;
    zet::String_T<wchar_t> m_Text1;
};

// Answers CCmdUpdatePassword on failure. The hosts define the failure code.
class COMMONGROUND_API CCmdUpdatePasswordFail : public CCmdPlatform
{
public:
    CCmdUpdatePasswordFail() : CCmdPlatform(command_id::CCmdUpdatePasswordFail) {}
    COMMAND_INTERFACE(CCmdUpdatePasswordFail)

    zet::String_T<wchar_t> m_Text1;
    int m_Value1 = 0;
};

// Client to platform server: switches to another account within the session. Answered by CCmdSwitchAccountSuccess or,
// on failure, CCmdSwitchAccountFail.
class COMMONGROUND_API CCmdSwitchAccount : public CCmdPlatform
{
public:
    CCmdSwitchAccount() : CCmdPlatform(command_id::CCmdSwitchAccount) {}
    COMMAND_INTERFACE(CCmdSwitchAccount)

    zet::String_T<wchar_t> m_Text1;
    zet::String_T<wchar_t> m_Text2;
    int m_Value1 = 0;
    zet::String_T<wchar_t> m_Text3;
    zet::String_T<wchar_t> m_Text4;
    zet::String_T<wchar_t> m_Text5;
    zet::String_T<wchar_t> m_Text6;
    bool m_Flag1 = false;
    int m_Value2 = 0;
    zet::String_T<wchar_t> m_Text7;
    zet::String_T<wchar_t> m_Text8;
};

// Answers CCmdSwitchAccount: the new account. Unlike a login, a switch does not deliver the AccountData.
class COMMONGROUND_API CCmdSwitchAccountSuccess : public CCmdPlatform
{
public:
    CCmdSwitchAccountSuccess() : CCmdPlatform(command_id::CCmdSwitchAccountSuccess) {}
    COMMAND_INTERFACE(CCmdSwitchAccountSuccess)

    zet::Uuid m_Id1;
    int m_Value1 = 0;
    AccountGlobalData m_GlobalData;
    AccountLingYuanGouData m_LingYuanGouData;
    FGameShop m_GameShop;
    int m_Value2 = 0;
    zet::String_T<wchar_t> m_Text1;
    bool m_Flag1 = false;
};

// Answers CCmdSwitchAccount on failure. The hosts define the failure codes.
class COMMONGROUND_API CCmdSwitchAccountFail : public CCmdPlatform
{
public:
    CCmdSwitchAccountFail() : CCmdPlatform(command_id::CCmdSwitchAccountFail) {}
    COMMAND_INTERFACE(CCmdSwitchAccountFail)

    zet::String_T<wchar_t> m_Text1;
    int m_Value1 = 0;
    int m_Value2 = 0;
};

// Fetches an account. Answered by CCmdFetchAccountReply.
class COMMONGROUND_API CCmdFetchAccountRequest : public CCmdPlatform
{
public:
    CCmdFetchAccountRequest() : CCmdPlatform(command_id::CCmdFetchAccountRequest) {}
    COMMAND_INTERFACE(CCmdFetchAccountRequest)

    int m_Value1 = 0;
    zet::String_T<wchar_t> m_Text1;
};

// Answers CCmdFetchAccountRequest: the account.
class COMMONGROUND_API CCmdFetchAccountReply : public CCmdPlatform
{
public:
    CCmdFetchAccountReply() : CCmdPlatform(command_id::CCmdFetchAccountReply) {}
    COMMAND_INTERFACE(CCmdFetchAccountReply)

    zet::String_T<wchar_t> m_Text1;
    int m_Value1 = 0;
    zet::String_T<wchar_t> m_Text2;
    AccountData m_Account;
};
