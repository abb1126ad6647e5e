#include "framework/system.h"

#include "framework/thread.h"
#include "framework/time.h"
#include "tests/support/log_lines.h"
#include "tests/support/noting_task.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <thread>

namespace
{

using test::NotingHandle;
using test::NotingTask;

class NotingSystem : public zet::System
{
public:
    bool init() override
    {
        m_Notes += "I";
        return m_IsReady && System::init();
    }
    void exit() override
    {
        m_Notes += "E";
        System::exit();
    }
    void onTick(unsigned int) override
    {
        m_Notes += "T";
        if (++m_Ticks == m_TicksUntilShutdown)
            shutdown();
    }
    void onException(unsigned long code) override { m_Codes.push_back(code); }

    std::string m_Notes;
    std::vector<unsigned long> m_Codes;
    bool m_IsReady = true;
    int m_Ticks = 0;
    int m_TicksUntilShutdown = 0;
};

TEST(System, RunInitsTicksUntilShutdownAndExits)
{
    zet::TestClock clock(0);
    NotingSystem system;
    const NotingHandle task = new NotingTask(&system.m_Notes);
    ASSERT_TRUE(task->start(&system));
    // Each tick takes the whole interval, so the system's own waiter sleeps for no time.
    task->m_OnTick = [&] { clock.advance(zet::System::kTickInterval); };
    system.m_TicksUntilShutdown = 2;
    EXPECT_TRUE(system.run());
    EXPECT_EQ(system.m_Notes, "ITtit.Tt.Ete");
    EXPECT_EQ(system.getTaskCount(), 0);
    EXPECT_EQ(task->getSystem(), nullptr);
}

TEST(System, AFailedInitEndsRunBeforeTheFirstTick)
{
    NotingSystem system;
    system.m_IsReady = false;
    EXPECT_FALSE(system.run());
    EXPECT_EQ(system.m_Notes, "I");
}

TEST(System, ShutdownBeforeRunLeavesNoTick)
{
    NotingSystem system;
    system.shutdown();
    EXPECT_TRUE(system.run());
    EXPECT_EQ(system.m_Notes, "IE");
}

TEST(System, InitWithinATickIsRefused)
{
    std::string notes;
    zet::System system;
    const NotingHandle task = new NotingTask(&notes);
    bool result = true;
    task->m_OnTick = [&] { result = system.init(); };
    task->start(&system);
    system.tick();
    EXPECT_FALSE(result);
}

TEST(System, ATickHasTheTimeOfTheTick)
{
    zet::TestClock clock(0, 5000);
    std::string notes;
    zet::System system;
    const NotingHandle task = new NotingTask(&notes);
    task->start(&system);
    system.tick();
    EXPECT_EQ(task->m_LastTick, 5000U);
    clock.advance(7);
    system.tick();
    EXPECT_EQ(task->m_LastTick, 5007U);
}

TEST(System, RunTakesTheCallingThreadAsTheRunThread)
{
    NotingSystem system;
    EXPECT_EQ(system.getRunThreadId(), zet::Thread::getCurrentThreadId());
    system.m_TicksUntilShutdown = 1;
    unsigned long other = 0;
    std::thread thread(
        [&]
        {
            other = zet::Thread::getCurrentThreadId();
            system.run();
        });
    thread.join();
    EXPECT_NE(other, zet::Thread::getCurrentThreadId());
    EXPECT_EQ(system.getRunThreadId(), other);
}

TEST(System, ATickWithinATickDoesNothing)
{
    std::string notes;
    zet::System system;
    const NotingHandle task = new NotingTask(&notes);
    task->m_OnTick = [&] { system.tick(); };
    task->start(&system);
    system.tick();
    EXPECT_EQ(notes, "tit.");
}

TEST(System, ShutdownFromAnotherThreadEndsRun)
{
    NotingSystem system;
    system.setTickInterval(10 * 60 * 1000);
    std::thread stopper([&] { system.shutdown(); });
    EXPECT_TRUE(system.run());
    stopper.join();
}

TEST(System, WakeBeforeWaitIsNotLost)
{
    zet::System system;
    system.setTickInterval(10 * 60 * 1000);
    system.tick();
    system.wake();
    system.wait();
}

// Sleeps by advancing a test clock, and records for how long.
class ClockWaiter : public zet::System::Waiter
{
public:
    explicit ClockWaiter(zet::TestClock& clock) : m_Clock(clock) {}

    void wait(unsigned int milliseconds) override
    {
        m_Waits.push_back(milliseconds);
        m_Clock.advance(milliseconds);
    }
    void wake() override {}
    void beginTick() override {}
    void endTick() override {}

