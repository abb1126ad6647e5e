// The end of a bill, the balance of a currency, exchange codes and cards.
// CCmdBillSuccess and CCmdCurrencyReply deliver the changed records, so that the client replaces its own at once;
// CCmdTrovCardReply delivers them in the other order.
#pragma once

#include "dispatch/command_process.h"
#include "dispatch/ids/billing.h"
#include "packaging/command_head.h"
#include "playerdata/account_core.h"
#include "playerdata/account_global.h"
#include "playerdata/shop.h"

// Client to platform server: asks for the balance of a currency. Answered by CCmdCurrencyReply.
class COMMONGROUND_API CCmdCurrencyQuery : public CCmdPlatform
{
public:
    CCmdCurrencyQuery() : CCmdPlatform(command_id::CCmdCurrencyQuery) {}
    COMMAND_INTERFACE(CCmdCurrencyQuery)

    int m_Value1 = 0;
};

// Answers CCmdCurrencyQuery: the records after the change, with which the client replaces its own at once.
class COMMONGROUND_API CCmdCurrencyReply : public CCmdPlatform
{
public:
    CCmdCurrencyReply() : CCmdPlatform(command_id::CCmdCurrencyReply) {}
    COMMAND_INTERFACE(CCmdCurrencyReply)

    int m_Value1 = 0;
    // Whether the query succeeded: true unless its sender sets otherwise.
    bool m_Flag1 = true;
    zet::String_T<wchar_t> m_Text1;
    AccountGlobalData m_GlobalData;
    AccountData m_Account;
};

// Adds currency. It has no request.
class COMMONGROUND_API CCmdCurrencyAdd : public CCmdPlatform
{
public:
    CCmdCurrencyAdd() : CCmdPlatform(command_id::CCmdCurrencyAdd) {}
    COMMAND_INTERFACE(CCmdCurrencyAdd)

    int m_Value1 = 0;
    int m_Value2 = 0;
};

// Platform server to client: a bill succeeded, with the records after the change, with which the client replaces its
// own at once. Follows CCmdBillReusltNotify. It has no request.
class COMMONGROUND_API CCmdBillSuccess : public CCmdPlatform
{
public:
    CCmdBillSuccess() : CCmdPlatform(command_id::CCmdBillSuccess) {}
    COMMAND_INTERFACE(CCmdBillSuccess)

    zet::String_T<wchar_t> m_Text1;
    zet::String_T<wchar_t> m_Text2;
    zet::String_T<wchar_t> m_Text3;
    int m_Value1 = 0;
    zet::String_T<wchar_t> m_Text4;
    zet::String_T<wchar_t> m_Text5;
    zet::String_T<wchar_t> m_Text6;
    zet::String_T<wchar_t> m_Text7;
    zet::String_T<wchar_t> m_Text8;
    AccountGlobalData m_GlobalData;
    AccountData m_Account;
    // The trade that was made.
    FGameTrade m_GameTrade;
};

// Platform server to client: a bill failed. Follows CCmdBillReusltNotify. It has no request.
class COMMONGROUND_API CCmdBillFail : public CCmdPlatform
{
public:
    CCmdBillFail() : CCmdPlatform(command_id::CCmdBillFail) {}
    COMMAND_INTERFACE(CCmdBillFail)

    int m_Value1 = 0;
    int m_Value2 = 0;
    zet::String_T<wchar_t> m_Text1;
    zet::String_T<wchar_t> m_Text2;
    zet::String_T<wchar_t> m_Text3;
};

// From the platform server: announces the result of a bill, before CCmdBillSuccess or CCmdBillFail. It has no request.
class COMMONGROUND_API CCmdBillReusltNotify : public CCmdPlatform
{
public:
    CCmdBillReusltNotify() : CCmdPlatform(command_id::CCmdBillReusltNotify) {}
    COMMAND_INTERFACE(CCmdBillReusltNotify)

    zet::String_T<wchar_t> m_Text1;
    zet::String_T<wchar_t> m_Text2;
    zet::String_T<wchar_t> m_Text3;
    zet::String_T<wchar_t> m_Text4;
    zet::String_T<wchar_t> m_Text5;
    int m_Value1 = 0;
};

// Client to platform server: uses an exchange code. Answered by CCmdBillExchangeCodeReply.
class COMMONGROUND_API CCmdBillExchangeCodeRequest : public CCmdPlatform
{
public:
    CCmdBillExchangeCodeRequest() : CCmdPlatform(command_id::CCmdBillExchangeCodeRequest) {}
    COMMAND_INTERFACE(CCmdBillExchangeCodeRequest)

    zet::String_T<wchar_t> m_Text1;
    int m_Value1 = 0;
    int m_Value2 = 0;
    zet::String_T<wchar_t> m_Text2;
    int m_Value3 = 0;
    zet::String_T<wchar_t> m_Text3;
    zet::String_T<wchar_t> m_Text4;
    zet::String_T<wchar_t> m_Text5;
    zet::String_T<wchar_t> m_Text6;
    zet::String_T<wchar_t> m_Text7;
};

// Answers CCmdBillExchangeCodeRequest: its ten fields again, and one text more.
class COMMONGROUND_API CCmdBillExchangeCodeReply : public CCmdPlatform
{
public:
    CCmdBillExchangeCodeReply() : CCmdPlatform(command_id::CCmdBillExchangeCodeReply) {}
    COMMAND_INTERFACE(CCmdBillExchangeCodeReply)

    zet::String_T<wchar_t> m_Text1;
    int m_Value1 = 0;
    int m_Value2 = 0;
    zet::String_T<wchar_t> m_Text2;
    int m_Value3 = 0;
    zet::String_T<wchar_t> m_Text3;
    zet::String_T<wchar_t> m_Text4;
    zet::String_T<wchar_t> m_Text5;
    zet::String_T<wchar_t> m_Text6;
    zet::String_T<wchar_t> m_Text7;
    // The text that the request lacks.
    zet::String_T<wchar_t> m_Text8;
};

// Client to platform server. Answered by CCmdTrovCardReply.
class COMMONGROUND_API CCmdTrovCardRequest : public CCmdPlatform
{
public:
    CCmdTrovCardRequest() : CCmdPlatform(command_id::CCmdTrovCardRequest) {}
    COMMAND_INTERFACE(CCmdTrovCardRequest)

    zet::String_T<wchar_t> m_Text1;
    zet::String_T<wchar_t> m_Text2;
    zet::String_T<wchar_t> m_Text3;
    int m_Value1 = 0;
    AccountData m_Account;
};

// Answers CCmdTrovCardRequest. Delivers AccountData first, unlike the other answers of this file.
class COMMONGROUND_API CCmdTrovCardReply : public CCmdPlatform
{
public:
    CCmdTrovCardReply() : CCmdPlatform(command_id::CCmdTrovCardReply) {}
    COMMAND_INTERFACE(CCmdTrovCardReply)

    zet::String_T<wchar_t> m_Text1;
    zet::String_T<wchar_t> m_Text2;
    zet::String_T<wchar_t> m_Text3;
    zet::String_T<wchar_t> m_Text4;
    zet::String_T<wchar_t> m_Text5;
    int m_Value1 = 0;
    int m_Value2 = 0;
    int m_Value3 = 0;
    AccountData m_Account;
    AccountGlobalData m_GlobalData;
};
