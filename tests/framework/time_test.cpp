#include "framework/time.h"

#include "framework/platform/platform.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <ctime>
#include <string>

using zet::Time;

namespace
{

// Sets the zone of the process during its lifetime, if the platform has a zone per process. A zone given by a rule
// needs no files.
class Zone
{
public:
    explicit Zone(const char* rule)
    {
        const char* before = std::getenv("TZ");
        m_HadZone = before != nullptr;
        if (before)
            m_Before = before;
        set(rule);
    }
    ~Zone() { set(m_HadZone ? m_Before.c_str() : nullptr); }
    Zone(const Zone&) = delete;
    Zone& operator=(const Zone&) = delete;

#ifdef _WIN32
    static constexpr bool kIsOfProcess = false;
#else
    static constexpr bool kIsOfProcess = true;
#endif

private:
    static void set([[maybe_unused]] const char* rule)
    {
#ifndef _WIN32
        if (rule)
            setenv("TZ", rule, 1);
        else
            unsetenv("TZ");
#endif
    }

    bool m_HadZone = false;
    std::string m_Before;
};

long long secondsOf(const wchar_t* text)
{
    Time time;
    EXPECT_TRUE(time.convertFromString(text)) << zet::String_T<wchar_t>(text).getLength();
    return time.getSeconds();
}

bool isTaken(const wchar_t* text)
{
    Time time(12345);
    const bool taken = time.convertFromString(text);
    // Refused text changes nothing.
    EXPECT_TRUE(taken || time.getSeconds() == 12345);
    return taken;
}

std::wstring textOf(long long seconds, bool padded = false)
{
    return Time(seconds).convertToString(padded).getBuffer();
}

} // namespace

TEST(Clock, TickIsMonotonic)
{
    unsigned int last = zet::getTimeTick();
    for (int i = 0; i < 1000; ++i)
    {
        const unsigned int now = zet::getTimeTick();
        EXPECT_LT(now - last, 60000u);
        last = now;
    }
}

TEST(Clock, CalendarAgreesWithTheSystem)
{
    long long stored = 0;
    const long long before = static_cast<long long>(std::time(nullptr));
    const long long now = zet::time(&stored);
    EXPECT_EQ(now, stored);
    // The system's own call may lag behind by a timer tick.
    EXPECT_GE(now, before);
    EXPECT_LE(now, before + 60);
}

TEST(TestClock, MovesBothClocks)
{
    {
        zet::TestClock clock(1000, 0xFFFFFF00u);
        EXPECT_EQ(zet::time(nullptr), 1000);
        EXPECT_EQ(zet::getTimeTick(), 0xFFFFFF00u);
        clock.advance(0x101);
        EXPECT_EQ(zet::getTimeTick(), 1u);
        EXPECT_EQ(zet::time(nullptr), 1000);
        clock.advance(743);
        EXPECT_EQ(zet::time(nullptr), 1001);
        clock.setTime(5);
        EXPECT_EQ(zet::time(nullptr), 5);
        EXPECT_EQ(zet::getTimeTick(), 744u);
        EXPECT_EQ(Time::getCurrent().getSeconds(), 5);
        clock.setTime(-1);
        clock.advance(1);
        EXPECT_EQ(zet::time(nullptr), -1);
    }
    EXPECT_GT(zet::time(nullptr), 1000000000);
}

TEST(Time, TextsAreLocal)
{
    if (!Zone::kIsOfProcess)
        GTEST_SKIP() << "the zone is the machine's here";
    {
        const Zone zone("XXX-8");
        EXPECT_EQ(zet::getTimeBias(), -28800);
        EXPECT_EQ(secondsOf(L"1970-1-1 08:00:00"), 0);
        EXPECT_EQ(secondsOf(L"2013-1-1 00:00:00"), 1356969600);
        EXPECT_EQ(textOf(1356969600), L"2013-1-1 00:00:00");
    }
    {
        const Zone zone("XXX5:30");
        EXPECT_EQ(zet::getTimeBias(), 19800);
        EXPECT_EQ(textOf(0), L"1969-12-31 18:30:00");
        EXPECT_EQ(secondsOf(L"1969-12-31 18:30:00"), 0);
    }
    const Zone zone("UTC0");
    EXPECT_EQ(zet::getTimeBias(), 0);
    EXPECT_EQ(secondsOf(L"2013-1-1 00:00:00"), 1356998400);
}

TEST(Time, DaylightSavingIsLeftOut)
{
    if (!Zone::kIsOfProcess)
        GTEST_SKIP() << "the zone is the machine's here";
    const Zone zone("CET-1CEST,M3.5.0,M10.5.0/3");
    EXPECT_EQ(zet::getTimeBias(), -3600);
    EXPECT_EQ(secondsOf(L"2013-7-1 01:00:00"), 1372636800);
    EXPECT_EQ(secondsOf(L"2013-1-1 01:00:00"), 1356998400);
    EXPECT_EQ(textOf(1372636800), L"2013-7-1 01:00:00");
    // The hour skipped by daylight saving is an ordinary time.
    EXPECT_EQ(secondsOf(L"2013-3-31 02:30:00"), secondsOf(L"2013-3-31 01:30:00") + 3600);
    // Daylight saving in local time, which the platform shows, does not change it either.
    zet::platform::getLocalTime();
    EXPECT_EQ(zet::getTimeBias(), -3600);
}

