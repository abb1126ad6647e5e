// How rows of the ranking boards compare and change places.
#include "playerdata/rank_sort.h"

#include <gtest/gtest.h>

namespace
{

constexpr const wchar_t* kEarlier = L"2014-1-2 03:04:05";
constexpr const wchar_t* kLater = L"2014-1-2 03:04:06";

AccountSortInfo accountRow(int key0, int key1, int key2, const wchar_t* time = kEarlier)
{
    AccountSortInfo row;
    row.m_SortKey0 = key0;
    row.m_SortKey1 = key1;
    row.m_SortKey2 = key2;
    row.m_SortTime = time;
    return row;
}

TEST(AccountSortInfo, FirstKeyThatDiffersDecides)
{
    EXPECT_TRUE(accountRow(4, 0, 0) > accountRow(3, 9, 9));
    EXPECT_FALSE(accountRow(3, 9, 9) > accountRow(4, 0, 0));
    EXPECT_TRUE(accountRow(3, 2, 0) > accountRow(3, 1, 9));
    EXPECT_FALSE(accountRow(3, 1, 9) > accountRow(3, 2, 0));
    EXPECT_TRUE(accountRow(3, 2, 1, kLater) > accountRow(3, 2, 0, kEarlier));
    EXPECT_FALSE(accountRow(3, 2, 0, kEarlier) > accountRow(3, 2, 1, kLater));
}

TEST(AccountSortInfo, EarlierOfEqualRowsIsGreater)
{
    EXPECT_TRUE(accountRow(1, 2, 3, kEarlier) > accountRow(1, 2, 3, kLater));
    EXPECT_FALSE(accountRow(1, 2, 3, kLater) > accountRow(1, 2, 3, kEarlier));
}

TEST(AccountSortInfo, EqualRowsOfOneTimeAreNotGreater)
{
    EXPECT_FALSE(accountRow(1, 2, 3) > accountRow(1, 2, 3));
}

TEST(AccountSortInfo, InvalidTimeCountsAsTheStartOf1970)
{
    EXPECT_TRUE(accountRow(1, 2, 3, L"soon") > accountRow(1, 2, 3, kEarlier));
    EXPECT_FALSE(accountRow(1, 2, 3, L"") > accountRow(1, 2, 3, L"soon"));
}

GameKinectSortInfo kinectRow(int key, const wchar_t* time)
{
    GameKinectSortInfo row;
    row.m_SortKey = key;
    row.m_SortTime = time;
    return row;
}

TEST(GameKinectSortInfo, GreaterKeyOrEarlierTimeIsGreater)
{
    EXPECT_TRUE(kinectRow(7, kLater) > kinectRow(5, kEarlier));
    EXPECT_FALSE(kinectRow(5, kEarlier) > kinectRow(7, kLater));
    EXPECT_TRUE(kinectRow(5, kEarlier) > kinectRow(5, kLater));
    EXPECT_FALSE(kinectRow(5, kLater) > kinectRow(5, kEarlier));
    EXPECT_FALSE(kinectRow(5, kLater) > kinectRow(5, kLater));
}

GameMatchSortInfo matchRow(int key, const wchar_t* time)
{
    GameMatchSortInfo row;
    row.m_SortKey = key;
    row.m_SortTime = time;
    return row;
}

TEST(GameMatchSortInfo, GreaterKeyIsTheSmallerRow)
{
    const GameMatchSortInfo five = matchRow(5, kEarlier);
    const GameMatchSortInfo seven = matchRow(7, kEarlier);
    EXPECT_FALSE(five < seven);
    EXPECT_TRUE(seven < five);
    EXPECT_TRUE(five > seven);
    EXPECT_FALSE(seven > five);
}

TEST(GameMatchSortInfo, LaterOfEqualKeysIsTheSmallerRow)
{
    const GameMatchSortInfo later = matchRow(5, kLater);
    const GameMatchSortInfo earlier = matchRow(5, kEarlier);
    EXPECT_TRUE(later < earlier);
    EXPECT_FALSE(later > earlier);
    EXPECT_TRUE(earlier > later);
    EXPECT_FALSE(earlier < later);
}

TEST(GameMatchSortInfo, EqualKeyAndTimeAreNeitherWay)
{
    EXPECT_FALSE(matchRow(5, kLater) < matchRow(5, kLater));
    EXPECT_FALSE(matchRow(5, kLater) > matchRow(5, kLater));
}

template <class Row>
class Exchange : public testing::Test
{
};
using Rows = testing::Types<AccountSortInfo, GameKinectSortInfo, GameMatchSortInfo, GameBrainSortInfo,
                            GameCalorieSortInfo, GameMusicSortInfo, GameRushSortInfo>;
TYPED_TEST_SUITE(Exchange, Rows);

TYPED_TEST(Exchange, SwapsAllButTheRank)
{
    TypeParam a;
    a.m_Rank = 4;
    a.m_SortId = 40;
    a.m_AccountName = L"a";
    a.m_NickName = L"the longer name of a";
    TypeParam b;
    b.m_Rank = 5;
    b.m_SortId = 50;
    b.m_AccountName = L"b";
    b.m_NickName = L"nick b";

    TypeParam::Exchange(a, b);

    EXPECT_EQ(4, a.m_Rank);
    EXPECT_EQ(50, a.m_SortId);
    EXPECT_EQ(L"b", a.m_AccountName.view());
    EXPECT_EQ(L"nick b", a.m_NickName.view());
    EXPECT_EQ(5, b.m_Rank);
    EXPECT_EQ(40, b.m_SortId);
    EXPECT_EQ(L"a", b.m_AccountName.view());
    EXPECT_EQ(L"the longer name of a", b.m_NickName.view());
}

TYPED_TEST(Exchange, OfARowWithItselfChangesNothing)
{
    TypeParam a;
    a.m_Rank = 4;
    a.m_AccountName = L"a";
    TypeParam::Exchange(a, a);
    EXPECT_EQ(4, a.m_Rank);
    EXPECT_EQ(L"a", a.m_AccountName.view());
}

} // namespace