    zet::TestClock& m_Clock;
    std::vector<unsigned int> m_Waits;
};

TEST(System, WaitEndsWhenASleeperIsDue)
{
    zet::TestClock clock(0, 0xFFFFFFF0);
    const auto waiter = std::make_shared<ClockWaiter>(clock);
    std::string notes;
    zet::System system;
    system.setWaiter(waiter);
    system.setTickInterval(1000);
    const NotingHandle task = new NotingTask(&notes);
    task->start(&system);
    system.tick();
    task->sleep(50);
    system.wait();
    EXPECT_EQ(waiter->m_Waits, std::vector<unsigned int>({50}));
    system.tick();
    EXPECT_EQ(notes, "tit.t.");
}

TEST(System, WaitEndsWhenTheNextTickIsDue)
{
    zet::TestClock clock(0, 0xFFFFFFF0);
    const auto waiter = std::make_shared<ClockWaiter>(clock);
    NotingSystem system;
    system.setWaiter(waiter);
    system.tick();
    // The duration of the tick is part of the interval.
    clock.advance(4);
    system.wait();
    system.tick();
    clock.advance(15);
    system.wait();
    EXPECT_EQ(waiter->m_Waits, std::vector<unsigned int>({zet::System::kTickInterval - 4, 0}));
}

TEST(System, ATimeThatATaskWaitsForEndsTheSleepOnce)
{
    zet::TestClock clock(0, 0xFFFFFFF0);
    const auto waiter = std::make_shared<ClockWaiter>(clock);
    zet::System system;
    system.setWaiter(waiter);
    // Above the longest one.
    system.setTickInterval(0xFFFFFFFF);
    system.tick();
    system.tickBy(zet::getTimeTick() + 100);
    system.tickBy(zet::getTimeTick() + 50);
    system.tickBy(zet::getTimeTick() + 70);
    system.wait();
    system.tick();
    system.wait();
    system.tick();
    system.tickBy(zet::getTimeTick() - 1);
    system.wait();
    EXPECT_EQ(waiter->m_Waits, std::vector<unsigned int>({50, zet::System::kLongestInterval, 0}));
}

TEST(System, RunWaitsFromTickToTick)
{
    zet::TestClock clock(0);
    const auto waiter = std::make_shared<ClockWaiter>(clock);
    NotingSystem system;
    system.setWaiter(waiter);
    system.setTickInterval(20);
    system.m_TicksUntilShutdown = 3;
    EXPECT_TRUE(system.run());
    EXPECT_EQ(waiter->m_Waits, std::vector<unsigned int>({20, 20}));
}

TEST(System, WhatATaskThrowsIsReportedAndTheNextTaskIsTicked)
{
    test::LogLines lines;
    std::string notes;
    NotingSystem system;
    const NotingHandle first = new NotingTask(&notes, 'a');
    const NotingHandle second = new NotingTask(&notes, 'b');
    const NotingHandle third = new NotingTask(&notes, 'c');
    first->m_OnTick = [] { throw std::runtime_error("no disk"); };
    second->m_OnTick = [] { throw 1; };
    for (const NotingHandle& task : {first, second, third})
        task->start(&system);
    system.tick();
    EXPECT_EQ(notes, "aia.bib.cic.");
    EXPECT_EQ(system.m_Codes,
              (std::vector<unsigned long>{zet::System::kStandardException, zet::System::kOtherException}));
    EXPECT_TRUE(lines.has(zet::Log::kError, L"Exception in a task: no disk"));
    EXPECT_TRUE(lines.has(zet::Log::kError, L"Unknown exception in a task"));
    system.tick();
    EXPECT_EQ(system.m_Codes.size(), 4U);
}

TEST(System, ExitStopsTheTasksLastFirst)
{
    std::string notes;
    zet::System system;
    const NotingHandle first = new NotingTask(&notes, 'a');
    const NotingHandle second = new NotingTask(&notes, 'b');
    first->start(&system);
    second->start(&system);
    system.tick();
    notes.clear();
    system.exit();
    EXPECT_EQ(notes, "beae");
}

TEST(System, ExitWithinATickStopsAllAndEndsIt)
{
    std::string notes;
    zet::System system;
    const NotingHandle first = new NotingTask(&notes, 'a');
    const NotingHandle second = new NotingTask(&notes, 'b');
    first->m_OnTick = [&] { system.exit(); };
    first->start(&system);
    second->start(&system);
    system.tick();
    EXPECT_EQ(notes, "aia.ae");
    EXPECT_EQ(system.getTaskCount(), 0);
}

TEST(System, StopsItsTasksWhenDestroyed)
{
    std::string notes;
    const NotingHandle task = new NotingTask(&notes);
    {
        zet::System system;
        task->start(&system);
        system.tick();
    }
    EXPECT_EQ(notes, "tit.te");
    EXPECT_EQ(task->getSystem(), nullptr);
}

class NotingService : public zet::ServiceSystem
{
public:
    bool init() override
    {
        m_Notes += "init ";
        return m_IsReady;
    }
    bool ServiceOn() override
    {
        m_Notes += "on ";
        return m_IsOn;
    }
    void ServiceOff() override { m_Notes += "off "; }
    void onTick(unsigned int) override
    {
        m_Notes += "tick ";
        shutdown();
    }

    std::string m_Notes;
    bool m_IsReady = true;
    bool m_IsOn = true;
};

TEST(ServiceSystem, RunGoesOnTicksAndGoesOff)
{
    NotingService service;
    EXPECT_TRUE(service.run());
    EXPECT_EQ(service.m_Notes, "init on tick off ");
}

TEST(ServiceSystem, AServiceThatDoesNotStartIsNotTicked)
{
    NotingService service;
    service.m_IsOn = false;
    EXPECT_FALSE(service.run());
    EXPECT_EQ(service.m_Notes, "init on off ");
}

TEST(ServiceSystem, AFailedInitIsTheEnd)
{
    NotingService service;
    service.m_IsReady = false;
    EXPECT_FALSE(service.run());
    EXPECT_EQ(service.m_Notes, "init ");
}

TEST(ServiceSystem, IsNamedAfterTheExecutableUntilNamedOtherwise)
{
    zet::ServiceSystem service;
    EXPECT_GT(service.getSystemName().getLength(), 0);
    EXPECT_EQ(service.getSystemName().find(L'/', 0), -1);
    EXPECT_EQ(service.getSystemName().find(L'.', 0), -1);
    service.setSystemName(L"game");
    EXPECT_TRUE(service.getSystemName() == L"game");
}

} // namespace
