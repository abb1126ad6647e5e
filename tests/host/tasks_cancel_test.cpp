// Cancelled tasks that hold the owner of their Tasks.
#include "host/tasks.h"

#ifdef __cpp_impl_coroutine

#include "tests/host/conversation.h"

#include <gtest/gtest.h>

#include <memory>

namespace
{

using namespace std::chrono_literals;

struct Owner
{
    Owner(host::Questions& questions, int& ended) : m_Tasks(questions), m_Ended(ended) {}
    ~Owner() { ++m_Ended; }

    host::Tasks m_Tasks;
    int& m_Ended;
};

host::Task hold(std::shared_ptr<Owner>)
{
    co_await host::sleep(1h);
}

// cancel() destroys the frames, and with them the last reference to the owner.
TEST(HostTasksCancel, CancelledTasksMayHoldTheLastReferenceToTheirOwner)
{
    test::Conversation talk;
    int ended = 0;
    auto owner = std::make_shared<Owner>(*talk.m_Questions, ended);
    host::Tasks& tasks = owner->m_Tasks;
    tasks.start(hold(owner));
    tasks.start(hold(std::move(owner)));
    EXPECT_EQ(tasks.getCount(), 2);
    EXPECT_EQ(ended, 0);
    tasks.cancel();
    EXPECT_EQ(ended, 1);
}

} // namespace

#endif
