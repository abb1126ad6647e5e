#include "packs/match_rewards.h"

#include "packaging/wire/order.h"

WIRE_ORDER_CMD(MatchPack_FinishSchedule_Request)
{
    return SKIPPED_ON_FAILURE(r.m_Value1) && LIST(r.m_Names, wire::Untested);
}

WIRE_ORDER_CMD(MatchPack_FinishSchedule_Reply)
{
    return FIELDS(r.m_Value1, r.m_Value2);
}

WIRE_ORDER_CMD(MatchPack_TakeGift_Request)
{
    return FIELDS(r.m_Value1);
}

WIRE_ORDER_CMD(MatchPack_TakeGift_Reply)
{
    return FIELDS(r.m_Value1, r.m_MatchData3, r.m_Account, r.m_Msg);
}

WIRE_ORDER_CMD(MatchPack_TeamAwards_Request)
{
    return FIELDS(r.m_Value1, r.m_Text1);
}

WIRE_ORDER_CMD(MatchPack_TeamAwards_Reply)
{
    return LIST(r.m_List1, wire::Appends, wire::Untested) && LIST(r.m_List2, wire::Appends, wire::Untested) &&
           LIST(r.m_List3, wire::Appends, wire::Untested) && LIST(r.m_Numbers, wire::Appends, wire::Untested);
}

WIRE_ORDER_CMD(MatchPack_UpdateBaodiTaskExecState_Request)
{
    return FIELDS(r.m_Flag1);
}

WIRE_ORDER_CMD(MatchPack_GiveBet_Request)
{
    return FIELDS(r.m_Text1, r.m_Value1);
}

WIRE_ORDER_CMD(MatchPack_GiveBet_Reply)
{
    return FIELDS(r.m_Text1, r.m_MatchData3, r.m_Value1, r.m_Text2);
}

WIRE_ORDER_CMD(MatchPack_GivePraise_Request)
{
    return FIELDS(r.m_Text1);
}

WIRE_ORDER_CMD(MatchPack_GivePraise_Reply)
{
    return FIELDS(r.m_Value1, r.m_Value2, r.m_Msg);
}

WIRE_ORDER_CMD(MatchPack_FinalLottery_Request)
{
    return FIELDS(r.m_Value1, r.m_Value2, r.m_Value3, r.m_Account);
}

WIRE_ORDER_CMD(MatchPack_FinalLottery_Reply)
{
    return FIELDS(r.m_Value1, r.m_Msg, r.m_Account, r.m_Value2, r.m_Value3) && LIST(r.m_Numbers, wire::Untested);
}

WIRE_ORDER_CMD(MatchPack_FinalMatchInfo_Request)
{
    return NO_FIELDS;
}

WIRE_ORDER_CMD(MatchPack_FinalMatchInfo_Reply)
{
    return FIELDS(r.m_Value1, r.m_Value2, r.m_Value3, r.m_Value4, r.m_Pair1, r.m_Pair2, r.m_MatchData3, r.m_Msg);
}

WIRE_ORDER_CMD(MatchPack_LotteryReset_Request)
{
    return FIELDS(r.m_Value1);
}

WIRE_ORDER_CMD(MatchPack_LotteryRevealer_Request)
{
    return NO_FIELDS;
}
