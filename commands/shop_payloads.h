// Payloads of CCmdVoidDataRequest and CCmdVoidDataReply about currencies, items, the shop and prizes.
// Hosts define the numbers that distinguish the payloads.
#pragma once

#include "framework/platform/export.h"
#include "framework/string.h"
#include "playerdata/account_core.h"
#include "playerdata/account_global.h"
#include "playerdata/shop.h"

#include <vector>

class CDataPackager;
namespace wire
{
struct Schema;
}

struct COMMONGROUND_API CmdShopListRequest
{
    bool Write(CDataPackager* pk) const;
    bool Read(CDataPackager* pk);
    static const wire::Schema& Wire();

    int m_Value1 = 0;
};

struct COMMONGROUND_API CmdShopListReply
{
    bool Write(CDataPackager* pk) const;
    bool Read(CDataPackager* pk);
    static const wire::Schema& Wire();

    zet::String_T<wchar_t> m_Text1;
    FGameShop m_GameShop;
};

// One purchase of CmdLingyuangouBuyListReply.
struct COMMONGROUND_API LingyuangouBuyEntry
{
    bool Write(CDataPackager* pk) const;
    bool Read(CDataPackager* pk);
    static const wire::Schema& Wire();

    zet::String_T<wchar_t> m_Text1;
    zet::String_T<wchar_t> m_Text2;
    zet::String_T<wchar_t> m_Text3;
    zet::String_T<wchar_t> m_Text4;
    zet::String_T<wchar_t> m_Text5;
    zet::String_T<wchar_t> m_Text6;
    int m_Value1 = 0;
    zet::String_T<wchar_t> m_Text7;
};

struct COMMONGROUND_API CmdLingyuangouBuyListRequest
{
    bool Write(CDataPackager* pk) const;
    bool Read(CDataPackager* pk);
    static const wire::Schema& Wire();

    zet::String_T<wchar_t> m_Text1;
};

struct COMMONGROUND_API CmdLingyuangouBuyListReply
{
    bool Write(CDataPackager* pk) const;
    bool Read(CDataPackager* pk);
    static const wire::Schema& Wire();

    zet::String_T<wchar_t> m_Text1;
    std::vector<LingyuangouBuyEntry> m_Entries;
};

struct COMMONGROUND_API CmdBuyItemRequest
{
    bool Write(CDataPackager* pk) const;
    bool Read(CDataPackager* pk);
    static const wire::Schema& Wire();

    int m_Value1 = 0;
    int m_Value2 = 0;
};

struct COMMONGROUND_API CmdBuyItemReply
{
    bool Write(CDataPackager* pk) const;
    bool Read(CDataPackager* pk);
    static const wire::Schema& Wire();

    zet::String_T<wchar_t> m_Text1;
    int m_Value1 = 0;
    int m_Value2 = 0;
    AccountData m_Account;
};

struct COMMONGROUND_API CmdUseItemRequest
{
    bool Write(CDataPackager* pk) const;
    bool Read(CDataPackager* pk);
    static const wire::Schema& Wire();

    int m_Value1 = 0;
    int m_Value2 = 0;
    AccountData m_Account;
    AccountGlobalData m_GlobalData;
};

struct COMMONGROUND_API CmdUseItemReply
{
    bool Write(CDataPackager* pk) const;
    bool Read(CDataPackager* pk);
    static const wire::Schema& Wire();

    zet::String_T<wchar_t> m_Text1;
    int m_Value1 = 0;
    int m_Value2 = 0;
    AccountData m_Account;
    AccountGlobalData m_GlobalData;
};

struct COMMONGROUND_API CmdUseGiftRequest
{
    bool Write(CDataPackager* pk) const;
    bool Read(CDataPackager* pk);
    static const wire::Schema& Wire();

    int m_Value1 = 0;
};

struct COMMONGROUND_API CmdUseGiftReply
{
    bool Write(CDataPackager* pk) const;
    bool Read(CDataPackager* pk);
    static const wire::Schema& Wire();

