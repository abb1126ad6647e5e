// Playing in a match: the brain game, tools, another try, and the list of the players.
#pragma once

#include "framework/export.h"
#include "framework/string.h"
#include "packaging/wire_interface.h"
#include "playerdata/account_core.h"
#include "playerdata/match_data.h"
#include "playerdata/rank_sort.h"

#include <vector>

// Request in CCmdMatchPackRequest: chooses a brain game. Answered by MatchPack_SelectBrainGame_Reply.
struct COMMONGROUND_API MatchPack_SelectBrainGame_Request
{
    WIRE_INTERFACE_CMD

    int m_Value1 = 0;
};

// Reply in CCmdMatchPackReply to MatchPack_SelectBrainGame_Request.
struct COMMONGROUND_API MatchPack_SelectBrainGame_Reply
{
    WIRE_INTERFACE_CMD

    int m_Value1 = 0;
    int m_Value2 = 0;
    int m_Value3 = 0;
    int m_Value4 = 0;
    int m_Value5 = 0;
    zet::String_T<wchar_t> m_Text1;
    zet::String_T<wchar_t> m_Text2;
};

// Request in CCmdMatchPackRequest: starts a brain game. Answered by MatchPack_StartBrainGame_Reply. The free plays are
// g_BrainFreeTimes_VIP_0 and g_BrainFreeTimes_VIP_1.
struct COMMONGROUND_API MatchPack_StartBrainGame_Request
{
    WIRE_INTERFACE_CMD

    int m_Value1 = 0;
    int m_Value2 = 0;
};

// Reply in CCmdMatchPackReply to MatchPack_StartBrainGame_Request.
struct COMMONGROUND_API MatchPack_StartBrainGame_Reply
{
    WIRE_INTERFACE_CMD

    int m_Value1 = 0;
    int m_Value2 = 0;
    zet::String_T<wchar_t> m_Msg;
};

// Request in CCmdMatchPackRequest: buys a tool. Answered by MatchPack_BuyTool_Reply.
struct COMMONGROUND_API MatchPack_BuyTool_Request
{
    WIRE_INTERFACE_CMD

    int m_Value1 = 0;
    int m_Value2 = 0;
    AccountData m_Account;
    AccountMatchData3 m_MatchData3;
};

// Reply in CCmdMatchPackReply to MatchPack_BuyTool_Request: the changed records.
struct COMMONGROUND_API MatchPack_BuyTool_Reply
{
    WIRE_INTERFACE_CMD

    int m_Value1 = 0;
    AccountMatchData3 m_MatchData3;
    AccountData m_Account;
    int m_Value2 = 0;
    zet::String_T<wchar_t> m_Msg;
};

// Request in CCmdMatchPackRequest: tries a game again. Answered by MatchPack_TryAgainGame_Reply.
struct COMMONGROUND_API MatchPack_TryAgainGame_Request
{
    WIRE_INTERFACE_CMD

    int m_Value1 = 0;
    int m_Value2 = 0;
};

// Reply in CCmdMatchPackReply to MatchPack_TryAgainGame_Request: the account.
struct COMMONGROUND_API MatchPack_TryAgainGame_Reply
{
    WIRE_INTERFACE_CMD

    int m_Value1 = 0;
    int m_Value2 = 0;
    AccountData m_Account;
    zet::String_T<wchar_t> m_Msg;
};

// Request in CCmdMatchPackRequest: asks for the list of the match's players. Answered by MatchPack_PlayerList_Reply.
struct COMMONGROUND_API MatchPack_PlayerList_Request
{
    WIRE_INTERFACE_CMD

    int m_Value1 = 0;
    int m_Value2 = 0;
};

// Reply in CCmdMatchPackReply to MatchPack_PlayerList_Request: one row apart, then the list.
struct COMMONGROUND_API MatchPack_PlayerList_Reply
{
    WIRE_INTERFACE_CMD

    int m_Value1 = 0;
    int m_Value2 = 0;
    int m_Value3 = 0;
    zet::String_T<wchar_t> m_Msg;
    int m_Value4 = 0;
    int m_Value5 = 0;
    GameMatchSortInfo m_SelfSort;
    std::vector<GameMatchSortInfo> m_SortList;
};
