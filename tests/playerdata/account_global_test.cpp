#include "playerdata/account_global.h"

#include "framework/time.h"
#include "packaging/cmd_packager.h"
#include "packaging/data_packager.h"
#include "playerdata/account_core.h"
#include "tests/support/record_helpers.h"

#include <gtest/gtest.h>

#include <limits>
#include <string>

namespace
{

using test::bytesOf;
using test::secondsOf;

constexpr const wchar_t* kNow = L"2020-5-6 12:00:00";

zet::String_T<wchar_t> dateOf(long long seconds)
{
    return zet::Time(seconds).convertToString(false);
}

// An account with one training game that was played today.
AccountData playedAccount()
{
    AccountData account;
    FGameTraining& game = account.m_TrainingMap[3];
    game.m_GameId = 3;
    game.m_PlayTimes = 2;
    game.m_CDDuration = 900;
    return account;
}

AccountGlobalData vipUntil(long long seconds, int level)
{
    AccountGlobalData global;
    global.m_VIPLevel = level;
    global.m_VIPExpireTime = dateOf(seconds);
    global.m_VIPDaysLeft = 77;
    return global;
}

std::vector<int> loadedServers(const wchar_t* text)
{
    AccountGlobalData global;
    global.ConvertLastServerListFromString(text);
    return global.m_LastServerList;
}

AccountGlobalData filledGlobal()
{
    AccountGlobalData global;
    global.m_GlobalText0 = L"0";
    global.m_GlobalText1 = L"1";
    global.m_GlobalText2 = L"2";
    global.m_GlobalText3 = L"3";
    global.m_GlobalText4 = L"4";
    global.m_GlobalText5 = L"5";
    global.m_GlobalText6 = L"6";
    global.m_GlobalText7 = L"7";
    global.m_GlobalFlag = true;
    global.m_GlobalValue0 = 1;
    global.m_GlobalValue1 = 2;
    global.m_GlobalText8 = L"8";
    global.m_GlobalValue2 = 3;
    global.m_GlobalValue3 = 4;
    global.m_VIPLevel = 5;
    global.m_VIPDaysLeft = 6;
    global.m_GlobalValue4 = 7;
    global.m_VIPExpireTime = L"2030-1-1 00:00:00";
    global.m_DiamondVIPExpireTime = L"2031-1-1 00:00:00";
    global.m_VIPNewFlag = 8;
    global.m_LastServerList = {9, 10};
    return global;
}

} // namespace

TEST(AccountGlobal, ResetLeavesOneValue)
{
    AccountGlobalData global = filledGlobal();
    global.Reset();
    EXPECT_EQ(global.m_GlobalValue1, 2);
    global.m_GlobalValue1 = 0;
    EXPECT_EQ(bytesOf(global), bytesOf(AccountGlobalData()));
}

TEST(AccountGlobal, AssignmentTakesEverything)
{
    const AccountGlobalData source = filledGlobal();
    AccountGlobalData target;
    target = source;
    EXPECT_EQ(bytesOf(target), bytesOf(source));
    const AccountGlobalData copy(source);
    EXPECT_EQ(bytesOf(copy), bytesOf(source));
}

TEST(AccountGlobal, VipWithinItsDateHasWholeDaysLeft)
{
    const zet::TestClock clock(secondsOf(kNow));
    AccountData account = playedAccount();
    const long long now = secondsOf(kNow);
    const std::pair<long long, int> expected[] = {{36 * 3600, 1}, {86400, 1},         {86399, 0},
                                                  {1, 0},         {365 * 86400, 365}, {2 * 86400 - 1, 1}};
    for (const auto& [ahead, days] : expected)
    {
        AccountGlobalData global = vipUntil(now + ahead, 3);
        global.CheckVIP(account);
        EXPECT_EQ(global.m_VIPLevel, 3) << ahead;
        EXPECT_EQ(global.m_VIPDaysLeft, days) << ahead;
    }
}

