// The days left of a VIP state that ends more than 2^31 days ahead became negative. They now stay at the maximum of the
// field.
#include "playerdata/account_core.h"
#include "playerdata/account_global.h"

#include <gtest/gtest.h>

#include <limits>

namespace
{

int daysUntil(const wchar_t* date)
{
    AccountGlobalData global;
    AccountData account;
    global.m_VIPLevel = 3;
    global.m_VIPExpireTime = date;
    global.CheckVIP(account);
    EXPECT_EQ(global.m_VIPLevel, 3);
    return global.m_VIPDaysLeft;
}

TEST(Bugs, AFarVIPDateLeavesTheMostDaysThatThereAre)
{
    EXPECT_EQ(daysUntil(L"9000000-1-1 00:00:00"), std::numeric_limits<int>::max());
    EXPECT_EQ(daysUntil(L"20000000-1-1 00:00:00"), std::numeric_limits<int>::max());
    EXPECT_GT(daysUntil(L"5000000-1-1 00:00:00"), 1800000000);
}

} // namespace
