#include "framework/stopwatch.h"

#include "framework/platform/cycles.h"
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

TEST(Stopwatch, IsNeverMoreThanAMillisecondBehindTheTick)
{
    const unsigned int before = zet::getTimeTick();
    zet::Stopwatch watch;
    const unsigned int after = zet::getTimeTick();
    // This compares two real clocks, so a test clock cannot replace them: it runs against the tick for some
    // milliseconds, so that both code paths are used.
    while (zet::getTimeTick() - after < 5)
    {
        const unsigned int least = zet::getTimeTick() - after;
        const unsigned int elapsed = watch.getElapsed();
        const unsigned int most = zet::getTimeTick() - before;
        ASSERT_GE(elapsed + 1, least);
        ASSERT_LE(elapsed, most);
    }
}

#if defined(__x86_64__) || defined(__aarch64__)
TEST(Stopwatch, HasACounterOfTheProcessor)
{
    EXPECT_GT(zet::platform::getCyclesOfTenthMillisecond(), 0U);
    const unsigned long long first = zet::platform::readCycles();
    unsigned long long next = first;
    for (int i = 0; i < 1000000 && next == first; ++i)
        next = zet::platform::readCycles();
    EXPECT_GT(next, first);
}
#endif

} // namespace
