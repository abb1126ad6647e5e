#include "framework/stopwatch.h"

#include "framework/platform/platform.h"
#include "framework/time.h"

#include <gtest/gtest.h>

namespace
{

TEST(Stopwatch, FollowsATestClockAtOnce)
{
    zet::TestClock clock(0, 0xFFFFFFF0);
    zet::Stopwatch watch;
    EXPECT_EQ(watch.getElapsed(), 0U);
    clock.advance(30);
    EXPECT_EQ(watch.getElapsed(), 30U);
    clock.advance(70);
    EXPECT_EQ(watch.getElapsed(), 100U);
}

TEST(Stopwatch, TellsTheMillisecondOfALimitByATestClock)
{
    zet::TestClock clock(0, 0xFFFFFFF0);
    const zet::Stopwatch watch;
    EXPECT_TRUE(watch.isBelow(1));
    EXPECT_FALSE(watch.isBelow(0));
    clock.advance(99);
    EXPECT_TRUE(watch.isBelow(100));
    clock.advance(1);
    EXPECT_FALSE(watch.isBelow(100));
    EXPECT_TRUE(watch.isBelow(101));
}

// This compares real clocks, so a test clock cannot replace them: it runs against the tick for some milliseconds.
void expectExact(unsigned int limit)
{
    const unsigned int before = zet::getTimeTick();
    const zet::Stopwatch watch;
    const unsigned int after = zet::getTimeTick();
    for (bool isBelow = true; isBelow;)
    {
        const unsigned int least = zet::getTimeTick() - after;
        isBelow = watch.isBelow(limit);
        const unsigned int most = zet::getTimeTick() - before;
        if (isBelow)
            ASSERT_LT(least, limit);
        else
            ASSERT_GE(most, limit);
    }
}

TEST(Stopwatch, NearALimitIsBelowItExactlyAsTheClockIs)
{
    constexpr unsigned int kLimit = 5;
    static_assert(kLimit < zet::platform::kCoarseLag);
    expectExact(kLimit);
}

TEST(Stopwatch, ApproachingALimitItsTwoClocksAgree)
{
    constexpr unsigned int kLimit = 40;
    static_assert(kLimit > zet::platform::kCoarseLag);
    expectExact(kLimit);
}

TEST(Stopwatch, FarFromALimitIsBelowIt)
{
    const zet::Stopwatch watch;
    for (int i = 0; i < 1000; ++i)
        ASSERT_TRUE(watch.isBelow(10 * 60 * 1000));
}

} // namespace
