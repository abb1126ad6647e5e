// The combat season and the BS4 season of the match feature. They are sent in the match envelopes, a notice as a reply.
// Their rank tables are in playerdata/combat_rank.h.
#pragma once

#include "framework/export.h"
#include "framework/string.h"
#include "packaging/wire_interface.h"
#include "playerdata/account_core.h"
#include "playerdata/account_global.h"
#include "playerdata/account_other.h"
#include "playerdata/letter.h"

#include <vector>

// Request in CCmdMatchPackRequest: enrolls for the combat season. Answered by CombatPack_Enroll_Reply.
struct COMMONGROUND_API CombatPack_Enroll_Request
{
    WIRE_INTERFACE_CMD

    AccountGlobalData m_GlobalData;
};

// Reply in CCmdMatchPackReply to CombatPack_Enroll_Request: the global record.
struct COMMONGROUND_API CombatPack_Enroll_Reply
{
    WIRE_INTERFACE_CMD

    zet::String_T<wchar_t> m_Msg;
    AccountGlobalData m_GlobalData;
};

// Reply in CCmdMatchPackReply: a number. It has no request message of its own.
struct COMMONGROUND_API CombatPack_QueryEnroll_Reply
{
    WIRE_INTERFACE_CMD

    int m_Value1 = 0;
};

// Reply in CCmdMatchPackReply: a number. It has no request message of its own.
struct COMMONGROUND_API CombatPack_QueryGroup_Reply
{
    WIRE_INTERFACE_CMD

    int m_Value1 = 0;
};

// Request in CCmdMatchPackRequest: picks a group. Answered by CombatPack_PlayerSelectGroup_Reply.
struct COMMONGROUND_API CombatPack_PlayerSelectGroup_Request
{
    WIRE_INTERFACE_CMD

    int m_Value1 = 0;
};

// Reply in CCmdMatchPackReply to CombatPack_PlayerSelectGroup_Request: a result text.
struct COMMONGROUND_API CombatPack_PlayerSelectGroup_Reply
{
    WIRE_INTERFACE_CMD

    zet::String_T<wchar_t> m_Msg;
};

// In CCmdMatchPackRequest and CCmdMatchPackReply, either way: a number and the global record.
struct COMMONGROUND_API CombatPack_Change_Diamond
{
    WIRE_INTERFACE_CMD

    int m_Value1 = 0;
    AccountGlobalData m_GlobalData;
};

// One good of the combat shop, with the form of Match4ShopGood. The hosts define its values.
struct COMMONGROUND_API CombatShopGood
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

// Request in CCmdMatchPackRequest: buys a good of the combat shop. Answered by CombatPack_BuyShopGood_Reply.
struct COMMONGROUND_API CombatPack_BuyShopGood_Request
{
    WIRE_INTERFACE_CMD

    int m_Value1 = 0;
    int m_Value2 = 0;
    bool m_Flag1 = false;
    zet::String_T<wchar_t> m_Text1;
    CombatShopGood m_Good;
    AccountData m_Account;
    AccountGlobalData m_GlobalData;
};

// Reply in CCmdMatchPackReply to CombatPack_BuyShopGood_Request: the good and the records.
struct COMMONGROUND_API CombatPack_BuyShopGood_Reply
{
    WIRE_INTERFACE_CMD

    zet::String_T<wchar_t> m_Msg;
    bool m_Flag1 = false;
    CombatShopGood m_Good;
    AccountCombatData m_CombatData;
    AccountData m_Account;
    int m_Value1 = 0;
    AccountGlobalData m_GlobalData;
};

// Reply in CCmdMatchPackReply: the goods of the combat shop. It has no request message of its own. Read appends to the
// goods of the object.
struct COMMONGROUND_API CombatPack_TicketGoodConfig_Reply
{
    WIRE_INTERFACE_CMD

    zet::String_T<wchar_t> m_Msg;
    std::vector<CombatShopGood> m_Goods1;
    std::vector<CombatShopGood> m_Goods2;
};

// Reply in CCmdMatchPackReply: the orders, as letters. It has no request message of its own. Read clears the list,
// which does not affect the result.
struct COMMONGROUND_API CombatPack_OrderRecord_Reply final
{
    WIRE_INTERFACE_CMD_VIRTUAL

    zet::String_T<wchar_t> m_Msg;
    std::vector<CLetter> m_Orders;
};

// Reply in CCmdMatchPackReply: the season of the game. It has no request message of its own.
struct COMMONGROUND_API BS4Pack_GameSeason_Reply
{
    WIRE_INTERFACE_CMD

    // -1 from a sender without a season.
    int m_Value1 = -1;
};

// Reply in CCmdMatchPackReply: a group is selected. It has no request message of its own.
struct COMMONGROUND_API BS4Pack_SelectGroup_Reply
{
    WIRE_INTERFACE_CMD

    zet::String_T<wchar_t> m_Msg;
    AccountBS4Data m_BS4Data;
};

// Reply in CCmdMatchPackReply: about the golden time, a timed phase. It has no request message of its own.
struct COMMONGROUND_API BS4Pack_GoldenTime_Reply
{
    WIRE_INTERFACE_CMD

    int m_Value1 = 0;
};

// Notice in CCmdMatchPackReply: the golden time has ended.
struct COMMONGROUND_API BS4Pack_GoldenTimeEnd_Notify
{
    WIRE_INTERFACE_CMD

    zet::String_T<wchar_t> m_Msg;
};

// Reply in CCmdMatchPackReply: about the last stand, a timed phase. It has no request message of its own.
struct COMMONGROUND_API BS4Pack_LastStand_Reply
{
    WIRE_INTERFACE_CMD

    int m_Value1 = 0;
};

// Notice in CCmdMatchPackReply: the last stand has ended.
struct COMMONGROUND_API BS4Pack_LastStandEnd_Notify
{
    WIRE_INTERFACE_CMD

    int m_Value1 = 0;
};

// Notice in CCmdMatchPackReply: the match has ended.
struct COMMONGROUND_API BS4Pack_MatchEnd_Notify
{
    WIRE_INTERFACE_CMD

    // -1 from a sender without a match.
    int m_Value1 = -1;
    int m_Value2 = 0;
};
