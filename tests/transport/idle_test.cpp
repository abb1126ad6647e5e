// The cost of idle connections, and the sizes of sends.
#include "framework/inner/fast_paths.h"
#include "framework/time.h"
#include "tests/support/allocations.h"
#include "tests/support/loopback.h"
#include "tests/support/net_pair.h"
#include "tests/support/system_calls.h"

#include <gtest/gtest.h>

#ifdef COUNTS_SYSTEM_CALLS
#include "tests/support/handle_limit.h"

namespace
{

using test::ClientHandle;
using test::Loopback;
using test::NoteAnalyser;
using test::NoteCommand;
using test::tickUntil;
using zet::inner::kHasFastPaths;
using Calls = test::SystemCalls;

TEST(Idle, ATickOnIdleConnectionsCallsNothingButTheSystemsOwnWait)
{
    NoteAnalyser analyser;
    Loopback net(analyser);
    for (int i = 0; i < 40; ++i)
        ASSERT_TRUE(net.connect(analyser));
    for (int i = 0; i < 5; ++i)
        net.m_System.tick();
    const Calls before;
    const test::AllocationCount allocations;
    for (int i = 0; i < 10; ++i)
        net.m_System.tick();
    const Calls after;
    const long long blocks = allocations.blocks();
    test::expectNoCalls(before, after);
    EXPECT_EQ(after.m_Waits - before.m_Waits, 10);
    EXPECT_EQ(blocks, 0);
}

TEST(Idle, ASleepSparesItsTickTheLook)
{
    const zet::TestClock clock(0);
    NoteAnalyser analyser;
    Loopback net(analyser);
    ASSERT_TRUE(net.connect(analyser));
    for (int i = 0; i < 5; ++i)
        net.m_System.tick();
    const Calls before;
    for (int i = 0; i < 10; ++i)
    {
        // An event without a socket ends the sleep at once.
        net.m_System.getWaiter()->wake();
        net.m_System.wait();
        net.m_System.tick();
    }
    const Calls after;
    test::expectNoCalls(before, after);
    EXPECT_EQ(after.m_Waits - before.m_Waits, 10);
}

TEST(Idle, ACommandAndItsAnswerCallForASleepAReadAndASendOnEachSide)
{
    NoteAnalyser server([](CCommandSocket* socket, const NoteCommand& note) { EXPECT_TRUE(socket->send(note)); });
    int answers = 0;
    NoteAnalyser client([&](CCommandSocket*, const NoteCommand&) { ++answers; });
    Loopback net(server);
    const ClientHandle socket = net.connect(client);
    ASSERT_TRUE(socket);
    const auto ask = [&]
    {
        const int goal = answers + 1;
        ASSERT_TRUE(socket->send(NoteCommand(1)));
        ASSERT_TRUE(tickUntil(net.m_System, [&] { return answers == goal; }));
    };
    ask();
    constexpr int kCount = 20;
    const test::AllocationCount allocations;
    const Calls before;
    for (int i = 0; i < kCount; ++i)
        ask();
    const Calls after;
    EXPECT_EQ(after.m_Sends - before.m_Sends, 2 * kCount);
    EXPECT_EQ(after.m_Receives - before.m_Receives, 2 * kCount);
    EXPECT_EQ(after.m_Controls, before.m_Controls);
    EXPECT_EQ(after.m_Others, before.m_Others);
    // The tick that sends the command polls itself; both ends share the two following sleeps.
    EXPECT_LE(after.m_Waits - before.m_Waits, 3 * kCount);
    // Without fast paths each buffer is a new block: two of each side, for output and for input.
    EXPECT_EQ(allocations.blocks(), kHasFastPaths ? 0 : 4 * kCount);
}

TEST(Idle, ATickOnIdleNetSessionsCallsNothingButTheSystemsOwnWait)
{
    test::NetPair net;
    std::vector<test::NotingHandle> sessions;
    for (int i = 0; i < 20; ++i)
    {
        sessions.push_back(net.connect());
        ASSERT_TRUE(sessions.back());
    }
    for (int i = 0; i < 5; ++i)
        net.m_System.tick();
    const Calls before;
    const test::AllocationCount allocations;
    for (int i = 0; i < 10; ++i)
        net.m_System.tick();
    const Calls after;
    const long long blocks = allocations.blocks();
    test::expectNoCalls(before, after);
    EXPECT_EQ(after.m_Waits - before.m_Waits, 10);
    EXPECT_EQ(blocks, 0);
}

TEST(Idle, WhatATickSendsLeavesInOneSystemCall)
{
    NoteAnalyser server(
        [](CCommandSocket* socket, const NoteCommand& note)
        {
            for (int i = 0; i < 10; ++i)
                EXPECT_TRUE(socket->send(NoteCommand(note.m_Number, 100)));
        });
    int answers = 0;
    NoteAnalyser client([&](CCommandSocket*, const NoteCommand&) { ++answers; });
    Loopback net(server);
    const ClientHandle socket = net.connect(client);
    ASSERT_TRUE(socket);
    const Calls before;
    for (int i = 0; i < 5; ++i)
        ASSERT_TRUE(socket->send(NoteCommand(i)));
    const Calls queued;
    EXPECT_EQ(queued.m_Sends, before.m_Sends);
    net.m_System.tick();
    const Calls asked;
    EXPECT_EQ(asked.m_Sends - before.m_Sends, 1);
    ASSERT_TRUE(tickUntil(net.m_System, [&] { return answers == 50; }));
    const Calls answered;
    // Without fast paths a send per block.
    EXPECT_EQ(answered.m_Sends - asked.m_Sends, kHasFastPaths ? 1 : 3);
}

TEST(Idle, ASendToManyConnectionsIsOneSystemCallEach)
{
    int got = 0;
    NoteAnalyser client([&](CCommandSocket*, const NoteCommand&) { ++got; });
    NoteAnalyser server;
    Loopback net(server);
    server.m_Handler = [&](CCommandSocket*, const NoteCommand& note)
    {
        for (const ClientHandle& other : net.m_Server->m_Accepted)
            EXPECT_TRUE(other->send(note));
    };
    for (int i = 0; i < 10; ++i)
        ASSERT_TRUE(net.connect(client));
    ASSERT_TRUE(net.m_Clients[0]->send(NoteCommand(1)));
    ASSERT_TRUE(net.m_Clients[5]->send(NoteCommand(2)));
    net.m_System.tick();
    const Calls before;
    ASSERT_TRUE(tickUntil(net.m_System, [&] { return got == 20; }));
    const Calls after;
    EXPECT_LE(after.m_Sends - before.m_Sends, 20);
    EXPECT_GE(after.m_Sends - before.m_Sends, 10);
}

TEST(Idle, AnIdleConnectionTakesLessThanTwoKibibytes)
{
    NoteAnalyser analyser;
    Loopback net(analyser);
    int got = 0;
    analyser.m_Handler = [&](CCommandSocket*, const NoteCommand&) { ++got; };
    for (int i = 0; i < 100; ++i)
        ASSERT_TRUE(net.connect(analyser));
    for (int i = 0; i < 3; ++i)
        net.m_System.tick();
    const auto before = test::bytesInUse();
    ASSERT_TRUE(before);
    constexpr int kMore = 200;
    for (int i = 0; i < kMore; ++i)
    {
        ASSERT_TRUE(net.connect(analyser));
        // Used once, then idle again.
        ASSERT_TRUE(net.m_Clients.back()->send(NoteCommand(1, 20000)));
    }
    ASSERT_TRUE(tickUntil(net.m_System, [&] { return got == kMore; }));
    for (int i = 0; i < 3; ++i)
        net.m_System.tick();
    // Each has two ends in this process.
    const long long each = (*test::bytesInUse() - *before) / (2 * kMore);
    EXPECT_LT(each, 2048);
    RecordProperty("BytesPerConnection", static_cast<int>(each));
}

// A server's end of a connection without traffic: the object of the host's class, the link, and the places in the
// server's dictionary. The server's three lists of pointers double from time to time; here they do not.
TEST(Idle, AnAcceptedConnectionTakesThreeBlocksAndSevenHundredBytes)
{
    NoteAnalyser analyser;
    Loopback net(analyser);
    // The lists have space for 256 from the 129th on.
    constexpr int kBefore = 129;
    constexpr int kCount = 256;
    net.m_Server->m_Accepted.reserve(kCount);
    net.m_Clients.reserve(kCount);
    long long bytes = 0;
    long long blocks = 0;
    for (int i = 0; i < kCount; ++i)
    {
        const ClientHandle client = new test::Client(analyser);
        client->start(&net.m_System);
        ASSERT_TRUE(client->connect(L"127.0.0.1", net.m_Server->getPort(), false));
        net.m_Clients.push_back(client);
        const auto before = test::bytesInUse();
        ASSERT_TRUE(before);
        const test::AllocationCount allocations;
        net.m_System.tick();
        blocks += i < kBefore ? 0 : allocations.blocks();
        bytes += i < kBefore ? 0 : *test::bytesInUse() - *before;
        ASSERT_EQ(net.m_Server->m_Accepted.size(), static_cast<size_t>(i + 1));
    }
    EXPECT_EQ(blocks, 3 * (kCount - kBefore));
    // With what the allocator adds to each block.
    EXPECT_LE(bytes / (kCount - kBefore), 704);
    RecordProperty("BytesPerConnection", static_cast<int>(bytes / (kCount - kBefore)));
}

TEST(Idle, SendingSmallCommandsAllocatesNothingOnceWarm)
{
    long got = 0;
    NoteAnalyser analyser([&](CCommandSocket*, const NoteCommand&) { ++got; });
    Loopback net(analyser);
    const ClientHandle socket = net.connect(analyser);
    ASSERT_TRUE(socket);
    CCmdPackager packager;
    ASSERT_TRUE(NoteCommand(1).Write(&packager));
    for (int round = 0; round < 2; ++round)
    {
        const test::AllocationCount allocations;
        for (int i = 0; i < 1000; ++i)
            ASSERT_TRUE(socket->send(packager));
        // Without fast paths no block is kept.
        EXPECT_LE(allocations.blocks(), round == 0 ? 1000 : kHasFastPaths ? 0 : 10);
        const long goal = got + 1000;
        ASSERT_TRUE(tickUntil(net.m_System, [&] { return got >= goal; }));
    }
}

TEST(Load, FiveThousandConnectionsAreServedAndLeave)
{
    constexpr int kCount = 5000;
    const test::RaisedHandleLimit handles;
    if (handles.count() < 2 * kCount + 200)
        GTEST_SKIP() << "the system gives this process " << handles.count() << " handles at most";
    NoteAnalyser server([](CCommandSocket* socket, const NoteCommand& note)
                        { EXPECT_TRUE(socket->send(NoteCommand(note.m_Number + 1))); });
    long long sum = 0;
    int answers = 0;
    NoteAnalyser client(
        [&](CCommandSocket*, const NoteCommand& note)
        {
            sum += note.m_Number;
            ++answers;
        });
    Loopback net(server);
    zet::NetLimits limits;
    limits.m_ConnectionsPerAddress = kCount;
    net.m_Server->setLimits(limits);
    for (int i = 0; i < kCount; ++i)
    {
        const ClientHandle socket = new test::Client(client);
        socket->start(&net.m_System);
        ASSERT_TRUE(socket->connect(L"127.0.0.1", net.m_Server->getPort(), false)) << i;
        net.m_Clients.push_back(socket);
        if (i % 10 == 9)
            net.m_System.tick();
    }
    ASSERT_TRUE(tickUntil(net.m_System, [&] { return net.m_Server->GetClientCount() == kCount; }));
    for (int i = 0; i < kCount; ++i)
        ASSERT_TRUE(net.m_Clients[static_cast<size_t>(i)]->send(NoteCommand(i)));
    ASSERT_TRUE(tickUntil(net.m_System, [&] { return answers == kCount; }));
    EXPECT_EQ(sum, static_cast<long long>(kCount) * (kCount + 1) / 2);
    for (int i = 0; i < kCount; i += 2)
        net.m_Clients[static_cast<size_t>(i)]->close();
    ASSERT_TRUE(tickUntil(net.m_System, [&] { return net.m_Server->GetClientCount() == kCount / 2; }));
}

} // namespace

#else

TEST(Idle, CallsAndMemoryAreCounted)
{
    GTEST_SKIP() << "for all tests of this file, which count calls by replacing glibc's functions";
}

#endif
