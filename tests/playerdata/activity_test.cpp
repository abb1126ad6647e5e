// The Christmas activity: its states, its daily decay and its text form.
#include "playerdata/activity.h"

#include "framework/time.h"

#include <gtest/gtest.h>

#include <climits>

namespace
{

constexpr long long kNow = 1400000000;

zet::String_T<wchar_t> textOf(long long seconds)
{
    return zet::Time(seconds).convertToString(false);
}

FGameActivityChristmas activityOf(long long start, long long end)
{
    FGameActivityChristmas activity;
    activity.m_StartTime = textOf(start);
    activity.m_EndTime = textOf(end);
    return activity;
}

struct At
{
    long long m_Start;
    long long m_End;
    bool m_Enabled;
    int m_State;
};

TEST(FGameActivityChristmas, BothBordersBelongToTheActivity)
{
    const zet::TestClock clock(kNow);
    for (const At& at : {At{kNow - 10, kNow + 10, true, 2}, At{kNow, kNow + 1, true, 2}, At{kNow - 1, kNow, true, 2},
                         At{kNow, kNow, true, 2}, At{kNow + 1, kNow + 2, false, 1}, At{kNow - 2, kNow - 1, false, 3}})
    {
        FGameActivityChristmas activity = activityOf(at.m_Start, at.m_End);
        activity.m_IsEnable = !at.m_Enabled;
        EXPECT_EQ(at.m_Enabled, activity.CheckEnable()) << at.m_Start - kNow << ' ' << at.m_End - kNow;
        EXPECT_EQ(at.m_Enabled, activity.m_IsEnable);
        EXPECT_EQ(at.m_State, activity.m_ActivityState);
    }
}

TEST(FGameActivityChristmas, WaitsWhereTheEndLiesBeforeTheStart)
{
    const zet::TestClock clock(kNow);
    FGameActivityChristmas activity = activityOf(kNow + 10, kNow - 10);
    EXPECT_FALSE(activity.CheckEnable());
    EXPECT_EQ(1, activity.m_ActivityState);
}

TEST(FGameActivityChristmas, MovesOnlyWhenAsked)
{
    zet::TestClock clock(kNow);
    FGameActivityChristmas activity = activityOf(kNow, kNow + 5);
    EXPECT_TRUE(activity.CheckEnable());
    clock.setTime(kNow + 6);
    EXPECT_TRUE(activity.m_IsEnable);
    EXPECT_EQ(2, activity.m_ActivityState);
    EXPECT_FALSE(activity.CheckEnable());
    EXPECT_EQ(3, activity.m_ActivityState);
}

TEST(FGameActivityChristmas, WithoutATypeIsNotEnabledAndKeepsItsState)
{
    const zet::TestClock clock(kNow);
    for (const int type : {0, -1})
    {
        FGameActivityChristmas activity = activityOf(kNow - 10, kNow + 10);
        activity.m_ActivityType = type;
        activity.m_IsEnable = true;
        activity.m_ActivityState = 7;
        EXPECT_FALSE(activity.CheckEnable());
        EXPECT_FALSE(activity.m_IsEnable);
        EXPECT_EQ(7, activity.m_ActivityState);
    }
}

TEST(FGameActivityChristmas, WithoutDatesIsOver)
{
    const zet::TestClock clock(kNow);
    FGameActivityChristmas activity;
    EXPECT_FALSE(activity.CheckEnable());
    EXPECT_EQ(3, activity.m_ActivityState);
}

FGameActivityChristmas enabled(int points, int missed, bool played)
{
    FGameActivityChristmas activity;
    activity.m_IsEnable = true;
    activity.m_Points = points;
    activity.m_MissedDays = missed;
    activity.m_PlayedToday = played;
    return activity;
}

TEST(FGameActivityChristmas, FirstMissedDayCostsTwoPoints)
{
    FGameActivityChristmas activity = enabled(10, 0, false);
    activity.DailyClear();
    EXPECT_EQ(8, activity.m_Points);
    EXPECT_EQ(1, activity.m_MissedDays);
    activity = enabled(1, 0, false);
    activity.DailyClear();
    EXPECT_EQ(0, activity.m_Points);
    EXPECT_EQ(1, activity.m_MissedDays);
}

TEST(FGameActivityChristmas, SecondMissedDayCostsThreePoints)
{
    FGameActivityChristmas activity = enabled(10, 1, false);
    activity.DailyClear();
    EXPECT_EQ(7, activity.m_Points);
    EXPECT_EQ(2, activity.m_MissedDays);
    activity = enabled(2, 1, false);
    activity.DailyClear();
    EXPECT_EQ(0, activity.m_Points);
}

TEST(FGameActivityChristmas, ThirdMissedDayCostsAll)
{
    FGameActivityChristmas activity = enabled(1000, 0, false);
    activity.DailyClear();
    activity.DailyClear();
    EXPECT_EQ(995, activity.m_Points);
    activity.DailyClear();
    EXPECT_EQ(0, activity.m_Points);
    EXPECT_EQ(3, activity.m_MissedDays);
}

TEST(FGameActivityChristmas, PlayedDayStillPaysForTheMissedOne)
{
    FGameActivityChristmas activity = enabled(10, 1, true);
    activity.DailyClear();
    EXPECT_EQ(8, activity.m_Points);
    EXPECT_EQ(1, activity.m_MissedDays);
    EXPECT_FALSE(activity.m_PlayedToday);
}

TEST(FGameActivityChristmas, DayWithoutMissesCostsNothing)
{
    FGameActivityChristmas activity = enabled(10, 0, true);
    activity.DailyClear();
    EXPECT_EQ(10, activity.m_Points);
    EXPECT_EQ(0, activity.m_MissedDays);
    EXPECT_FALSE(activity.m_PlayedToday);
    // A negative count is also treated as none, even after an increment.
    activity = enabled(10, -1, false);
    activity.DailyClear();
    EXPECT_EQ(10, activity.m_Points);
    EXPECT_EQ(0, activity.m_MissedDays);
}

TEST(FGameActivityChristmas, DailyClearStaysWithinAnInt)
{
    FGameActivityChristmas activity = enabled(INT_MIN, INT_MAX, false);
    activity.DailyClear();
    EXPECT_EQ(0, activity.m_Points);
    EXPECT_EQ(INT_MAX, activity.m_MissedDays);
    activity = enabled(INT_MIN, 0, false);
    activity.DailyClear();
    EXPECT_EQ(0, activity.m_Points);
}

TEST(FGameActivityChristmas, WhileNotEnabledADayOnlyClearsThePlay)
{
    FGameActivityChristmas activity = enabled(10, 1, true);
    activity.m_IsEnable = false;
    activity.DailyClear();
    EXPECT_EQ(10, activity.m_Points);
    EXPECT_EQ(1, activity.m_MissedDays);
    EXPECT_FALSE(activity.m_PlayedToday);
    activity.DailyClear();
    EXPECT_EQ(1, activity.m_MissedDays);
}

TEST(FGameActivityChristmas, TextHoldsPointsPlayedAndMissed)
{
    EXPECT_EQ(L"7|1|1", enabled(7, 1, true).ToString().view());
    EXPECT_EQ(L"0|0|0", FGameActivityChristmas().ToString().view());
    EXPECT_EQ(L"-2147483648|0|2147483647", enabled(INT_MIN, INT_MAX, false).ToString().view());
}

TEST(FGameActivityChristmas, TextComesBack)
{
    for (FGameActivityChristmas sent : {enabled(7, 1, true), enabled(0, 0, false), enabled(INT_MIN, INT_MAX, true)})
    {
        zet::String_T<wchar_t> text = sent.ToString();
        FGameActivityChristmas activity = enabled(50, 60, !sent.m_PlayedToday);
        activity.FromString(text);
        EXPECT_EQ(sent.m_Points, activity.m_Points);
        EXPECT_EQ(sent.m_MissedDays, activity.m_MissedDays);
        EXPECT_EQ(sent.m_PlayedToday, activity.m_PlayedToday);
    }
}

FGameActivityChristmas loaded(const wchar_t* form)
{
    FGameActivityChristmas activity = enabled(50, 60, true);
    zet::String_T<wchar_t> text = form;
    activity.FromString(text);
    return activity;
}

TEST(FGameActivityChristmas, EmptyTextChangesNothing)
{
    const FGameActivityChristmas activity = loaded(L"");
    EXPECT_EQ(50, activity.m_Points);
    EXPECT_EQ(60, activity.m_MissedDays);
    EXPECT_TRUE(activity.m_PlayedToday);
}

TEST(FGameActivityChristmas, MissingNumbersLeaveTheirMembersAndPlayedIsFalse)
{
    FGameActivityChristmas activity = loaded(L"7");
    EXPECT_EQ(7, activity.m_Points);
    EXPECT_EQ(60, activity.m_MissedDays);
    EXPECT_FALSE(activity.m_PlayedToday);

    activity = loaded(L"7|1");
    EXPECT_TRUE(activity.m_PlayedToday);
    EXPECT_EQ(60, activity.m_MissedDays);

    activity = loaded(L"x|1|2");
    EXPECT_EQ(50, activity.m_Points);
    EXPECT_EQ(60, activity.m_MissedDays);
    EXPECT_FALSE(activity.m_PlayedToday);
}

TEST(FGameActivityChristmas, AnyNumberButZeroIsPlayed)
{
    EXPECT_TRUE(loaded(L"1|-3|2").m_PlayedToday);
    EXPECT_FALSE(loaded(L"1|0|2").m_PlayedToday);
}

TEST(FGameActivityChristmas, DealActivityIsAnEmptyHook)
{
    EXPECT_FALSE(FGameActivityChristmas().DealActivity(nullptr));
}

} // namespace
