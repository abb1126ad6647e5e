// The members that Reset restores in the smaller account records.
#include "playerdata/account_other.h"

#include <gtest/gtest.h>

namespace
{

TEST(AccountAchievementData, ResetBringsTheDefaultsBack)
{
    AccountAchievementData data;
    data.m_AchieveValue0 = 1;
    data.m_AchieveValue1 = 1;
    data.m_AchieveValue2 = 9;
    data.m_AchieveValue5 = 1;
    data.m_AchieveValue6 = 1;
    data.m_AchieveValue10 = 1;
    data.m_AchieveFlag0 = true;
    data.m_AchieveFlag5 = true;
    data.m_AchieveText0 = L"text";
    data.m_AchieveText2 = L"text";
    data.Reset();
    EXPECT_EQ(-1, data.m_AchieveValue0);
    EXPECT_EQ(0, data.m_AchieveValue1);
    EXPECT_EQ(1, data.m_AchieveValue2);
    EXPECT_EQ(-1, data.m_AchieveValue5);
    EXPECT_EQ(-1, data.m_AchieveValue6);
    EXPECT_EQ(-1, data.m_AchieveValue10);
    EXPECT_FALSE(data.m_AchieveFlag0);
    EXPECT_FALSE(data.m_AchieveFlag5);
    EXPECT_TRUE(data.m_AchieveText0.isEmpty());
    EXPECT_TRUE(data.m_AchieveText2.isEmpty());
}

TEST(AccountBehaviourData, ResetBringsTheDefaultsBack)
{
    AccountBehaviourData data;
    data.m_BehaviourValue0 = 1;
    data.m_BehaviourValue3 = 1;
    data.m_BehaviourValue4 = 1;
    data.m_BehaviourValue5 = 1;
    data.m_BehaviourFlag = true;
    data.Reset();
    EXPECT_EQ(-1, data.m_BehaviourValue0);
    EXPECT_EQ(-1, data.m_BehaviourValue3);
    EXPECT_EQ(0, data.m_BehaviourValue4);
    EXPECT_EQ(0, data.m_BehaviourValue5);
    EXPECT_FALSE(data.m_BehaviourFlag);
}

TEST(AccountLingYuanGouData, ResetEmptiesEverything)
{
    AccountLingYuanGouData data;
    data.m_BuyText0 = L"text";
    data.m_BuyText5 = L"text";
    data.m_BuyValue0 = 1;
    data.m_BuyValue1 = 1;
    data.Reset();
    EXPECT_TRUE(data.m_BuyText0.isEmpty());
    EXPECT_TRUE(data.m_BuyText5.isEmpty());
    EXPECT_EQ(0, data.m_BuyValue0);
    EXPECT_EQ(0, data.m_BuyValue1);
}

} // namespace
