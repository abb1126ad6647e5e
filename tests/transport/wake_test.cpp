// A System with sockets, woken from other threads.
#include "framework/system.h"
#include "net/tcp/server.h"

#include <gtest/gtest.h>

#include <atomic>
#include <thread>

namespace
{

// Two threads wake endlessly, so that sometimes one calls while a sleep is ending by the other's call. A lost call
// would block later wake-ups, and the next sleep is longer than a test may take.
TEST(Wake, NoneIsLostAmongManyAtOnce)
{
    constexpr unsigned int kHour = 3'600'000;
#ifdef _WIN32
    // There a call takes a hundred times as long, and longer on a busy machine.
    constexpr int kSleeps = 300;
#else
    constexpr int kSleeps = 300'000;
#endif
    zet::System system;
    system.init();
    const zet::Unknown::Handle_T<zet::TcpServer> server = new zet::TcpServer;
    ASSERT_TRUE(server->start(&system));
    ASSERT_TRUE(server->listen(0, 5));
    // A System does not pass calls to its waiter while it is awake.
    zet::System::Waiter& waiter = *system.getWaiter();
    std::atomic<bool> isOver{false};
    const auto wakeOn = [&]
    {
        while (!isOver)
            waiter.wake();
    };
    std::thread first(wakeOn);
    std::thread second(wakeOn);
    int slept = 0;
    for (; slept < kSleeps; ++slept)
        waiter.wait(kHour);
    isOver = true;
    first.join();
    second.join();
    // The remaining calls end at most one sleep.
    waiter.wake();
    waiter.wait(kHour);
    std::thread last([&] { waiter.wake(); });
    waiter.wait(kHour);
    last.join();
    EXPECT_EQ(slept, kSleeps);
    server->close();
    system.exit();
}

} // namespace
