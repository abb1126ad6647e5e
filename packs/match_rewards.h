// Parts of a match other than its games: schedules, gifts, awards, bets, praise and the lottery of the final.
#pragma once

#include "framework/export.h"
#include "framework/string.h"
#include "packaging/wire_interface.h"
#include "playerdata/account_core.h"
#include "playerdata/match_data.h"

#include <utility>
#include <vector>

// Read never fails.
struct COMMONGROUND_API MatchPack_FinishSchedule_Request
{
    WIRE_INTERFACE_CMD

    int m_Value1 = 0;
    std::vector<zet::String_T<wchar_t>> m_Names;
};

struct COMMONGROUND_API MatchPack_FinishSchedule_Reply
{
    WIRE_INTERFACE_CMD

    int m_Value1 = 0;
    int m_Value2 = 0;
};

struct COMMONGROUND_API MatchPack_TakeGift_Request
{
    WIRE_INTERFACE_CMD

    int m_Value1 = 0;
};

struct COMMONGROUND_API MatchPack_TakeGift_Reply
{
    WIRE_INTERFACE_CMD

    int m_Value1 = 0;
    AccountMatchData3 m_MatchData3;
    AccountData m_Account;
    zet::String_T<wchar_t> m_Msg;
};

struct COMMONGROUND_API MatchPack_TeamAwards_Request
{
    WIRE_INTERFACE_CMD

    int m_Value1 = 0;
    zet::String_T<wchar_t> m_Text1;
};

// Read appends to the lists of the object, and never fails.
struct COMMONGROUND_API MatchPack_TeamAwards_Reply
{
    WIRE_INTERFACE_CMD

    std::vector<zet::String_T<wchar_t>> m_List1;
    std::vector<zet::String_T<wchar_t>> m_List2;
    std::vector<zet::String_T<wchar_t>> m_List3;
    std::vector<int> m_Numbers;
};

// Has no reply.
struct COMMONGROUND_API MatchPack_UpdateBaodiTaskExecState_Request
{
    WIRE_INTERFACE_CMD

    bool m_Flag1 = true;
};

struct COMMONGROUND_API MatchPack_GiveBet_Request
{
    WIRE_INTERFACE_CMD

    zet::String_T<wchar_t> m_Text1;
    int m_Value1 = 0;
};

struct COMMONGROUND_API MatchPack_GiveBet_Reply
{
    WIRE_INTERFACE_CMD

    zet::String_T<wchar_t> m_Text1;
    AccountMatchData3 m_MatchData3;
    int m_Value1 = 0;
    zet::String_T<wchar_t> m_Text2;
};

struct COMMONGROUND_API MatchPack_GivePraise_Request
{
    WIRE_INTERFACE_CMD

    zet::String_T<wchar_t> m_Text1;
};

struct COMMONGROUND_API MatchPack_GivePraise_Reply
{
    WIRE_INTERFACE_CMD

    int m_Value1 = 0;
    int m_Value2 = 0;
    zet::String_T<wchar_t> m_Msg;
};

struct COMMONGROUND_API MatchPack_FinalLottery_Request
{
    WIRE_INTERFACE_CMD

    int m_Value1 = 0;
    int m_Value2 = 0;
    int m_Value3 = 0;
    AccountData m_Account;
};

struct COMMONGROUND_API MatchPack_FinalLottery_Reply
{
    WIRE_INTERFACE_CMD

    int m_Value1 = 0;
    zet::String_T<wchar_t> m_Msg;
    AccountData m_Account;
    int m_Value2 = 0;
    int m_Value3 = 0;
    std::vector<int> m_Numbers;
};

struct COMMONGROUND_API MatchPack_FinalMatchInfo_Request
{
    WIRE_INTERFACE_CMD
};

struct COMMONGROUND_API MatchPack_FinalMatchInfo_Reply
{
    WIRE_INTERFACE_CMD

    int m_Value1 = 0;
    int m_Value2 = 0;
    int m_Value3 = 0;
    int m_Value4 = 0;
    std::pair<zet::String_T<wchar_t>, zet::String_T<wchar_t>> m_Pair1;
    std::pair<zet::String_T<wchar_t>, zet::String_T<wchar_t>> m_Pair2;
    std::pair<AccountMatchData3, AccountMatchData3> m_MatchData3;
    zet::String_T<wchar_t> m_Msg;
};

// Answered by MatchPackType_LotteryReset.
struct COMMONGROUND_API MatchPack_LotteryReset_Request
{
    WIRE_INTERFACE_CMD

    int m_Value1 = 0;
};

// Answered by MatchPackType_LotteryRevealer.
struct COMMONGROUND_API MatchPack_LotteryRevealer_Request
{
    WIRE_INTERFACE_CMD
};