TEST(Time, CalendarHolds)
{
    const Zone zone("UTC0");
    if (zet::getTimeBias() != 0)
        GTEST_SKIP() << "the machine's zone is not UTC";
    EXPECT_EQ(secondsOf(L"2000-2-29 23:59:59"), 951868799);
    EXPECT_EQ(secondsOf(L"2000-3-1 0:0:0"), 951868800);
    EXPECT_EQ(secondsOf(L"2038-1-19 3:14:8"), 2147483648LL);
    EXPECT_EQ(secondsOf(L"3000-1-1 4:0:0"), 32503694400LL);
    EXPECT_EQ(secondsOf(L"1900-1-1 0:0:0"), -2208988800LL);
    EXPECT_EQ(textOf(32503694400LL), L"3000-1-1 04:00:00");
    EXPECT_EQ(textOf(-1), L"1969-12-31 23:59:59");
    EXPECT_EQ(textOf(-2208988800LL), L"1900-1-1 00:00:00");
    EXPECT_EQ(textOf(951782400), L"2000-2-29 00:00:00");
}

TEST(Time, PaddedTextHasTwoDigitsInTheDate)
{
    const Zone zone("UTC0");
    if (zet::getTimeBias() != 0)
        GTEST_SKIP() << "the machine's zone is not UTC";
    EXPECT_EQ(textOf(1356998400, true), L"2013-01-01 00:00:00");
    EXPECT_EQ(textOf(1386601130, true), L"2013-12-09 14:58:50");
    EXPECT_EQ(textOf(1386601130, false), L"2013-12-9 14:58:50");
}

TEST(Time, LeadingZerosAreFree)
{
    EXPECT_EQ(secondsOf(L"2013-1-1 0:0:0"), secondsOf(L"2013-01-01 00:00:00"));
    EXPECT_EQ(secondsOf(L"02013-001-001 4:05:6"), secondsOf(L"2013-1-1 04:5:06"));
    EXPECT_EQ(secondsOf(L" 2013-1-1  04:05:06 "), secondsOf(L"2013-1-1 4:5:6"));
}

TEST(Time, InvalidTimeTextChangesNothing)
{
    EXPECT_FALSE(isTaken(nullptr));
    EXPECT_FALSE(isTaken(L""));
    EXPECT_FALSE(isTaken(L"2013"));
    EXPECT_FALSE(isTaken(L"2013-1-1"));
    EXPECT_FALSE(isTaken(L"2013-1-1 0:0"));
    EXPECT_FALSE(isTaken(L"2013-1-1 0:0:"));
    EXPECT_FALSE(isTaken(L"2013/1/1 0:0:0"));
    EXPECT_FALSE(isTaken(L"2013-1-1T0:0:0"));
    EXPECT_FALSE(isTaken(L"2013-1-1 0:0:0 x"));
    EXPECT_FALSE(isTaken(L"2013-1-1 -1:0:0"));
    EXPECT_FALSE(isTaken(L"+2013-1-1 0:0:0"));
    EXPECT_FALSE(isTaken(L"2013-0-1 0:0:0"));
    EXPECT_FALSE(isTaken(L"2013-13-1 0:0:0"));
    EXPECT_FALSE(isTaken(L"2013-1-0 0:0:0"));
    EXPECT_FALSE(isTaken(L"2013-4-31 0:0:0"));
    EXPECT_FALSE(isTaken(L"2013-2-29 0:0:0"));
    EXPECT_FALSE(isTaken(L"1900-2-29 0:0:0"));
    EXPECT_TRUE(isTaken(L"2000-2-29 0:0:0"));
    EXPECT_FALSE(isTaken(L"2013-1-1 24:0:0"));
    EXPECT_FALSE(isTaken(L"2013-1-1 0:60:0"));
    EXPECT_FALSE(isTaken(L"2013-1-1 0:0:60"));
    EXPECT_FALSE(isTaken(L"99999999999999999999-1-1 0:0:0"));
    EXPECT_TRUE(isTaken(L"999999999-12-31 23:59:59"));
}

TEST(Time, TextsGoRoundThroughFourCenturies)
{
    const long long first = secondsOf(L"1900-1-1 12:34:56");
    for (long long day = 0; day < 146097; day += 5)
    {
        const Time time(first + day * 86400);
        Time back;
        ASSERT_TRUE(back.convertFromString(time.convertToString(day % 3 == 0)));
        ASSERT_TRUE(back == time) << day;
    }
    EXPECT_EQ(first + 146097LL * 86400, secondsOf(L"2300-1-1 12:34:56"));
}

TEST(Time, DifferenceIsWholeSecondsIn64Bits)
{
    const Time late(secondsOf(L"3000-1-1 4:0:0"));
    const Time early(secondsOf(L"2013-1-1 0:0:0"));
    EXPECT_EQ(late - early, 31146696000LL);
    EXPECT_EQ(early - late, -31146696000LL);
    EXPECT_TRUE(early < late);
    EXPECT_TRUE(early + 31146696000LL == late);
    EXPECT_EQ(zet::TimeSpan(late - early).getDays(), 360494);
    EXPECT_EQ(zet::TimeSpan(-86399).getDays(), 0);
}
