// Payloads of CCmdVoidDataRequest and CCmdVoidDataReply about currencies, items, the shop and prizes.
// Hosts define the numbers that distinguish the payloads.
#pragma once

#include "framework/export.h"
#include "framework/string.h"
#include "packaging/wire_interface.h"
#include "playerdata/account_core.h"
#include "playerdata/account_global.h"
#include "playerdata/shop.h"

#include <vector>

struct COMMONGROUND_API CmdShopListRequest
{
    WIRE_INTERFACE_DATA

    int m_Value1 = 0;
};

struct COMMONGROUND_API CmdShopListReply
{
    WIRE_INTERFACE_DATA

    zet::String_T<wchar_t> m_Text1;
    FGameShop m_GameShop;
};

// One purchase of CmdLingyuangouBuyListReply.
struct COMMONGROUND_API LingyuangouBuyEntry
{
    WIRE_INTERFACE_DATA

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
    WIRE_INTERFACE_DATA

    zet::String_T<wchar_t> m_Text1;
};

struct COMMONGROUND_API CmdLingyuangouBuyListReply
{
    WIRE_INTERFACE_DATA

    zet::String_T<wchar_t> m_Text1;
    std::vector<LingyuangouBuyEntry> m_Entries;
};

struct COMMONGROUND_API CmdBuyItemRequest
{
    WIRE_INTERFACE_DATA

    int m_Value1 = 0;
    int m_Value2 = 0;
};

struct COMMONGROUND_API CmdBuyItemReply
{
    WIRE_INTERFACE_DATA

    zet::String_T<wchar_t> m_Text1;
    int m_Value1 = 0;
    int m_Value2 = 0;
    AccountData m_Account;
};

struct COMMONGROUND_API CmdUseItemRequest
{
    WIRE_INTERFACE_DATA

    int m_Value1 = 0;
    int m_Value2 = 0;
    AccountData m_Account;
    AccountGlobalData m_GlobalData;
};

struct COMMONGROUND_API CmdUseItemReply
{
    WIRE_INTERFACE_DATA

    zet::String_T<wchar_t> m_Text1;
    int m_Value1 = 0;
    int m_Value2 = 0;
    AccountData m_Account;
    AccountGlobalData m_GlobalData;
};

struct COMMONGROUND_API CmdUseGiftRequest
{
    WIRE_INTERFACE_DATA

    int m_Value1 = 0;
};

struct COMMONGROUND_API CmdUseGiftReply
{
    WIRE_INTERFACE_DATA

    zet::String_T<wchar_t> m_Text1;
    AccountData m_Account;
};

struct COMMONGROUND_API CmdExchangeGoldRequest final
{
    WIRE_INTERFACE_DATA_VIRTUAL

    int m_Value1 = 0;
    int m_Value2 = -1;
    int m_Value3 = 0;
    int m_Value4 = 0;
    AccountData m_Account;
};

struct COMMONGROUND_API CmdExchangeGoldReply final
{
    WIRE_INTERFACE_DATA_VIRTUAL

    zet::String_T<wchar_t> m_Text1;
    int m_Value1 = 0;
    int m_Value2 = 0;
    AccountData m_Account;
};

struct COMMONGROUND_API CmdUpdateGoldRequest
{
    WIRE_INTERFACE_DATA

    int m_Value1 = 0;
};

struct COMMONGROUND_API CmdUpdateGoldReply
{
    WIRE_INTERFACE_DATA

    int m_Value1 = 0;
};

struct COMMONGROUND_API CmdUpdateDiamondRequest
{
    WIRE_INTERFACE_DATA

    int m_Value1 = 0;
    int m_Value2 = 0;
};

struct COMMONGROUND_API CmdUpdateDiamondReply
{
    WIRE_INTERFACE_DATA

    int m_Value1 = 0;
    int m_Value2 = 0;
    zet::String_T<wchar_t> m_Text1;
};

struct COMMONGROUND_API CmdActivityRequest
{
    WIRE_INTERFACE_DATA

    int m_Value1 = 0;
    int m_Value2 = 0;
};

struct COMMONGROUND_API CmdActivityReply
{
    WIRE_INTERFACE_DATA

    int m_Value1 = 0;
    int m_Value2 = 0;
    AccountData m_Account;
    zet::String_T<wchar_t> m_Text1;
};

struct COMMONGROUND_API CmdBigTableRequest
{
    WIRE_INTERFACE_DATA

    int m_Value1 = 0;
    int m_Value2 = 0;
    AccountData m_Account;
    zet::String_T<wchar_t> m_Text1;
};

struct COMMONGROUND_API CmdBigTableReply
{
    WIRE_INTERFACE_DATA

    int m_Value1 = 0;
    int m_Value2 = 0;
    zet::String_T<wchar_t> m_Text1;
    int m_Value3 = 0;
    AccountData m_Account;
    zet::String_T<wchar_t> m_Text2;
};

struct COMMONGROUND_API CmdTurnTableRewardRequest
{
    WIRE_INTERFACE_DATA

    zet::String_T<wchar_t> m_Text1;
    int m_Value1 = 0;
    int m_Value2 = 0;
};

struct COMMONGROUND_API CmdTurnTableRewardReply
{
    WIRE_INTERFACE_DATA

    zet::String_T<wchar_t> m_Text1;
    int m_Value1 = 0;
    int m_Value2 = 0;
    AccountData m_Account;
    zet::String_T<wchar_t> m_Text2;
    int m_Value3 = 0;
};
