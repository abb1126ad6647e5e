// How often a busy System sets the timer that ends its sleeps.
#include "framework/inner/fast_paths.h"
#include "tests/support/loopback.h"
#include "tests/support/system_calls.h"

#include <gtest/gtest.h>

#ifdef COUNTS_SYSTEM_CALLS

#include <dlfcn.h>
#include <sys/timerfd.h>

#include <atomic>

namespace
{

std::atomic<int> g_Settings{0};

} // namespace

// Replaces the C library's function for the library.
#pragma GCC visibility push(default)
extern "C" int timerfd_settime(int handle, int flags, const itimerspec* value, itimerspec* before) noexcept
{
    static const auto next = reinterpret_cast<decltype(&timerfd_settime)>(dlsym(RTLD_NEXT, "timerfd_settime"));
    ++g_Settings;
    return next(handle, flags, value, before);
}
#pragma GCC visibility pop

namespace
{

using test::ClientHandle;
using test::Loopback;
using test::NoteAnalyser;
using test::NoteCommand;

TEST(PollerTimer, IsSetOnceForManySleepsOfABusySystem)
{
    if (!zet::inner::kHasFastPaths)
        GTEST_SKIP() << "without fast paths each sleep has a time limit, and the timer is not used";
    NoteAnalyser server([](CCommandSocket* socket, const NoteCommand& note) { EXPECT_TRUE(socket->send(note)); });
    int answers = 0;
    NoteAnalyser client([&](CCommandSocket*, const NoteCommand&) { ++answers; });
    Loopback net(server);
    // The timer must not end during the test.
    net.m_System.setTickInterval(10 * 60 * 1000);
    const ClientHandle socket = new test::Client(client);
    net.m_Clients.push_back(socket);
    socket->start(&net.m_System);
    ASSERT_TRUE(socket->connect(L"127.0.0.1", net.m_Server->getPort(), false));
    int sleeps = 0;
    const auto ask = [&](int goal)
    {
        ASSERT_TRUE(socket->send(NoteCommand(1)));
        for (int i = 0; i < 20 && answers < goal; ++i)
        {
            net.m_System.tick();
            if (answers == goal)
                break;
            ++sleeps;
            net.m_System.wait();
        }
        ASSERT_EQ(answers, goal);
    };
    for (int i = 1; i <= 5; ++i)
        ask(i);
    const int before = g_Settings;
    sleeps = 0;
    for (int i = 6; i <= 55; ++i)
        ask(i);
    EXPECT_GE(sleeps, 50);
    // Milliseconds are rounded, so it may have been set for one too late.
    EXPECT_LE(g_Settings - before, 1);
    EXPECT_GE(g_Settings, 1);
    socket->close();
}

} // namespace

#else

TEST(PollerTimer, SettingsAreCounted)
{
    GTEST_SKIP() << "by replacing a function of glibc";
}

#endif
