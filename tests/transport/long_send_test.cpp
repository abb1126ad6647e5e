// A long send leaves at once, without a copy, if nothing is queued before it. Without fast paths it is queued.
#include "framework/inner/fast_paths.h"
#include "tests/support/loopback.h"
#include "tests/support/system_calls.h"

#include <gtest/gtest.h>

namespace
{

using test::ClientHandle;
using test::NoteAnalyser;
using test::NoteCommand;
using test::tickUntil;
using zet::inner::kHasFastPaths;

constexpr int kLong = 60 * 1024;

struct LongSend : testing::Test
{
    LongSend()
        : m_Server([this](CCommandSocket*, const NoteCommand& note) { m_Got.push_back(note.m_Number); }),
          m_Net(m_Server)
    {
        m_Socket = m_Net.connect(m_Client);
    }
    void SetUp() override { ASSERT_TRUE(m_Socket); }
    bool arrive(size_t count)
    {
        return tickUntil(m_Net.m_System, [&] { return m_Got.size() == count; });
    }

    std::vector<int> m_Got;
    NoteAnalyser m_Server;
    NoteAnalyser m_Client;
    test::Loopback m_Net;
    ClientHandle m_Socket;
};

TEST_F(LongSend, ItIsNotQueued)
{
    ASSERT_TRUE(m_Socket->send(NoteCommand(1, kLong)));
    EXPECT_EQ(m_Socket->getOutputSize() == 0, kHasFastPaths);
    ASSERT_TRUE(arrive(1));
}

TEST_F(LongSend, AfterAQueuedCommandItWaitsForItsTurn)
{
    ASSERT_TRUE(m_Socket->send(NoteCommand(1)));
    ASSERT_TRUE(m_Socket->send(NoteCommand(2, kLong)));
    EXPECT_GT(m_Socket->getOutputSize(), static_cast<size_t>(kLong));
    ASSERT_TRUE(arrive(2));
    EXPECT_EQ(m_Got, (std::vector<int>{1, 2}));
}

TEST_F(LongSend, TheRestThatTheSystemDoesNotTakeIsQueuedAndLaterCommandsFollow)
{
    int count = 0;
    // The server does not read meanwhile.
    while (m_Socket->getOutputSize() == 0 && count < 1000)
        ASSERT_TRUE(m_Socket->send(NoteCommand(++count, kLong)));
    ASSERT_LT(count, 1000);
    EXPECT_LE(m_Socket->getOutputSize(), static_cast<size_t>(kLong) + 100);
    ASSERT_TRUE(m_Socket->send(NoteCommand(++count, kLong)));
    ASSERT_TRUE(m_Socket->send(NoteCommand(++count)));
    ASSERT_TRUE(arrive(static_cast<size_t>(count)));
    for (int i = 0; i < count; ++i)
        ASSERT_EQ(m_Got[static_cast<size_t>(i)], i + 1);
}

#ifdef COUNTS_SYSTEM_CALLS
TEST_F(LongSend, ItTakesOneCallAndAShortOneNoneBeforeTheTick)
{
    if (!kHasFastPaths)
        GTEST_SKIP() << "without fast paths each command is queued";
    const test::SystemCalls before;
    ASSERT_TRUE(m_Socket->send(NoteCommand(1, kLong)));
    const test::SystemCalls after;
    EXPECT_EQ(after.m_Sends, before.m_Sends + 1);
    ASSERT_TRUE(m_Socket->send(NoteCommand(2, 20000)));
    const test::SystemCalls queued;
    EXPECT_EQ(queued.m_Sends, after.m_Sends);
    m_Net.m_System.tick();
    const test::SystemCalls ticked;
    EXPECT_EQ(ticked.m_Sends, after.m_Sends + 1);
    ASSERT_TRUE(arrive(2));
}
#endif

} // namespace
