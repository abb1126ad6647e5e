// Payloads of CCmdVoidDataRequest and CCmdVoidDataReply about the account itself: its data, its character, its owner.
// Hosts define the numbers that distinguish the payloads.
#pragma once

#include "framework/platform/export.h"
#include "framework/string.h"
#include "playerdata/account_core.h"
#include "playerdata/account_global.h"

class CDataPackager;
namespace wire
{
struct Schema;
}

struct COMMONGROUND_API CmdCreateCharactorRequest
{
    bool Write(CDataPackager* pk) const;
    bool Read(CDataPackager* pk);
    static const wire::Schema& Wire();

    zet::String_T<wchar_t> m_Text1;
    int m_Value1 = 0;
    zet::String_T<wchar_t> m_Text2;
};

struct COMMONGROUND_API CmdCreateCharactorReply
{
    bool Write(CDataPackager* pk) const;
    bool Read(CDataPackager* pk);
    static const wire::Schema& Wire();

    zet::String_T<wchar_t> m_Text1;
    int m_Value1 = 0;
    int m_Value2 = 0;
    zet::String_T<wchar_t> m_Text2;
    zet::String_T<wchar_t> m_Text3;
};

struct COMMONGROUND_API CmdRandomNickRequest
{
    bool Write(CDataPackager* pk) const;
    bool Read(CDataPackager* pk);
    static const wire::Schema& Wire();

    bool m_Flag1 = false;
};

struct COMMONGROUND_API CmdRandomNickReply
{
    bool Write(CDataPackager* pk) const;
    bool Read(CDataPackager* pk);
    static const wire::Schema& Wire();

    zet::String_T<wchar_t> m_Text1;
    zet::String_T<wchar_t> m_Text2;
};

struct COMMONGROUND_API CmdGetUserDataReply
{
    bool Write(CDataPackager* pk) const;
    bool Read(CDataPackager* pk);
    static const wire::Schema& Wire();

    zet::String_T<wchar_t> m_Text1;
    AccountData m_Account;
    AccountGlobalData m_GlobalData;
};

struct COMMONGROUND_API CmdGetV5UserDataRequest final
{
    virtual bool Write(CDataPackager* pk) const;
    virtual bool Read(CDataPackager* pk);
    static const wire::Schema& Wire();

    int m_Value1 = 0;
};

struct COMMONGROUND_API CmdGetV5UserDataReply final
{
    virtual bool Write(CDataPackager* pk) const;
    virtual bool Read(CDataPackager* pk);
    static const wire::Schema& Wire();

    AccountData m_Account;
};

// Requests the address; has no bytes.
struct COMMONGROUND_API CmdUserAddressRequest
{
    bool Write(CDataPackager* pk) const;
    bool Read(CDataPackager* pk);
    static const wire::Schema& Wire();
};

struct COMMONGROUND_API CmdUserAddressReply
{
    bool Write(CDataPackager* pk) const;
    bool Read(CDataPackager* pk);
    static const wire::Schema& Wire();

    zet::String_T<wchar_t> m_Text1;
    zet::String_T<wchar_t> m_Text2;
    zet::String_T<wchar_t> m_Text3;
    zet::String_T<wchar_t> m_Text4;
};

struct COMMONGROUND_API CmdCommitPhoneRequest
{
    bool Write(CDataPackager* pk) const;
    bool Read(CDataPackager* pk);
    static const wire::Schema& Wire();

    zet::String_T<wchar_t> m_Text1;
};

struct COMMONGROUND_API CmdCommitQuestionnaireRequest final
{
    virtual bool Write(CDataPackager* pk) const;
    virtual bool Read(CDataPackager* pk);
    static const wire::Schema& Wire();

    int m_Value1 = 0;
    int m_Value2 = 0;
    int m_Value3 = 0;
};

struct COMMONGROUND_API CmdCommitQuestionnaireReply final
{
    virtual bool Write(CDataPackager* pk) const;
    virtual bool Read(CDataPackager* pk);
    static const wire::Schema& Wire();

    int m_Value1 = 0;
    zet::String_T<wchar_t> m_Text1;
};

struct COMMONGROUND_API CmdServerDateRequest
{
    bool Write(CDataPackager* pk) const;
    bool Read(CDataPackager* pk);
    static const wire::Schema& Wire();

    int m_Value1 = 0;
};

struct COMMONGROUND_API CmdServerDateReply
{
    bool Write(CDataPackager* pk) const;
    bool Read(CDataPackager* pk);
    static const wire::Schema& Wire();

    // The server's date.
    zet::String_T<wchar_t> m_Text1;
};
