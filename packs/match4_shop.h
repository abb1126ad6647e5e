// The ticket shop of the sports meet.
#pragma once

#include "framework/export.h"
#include "framework/string.h"
#include "packaging/wire_interface.h"
#include "playerdata/account_core.h"
#include "playerdata/letter.h"
#include "playerdata/match_data.h"

#include <vector>

// One good of the ticket shop. The hosts define its values.
struct COMMONGROUND_API Match4ShopGood
{
    WIRE_INTERFACE_CMD

    int m_GoodId = 0;
    zet::String_T<wchar_t> m_Text1;
    zet::String_T<wchar_t> m_Text2;
    zet::String_T<wchar_t> m_Text3;
    int m_Value1 = 0;
    int m_Value2 = -1;
    int m_Value3 = 0;
};

// Request in CCmdMatchPackRequest: buys a good of the ticket shop. Answered by Match4Pack_BuyShopGood_Reply.
struct COMMONGROUND_API Match4Pack_BuyShopGood_Request
{
    WIRE_INTERFACE_CMD

    int m_Value1 = 0;
    int m_Value2 = 0;
    bool m_Flag1 = false;
    zet::String_T<wchar_t> m_Text1;
    Match4ShopGood m_Good;
    AccountData m_Account;
};

// Reply in CCmdMatchPackReply to Match4Pack_BuyShopGood_Request: the good and the changed records.
struct COMMONGROUND_API Match4Pack_BuyShopGood_Reply
{
    WIRE_INTERFACE_CMD

    zet::String_T<wchar_t> m_Msg;
    bool m_Flag1 = false;
    Match4ShopGood m_Good;
    AccountMatchData4 m_MatchData4;
    AccountData m_Account;
    int m_Value1 = 0;
};

// Reply in CCmdMatchPackReply: the goods of the ticket shop. It has no request message of its own. Read appends to the
// goods of the object.
struct COMMONGROUND_API Match4Pack_TicketGoodConfig_Reply
{
    WIRE_INTERFACE_CMD

    zet::String_T<wchar_t> m_Msg;
    std::vector<Match4ShopGood> m_Goods1;
    std::vector<Match4ShopGood> m_Goods2;
};

// Reply in CCmdMatchPackReply: the orders, as letters. It has no request message of its own. Read clears the list,
// which does not affect the result.
struct COMMONGROUND_API Match4Pack_OrderRecord_Reply final
{
    WIRE_INTERFACE_CMD_VIRTUAL

    zet::String_T<wchar_t> m_Msg;
    std::vector<CLetter> m_Orders;
};
