// Records for the log database, and service operations on an account. The log and maintenance tools define the content
// of the fields.
#pragma once

#include "dispatch/command_process.h"
#include "dispatch/ids/logs.h"
#include "packaging/command_head.h"
#include "playerdata/account_core.h"
#include "playerdata/account_global.h"
#include "playerdata/match_data.h"

// To the log database: a record.
class COMMONGROUND_API CCmdAddLog : public CCmdPlatform
{
public:
    CCmdAddLog() : CCmdPlatform(command_id::CCmdAddLog) {}
    COMMAND_INTERFACE(CCmdAddLog)

    zet::String_T<wchar_t> m_Text1;
    zet::String_T<wchar_t> m_Text2;
    zet::String_T<wchar_t> m_Text3;
    int m_Value1 = 0;
    zet::String_T<wchar_t> m_Text4;
    zet::String_T<wchar_t> m_Text5;
    int m_Value2 = 0;
    int m_Value3 = 0;
    zet::String_T<wchar_t> m_Text6;
    zet::String_T<wchar_t> m_Text7;
    zet::String_T<wchar_t> m_Text8;
    zet::String_T<wchar_t> m_Text9;
    zet::String_T<wchar_t> m_Text10;
    int m_Value4 = 0;
    float m_Float1 = 0.0f;
    int m_Value5 = 0;
    int m_Value6 = 0;
    int m_Value7 = 0;
    int m_Value8 = 0;
    int m_Value9 = 0;
};

// To the log database: a record of the lobby.
class COMMONGROUND_API CCmdLogLobby : public CCmdPlatform
{
public:
    CCmdLogLobby() : CCmdPlatform(command_id::CCmdLogLobby) {}
    COMMAND_INTERFACE(CCmdLogLobby)

    zet::String_T<wchar_t> m_Text1;
    zet::String_T<wchar_t> m_Text2;
    zet::String_T<wchar_t> m_Text3;
    zet::String_T<wchar_t> m_Text4;
};

// To the log database: a record of a match.
class COMMONGROUND_API CCmdLogMatch : public CCmdPlatform
{
public:
    CCmdLogMatch() : CCmdPlatform(command_id::CCmdLogMatch) {}
    COMMAND_INTERFACE(CCmdLogMatch)

    zet::String_T<wchar_t> m_Text1;
    zet::String_T<wchar_t> m_Text2;
    zet::String_T<wchar_t> m_Text3;
    zet::String_T<wchar_t> m_Text4;
    AccountMatchData3 m_MatchData3;
};

// To the log database: a record of a payment.
class COMMONGROUND_API CCmdLogPay : public CCmdPlatform
{
public:
    CCmdLogPay() : CCmdPlatform(command_id::CCmdLogPay) {}
    COMMAND_INTERFACE(CCmdLogPay)

    zet::String_T<wchar_t> m_Text1;
    zet::String_T<wchar_t> m_Text2;
    zet::String_T<wchar_t> m_Text3;
    zet::String_T<wchar_t> m_Text4;
    zet::String_T<wchar_t> m_Text5;
    int m_Value1 = 0;
    int m_Value2 = 0;
    int m_Value3 = 0;
    zet::String_T<wchar_t> m_Text6;
    zet::String_T<wchar_t> m_Text7;
    bool m_Flag1 = false;
};

// To the log database: a record of the zero-price purchase campaign.
class COMMONGROUND_API CCmdLogLingYuanGou : public CCmdPlatform
{
public:
    CCmdLogLingYuanGou() : CCmdPlatform(command_id::CCmdLogLingYuanGou) {}
    COMMAND_INTERFACE(CCmdLogLingYuanGou)

    zet::String_T<wchar_t> m_Text1;
    zet::String_T<wchar_t> m_Text2;
    zet::String_T<wchar_t> m_Text3;
    zet::String_T<wchar_t> m_Text4;
};

// To the log database: a record of an account.
class COMMONGROUND_API CCmdLogAccount : public CCmdPlatform
{
public:
    CCmdLogAccount() : CCmdPlatform(command_id::CCmdLogAccount) {}
    COMMAND_INTERFACE(CCmdLogAccount)

    zet::String_T<wchar_t> m_Text1;
    zet::String_T<wchar_t> m_Text2;
    zet::String_T<wchar_t> m_Text3;
    zet::String_T<wchar_t> m_Text4;
    AccountGlobalData m_GlobalData;
    AccountData m_Account;
};

// A service operation on an account. Answered by CCmdMaintainReply.
class COMMONGROUND_API CCmdMaintainRequest : public CCmdPlatform
{
public:
    CCmdMaintainRequest() : CCmdPlatform(command_id::CCmdMaintainRequest) {}
    COMMAND_INTERFACE(CCmdMaintainRequest)

    int m_Value1 = 0;
    zet::String_T<wchar_t> m_Text1;
};

// Answers CCmdMaintainRequest: with the records of the account.
class COMMONGROUND_API CCmdMaintainReply : public CCmdPlatform
{
public:
    CCmdMaintainReply() : CCmdPlatform(command_id::CCmdMaintainReply) {}
    COMMAND_INTERFACE(CCmdMaintainReply)

    int m_Value1 = 0;
    zet::String_T<wchar_t> m_Text1;
    zet::String_T<wchar_t> m_Text2;
    AccountData m_Account;
    AccountMatchData3 m_MatchData3;
    AccountGlobalData m_GlobalData;
};
