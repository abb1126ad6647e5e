// Start and end of a session: the login variants, the replies that deliver the account, logout.
// Client and platform server agree on the content of the texts and numbers.
#pragma once

#include "dispatch/command_process.h"
#include "dispatch/ids/login.h"
#include "packaging/command_head.h"
#include "playerdata/account_core.h"
#include "playerdata/account_global.h"
#include "playerdata/account_other.h"
#include "playerdata/shop.h"

// Client to platform server: a login, and the base of most of its variants. Answered by CCmdLoginSuccess or, on
// failure, CCmdLoginFail.
class COMMONGROUND_API CCmdBaseLogin : public CCmdPlatform
{
public:
    static constexpr int kTexts = 5;

    CCmdBaseLogin() : CCmdPlatform(command_id::CCmdBaseLogin) {}
    COMMAND_INTERFACE(CCmdBaseLogin)

    zet::String_T<wchar_t> m_Texts[kTexts];

protected:
    explicit CCmdBaseLogin(unsigned short id) : CCmdPlatform(id) {}
};

// Client to platform server: a login with the form of CCmdBaseLogin. Answered by CCmdLoginSuccess or, on failure,
// CCmdLoginFail.
class COMMONGROUND_API CCmdGuestLogin : public CCmdBaseLogin
{
public:
    explicit CCmdGuestLogin(unsigned short id = command_id::CCmdGuestLogin) : CCmdBaseLogin(id) {}
    COMMAND_INTERFACE(CCmdGuestLogin)
};

// Client to platform server: a login with the form of CCmdBaseLogin. Answered by CCmdLoginSuccess or, on failure,
// CCmdLoginFail.
class COMMONGROUND_API CCmdMacLogin : public CCmdBaseLogin
{
public:
    explicit CCmdMacLogin(unsigned short id = command_id::CCmdMacLogin) : CCmdBaseLogin(id) {}
    COMMAND_INTERFACE(CCmdMacLogin)
};

// Client to platform server: a login, CCmdBaseLogin plus two texts. Answered by CCmdLoginSuccess or, on failure,
// CCmdLoginFail.
class COMMONGROUND_API CCmdMobileLogin : public CCmdBaseLogin
{
public:
    explicit CCmdMobileLogin(unsigned short id = command_id::CCmdMobileLogin) : CCmdBaseLogin(id) {}
    COMMAND_INTERFACE(CCmdMobileLogin)

    zet::String_T<wchar_t> m_Text1;
    zet::String_T<wchar_t> m_Text2;
};

// Client to platform server: a login with an account of an external service, CCmdBaseLogin plus a text and a number.
// Answered by CCmdLoginSuccess or, on failure, CCmdLoginFail.
class COMMONGROUND_API CCmdThirdAccountLogin : public CCmdBaseLogin
{
public:
    explicit CCmdThirdAccountLogin(unsigned short id = command_id::CCmdThirdAccountLogin) : CCmdBaseLogin(id) {}
    COMMAND_INTERFACE(CCmdThirdAccountLogin)

    zet::String_T<wchar_t> m_Text1;
    int m_Value1 = 0;
};

// Client to platform server: a login, CCmdBaseLogin plus two texts. Answered by CCmdLoginSuccess or, on failure,
// CCmdLoginFail.
class COMMONGROUND_API CCmdWechatdAccountLogin : public CCmdBaseLogin
{
public:
    explicit CCmdWechatdAccountLogin(unsigned short id = command_id::CCmdWechatdAccountLogin) : CCmdBaseLogin(id) {}
    COMMAND_INTERFACE(CCmdWechatdAccountLogin)

    zet::String_T<wchar_t> m_Text1;
    zet::String_T<wchar_t> m_Text2;
};

// Client to platform server: a login with five texts of its own, not derived from CCmdBaseLogin. Answered by
// CCmdLoginSuccess or, on failure, CCmdLoginFail.
class COMMONGROUND_API CCmdLogin : public CCmdPlatform
{
public:
    CCmdLogin() : CCmdPlatform(command_id::CCmdLogin) {}
    COMMAND_INTERFACE(CCmdLogin)

    zet::String_T<wchar_t> m_Text1;
    zet::String_T<wchar_t> m_Text2;
    zet::String_T<wchar_t> m_Text3;
    zet::String_T<wchar_t> m_Text4;
    zet::String_T<wchar_t> m_Text5;
};

// Answers CCmdLogin, CCmdBaseLogin and each class derived from it: the whole account at once. All answers to a login
// deliver the records in this order.
class COMMONGROUND_API CCmdLoginSuccess : public CCmdPlatform
{
public:
    CCmdLoginSuccess() : CCmdPlatform(command_id::CCmdLoginSuccess) {}
    COMMAND_INTERFACE(CCmdLoginSuccess)

