// Payloads of CCmdVoidDataRequest and CCmdVoidDataReply about the account itself: its data, its character, its owner.
// Hosts define the numbers that distinguish the payloads.
#pragma once

#include "framework/export.h"
#include "framework/string.h"
#include "packaging/wire_interface.h"
#include "playerdata/account_core.h"
#include "playerdata/account_global.h"

// Request in CCmdVoidDataRequest: creates a character. Answered by CmdCreateCharactorReply.
struct COMMONGROUND_API CmdCreateCharactorRequest
{
    WIRE_INTERFACE_DATA

    zet::String_T<wchar_t> m_Text1;
    int m_Value1 = 0;
    zet::String_T<wchar_t> m_Text2;
};

// Reply in CCmdVoidDataReply to CmdCreateCharactorRequest.
struct COMMONGROUND_API CmdCreateCharactorReply
{
    WIRE_INTERFACE_DATA

    zet::String_T<wchar_t> m_Text1;
    int m_Value1 = 0;
    int m_Value2 = 0;
    zet::String_T<wchar_t> m_Text2;
    zet::String_T<wchar_t> m_Text3;
};

// Request in CCmdVoidDataRequest: asks for a random nickname. Answered by CmdRandomNickReply.
struct COMMONGROUND_API CmdRandomNickRequest
{
    WIRE_INTERFACE_DATA

    bool m_Flag1 = false;
};

// Reply in CCmdVoidDataReply to CmdRandomNickRequest.
struct COMMONGROUND_API CmdRandomNickReply
{
    WIRE_INTERFACE_DATA

    zet::String_T<wchar_t> m_Text1;
    zet::String_T<wchar_t> m_Text2;
};

// Reply in CCmdVoidDataReply: the records of the user. It has no request message of its own.
struct COMMONGROUND_API CmdGetUserDataReply
{
    WIRE_INTERFACE_DATA

    zet::String_T<wchar_t> m_Text1;
    AccountData m_Account;
    AccountGlobalData m_GlobalData;
};

// Request in CCmdVoidDataRequest: asks for the account of a user. Answered by CmdGetV5UserDataReply.
struct COMMONGROUND_API CmdGetV5UserDataRequest final
{
    WIRE_INTERFACE_DATA_VIRTUAL

    int m_Value1 = 0;
};

// Reply in CCmdVoidDataReply to CmdGetV5UserDataRequest: the account.
struct COMMONGROUND_API CmdGetV5UserDataReply final
{
    WIRE_INTERFACE_DATA_VIRTUAL

    AccountData m_Account;
};

// Request in CCmdVoidDataRequest: asks for the address of the user; has no bytes. Answered by CmdUserAddressReply.
struct COMMONGROUND_API CmdUserAddressRequest
{
    WIRE_INTERFACE_DATA
};

// Reply in CCmdVoidDataReply to CmdUserAddressRequest: the address, four texts.
struct COMMONGROUND_API CmdUserAddressReply
{
    WIRE_INTERFACE_DATA

    zet::String_T<wchar_t> m_Text1;
    zet::String_T<wchar_t> m_Text2;
    zet::String_T<wchar_t> m_Text3;
    zet::String_T<wchar_t> m_Text4;
};

// Request in CCmdVoidDataRequest: commits a phone. It has no reply message of its own.
struct COMMONGROUND_API CmdCommitPhoneRequest
{
    WIRE_INTERFACE_DATA

    zet::String_T<wchar_t> m_Text1;
};

// Request in CCmdVoidDataRequest: commits a questionnaire. Answered by CmdCommitQuestionnaireReply.
struct COMMONGROUND_API CmdCommitQuestionnaireRequest final
{
    WIRE_INTERFACE_DATA_VIRTUAL

    int m_Value1 = 0;
    int m_Value2 = 0;
    int m_Value3 = 0;
};

// Reply in CCmdVoidDataReply to CmdCommitQuestionnaireRequest.
struct COMMONGROUND_API CmdCommitQuestionnaireReply final
{
    WIRE_INTERFACE_DATA_VIRTUAL

    int m_Value1 = 0;
    zet::String_T<wchar_t> m_Text1;
};

// Request in CCmdVoidDataRequest: asks for the server's date. Answered by CmdServerDateReply.
struct COMMONGROUND_API CmdServerDateRequest
{
    WIRE_INTERFACE_DATA

    int m_Value1 = 0;
};

// Reply in CCmdVoidDataReply to CmdServerDateRequest: the server's date.
struct COMMONGROUND_API CmdServerDateReply
{
    WIRE_INTERFACE_DATA

    // The server's date.
    zet::String_T<wchar_t> m_Text1;
};
