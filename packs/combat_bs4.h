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

struct COMMONGROUND_API CombatPack_Enroll_Request
{
    WIRE_INTERFACE_CMD

    AccountGlobalData m_GlobalData;
};

struct COMMONGROUND_API CombatPack_Enroll_Reply
{
    WIRE_INTERFACE_CMD

    zet::String_T<wchar_t> m_Msg;
    AccountGlobalData m_GlobalData;
};

struct COMMONGROUND_API CombatPack_QueryEnroll_Reply
{
    WIRE_INTERFACE_CMD

    int m_Value1 = 0;
};

struct COMMONGROUND_API CombatPack_QueryGroup_Reply
{
    WIRE_INTERFACE_CMD

    int m_Value1 = 0;
};

struct COMMONGROUND_API CombatPack_PlayerSelectGroup_Request
{
    WIRE_INTERFACE_CMD

    int m_Value1 = 0;
};

struct COMMONGROUND_API CombatPack_PlayerSelectGroup_Reply
{
    WIRE_INTERFACE_CMD

    zet::String_T<wchar_t> m_Msg;
};

struct COMMONGROUND_API CombatPack_Change_Diamond
{
    WIRE_INTERFACE_CMD

    int m_Value1 = 0;
    AccountGlobalData m_GlobalData;
};

// The same form as Match4ShopGood.
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

// Read appends to the goods of the object.
struct COMMONGROUND_API CombatPack_TicketGoodConfig_Reply
{
    WIRE_INTERFACE_CMD

    zet::String_T<wchar_t> m_Msg;
    std::vector<CombatShopGood> m_Goods1;
    std::vector<CombatShopGood> m_Goods2;
};

// The orders are letters.
struct COMMONGROUND_API CombatPack_OrderRecord_Reply final
{
    WIRE_INTERFACE_CMD_VIRTUAL

    zet::String_T<wchar_t> m_Msg;
    std::vector<CLetter> m_Orders;
};

// -1 from a sender without a season.
struct COMMONGROUND_API BS4Pack_GameSeason_Reply
{
    WIRE_INTERFACE_CMD

    int m_Value1 = -1;
};

struct COMMONGROUND_API BS4Pack_SelectGroup_Reply
{
    WIRE_INTERFACE_CMD

    zet::String_T<wchar_t> m_Msg;
    AccountBS4Data m_BS4Data;
};

struct COMMONGROUND_API BS4Pack_GoldenTime_Reply
{
    WIRE_INTERFACE_CMD

    int m_Value1 = 0;
};

struct COMMONGROUND_API BS4Pack_GoldenTimeEnd_Notify
{
    WIRE_INTERFACE_CMD

    zet::String_T<wchar_t> m_Msg;
};

struct COMMONGROUND_API BS4Pack_LastStand_Reply
{
    WIRE_INTERFACE_CMD

    int m_Value1 = 0;
};

struct COMMONGROUND_API BS4Pack_LastStandEnd_Notify
{
    WIRE_INTERFACE_CMD

    int m_Value1 = 0;
};

// -1 from a sender without a match.
struct COMMONGROUND_API BS4Pack_MatchEnd_Notify
{
    WIRE_INTERFACE_CMD

    int m_Value1 = -1;
    int m_Value2 = 0;
};
