#include "commands/game_payloads.h"

#include "packaging/wire/order.h"

WIRE_ORDER_DATA(CmdUnlockGameRequest)
{
    return FIELDS(r.m_Value1, r.m_Value2, r.m_Value3, r.m_Value4, r.m_Account);
}

WIRE_ORDER_DATA(CmdUnlockGameReply)
{
    return FIELDS(r.m_Text1, r.m_Value1, r.m_Value2, r.m_Value3, r.m_Value4, r.m_Account);
}

WIRE_ORDER_DATA(CmdCancelCDRequest)
{
    return FIELDS(r.m_Value1, r.m_Value2, r.m_Value3, r.m_Value4, r.m_Value5, r.m_Account);
}

WIRE_ORDER_DATA(CmdCancelCDReply)
{
    return FIELDS(r.m_Text1, r.m_Value1, r.m_Value2, r.m_Value3, r.m_Value4, r.m_Account);
}

WIRE_ORDER_DATA(CmdDropScoreNotVIPRequest)
{
    return FIELDS(r.m_Flag1) &&
           LIST(r.m_TrainingMap, wire::KeyedBy(&FGameTraining::m_GameId), wire::ElementsUntestedOnRead);
}

WIRE_ORDER_DATA(CmdDropScoreNotVIPReply)
{
    return FIELDS(r.m_Flag1) &&
           LIST(r.m_TrainingMap, wire::KeyedBy(&FGameTraining::m_GameId), wire::ElementsUntestedOnRead);
}

WIRE_ORDER_DATA(CmdUpdateTrainGameMapReply)
{
    return LIST(r.m_TrainingMap, wire::KeyedBy(&FGameTraining::m_GameId), wire::ElementsUntestedOnRead);
}

WIRE_ORDER_DATA(CmdUpdateKinectGameReply)
{
    return FIELDS(r.m_GameKinect);
}

WIRE_ORDER_DATA(CmdTrainGameScoreRankReply)
{
    return FIELDS(r.m_Float1);
}

WIRE_ORDER_DATA(MatchPlayerInfo)
{
    return SKIPPED_ON_FAILURE(r.m_Text1, r.m_Text2, r.m_Float1, r.m_Float2, r.m_Float3) &&
           LIST(r.m_ValueMap, wire::Pairs, wire::OnlyAboveZero) && NOT_SENT(r.m_Value1);
}

WIRE_ORDER_DATA(CmdMatchPlayerRequest)
{
    return FIELDS(r.m_MatchPlayerInfo);
}

WIRE_ORDER_DATA(CmdMatchPlayerReply)
{
    return LIST(r.m_MatchPlayerInfos);
}
