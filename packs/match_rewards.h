// Parts of a match other than its games: schedules, gifts, awards, bets, praise and the lottery of the final.
#pragma once

#include "framework/export.h"
#include "framework/string.h"
#include "packaging/wire_interface.h"
#include "playerdata/account_core.h"
#include "playerdata/match_data.h"

#include <utility>
#include <vector>

// Request in CCmdMatchPackRequest: reports a finished schedule, with a list of texts. Answered by
// MatchPack_FinishSchedule_Reply. Read never fails.
struct COMMONGROUND_API MatchPack_FinishSchedule_Request
{
    WIRE_INTERFACE_CMD

    int m_Value1 = 0;
    std::vector<zet::String_T<wchar_t>> m_Names;
};

// Reply in CCmdMatchPackReply to MatchPack_FinishSchedule_Request.
struct COMMONGROUND_API MatchPack_FinishSchedule_Reply
{
    WIRE_INTERFACE_CMD

    int m_Value1 = 0;
    int m_Value2 = 0;
};

// Request in CCmdMatchPackRequest: takes a gift. Answered by MatchPack_TakeGift_Reply.
struct COMMONGROUND_API MatchPack_TakeGift_Request
{
    WIRE_INTERFACE_CMD

    int m_Value1 = 0;
};

// Reply in CCmdMatchPackReply to MatchPack_TakeGift_Request: the changed records.
struct COMMONGROUND_API MatchPack_TakeGift_Reply
{
    WIRE_INTERFACE_CMD

    int m_Value1 = 0;
    AccountMatchData3 m_MatchData3;
    AccountData m_Account;
    zet::String_T<wchar_t> m_Msg;
};

// Request in CCmdMatchPackRequest: asks for a team's awards. Answered by MatchPack_TeamAwards_Reply.
struct COMMONGROUND_API MatchPack_TeamAwards_Request
{
    WIRE_INTERFACE_CMD

    int m_Value1 = 0;
    zet::String_T<wchar_t> m_Text1;
};

// Reply in CCmdMatchPackReply to MatchPack_TeamAwards_Request: the awards in three lists of texts and one of numbers.
// Read appends to the lists of the object, and never fails.
struct COMMONGROUND_API MatchPack_TeamAwards_Reply
{
    WIRE_INTERFACE_CMD

    std::vector<zet::String_T<wchar_t>> m_List1;
    std::vector<zet::String_T<wchar_t>> m_List2;
    std::vector<zet::String_T<wchar_t>> m_List3;
    std::vector<int> m_Numbers;
};

// Request in CCmdMatchPackRequest: sets one flag. It has no reply.
struct COMMONGROUND_API MatchPack_UpdateBaodiTaskExecState_Request
{
    WIRE_INTERFACE_CMD

    // The state is on unless its sender sets otherwise.
    bool m_Flag1 = true;
};

// Request in CCmdMatchPackRequest: places a bet, with a text and a number. Answered by MatchPack_GiveBet_Reply.
struct COMMONGROUND_API MatchPack_GiveBet_Request
{
    WIRE_INTERFACE_CMD

    zet::String_T<wchar_t> m_Text1;
    int m_Value1 = 0;
};

// Reply in CCmdMatchPackReply to MatchPack_GiveBet_Request.
struct COMMONGROUND_API MatchPack_GiveBet_Reply
{
    WIRE_INTERFACE_CMD

    zet::String_T<wchar_t> m_Text1;
    AccountMatchData3 m_MatchData3;
    int m_Value1 = 0;
    zet::String_T<wchar_t> m_Text2;
};

// Request in CCmdMatchPackRequest: gives a praise, with a text. Answered by MatchPack_GivePraise_Reply.
struct COMMONGROUND_API MatchPack_GivePraise_Request
{
    WIRE_INTERFACE_CMD

    zet::String_T<wchar_t> m_Text1;
};

// Reply in CCmdMatchPackReply to MatchPack_GivePraise_Request.
struct COMMONGROUND_API MatchPack_GivePraise_Reply
{
    WIRE_INTERFACE_CMD

    int m_Value1 = 0;
    int m_Value2 = 0;
    zet::String_T<wchar_t> m_Msg;
};

// Request in CCmdMatchPackRequest: the lottery of the final. Answered by MatchPack_FinalLottery_Reply.
struct COMMONGROUND_API MatchPack_FinalLottery_Request
{
    WIRE_INTERFACE_CMD

    int m_Value1 = 0;
    int m_Value2 = 0;
    int m_Value3 = 0;
    AccountData m_Account;
};

// Reply in CCmdMatchPackReply to MatchPack_FinalLottery_Request: the lottery, with a list of numbers. Read clears the
// list, which does not affect the result.
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

// Request in CCmdMatchPackRequest: asks for the information about the final; has no bytes. Answered by
// MatchPack_FinalMatchInfo_Reply.
struct COMMONGROUND_API MatchPack_FinalMatchInfo_Request
{
    WIRE_INTERFACE_CMD
};

// Reply in CCmdMatchPackReply to MatchPack_FinalMatchInfo_Request: that information, most of it in pairs.
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

// Request in CCmdMatchPackRequest: a lottery request. Answered by MatchPackType_LotteryReset.
struct COMMONGROUND_API MatchPack_LotteryReset_Request
{
    WIRE_INTERFACE_CMD

    int m_Value1 = 0;
};

// Request in CCmdMatchPackRequest: a lottery request; has no bytes. Answered by MatchPackType_LotteryRevealer.
struct COMMONGROUND_API MatchPack_LotteryRevealer_Request
{
    WIRE_INTERFACE_CMD
};
