#include "framework/system.h"

#include "framework/time.h"
#include "tests/support/noting_task.h"

#include <gtest/gtest.h>

#include <atomic>
#include <thread>

namespace
{

using test::NotingHandle;
using test::NotingTask;

TEST(Task, StartsOnceAndOnlyInASystem)
{
    std::string notes;
    zet::System system;
    zet::System another;
    const NotingHandle task = new NotingTask(&notes);
    EXPECT_FALSE(task->start(nullptr));
    EXPECT_TRUE(task->start(&system));
    EXPECT_EQ(task->getSystem(), &system);
    EXPECT_FALSE(task->start(&system));
    EXPECT_FALSE(task->start(&another));
    EXPECT_EQ(system.getTaskCount(), 1);
}

TEST(Task, StartOnAnotherThreadIsRefused)
{
    std::string notes;
    zet::System system;
    system.init();
    const NotingHandle task = new NotingTask(&notes);
    bool result = true;
    std::thread([&] { result = task->start(&system); }).join();
    EXPECT_FALSE(result);
    EXPECT_EQ(task->getSystem(), nullptr);
    EXPECT_EQ(system.getTaskCount(), 0);
}

TEST(Task, AFailedInitTakesItOutWithoutExit)
{
    std::string notes;
    zet::System system;
    const NotingHandle task = new NotingTask(&notes);
    task->m_IsReady = false;
    ASSERT_TRUE(task->start(&system));
    system.tick();
    system.tick();
    EXPECT_EQ(notes, "ti");
    EXPECT_EQ(task->getSystem(), nullptr);
    EXPECT_EQ(system.getTaskCount(), 0);
}

TEST(Task, TheSystemHoldsItUntilStop)
{
    std::string notes;
    zet::System system;
    NotingTask* task;
    {
        const NotingHandle handle = new NotingTask(&notes);
        task = handle;
        handle->start(&system);
    }
    system.tick();
    EXPECT_EQ(notes, "tit.");
    task->stop();
    EXPECT_EQ(notes, "tit.tet~");
}

TEST(Task, StopBeforeTheFirstTickCallsNoExit)
{
    std::string notes;
    zet::System system;
    const NotingHandle task = new NotingTask(&notes);
    task->start(&system);
    task->stop();
    task->stop();
    system.tick();
    EXPECT_EQ(notes, "");
}

TEST(Task, MayStopItselfInItsTickAndLivesToItsEnd)
{
    std::string notes;
    zet::System system;
    {
        const NotingHandle task = new NotingTask(&notes);
        NotingTask* const self = task;
        task->m_OnTick = [self]
        {
            self->stop();
            self->note('!');
        };
        task->start(&system);
    }
    system.tick();
    EXPECT_EQ(notes, "tit.tet!t~");
    EXPECT_EQ(system.getTaskCount(), 0);
}

TEST(Task, MayStopALaterOne)
{
    std::string notes;
    zet::System system;
    const NotingHandle first = new NotingTask(&notes, 'a');
    const NotingHandle second = new NotingTask(&notes, 'b');
    const NotingHandle third = new NotingTask(&notes, 'c');
    for (const NotingHandle& task : {first, second, third})
        task->start(&system);
    first->m_OnTick = [&] { second->stop(); };
    system.tick();
    EXPECT_EQ(notes, "aia.cic.");
    EXPECT_EQ(system.getTaskCount(), 2);
}

TEST(Task, OneStartedInATickRunsInTheNext)
{
    std::string notes;
    zet::System system;
    const NotingHandle first = new NotingTask(&notes, 'a');
    const NotingHandle second = new NotingTask(&notes, 'b');
    first->m_OnTick = [&] { second->start(&system); };
    first->start(&system);
    system.tick();
    EXPECT_EQ(notes, "aia.");
    system.tick();
    EXPECT_EQ(notes, "aia.a.bib.");
}

TEST(Task, OneOnTheStackLeavesWithItsDestruction)
{
    std::string notes;
    zet::System system;
    {
        NotingTask task(&notes);
        ASSERT_TRUE(task.start(&system));
        system.tick();
        EXPECT_EQ(task.getRefCount(), 0);
    }
    system.tick();
    EXPECT_EQ(notes, "tit.t~");
    EXPECT_EQ(system.getTaskCount(), 0);
}

TEST(Task, MayStartAgain)
{
    std::string notes;
    zet::System system;
    const NotingHandle task = new NotingTask(&notes);
    task->start(&system);
    system.tick();
    task->stop();
    ASSERT_TRUE(task->start(&system));
    system.tick();
    EXPECT_EQ(notes, "tit.tetit.");
}

TEST(Task, SleepsForItsTimeAcrossTheWrapOfTheTick)
{
    zet::TestClock clock(0, 0xFFFFFFFE);
    std::string notes;
    zet::System system;
    const NotingHandle task = new NotingTask(&notes);
    task->start(&system);
    system.tick();
    notes.clear();
    task->sleep(5);
    for (int i = 0; i < 4; ++i)
    {
        clock.advance(1);
        system.tick();
    }
    EXPECT_EQ(notes, "");
    clock.advance(1);
    system.tick();
    EXPECT_EQ(notes, "t.");
    system.tick();
    EXPECT_EQ(notes, "t.t.");
}

TEST(Task, WakenEndsASleep)
{
    const zet::TestClock clock(0);
    std::string notes;
    zet::System system;
    const NotingHandle task = new NotingTask(&notes);
    task->start(&system);
    system.tick();
    notes.clear();
    task->sleep(1000);
    system.tick();
    EXPECT_EQ(notes, "");
    task->waken();
    system.tick();
    EXPECT_EQ(notes, "t.");
    // A waken() before the sleep does not end it.
    task->waken();
    task->sleep(1000);
    system.tick();
    EXPECT_EQ(notes, "t.");
}

TEST(Task, WakenFromAnotherThreadEndsTheWait)
{
    // The next tick would be due after minutes; the test ends because the other thread ends the wait.
    std::string notes;
    zet::System system;
    system.setTickInterval(10 * 60 * 1000);
    const NotingHandle task = new NotingTask(&notes);
    std::atomic<bool> isWaiting{false};
    task->m_OnTick = [&]
    {
        if (notes == "tit.")
            task->sleep(10 * 60 * 1000);
        else
            system.shutdown();
        isWaiting = true;
    };
    task->start(&system);
    std::thread waker(
        [&]
        {
            while (!isWaiting)
                std::this_thread::yield();
            task->waken();
        });
    EXPECT_TRUE(system.run());
    waker.join();
    EXPECT_EQ(notes, "tit.t.te");
}

} // namespace
