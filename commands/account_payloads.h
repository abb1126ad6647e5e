// Payloads of CCmdVoidDataRequest and CCmdVoidDataReply about the account itself: its data, its character, its owner.
// Hosts define the numbers that distinguish the payloads.
#pragma once

#include "framework/export.h"
#include "framework/string.h"
#include "packaging/wire_interface.h"
#include "playerdata/account_core.h"
#include "playerdata/account_global.h"

struct COMMONGROUND_API CmdCreateCharactorRequest
{
    WIRE_INTERFACE_DATA

    zet::String_T<wchar_t> m_Text1;
    int m_Value1 = 0;
    zet::String_T<wchar_t> m_Text2;
};

struct COMMONGROUND_API CmdCreateCharactorReply
{
    WIRE_INTERFACE_DATA

    zet::String_T<wchar_t> m_Text1;
    int m_Value1 = 0;
    int m_Value2 = 0;
    zet::String_T<wchar_t> m_Text2;
    zet::String_T<wchar_t> m_Text3;
};

struct COMMONGROUND_API CmdRandomNickRequest
{
    WIRE_INTERFACE_DATA

    bool m_Flag1 = false;
};

struct COMMONGROUND_API CmdRandomNickReply
{
    WIRE_INTERFACE_DATA

    zet::String_T<wchar_t> m_Text1;
    zet::String_T<wchar_t> m_Text2;
};

struct COMMONGROUND_API CmdGetUserDataReply
{
    WIRE_INTERFACE_DATA

    zet::String_T<wchar_t> m_Text1;
    AccountData m_Account;
    AccountGlobalData m_GlobalData;
};

struct COMMONGROUND_API CmdGetV5UserDataRequest final
{
    WIRE_INTERFACE_DATA_VIRTUAL

    int m_Value1 = 0;
};

struct COMMONGROUND_API CmdGetV5UserDataReply final
{
    WIRE_INTERFACE_DATA_VIRTUAL

    AccountData m_Account;
};

// Requests the address; has no bytes.
struct COMMONGROUND_API CmdUserAddressRequest
{
    WIRE_INTERFACE_DATA
};

struct COMMONGROUND_API CmdUserAddressReply
{
    WIRE_INTERFACE_DATA

    zet::String_T<wchar_t> m_Text1;
    zet::String_T<wchar_t> m_Text2;
    zet::String_T<wchar_t> m_Text3;
    zet::String_T<wchar_t> m_Text4;
};

struct COMMONGROUND_API CmdCommitPhoneRequest
{
    WIRE_INTERFACE_DATA

    zet::String_T<wchar_t> m_Text1;
};

struct COMMONGROUND_API CmdCommitQuestionnaireRequest final
{
    WIRE_INTERFACE_DATA_VIRTUAL

    int m_Value1 = 0;
    int m_Value2 = 0;
    int m_Value3 = 0;
};

struct COMMONGROUND_API CmdCommitQuestionnaireReply final
{
    WIRE_INTERFACE_DATA_VIRTUAL

    int m_Value1 = 0;
    zet::String_T<wchar_t> m_Text1;
};

struct COMMONGROUND_API CmdServerDateRequest
{
    WIRE_INTERFACE_DATA

    int m_Value1 = 0;
};

struct COMMONGROUND_API CmdServerDateReply
{
    WIRE_INTERFACE_DATA

    // The server's date.
    zet::String_T<wchar_t> m_Text1;
};
