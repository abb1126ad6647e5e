// A long send leaves at once, without a copy, if nothing is queued before it. Without fast paths it is queued.
#include "framework/inner/fast_paths.h"
#include "tests/support/accepting_port.h"
#include "tests/support/allocations.h"
#include "tests/support/loopback.h"
#include "tests/support/noting_events.h"
#include "tests/support/passing_door.h"
#include "tests/support/system_calls.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>

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

// A door that sends at most a number of bytes per call, or nothing for a fault.
struct NarrowDoor : test::PassingDoor
{
    size_t send(Handle handle, const Piece* pieces, int count, Fault& fault) override
    {
        const Piece first{pieces[0].m_Data, std::min(pieces[0].m_Size, m_Most)};
        if (!m_Fault)
            return PassingDoor::send(handle, &first, std::min(count, 1), fault);
        fault = m_Fault;
        return 0;
    }

    size_t m_Most = 1000;
    Fault m_Fault;
};

// A connection through that door.
struct NarrowSend : testing::Test
{
    using Stream = test::NotingEvents<zet::TcpStream>;

    void SetUp() override
    {
        if (!kHasFastPaths)
            GTEST_SKIP() << "without fast paths each send is queued";
        m_System.init();
        ASSERT_TRUE(zet::inner::setDoor(m_System, m_Door));
        m_Port->start(&m_System);
        ASSERT_TRUE(m_Port->listen(0, 5));
        m_Stream->start(&m_System);
        ASSERT_TRUE(m_Stream->connect(L"127.0.0.1", m_Port->getPort(), false));
        ASSERT_TRUE(tickUntil(m_System, [&] { return !m_Stream->m_Events.empty() && !m_Port->m_Accepted.empty(); }));
        // The first call makes the door's count of them.
        ASSERT_EQ(m_Stream->send(m_Bytes.data(), 1), 1);
        m_System.tick();
        ASSERT_EQ(m_Stream->getOutputSize(), 0U);
    }
    void TearDown() override
    {
        m_Stream->close();
        m_Port->close();
        m_System.exit();
    }
    int send() { return m_Stream->send(m_Bytes.data(), static_cast<int>(m_Bytes.size())); }
    bool end()
    {
        return tickUntil(m_System, [&] { return m_Stream->m_Events.size() == 2; });
    }

    // More than a block that is kept.
    const std::vector<unsigned char> m_Bytes = std::vector<unsigned char>(200000, 7);
    const std::shared_ptr<NarrowDoor> m_Door = std::make_shared<NarrowDoor>();
    zet::System m_System;
    const zet::Unknown::Handle_T<test::AcceptingPort> m_Port = new test::AcceptingPort;
    const zet::Unknown::Handle_T<Stream> m_Stream = new Stream;
};

TEST_F(NarrowSend, TheRestArrives)
{
    EXPECT_EQ(send(), 200000);
    EXPECT_EQ(m_Stream->getOutputSize(), 199000U);
    m_Door->m_Most = 150000;
    std::vector<unsigned char> got(200001);
    const auto accepted = m_Port->m_Accepted.back();
    ASSERT_TRUE(tickUntil(m_System, [&] { return m_Stream->getOutputSize() == 0; }));
    int size = 0;
    ASSERT_TRUE(tickUntil(m_System,
                          [&]
                          {
                              accepted->onTick(0);
                              size += accepted->read(got.data() + size, 200001 - size);
                              return size == 200001;
                          }));
    EXPECT_EQ(std::count(got.begin(), got.end(), 7), 200001);
}

TEST_F(NarrowSend, WithoutMemoryForTheRestTheConnectionEnds)
{
    bool canFail = false;
    {
        const test::FailingAllocations failures(0, 1);
        EXPECT_EQ(send(), 200000);
        canFail = failures.isOver();
    }
    if (!canFail)
        GTEST_SKIP() << "the library's allocations do not fail here";
    EXPECT_EQ(m_Stream->getOutputSize(), 0U);
    ASSERT_TRUE(end());
    EXPECT_EQ(m_Stream->m_Cause, (zet::EndCause{zet::EndCause::kNoMemory, 0}));
}

TEST_F(NarrowSend, AFaultOfTheSystemEndsTheConnection)
{
    m_Door->m_Fault = {zet::inner::Door::Fault::kUnreachable, 5};
    EXPECT_EQ(send(), 200000);
    EXPECT_EQ(m_Stream->getOutputSize(), 0U);
    ASSERT_TRUE(end());
    EXPECT_EQ(m_Stream->m_Cause.m_Code, zet::EndCause::kUnreachable);
    EXPECT_EQ(m_Stream->getConnectionState(), zet::TcpConnection::kBroken);
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