TEST(AccountGlobal, VipEndsOnTheSecondOfExpiry)
{
    const long long now = secondsOf(kNow);
    zet::TestClock clock(now);
    AccountData account = playedAccount();
    AccountGlobalData global = vipUntil(now + 1, 3);
    global.CheckVIP(account);
    EXPECT_EQ(global.m_VIPLevel, 3);
    clock.advance(1000);
    global.m_VIPNewFlag = 1;
    global.CheckVIP(account);
    EXPECT_EQ(global.m_VIPLevel, 0);
    EXPECT_EQ(global.m_VIPDaysLeft, 0);
    // The request waits for the next VIP state.
    EXPECT_EQ(global.m_VIPNewFlag, 1);
    EXPECT_EQ(account.m_TrainingMap[3].m_PlayTimes, 2);
}

TEST(AccountGlobal, WithoutALevelTheDateDoesNotHelp)
{
    const zet::TestClock clock(secondsOf(kNow));
    AccountData account = playedAccount();
    for (const int level : {0, -1, std::numeric_limits<int>::min()})
    {
        AccountGlobalData global = vipUntil(secondsOf(L"2021-5-6 12:00:00"), level);
        global.m_VIPNewFlag = 1;
        global.CheckVIP(account);
        EXPECT_EQ(global.m_VIPLevel, 0);
        EXPECT_EQ(global.m_VIPDaysLeft, 0);
        EXPECT_EQ(global.m_VIPNewFlag, 1);
    }
    EXPECT_EQ(account.m_TrainingMap[3].m_PlayTimes, 2);
}

TEST(AccountGlobal, InvalidDateLosesVip)
{
    AccountData account;
    for (const wchar_t* date : {L"", L"soon", L"2999-2-30 00:00:00"})
    {
        AccountGlobalData global;
        global.m_VIPLevel = 3;
        global.m_VIPExpireTime = date;
        global.CheckVIP(account);
        EXPECT_EQ(global.m_VIPLevel, 0);
    }
}

TEST(AccountGlobal, NewVipClearsTheTrainingGamesOnce)
{
    const zet::TestClock clock(secondsOf(kNow));
    AccountData account = playedAccount();
    AccountGlobalData global = vipUntil(secondsOf(L"2021-5-6 12:00:00"), 3);
    global.CheckVIP(account);
    EXPECT_EQ(account.m_TrainingMap[3].m_PlayTimes, 2);
    EXPECT_TRUE(account.m_TrainingMap[3].m_Locked);

    global.m_VIPNewFlag = 1;
    global.CheckVIP(account);
    EXPECT_EQ(account.m_TrainingMap[3].m_PlayTimes, 0);
    EXPECT_EQ(account.m_TrainingMap[3].m_CDDuration, 0);
    EXPECT_FALSE(account.m_TrainingMap[3].m_Locked);
    EXPECT_EQ(global.m_VIPNewFlag, 0);

    account.m_TrainingMap[3].m_PlayTimes = 4;
    global.CheckVIP(account);
    EXPECT_EQ(account.m_TrainingMap[3].m_PlayTimes, 4);
}

TEST(AccountGlobal, DiamondVipEndsOnItsSecondWhateverTheLevel)
{
    zet::TestClock clock(secondsOf(L"2020-5-6 11:59:59"));
    AccountGlobalData global;
    global.m_VIPLevel = 51;
    EXPECT_FALSE(global.IsDiamondVIP());
    global.m_DiamondVIPExpireTime = kNow;
    EXPECT_TRUE(global.IsDiamondVIP());
    global.m_VIPLevel = 0;
    EXPECT_TRUE(global.IsDiamondVIP());
    clock.advance(1000);
    EXPECT_FALSE(global.IsDiamondVIP());
    global.m_DiamondVIPExpireTime = L"soon";
    EXPECT_FALSE(global.IsDiamondVIP());
}

TEST(LastServers, MostRecentIsFirst)
{
    AccountGlobalData global;
    EXPECT_EQ(global.GetLastServerID(), 0);
    for (const int id : {1, 2, 3})
        global.AddLastServerID(id);
    EXPECT_EQ(global.m_LastServerList, std::vector<int>({3, 2, 1}));
    global.AddLastServerID(4);
    EXPECT_EQ(global.m_LastServerList, std::vector<int>({4, 3, 2}));
    global.AddLastServerID(2);
    EXPECT_EQ(global.m_LastServerList, std::vector<int>({2, 4, 3}));
    global.AddLastServerID(2);
    EXPECT_EQ(global.m_LastServerList, std::vector<int>({2, 4, 3}));
    EXPECT_EQ(global.GetLastServerID(), 2);
}

