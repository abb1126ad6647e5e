// The camera's clock: 30 frames a second, whatever the ticks do.
#include "examples/arena/device/frame_clock.h"

#include <gtest/gtest.h>

using arena::device::FrameClock;

namespace
{

// The frames of a second of ticks with this interval.
int framesOf(unsigned int start, unsigned int interval)
{
    FrameClock clock;
    clock.start(start);
    int frames = 0;
    for (unsigned int passed = 0; passed < 1000; passed += interval)
    {
        unsigned int number = 0;
        frames += clock.take(start + passed, number) ? 1 : 0;
    }
    return frames;
}

} // namespace

TEST(FrameClock, ASecondHasThirtyFrames)
{
    EXPECT_EQ(framesOf(5000, 1), 30);
    EXPECT_EQ(framesOf(5000, 10), 30);
    EXPECT_EQ(framesOf(5000, 33), 30);
    // The time wraps.
    EXPECT_EQ(framesOf(0xFFFFFF00u, 10), 30);
}

TEST(FrameClock, ItGoesOnWhenTheTimeOfTicksHasWrapped)
{
    FrameClock clock;
    clock.start(7);
    // 60 days, in ticks of 20 minutes; milliseconds wrap after less than 50 days.
    constexpr unsigned int kTicks = 60 * 24 * 3;
    constexpr unsigned int kInterval = 20 * 60 * 1000;
    unsigned int number = 0;
    for (unsigned int i = 0; i < kTicks; ++i)
    {
        ASSERT_TRUE(clock.take(7 + i * kInterval, number)) << i;
        ASSERT_EQ(number, i * 20 * 60 * FrameClock::kRate);
    }
}

TEST(FrameClock, ALateTickTakesTheNewestFrameOnly)
{
    FrameClock clock;
    clock.start(0);
    unsigned int number = 99;
    ASSERT_TRUE(clock.take(0, number));
    EXPECT_EQ(number, 0u);
    EXPECT_FALSE(clock.take(33, number));
    ASSERT_TRUE(clock.take(34, number));
    EXPECT_EQ(number, 1u);
    ASSERT_TRUE(clock.take(1000, number));
    EXPECT_EQ(number, 30u);
    EXPECT_FALSE(clock.take(1033, number));
}

TEST(FrameClock, TheNextFrameIsDueAfterTheTimeThatItNames)
{
    FrameClock clock;
    clock.start(100);
    unsigned int tick = 100;
    unsigned int number = 0;
    for (unsigned int frame = 0; frame < 300; ++frame)
    {
        ASSERT_TRUE(clock.take(tick, number)) << frame;
        ASSERT_EQ(number, frame);
        ASSERT_EQ(tick, 100 + FrameClock::timeOf(frame));
        // One millisecond before it is not due.
        const unsigned int wait = clock.timeToNext(tick);
        ASSERT_GT(wait, 0u);
        ASSERT_FALSE(clock.take(tick + wait - 1, number));
        tick += wait;
    }
    EXPECT_EQ(tick, 100u + 10000);
}
