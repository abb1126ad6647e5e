// Work that other threads post to a System.
#include "host/inbox.h"

#include "framework/thread.h"
#include "host/metrics.h"
#include "tests/support/log_lines.h"

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <stdexcept>
#include <thread>

namespace
{

using InboxHandle = zet::Unknown::Handle_T<host::Inbox>;

struct Posted
{
    Posted() { m_System.init(); }
    ~Posted() { m_System.exit(); }

    zet::System m_System;
    const InboxHandle m_Inbox = new host::Inbox;
    std::vector<int> m_Done;
};

TEST(Inbox, WorkIsDoneInTheOrderOfThePosts)
{
    Posted net;
    net.m_Inbox->post([&] { net.m_Done.push_back(1); });
    ASSERT_TRUE(net.m_Inbox->start(&net.m_System));
    net.m_Inbox->post([&] { net.m_Done.push_back(2); });
    EXPECT_TRUE(net.m_Done.empty());
    net.m_System.tick();
    EXPECT_EQ(net.m_Done, std::vector<int>({1, 2}));
    net.m_System.tick();
    EXPECT_EQ(net.m_Done.size(), 2u);
}

TEST(Inbox, WorkThatIsPostedMeanwhileWaitsForTheNextTick)
{
    Posted net;
    ASSERT_TRUE(net.m_Inbox->start(&net.m_System));
    net.m_Inbox->post([&] { net.m_Inbox->post([&] { net.m_Done.push_back(1); }); });
    net.m_System.tick();
    EXPECT_TRUE(net.m_Done.empty());
    net.m_System.tick();
    EXPECT_EQ(net.m_Done.size(), 1u);
}

TEST(Inbox, AnExceptionEndsItsOwnWorkOnly)
{
    Posted net;
    ASSERT_TRUE(net.m_Inbox->start(&net.m_System));
    net.m_Inbox->post([] { throw std::runtime_error("broken"); });
    net.m_Inbox->post([&] { net.m_Done.push_back(1); });
    const test::LogLines log;
    net.m_System.tick();
    EXPECT_EQ(net.m_Done.size(), 1u);
    EXPECT_TRUE(log.has(zet::Log::kError, L"Exception in posted work: broken"));
}

TEST(Inbox, WorkIsReleasedAfterItIsDoneOrWithTheInbox)
{
    const auto held = std::make_shared<int>(0);
    {
        Posted net;
        ASSERT_TRUE(net.m_Inbox->start(&net.m_System));
        net.m_Inbox->post([held] {});
        EXPECT_EQ(held.use_count(), 2);
        net.m_System.tick();
        EXPECT_EQ(held.use_count(), 1);
        net.m_Inbox->post([held] {});
    }
    EXPECT_EQ(held.use_count(), 1);
}

TEST(Inbox, FullInboxRefusesWorkAndTakesItAgainAfterATick)
{
    zet::System system;
    system.init();
    const InboxHandle inbox = new host::Inbox(2);
    ASSERT_TRUE(inbox->start(&system));
    const auto held = std::make_shared<int>(0);
    EXPECT_TRUE(inbox->post([held] { ++*held; }));
    EXPECT_TRUE(inbox->post([held] { ++*held; }));
    EXPECT_EQ(inbox->getSize(), 2u);
    EXPECT_FALSE(inbox->post([held] { ++*held; }));
    EXPECT_EQ(held.use_count(), 3) << "refused work is released";
    EXPECT_EQ(inbox->getSize(), 2u);
    EXPECT_EQ(inbox->getRefusedCount(), 1u);
    system.tick();
    EXPECT_EQ(*held, 2);
    EXPECT_EQ(inbox->getSize(), 0u);
    EXPECT_TRUE(inbox->post([held] { ++*held; }));
    system.tick();
    EXPECT_EQ(*held, 3);
    system.exit();
}

TEST(Inbox, DefaultLimitIsGenerous)
{
    const InboxHandle inbox = new host::Inbox;
    for (size_t i = 0; i < host::Inbox::kDefaultLimit; ++i)
        ASSERT_TRUE(inbox->post([] {}));
    EXPECT_FALSE(inbox->post([] {}));
    EXPECT_EQ(+host::Inbox::kDefaultLimit, 65536u);
}

TEST(Inbox, ItsCallsAreAmongTheFigures)
{
    const InboxHandle inbox = new host::Inbox(1);
    host::Metrics metrics;
    metrics.watch("main", *inbox);
    EXPECT_TRUE(inbox->post([] {}));
    EXPECT_FALSE(inbox->post([] {}));
    const std::string text = metrics.getText().getBuffer();
    EXPECT_NE(text.find("\ncommonground_inbox_calls{inbox=\"main\"} 1\n"), std::string::npos);
    EXPECT_NE(text.find("\ncommonground_inbox_refused_total{inbox=\"main\"} 1\n"), std::string::npos);
}

// Also for the thread sanitizer: two Systems count down in turns, and sleep a day where nothing is posted.
TEST(Inbox, APostEndsTheSleepOfAnotherThread)
{
    zet::System systems[2];
    const InboxHandle inboxes[2] = {new host::Inbox, new host::Inbox};
    std::function<void(int, int)> pass = [&](int to, int left)
    {
        inboxes[to]->post(
            [&, to, left]
            {
                EXPECT_EQ(zet::Thread::getCurrentThreadId(), systems[to].getRunThreadId());
                if (left > 0)
                    return pass(1 - to, left - 1);
                systems[0].shutdown();
                systems[1].shutdown();
            });
    };
    std::thread threads[2];
    for (int i = 0; i < 2; ++i)
    {
        systems[i].setTickInterval(zet::System::kLongestInterval);
        ASSERT_TRUE(inboxes[i]->start(&systems[i]));
    }
    for (int i = 0; i < 2; ++i)
        threads[i] = std::thread([&system = systems[i]] { system.run(); });
    pass(0, 1000);
    for (std::thread& each : threads)
        each.join();
}

} // namespace
