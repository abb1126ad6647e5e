// The daily prices and the rush lives of the home feature.
#include "playerdata/home_data.h"

#include "packaging/cmd_packager.h"

#include <gtest/gtest.h>

#include <climits>

namespace
{

TEST(AccountHomeData, UnlockPriceRisesAtTheSecondAndTheSixth)
{
    AccountHomeData home;
    for (const auto& [times, price] : {std::pair(-1, 10), {0, 10}, {1, 10}, {2, 20}, {5, 20}, {6, 40}, {100, 40}})
    {
        home.m_RushUnlockTimes = times;
        EXPECT_EQ(price, home.GetHomeRushUnlockPrice()) << times;
    }
}

TEST(AccountHomeData, JumpOffPriceRisesAtTheSecondAndTheSixth)
{
    AccountHomeData home;
    for (const auto& [times, price] : {std::pair(-1, 50), {0, 50}, {1, 50}, {2, 100}, {5, 100}, {6, 200}, {100, 200}})
    {
        home.m_JumpOffTimes = times;
        EXPECT_EQ(price, home.GetHomeJumpOffCostDiamond()) << times;
    }
}

TEST(AccountHomeData, CostStopsAtNoLives)
{
    AccountHomeData home;
    home.m_RushLife = 3;
    home.CostRushLife(1);
    EXPECT_EQ(2, home.GetTotalRushLife());
    home.CostRushLife(10);
    EXPECT_EQ(0, home.GetTotalRushLife());
}

TEST(AccountHomeData, NegativeCostAddsLivesBeyondTheLimit)
{
    AccountHomeData home;
    home.m_RushLife = 3;
    home.CostRushLife(-4);
    EXPECT_EQ(7, home.m_RushLife);
    EXPECT_EQ(3, home.m_MaxRushLife);
}

TEST(AccountHomeData, LivesStayWithinAnInt)
{
    AccountHomeData home;
    home.m_RushLife = INT_MAX;
    home.CostRushLife(INT_MIN);
    EXPECT_EQ(INT_MAX, home.m_RushLife);
    home.m_RushLife = INT_MIN;
    home.CostRushLife(INT_MAX);
    EXPECT_EQ(0, home.m_RushLife);
    home.m_RushLife = INT_MAX;
    home.OnGetVIP();
    EXPECT_EQ(5, home.m_RushLife);
}

TEST(AccountHomeData, NewVIPHasFiveLivesAndAnOldOneThree)
{
    AccountHomeData home;
    home.OnGetVIP();
    EXPECT_EQ(5, home.m_RushLife);
    EXPECT_EQ(5, home.m_MaxRushLife);
    home.OnLostVIP();
    EXPECT_EQ(3, home.m_RushLife);
    EXPECT_EQ(3, home.m_MaxRushLife);
}

TEST(AccountHomeData, LivesBelowTheLimitSurviveTheLossOfVIP)
{
    AccountHomeData home;
    home.m_RushLife = 2;
    home.OnLostVIP();
    EXPECT_EQ(2, home.m_RushLife);
    home.OnGetVIP();
    EXPECT_EQ(5, home.m_RushLife);
}

AccountHomeData usedHome()
{
    AccountHomeData home;
    home.m_IsHomeValid = true;
    home.m_HomeValue0 = 1;
    home.m_DailyValue0 = 2;
    home.m_HomeValue1 = 3;
    home.m_DailyValue1 = 4;
    home.m_RushLife = 1;
    home.m_RushUnlockTimes = 6;
    home.m_JumpOffTimes = 7;
    home.m_IsJumpOff = true;
    home.m_HomeDate = L"2013-1-1 00:00:00";
    home.m_MaxRushLife = 9;
    return home;
}

TEST(AccountHomeData, DailyResetClearsWhatIsOfTheDay)
{
    AccountHomeData home = usedHome();
    home.ResetHomData(0);
    EXPECT_EQ(0, home.m_DailyValue0);
    EXPECT_EQ(0, home.m_DailyValue1);
    EXPECT_EQ(0, home.m_RushUnlockTimes);
    EXPECT_EQ(0, home.m_JumpOffTimes);
    EXPECT_EQ(3, home.m_RushLife);
    EXPECT_EQ(3, home.m_MaxRushLife);
    EXPECT_TRUE(home.m_HomeDate.isEmpty());
}

TEST(AccountHomeData, DailyResetKeepsTheRest)
{
    AccountHomeData home = usedHome();
    home.ResetHomData(0);
    EXPECT_TRUE(home.m_IsHomeValid);
    EXPECT_EQ(1, home.m_HomeValue0);
    EXPECT_EQ(3, home.m_HomeValue1);
    EXPECT_TRUE(home.GetIsJumpOff());
}

TEST(AccountHomeData, DailyResetOfAVIPGivesFiveLives)
{
    for (const int isVIP : {1, 7, -1})
    {
        AccountHomeData home = usedHome();
        home.ResetHomData(isVIP);
        EXPECT_EQ(5, home.m_RushLife);
        EXPECT_EQ(5, home.m_MaxRushLife);
    }
}

TEST(HomeData, ReadingReplacesTheMembers)
{
    HomeData home;
    home.m_MemberDatas.resize(1);
    home.m_MemberDatas[0].m_MemberId = 5;
    CCmdPackager pk;
    ASSERT_TRUE(home.Write(&pk));

    HomeData used;
    used.m_MemberDatas.resize(3);
    ASSERT_TRUE(used.Read(&pk));
    ASSERT_EQ(1u, used.m_MemberDatas.size());
    EXPECT_EQ(5, used.m_MemberDatas[0].m_MemberId);
}

TEST(HomeData, CutMemberEndsTheReadAndIsNotKept)
{
    HomeData home;
    home.m_MemberDatas.resize(2);
    CCmdPackager whole;
    ASSERT_TRUE(home.Write(&whole));
    CCmdPackager cut;
    ASSERT_TRUE(cut.Write(whole.GetBuffer(), whole.GetDataSize() - 1));

    HomeData read;
    EXPECT_FALSE(read.Read(&cut));
    EXPECT_EQ(1u, read.m_MemberDatas.size());
}

} // namespace
