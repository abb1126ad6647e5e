#include "playerdata/rank_sort.h"

#include "framework/time.h"
#include "packaging/wire/order.h"

#include <utility>

namespace
{

// Whole seconds from the time of b to the time of a.
template <class Row>
long long secondsBetween(const Row& a, const Row& b)
{
    zet::Time first;
    zet::Time second;
    first.convertFromString(a.m_SortTime);
    second.convertFromString(b.m_SortTime);
    return first - second;
}

template <class Row>
void exchangeRows(Row& a, Row& b)
{
    std::swap(a, b);
    std::swap(a.m_Rank, b.m_Rank);
}

} // namespace

WIRE_ORDER_BOTH(AccountSortInfo)
{
    return FIELDS(r.m_AccountName, r.m_SortId, r.m_Rank, r.m_SortKey0, r.m_SortKey1, r.m_SortKey2, r.m_NickName,
                  r.m_SortValue, r.m_SortTime);
}

void AccountSortInfo::Exchange(AccountSortInfo& a, AccountSortInfo& b)
{
    exchangeRows(a, b);
}

WIRE_ORDER_BOTH(GameKinectSortInfo)
{
    return FIELDS(r.m_Rank, r.m_SortKey, r.m_SortValue0, r.m_AccountName, r.m_NickName, r.m_SortValue1, r.m_SortId,
                  r.m_SortTime, r.m_SortText);
}

void GameKinectSortInfo::Exchange(GameKinectSortInfo& a, GameKinectSortInfo& b)
{
    exchangeRows(a, b);
}

WIRE_ORDER_BOTH(GameMatchSortInfo)
{
    return FIELDS(r.m_Rank, r.m_SortKey, r.m_SortValue0, r.m_AccountName, r.m_NickName, r.m_SortText, r.m_SortTime,
                  r.m_SortValue1, r.m_SortId, r.m_SortValue2, r.m_SortValue3, r.m_SortValue4);
}

void GameMatchSortInfo::Exchange(GameMatchSortInfo& a, GameMatchSortInfo& b)
{
    exchangeRows(a, b);
}

WIRE_ORDER_BOTH(GameBrainSortInfo)
{
    return FIELDS(r.m_Rank, r.m_SortId, r.m_SortKey, r.m_AccountName, r.m_NickName, r.m_SortText);
}

void GameBrainSortInfo::Exchange(GameBrainSortInfo& a, GameBrainSortInfo& b)
{
    exchangeRows(a, b);
}

WIRE_ORDER_BOTH(GameCalorieSortInfo)
{
    return FIELDS(r.m_Rank, r.m_SortId, r.m_SortKey, r.m_AccountName, r.m_NickName);
}

void GameCalorieSortInfo::Exchange(GameCalorieSortInfo& a, GameCalorieSortInfo& b)
{
    exchangeRows(a, b);
}

WIRE_ORDER_BOTH(GameMusicSortInfo)
{
    return FIELDS(r.m_Rank, r.m_SortId, r.m_SortKey, r.m_AccountName, r.m_NickName);
}

void GameMusicSortInfo::Exchange(GameMusicSortInfo& a, GameMusicSortInfo& b)
{
    exchangeRows(a, b);
}

WIRE_ORDER_BOTH(GameRushSortInfo)
{
    return FIELDS(r.m_Rank, r.m_SortId, r.m_SortKey, r.m_SortValue, r.m_AccountName, r.m_NickName, r.m_SortText);
}

void GameRushSortInfo::Exchange(GameRushSortInfo& a, GameRushSortInfo& b)
{
    exchangeRows(a, b);
}

bool AccountSortInfo::operator>(const AccountSortInfo& other) const
{
    if (m_SortKey0 != other.m_SortKey0)
        return m_SortKey0 > other.m_SortKey0;
    if (m_SortKey1 != other.m_SortKey1)
        return m_SortKey1 > other.m_SortKey1;
    if (m_SortKey2 != other.m_SortKey2)
        return m_SortKey2 > other.m_SortKey2;
    return secondsBetween(*this, other) < 0;
}

bool GameKinectSortInfo::operator>(const GameKinectSortInfo& other) const
{
    if (m_SortKey != other.m_SortKey)
        return m_SortKey > other.m_SortKey;
    return secondsBetween(*this, other) < 0;
}

bool GameMatchSortInfo::operator<(const GameMatchSortInfo& other) const
{
    if (m_SortKey != other.m_SortKey)
        return m_SortKey > other.m_SortKey;
    return secondsBetween(*this, other) > 0;
}

bool GameMatchSortInfo::operator>(const GameMatchSortInfo& other) const
{
    if (m_SortKey != other.m_SortKey)
        return m_SortKey < other.m_SortKey;
    return secondsBetween(*this, other) < 0;
}
