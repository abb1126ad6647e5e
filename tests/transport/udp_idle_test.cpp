// The cost of idle connections over UDP, the sizes of sends, and many connections.
#include "tests/support/allocations.h"
#include "tests/support/system_calls.h"
#include "tests/support/udp_test.h"

#include <algorithm>

#ifdef COUNTS_SYSTEM_CALLS

namespace
{

using test::NoteCommand;
using Calls = test::SystemCalls;

class UdpIdle : public test::UdpTest
{
};

TEST_F(UdpIdle, ATickOnIdleConnectionsCallsNothingButTheSystemsOwnWait)
{
    for (int i = 0; i < 40; ++i)
        ASSERT_TRUE(m_Net.connect());
    m_Net.until([] { return false; }, 1000);
    const Calls before;
    const test::AllocationCount allocations;
    // Less than the keep-alive interval.
    for (int i = 0; i < 10; ++i)
        m_Net.step(100);
    const Calls after;
    const long long blocks = allocations.blocks();
    test::expectNoCalls(before, after);
    EXPECT_EQ(after.m_Waits - before.m_Waits, 10);
    EXPECT_EQ(blocks, 0);
}

TEST_F(UdpIdle, WhatATickSendsLeavesInFewSystemCalls)
{
    for (int i = 0; i < 64; ++i)
        ASSERT_TRUE(m_Net.connect());
    m_Net.until([] { return false; }, 1000);
    const Calls before;
    for (const auto& socket : m_Net.m_Sockets)
        for (int i = 0; i < 10; ++i)
            ASSERT_TRUE(socket->send(NoteCommand(i, 20)));
    m_Net.m_System.tick();
    const Calls after;
    // Ten commands are one packet, and 32 packets one call. The server ticked before.
    EXPECT_EQ(after.m_Sends - before.m_Sends, 2);
    m_Net.step();
    for (const auto& socket : m_Net.m_Server->m_Accepted)
        EXPECT_EQ(socket->m_Numbers.size(), 10U);
}

TEST_F(UdpIdle, AThousandConnectionsOnOnePortAreServedAndLeave)
{
    constexpr int kCount = 1000;
    // Memory of the two tables of each socket is not part of the connections'.
    for (int i = 0; i < kCount; ++i)
        m_Net.m_Sockets.push_back(new test::NoteSocket);
    std::vector<test::NoteSocketHandle> spare(kCount);
    for (auto& socket : spare)
        socket = new test::NoteSocket;
    m_Net.m_Server->m_Spare = spare;
    spare.clear();
    const auto before = test::bytesInUse();
    ASSERT_TRUE(before);
    m_Net.m_Server->m_Handler = [](test::NoteSocket& socket, const NoteCommand& note)
    { EXPECT_TRUE(socket.send(NoteCommand(note.m_Number + 1))); };
    for (int i = 0; i < kCount; ++i)
    {
        ASSERT_TRUE(m_Net.m_Sockets[static_cast<size_t>(i)]->connect(m_Net.m_Port, L"127.0.0.1",
                                                                     m_Net.m_Server->getPort(), zet::Uuid()));
        // All at once would exceed the operating system's receive buffer of one port.
        const auto isAccepted = [&] { return m_Net.m_Server->GetClientCount() == i + 1; };
        ASSERT_TRUE(i % 40 != 39 || m_Net.until(isAccepted));
    }
    EXPECT_EQ(m_Net.m_Server->getConnectionCount(), kCount);
    EXPECT_EQ(m_Net.m_Port->getConnectionCount(), kCount);
    m_Net.until([] { return false; }, 500);
    const long long each = (*test::bytesInUse() - *before) / (2 * kCount);
    RecordProperty("BytesPerConnection", static_cast<int>(each));
    EXPECT_LT(each, 128 * 1024);
    for (int i = 0; i < kCount; ++i)
        ASSERT_TRUE(m_Net.m_Sockets[static_cast<size_t>(i)]->send(NoteCommand(i)));
    const auto isAnswered = [](const test::NoteSocketHandle& socket) { return socket->m_Numbers.size() == 1; };
    ASSERT_TRUE(m_Net.until([&] { return std::all_of(m_Net.m_Sockets.begin(), m_Net.m_Sockets.end(), isAnswered); }));
    for (int i = 0; i < kCount; ++i)
        EXPECT_EQ(m_Net.m_Sockets[static_cast<size_t>(i)]->m_Numbers[0], i + 1);
    for (size_t i = 0; i < kCount; i += 2)
        m_Net.m_Sockets[i]->close();
    ASSERT_TRUE(m_Net.until([&] { return m_Net.m_Server->GetClientCount() == kCount / 2; }));
    EXPECT_EQ(m_Net.m_Server->getConnectionCount(), kCount / 2);
}

} // namespace

#endif