    zet::Uuid m_Id1;
    AccountGlobalData m_GlobalData;
    AccountLingYuanGouData m_LingYuanGouData;
    AccountData m_Account;
    FGameShop m_GameShop;
    int m_Value1 = 0;
    bool m_Flag1 = false;
    int m_Value2 = 0;
};

// Answers CCmdLogin, CCmdBaseLogin and each class derived from it: the login failed. The text and the two numbers say
// why.
class COMMONGROUND_API CCmdLoginFail : public CCmdPlatform
{
public:
    CCmdLoginFail() : CCmdPlatform(command_id::CCmdLoginFail) {}
    COMMAND_INTERFACE(CCmdLoginFail)

    // The reason.
    zet::String_T<wchar_t> m_Text1;
    int m_Value1 = 0;
    int m_Value2 = 0;
};

// Client to platform server: starts the second form of login, which goes on with CCmdLoginCheck. Answered by
// CCmdHpwdLoginSuccess or, on failure, CCmdHpwdLoginCancel.
class COMMONGROUND_API CCmdLoginHPWD : public CCmdPlatform
{
public:
    CCmdLoginHPWD() : CCmdPlatform(command_id::CCmdLoginHPWD) {}
    COMMAND_INTERFACE(CCmdLoginHPWD)

    zet::String_T<wchar_t> m_Text1;
    unsigned long m_Value1 = 0;
};

// Client to platform server: continues the login that CCmdLoginHPWD started. Answered by CCmdHpwdLoginSuccess or, on
// failure, CCmdHpwdLoginCancel.
class COMMONGROUND_API CCmdLoginCheck : public CCmdPlatform
{
public:
    CCmdLoginCheck() : CCmdPlatform(command_id::CCmdLoginCheck) {}
    COMMAND_INTERFACE(CCmdLoginCheck)

    zet::String_T<wchar_t> m_Text1;
    unsigned long m_Value1 = 0;
};

// Answers CCmdLoginHPWD and CCmdLoginCheck: the fields of CCmdLoginSuccess plus three texts.
class COMMONGROUND_API CCmdHpwdLoginSuccess : public CCmdPlatform
{
public:
    CCmdHpwdLoginSuccess() : CCmdPlatform(command_id::CCmdHpwdLoginSuccess) {}
    COMMAND_INTERFACE(CCmdHpwdLoginSuccess)

    zet::Uuid m_Id1;
    AccountGlobalData m_GlobalData;
    AccountLingYuanGouData m_LingYuanGouData;
    AccountData m_Account;
    FGameShop m_GameShop;
    int m_Value1 = 0;
    bool m_Flag1 = false;
    int m_Value2 = 0;
    zet::String_T<wchar_t> m_Text1;
    zet::String_T<wchar_t> m_Text2;
    zet::String_T<wchar_t> m_Text3;
};

// Answers CCmdLoginHPWD and CCmdLoginCheck: the second form of login ended without success.
class COMMONGROUND_API CCmdHpwdLoginCancel : public CCmdPlatform
{
public:
    CCmdHpwdLoginCancel() : CCmdPlatform(command_id::CCmdHpwdLoginCancel) {}
    COMMAND_INTERFACE(CCmdHpwdLoginCancel)

    zet::String_T<wchar_t> m_Text1;
};

// Client to platform server: ends the session and returns the account's last records, in the order of CCmdLoginSuccess.
class COMMONGROUND_API CCmdLogout : public CCmdPlatform
{
public:
    explicit CCmdLogout(unsigned short id = command_id::CCmdLogout) : CCmdPlatform(id) {}
    COMMAND_INTERFACE(CCmdLogout)

    int m_Value1 = 0;
    zet::String_T<wchar_t> m_Text1;
    zet::String_T<wchar_t> m_Text2;
    zet::String_T<wchar_t> m_Text3;
    AccountGlobalData m_GlobalData;
    AccountLingYuanGouData m_LingYuanGouData;
    AccountData m_Account;
};

// Platform server to client: the session has ended. It has no reply.
class COMMONGROUND_API CCmdAccountKickOut : public CCmdPlatform
{
public:
    explicit CCmdAccountKickOut(unsigned short id = command_id::CCmdAccountKickOut) : CCmdPlatform(id) {}
    COMMAND_INTERFACE(CCmdAccountKickOut)
};

// Asks for the state of the login during a session. Answered by CCmdLoginStateReply.
class COMMONGROUND_API CCmdLoginStateRequest : public CCmdPlatform
{
public:
    CCmdLoginStateRequest() : CCmdPlatform(command_id::CCmdLoginStateRequest) {}
    COMMAND_INTERFACE(CCmdLoginStateRequest)
};

// Answers CCmdLoginStateRequest: the state of the login.
class COMMONGROUND_API CCmdLoginStateReply : public CCmdPlatform
{
public:
    CCmdLoginStateReply() : CCmdPlatform(command_id::CCmdLoginStateReply) {}
    COMMAND_INTERFACE(CCmdLoginStateReply)

    int m_Value1 = 0;
};
