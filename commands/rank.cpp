#include "commands/rank.h"

#include "packaging/wire/order.h"

WIRE_COMMAND(CCmdRequestSortAccount)
{
    return HEAD(CCmdPlatform) && FIELDS(r.m_Value1, r.m_Value2, r.m_Value3, r.m_SortInfo);
}

WIRE_COMMAND(CCmdReplySortAccount)
{
    return HEAD(CCmdPlatform) &&
           FIELDS(r.m_Value1, r.m_Value2, r.m_Value3, r.m_Value4, r.m_Value5, r.m_Float1, r.m_Text1, r.m_SortInfo) &&
           LIST(r.m_SortInfos, wire::ElementsUntestedOnRead);
}

WIRE_COMMAND(CCmdRequestSortBrain)
{
    return HEAD(CCmdPlatform) &&
           FIELDS(r.m_Value1, r.m_Value2, r.m_Value3, r.m_Value4, r.m_Text1, r.m_GameBrainSortInfo);
}

WIRE_COMMAND(CCmdReplySortBrain)
{
    return HEAD(CCmdPlatform) &&
           FIELDS(r.m_Value1, r.m_Value2, r.m_Value3, r.m_Value4, r.m_Value5, r.m_Value6, r.m_GameBrainSortInfo,
                  r.m_Text1) &&
           LIST(r.m_GameBrainSortInfos, wire::ElementsUntestedOnRead);
}

WIRE_COMMAND(CCmdRequestSortCalorie)
{
    return HEAD(CCmdPlatform) &&
           FIELDS(r.m_Value1, r.m_Value2, r.m_Value3, r.m_Value4, r.m_Text1, r.m_GameCalorieSortInfo);
}

WIRE_COMMAND(CCmdReplySortCalorie)
{
    return HEAD(CCmdPlatform) &&
           FIELDS(r.m_Value1, r.m_Value2, r.m_Value3, r.m_Value4, r.m_Value5, r.m_Value6, r.m_GameCalorieSortInfo,
                  r.m_Text1) &&
           LIST(r.m_GameCalorieSortInfos, wire::ElementsUntestedOnRead);
}

WIRE_COMMAND(CCmdRequestSortMusic)
{
    return HEAD(CCmdPlatform) &&
           FIELDS(r.m_Value1, r.m_Value2, r.m_Value3, r.m_Value4, r.m_Text1, r.m_GameMusicSortInfo);
}

WIRE_COMMAND(CCmdReplySortMusic)
{
    return HEAD(CCmdPlatform) &&
           FIELDS(r.m_Value1, r.m_Value2, r.m_Value3, r.m_Value4, r.m_Value5, r.m_Value6, r.m_GameMusicSortInfo,
                  r.m_Text1) &&
           LIST(r.m_GameMusicSortInfos, wire::ElementsUntestedOnRead);
}

WIRE_COMMAND(CCmdRequestSortKinect)
{
    return HEAD(CCmdPlatform) && FIELDS(r.m_Value1, r.m_Value2, r.m_Value3, r.m_Text1, r.m_GameKinectSortInfo);
}

WIRE_COMMAND(CCmdReplySortKinect)
{
    return HEAD(CCmdPlatform) &&
           FIELDS(r.m_Value1, r.m_Value2, r.m_Value3, r.m_Value4, r.m_Value5, r.m_GameKinectSortInfo, r.m_Text1) &&
           LIST(r.m_GameKinectSortInfos, wire::ElementsUntestedOnRead);
}

WIRE_COMMAND(CCmdRequestSortTupoCalorie)
{
    return HEAD(CCmdPlatform) && FIELDS(r.m_Value1, r.m_Value2, r.m_Value3, r.m_GameCalorieSortInfo);
}

WIRE_COMMAND(CCmdReplySortTupoCalorie)
{
    return HEAD(CCmdPlatform) &&
           FIELDS(r.m_Value1, r.m_Value2, r.m_Value3, r.m_Value4, r.m_Value5, r.m_GameCalorieSortInfo, r.m_Text1) &&
           LIST(r.m_GameCalorieSortInfos, wire::ElementsUntestedOnRead);
}

WIRE_COMMAND(CCmdRequestSortRush)
{
    return HEAD(CCmdPlatform) && FIELDS(r.m_Value1, r.m_Value2, r.m_Value3, r.m_GameRushSortInfo);
}

WIRE_COMMAND(CCmdReplySortRush)
{
    return HEAD(CCmdPlatform) &&
           FIELDS(r.m_Value1, r.m_Value2, r.m_Value3, r.m_Value4, r.m_Value5, r.m_Float1, r.m_GameRushSortInfo,
                  r.m_Text1) &&
           COUNT_OF(r.m_GameRushSortInfos) && FIELDS(r.m_Values) &&
           ELEMENTS_OF(r.m_GameRushSortInfos, wire::ElementsUntestedOnRead);
}
