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

// Request in CCmdVoidDataRequest: asks for the shop. Answered by CmdShopListReply.
struct COMMONGROUND_API CmdShopListRequest
{
    WIRE_INTERFACE_DATA

    int m_Value1 = 0;
};

// Reply in CCmdVoidDataReply to CmdShopListRequest: the shop.
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

// Request in CCmdVoidDataRequest: asks for the purchases of the zero-price campaign. Answered by
// CmdLingyuangouBuyListReply.
struct COMMONGROUND_API CmdLingyuangouBuyListRequest
{
    WIRE_INTERFACE_DATA

    zet::String_T<wchar_t> m_Text1;
};

// Reply in CCmdVoidDataReply to CmdLingyuangouBuyListRequest: the purchases.
struct COMMONGROUND_API CmdLingyuangouBuyListReply
{
    WIRE_INTERFACE_DATA

    zet::String_T<wchar_t> m_Text1;
    std::vector<LingyuangouBuyEntry> m_Entries;
};

// Request in CCmdVoidDataRequest: buys an item. Answered by CmdBuyItemReply.
struct COMMONGROUND_API CmdBuyItemRequest
{
    WIRE_INTERFACE_DATA

    int m_Value1 = 0;
    int m_Value2 = 0;
};

// Reply in CCmdVoidDataReply to CmdBuyItemRequest: the account.
struct COMMONGROUND_API CmdBuyItemReply
{
    WIRE_INTERFACE_DATA

    zet::String_T<wchar_t> m_Text1;
    int m_Value1 = 0;
    int m_Value2 = 0;
    AccountData m_Account;
};

// Request in CCmdVoidDataRequest: uses an item. Answered by CmdUseItemReply.
struct COMMONGROUND_API CmdUseItemRequest
{
    WIRE_INTERFACE_DATA

    int m_Value1 = 0;
    int m_Value2 = 0;
    AccountData m_Account;
    AccountGlobalData m_GlobalData;
};

// Reply in CCmdVoidDataReply to CmdUseItemRequest: the records.
struct COMMONGROUND_API CmdUseItemReply
{
    WIRE_INTERFACE_DATA

    zet::String_T<wchar_t> m_Text1;
    int m_Value1 = 0;
    int m_Value2 = 0;
    AccountData m_Account;
    AccountGlobalData m_GlobalData;
};

// Request in CCmdVoidDataRequest: uses a gift. Answered by CmdUseGiftReply.
struct COMMONGROUND_API CmdUseGiftRequest
{
    WIRE_INTERFACE_DATA

    int m_Value1 = 0;
};

// Reply in CCmdVoidDataReply to CmdUseGiftRequest: the account.
struct COMMONGROUND_API CmdUseGiftReply
{
    WIRE_INTERFACE_DATA

    zet::String_T<wchar_t> m_Text1;
    AccountData m_Account;
};

// Request in CCmdVoidDataRequest: exchanges gold. Answered by CmdExchangeGoldReply.
struct COMMONGROUND_API CmdExchangeGoldRequest final
{
    WIRE_INTERFACE_DATA_VIRTUAL

    int m_Value1 = 0;
    int m_Value2 = -1;
    int m_Value3 = 0;
    int m_Value4 = 0;
    AccountData m_Account;
};

// Reply in CCmdVoidDataReply to CmdExchangeGoldRequest: the account.
struct COMMONGROUND_API CmdExchangeGoldReply final
{
    WIRE_INTERFACE_DATA_VIRTUAL

    zet::String_T<wchar_t> m_Text1;
    int m_Value1 = 0;
    int m_Value2 = 0;
    AccountData m_Account;
};

// Request in CCmdVoidDataRequest: updates the gold. Answered by CmdUpdateGoldReply.
struct COMMONGROUND_API CmdUpdateGoldRequest
{
    WIRE_INTERFACE_DATA

    int m_Value1 = 0;
};

// Reply in CCmdVoidDataReply to CmdUpdateGoldRequest.
struct COMMONGROUND_API CmdUpdateGoldReply
{
    WIRE_INTERFACE_DATA

    int m_Value1 = 0;
};

// Request in CCmdVoidDataRequest: updates the diamonds. Answered by CmdUpdateDiamondReply.
struct COMMONGROUND_API CmdUpdateDiamondRequest
{
    WIRE_INTERFACE_DATA

    int m_Value1 = 0;
    int m_Value2 = 0;
};

// Reply in CCmdVoidDataReply to CmdUpdateDiamondRequest.
struct COMMONGROUND_API CmdUpdateDiamondReply
{
    WIRE_INTERFACE_DATA

    int m_Value1 = 0;
    int m_Value2 = 0;
    zet::String_T<wchar_t> m_Text1;
};

// Request in CCmdVoidDataRequest: about an activity. Answered by CmdActivityReply.
struct COMMONGROUND_API CmdActivityRequest
{
    WIRE_INTERFACE_DATA

    int m_Value1 = 0;
    int m_Value2 = 0;
};

// Reply in CCmdVoidDataReply to CmdActivityRequest: the account.
struct COMMONGROUND_API CmdActivityReply
{
    WIRE_INTERFACE_DATA

    int m_Value1 = 0;
    int m_Value2 = 0;
    AccountData m_Account;
    zet::String_T<wchar_t> m_Text1;
};

// Request in CCmdVoidDataRequest: about the big table. Answered by CmdBigTableReply.
struct COMMONGROUND_API CmdBigTableRequest
{
    WIRE_INTERFACE_DATA

    int m_Value1 = 0;
    int m_Value2 = 0;
    AccountData m_Account;
    zet::String_T<wchar_t> m_Text1;
};

// Reply in CCmdVoidDataReply to CmdBigTableRequest: the account.
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

// Request in CCmdVoidDataRequest: about a reward of the turntable. Answered by CmdTurnTableRewardReply.
struct COMMONGROUND_API CmdTurnTableRewardRequest
{
    WIRE_INTERFACE_DATA

    zet::String_T<wchar_t> m_Text1;
    int m_Value1 = 0;
    int m_Value2 = 0;
};

// Reply in CCmdVoidDataReply to CmdTurnTableRewardRequest: the account.
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