TEST(LastServers, NumbersBelow1AreNotTaken)
{
    AccountGlobalData global;
    for (const int id : {0, -1, std::numeric_limits<int>::min()})
        global.AddLastServerID(id);
    EXPECT_TRUE(global.m_LastServerList.empty());
    global.AddLastServerID(std::numeric_limits<int>::max());
    EXPECT_EQ(global.GetLastServerID(), std::numeric_limits<int>::max());
}

TEST(LastServers, LongerListShrinksByOneAtMost)
{
    AccountGlobalData global;
    global.m_LastServerList = {1, 2, 3, 4, 5, 3};
    global.AddLastServerID(9);
    EXPECT_EQ(global.m_LastServerList, std::vector<int>({9, 1, 2, 3, 4, 5}));
    global.AddLastServerID(3);
    EXPECT_EQ(global.m_LastServerList, std::vector<int>({3, 9, 1, 2, 4}));
    // Only the first of two is taken away.
    global.m_LastServerList = {1, 7, 7};
    global.AddLastServerID(7);
    EXPECT_EQ(global.m_LastServerList, std::vector<int>({7, 1, 7}));
}

TEST(LastServers, TextHasABarAfterEachNumber)
{
    AccountGlobalData global;
    EXPECT_TRUE(global.ConvertLastServerListToString().isEmpty());
    global.m_LastServerList = {7, 3, 12};
    EXPECT_TRUE(global.ConvertLastServerListToString() == L"7|3|12|");
    global.m_LastServerList = {-7};
    EXPECT_TRUE(global.ConvertLastServerListToString() == L"-7|");
}

TEST(LastServers, LoadTakesNumbersAboveZero)
{
    EXPECT_EQ(loadedServers(L"12|x|-4|0|7|"), std::vector<int>({12, 7}));
    EXPECT_EQ(loadedServers(L"7|3|12|"), std::vector<int>({7, 3, 12}));
    EXPECT_EQ(loadedServers(L"5"), std::vector<int>());
    EXPECT_EQ(loadedServers(L""), std::vector<int>());
    EXPECT_EQ(loadedServers(L"||5||6"), std::vector<int>({5}));
    EXPECT_EQ(loadedServers(L" 5 |6x|+7|"), std::vector<int>({5, 6, 7}));
    // The low half of this number is 1.
    EXPECT_EQ(loadedServers(L"4294967297|2147483648|"), std::vector<int>({1}));
}

TEST(LastServers, LoadAddsWithoutALimit)
{
    AccountGlobalData global;
    global.m_LastServerList = {9};
    global.ConvertLastServerListFromString(L"1|2|3|4|9|");
    EXPECT_EQ(global.m_LastServerList, std::vector<int>({9, 1, 2, 3, 4, 9}));
}

TEST(AccountGlobal, OnlyTheCountOfTheListDecidesAReading)
{
    AccountGlobalData global = filledGlobal();
    CCmdPackager packager;
    EXPECT_FALSE(global.Read(&packager));
    EXPECT_EQ(bytesOf(global), bytesOf(filledGlobal()));
}

// A full data packager accepts nothing more: every field fails, but only the count is tested.
TEST(AccountGlobal, OnlyTheCountOfTheListDecidesAWriting)
{
    AccountGlobalData global;
    global.m_LastServerList = {1, 2};
    const std::string fill(65536 - 5, 'x');
    CDataPackager packager;
    ASSERT_TRUE(packager.Write(fill.data(), static_cast<int>(fill.size())));
    // The five free bytes hold the first five empty texts, so the count does not fit.
    EXPECT_FALSE(global.Write(&packager));

    AccountGlobalData longText;
    zet::String_T<wchar_t> text;
    std::fill_n(text.resizeForOverwrite(2000), 2000, L'x');
    longText.m_GlobalText1 = text;
    longText.m_LastServerList = {1};
    CCmdPackager command;
    // On the platform that refuses such a long text, the record is still written.
    EXPECT_TRUE(longText.Write(&command));
}