    zet::String_T<wchar_t> m_Text1;
    AccountData m_Account;
};

struct COMMONGROUND_API CmdExchangeGoldRequest final
{
    virtual bool Write(CDataPackager* pk) const;
    virtual bool Read(CDataPackager* pk);
    static const wire::Schema& Wire();

    int m_Value1 = 0;
    int m_Value2 = -1;
    int m_Value3 = 0;
    int m_Value4 = 0;
    AccountData m_Account;
};

struct COMMONGROUND_API CmdExchangeGoldReply final
{
    virtual bool Write(CDataPackager* pk) const;
    virtual bool Read(CDataPackager* pk);
    static const wire::Schema& Wire();

    zet::String_T<wchar_t> m_Text1;
    int m_Value1 = 0;
    int m_Value2 = 0;
    AccountData m_Account;
};

struct COMMONGROUND_API CmdUpdateGoldRequest
{
    bool Write(CDataPackager* pk) const;
    bool Read(CDataPackager* pk);
    static const wire::Schema& Wire();

    int m_Value1 = 0;
};

struct COMMONGROUND_API CmdUpdateGoldReply
{
    bool Write(CDataPackager* pk) const;
    bool Read(CDataPackager* pk);
    static const wire::Schema& Wire();

    int m_Value1 = 0;
};

struct COMMONGROUND_API CmdUpdateDiamondRequest
{
    bool Write(CDataPackager* pk) const;
    bool Read(CDataPackager* pk);
    static const wire::Schema& Wire();

    int m_Value1 = 0;
    int m_Value2 = 0;
};

struct COMMONGROUND_API CmdUpdateDiamondReply
{
    bool Write(CDataPackager* pk) const;
    bool Read(CDataPackager* pk);
    static const wire::Schema& Wire();

    int m_Value1 = 0;
    int m_Value2 = 0;
    zet::String_T<wchar_t> m_Text1;
};

struct COMMONGROUND_API CmdActivityRequest
{
    bool Write(CDataPackager* pk) const;
    bool Read(CDataPackager* pk);
    static const wire::Schema& Wire();

    int m_Value1 = 0;
    int m_Value2 = 0;
};

struct COMMONGROUND_API CmdActivityReply
{
    bool Write(CDataPackager* pk) const;
    bool Read(CDataPackager* pk);
    static const wire::Schema& Wire();

    int m_Value1 = 0;
    int m_Value2 = 0;
    AccountData m_Account;
    zet::String_T<wchar_t> m_Text1;
};

struct COMMONGROUND_API CmdBigTableRequest
{
    bool Write(CDataPackager* pk) const;
    bool Read(CDataPackager* pk);
    static const wire::Schema& Wire();

    int m_Value1 = 0;
    int m_Value2 = 0;
    AccountData m_Account;
    zet::String_T<wchar_t> m_Text1;
};

struct COMMONGROUND_API CmdBigTableReply
{
    bool Write(CDataPackager* pk) const;
    bool Read(CDataPackager* pk);
    static const wire::Schema& Wire();

    int m_Value1 = 0;
    int m_Value2 = 0;
    zet::String_T<wchar_t> m_Text1;
    int m_Value3 = 0;
    AccountData m_Account;
    zet::String_T<wchar_t> m_Text2;
};

struct COMMONGROUND_API CmdTurnTableRewardRequest
{
    bool Write(CDataPackager* pk) const;
    bool Read(CDataPackager* pk);
    static const wire::Schema& Wire();

    zet::String_T<wchar_t> m_Text1;
    int m_Value1 = 0;
    int m_Value2 = 0;
};

struct COMMONGROUND_API CmdTurnTableRewardReply
{
    bool Write(CDataPackager* pk) const;
    bool Read(CDataPackager* pk);
    static const wire::Schema& Wire();

    zet::String_T<wchar_t> m_Text1;
    int m_Value1 = 0;
    int m_Value2 = 0;
    AccountData m_Account;
    zet::String_T<wchar_t> m_Text2;
    int m_Value3 = 0;
};
