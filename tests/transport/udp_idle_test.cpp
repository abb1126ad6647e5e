// What connections over UDP cost while nothing happens on them, in what portions output leaves, and many of them.
#include "tests/support/allocations.h"
#include "tests/support/system_calls.h"
#include "tests/support/udp_loopback.h"

#include <gtest/gtest.h>

#include <algorithm>

#ifdef COUNTS_SYSTEM_CALLS

namespace
{

using test::NoteCommand;
using Calls = test::SystemCalls;

TEST(UdpIdle, ATickOnIdleConnectionsCallsNothingButTheSystemsOwnWait)
{
    if (!zet::UdpServer::isAvailable())
        GTEST_SKIP() << "built without connections over UDP";
    test::UdpNet net;
    for (int i = 0; i < 40; ++i)
        ASSERT_TRUE(net.connect());
    net.until([] { return false; }, 1000);
    const Calls before;
    const test::AllocationCount allocations;
    // Less than the time to the next sign of life.
    for (int i = 0; i < 10; ++i)
        net.step(100);
    const Calls after;
    const long long blocks = allocations.blocks();
    test::expectNoCalls(before, after);
    EXPECT_GT(after.m_Waits, before.m_Waits);
    EXPECT_LE(after.m_Waits - before.m_Waits, 20);
    EXPECT_EQ(blocks, 0);
}

TEST(UdpIdle, WhatATickSendsLeavesInFewSystemCalls)
{
    if (!zet::UdpServer::isAvailable())
        GTEST_SKIP() << "built without connections over UDP";
    test::UdpNet net;
    for (int i = 0; i < 64; ++i)
        ASSERT_TRUE(net.connect());
    net.until([] { return false; }, 1000);
    const Calls before;
    for (const auto& socket : net.m_Sockets)
        for (int i = 0; i < 10; ++i)
            ASSERT_TRUE(socket->send(NoteCommand(i, 20)));
    net.m_System.tick();
    const Calls after;
    // Ten commands are one packet, and 32 packets one call. The server's tick came before.
    EXPECT_EQ(after.m_Sends - before.m_Sends, 2);
    net.step();
    for (const auto& socket : net.m_Server->m_Accepted)
        EXPECT_EQ(socket->m_Numbers.size(), 10U);
}

TEST(UdpIdle, AThousandConnectionsOnOnePortAreServedAndLeave)
{
    if (!zet::UdpServer::isAvailable())
        GTEST_SKIP() << "built without connections over UDP";
    constexpr int kCount = 1000;
    test::UdpNet net;
    ASSERT_TRUE(net.m_IsListening);
    // What the two tables cost, which each socket has for itself, is not the connections'.
    for (int i = 0; i < kCount; ++i)
        net.m_Sockets.push_back(new test::NoteSocket);
    std::vector<test::NoteSocketHandle> spare(kCount);
    for (auto& socket : spare)
        socket = new test::NoteSocket;
    net.m_Server->m_Spare = spare;
    spare.clear();
    const auto before = test::bytesInUse();
    ASSERT_TRUE(before);
    net.m_Server->m_Handler = [](test::NoteSocket& socket, const NoteCommand& note)
    { EXPECT_TRUE(socket.send(NoteCommand(note.m_Number + 1))); };
    for (int i = 0; i < kCount; ++i)
    {
        ASSERT_TRUE(net.m_Sockets[static_cast<size_t>(i)]->connect(net.m_Port, L"127.0.0.1", net.m_Server->getPort(),
                                                                   zet::Uuid()));
        // All at once would be more than the operating system keeps for one port.
        const auto isAccepted = [&] { return net.m_Server->GetClientCount() == i + 1; };
        ASSERT_TRUE(i % 40 != 39 || net.until(isAccepted));
    }
    EXPECT_EQ(net.m_Server->getConnectionCount(), kCount);
    EXPECT_EQ(net.m_Port->getConnectionCount(), kCount);
    net.until([] { return false; }, 500);
    const long long each = (*test::bytesInUse() - *before) / (2 * kCount);
    RecordProperty("BytesPerConnection", static_cast<int>(each));
    EXPECT_LT(each, 128 * 1024);
    for (int i = 0; i < kCount; ++i)
        ASSERT_TRUE(net.m_Sockets[static_cast<size_t>(i)]->send(NoteCommand(i)));
    const auto isAnswered = [](const test::NoteSocketHandle& socket) { return socket->m_Numbers.size() == 1; };
    ASSERT_TRUE(net.until([&] { return std::all_of(net.m_Sockets.begin(), net.m_Sockets.end(), isAnswered); }));
    for (int i = 0; i < kCount; ++i)
        EXPECT_EQ(net.m_Sockets[static_cast<size_t>(i)]->m_Numbers[0], i + 1);
    for (size_t i = 0; i < kCount; i += 2)
        net.m_Sockets[i]->close();
    ASSERT_TRUE(net.until([&] { return net.m_Server->GetClientCount() == kCount / 2; }));
    EXPECT_EQ(net.m_Server->getConnectionCount(), kCount / 2);
}

} // namespace

#endif
