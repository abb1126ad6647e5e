// The player as one counted object.
#include "playerdata/account.h"

#include <gtest/gtest.h>

#include <type_traits>

namespace
{

static_assert(!std::is_default_constructible_v<CAccount>);
static_assert(!std::is_constructible_v<CAccount, const zet::Uuid&>);
static_assert(!std::is_copy_constructible_v<CAccount>);

TEST(CAccount, TakesTheGivenIdentifier)
{
    zet::Uuid id;
    zet::uuid_create(id);
    const zet::Unknown::Handle_T<CAccount> account = CAccount::createInstance(id);
    EXPECT_TRUE(account->getObjectId() == id);
    EXPECT_EQ(1, account->getRefCount());
}

TEST(CAccount, HasAnIdentifierOfItsOwnOtherwise)
{
    const auto first = CAccount::createInstance();
    const auto second = CAccount::createInstance();
    EXPECT_FALSE(first->getObjectId() == second->getObjectId());
}

TEST(CAccount, ReturnsItsTimestamp)
{
    const auto account = CAccount::createInstance();
    const zet::Unknown& unknown = *account;
    EXPECT_STREQ(L"Wed Feb 19 16:11:25 2020", unknown.getClassTimestamp());
    EXPECT_STREQ(L"CAccount", unknown.getClassName());
}

TEST(CAccount, HoldsEveryRecordWithItsDefaults)
{
    const auto account = CAccount::createInstance();
    EXPECT_EQ(10, account->m_Account.m_Allowance[6]);
    EXPECT_EQ(79999, account->m_MatchData3.GetTotalGameScore());
    EXPECT_EQ('E', account->m_MatchData4.m_MatchGrade);
    EXPECT_EQ(0, account->m_GlobalData.m_VIPLevel);
    EXPECT_EQ(3, account->m_HomeData.m_MaxRushLife);
    EXPECT_TRUE(account->m_TravelData.m_AttractMap.empty());
    EXPECT_EQ(1200, account->m_CombatData.m_CombatRating);
    EXPECT_EQ(-2, account->m_MatchData.m_MatchValue3);
    EXPECT_EQ(1, account->m_AchievementData.m_AchieveValue2);
    EXPECT_EQ(0, account->m_LingYuanGouData.m_BuyValue1);
}

} // namespace
