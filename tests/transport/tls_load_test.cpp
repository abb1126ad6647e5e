// The cost of TLS connections: many, idle, and plain ones on the same server.
#include "tests/support/allocations.h"
#include "tests/support/handle_limit.h"
#include "tests/support/raw_peer.h"
#include "tests/support/system_calls.h"
#include "tests/support/tls_pair.h"

#include <gtest/gtest.h>

namespace
{

using test::bytesInUse;
using test::ClientHandle;
using test::makeClientContext;
using test::NoteAnalyser;
using test::NoteCommand;
using test::tickUntil;
using test::TlsHandle;
using test::TlsLoopback;

TEST(TlsLoad, AThousandConnectionsAreServedAndLeave)
{
    constexpr int kCount = 1000;
    const test::RaisedHandleLimit handles;
    if (handles.count() < 2 * kCount + 200)
        GTEST_SKIP() << "the system gives this process " << handles.count() << " handles at most";
    NoteAnalyser server([](CCommandSocket* socket, const NoteCommand& note)
                        { EXPECT_TRUE(socket->send(NoteCommand(note.m_Number + 1))); });
    int answers = 0;
    long long sum = 0;
    NoteAnalyser client(
        [&](CCommandSocket*, const NoteCommand& note)
        {
            ++answers;
            sum += note.m_Number;
        });
    TlsLoopback net(server);
    const TlsHandle context = makeClientContext();
    // The first ones fill shared caches.
    for (int i = 0; i < 10; ++i)
        ASSERT_TRUE(net.connectTls(client, context));
    const auto before = bytesInUse();
    int resumed = 0;
    for (int i = 10; i < kCount; ++i)
    {
        const ClientHandle socket = net.connectTls(client, context);
        ASSERT_TRUE(socket) << i;
        resumed += socket->isResumed();
    }
    for (int i = 0; i < kCount; ++i)
        ASSERT_TRUE(net.m_Clients[static_cast<size_t>(i)]->send(NoteCommand(i)));
    ASSERT_TRUE(tickUntil(net.m_System, [&] { return answers == kCount; }));
    EXPECT_EQ(sum, kCount * (kCount + 1LL) / 2);
    for (int i = 0; i < 3; ++i)
        net.m_System.tick();
    const auto after = bytesInUse();
    RecordProperty("FullHandshakes", kCount - 10 - resumed);
    RecordProperty("ResumedHandshakes", resumed);
    for (int i = 0; i < kCount; i += 2)
        net.m_Clients[static_cast<size_t>(i)]->close();
    ASSERT_TRUE(tickUntil(net.m_System, [&] { return net.m_Server->GetClientCount() == kCount / 2; }));
    if (!before)
        GTEST_SKIP() << test::kNobodyTellsBytes;
    // Each has two ends in this process.
    const long long each = (*after - *before) / (2 * (kCount - 10));
    EXPECT_LT(each, 24 * 1024);
    RecordProperty("BytesPerConnection", static_cast<int>(each));
}

#ifdef COUNTS_SYSTEM_CALLS

TEST(TlsIdle, AConnectionThatHasCarriedNothingTakesLittle)
{
    NoteAnalyser analyser;
    TlsLoopback net(analyser);
    const TlsHandle context = makeClientContext();
    for (int i = 0; i < 40; ++i)
        ASSERT_TRUE(net.connectTls(analyser, context));
    const auto before = bytesInUse();
    ASSERT_TRUE(before);
    constexpr int kMore = 100;
    for (int i = 0; i < kMore; ++i)
        ASSERT_TRUE(net.connectTls(analyser, context));
    for (int i = 0; i < 3; ++i)
        net.m_System.tick();
    const long long each = (*bytesInUse() - *before) / (2 * kMore);
    EXPECT_LT(each, 24 * 1024);
    RecordProperty("BytesPerConnection", static_cast<int>(each));
}

TEST(TlsIdle, ATickOnIdleConnectionsCallsNothingButTheSystemsOwnWait)
{
    NoteAnalyser analyser;
    TlsLoopback net(analyser);
    const TlsHandle context = makeClientContext();
    for (int i = 0; i < 20; ++i)
        ASSERT_TRUE(net.connectTls(analyser, context));
    for (int i = 0; i < 5; ++i)
        net.m_System.tick();
    const test::SystemCalls before;
    const test::AllocationCount allocations;
    for (int i = 0; i < 10; ++i)
        net.m_System.tick();
    const test::SystemCalls after;
    const long long blocks = allocations.blocks();
    test::expectNoCalls(before, after);
    EXPECT_LE(after.m_Waits - before.m_Waits, 20);
    EXPECT_EQ(blocks, 0);
}

TEST(TlsIdle, WaitingForASilentPeerCallsNothingEither)
{
    NoteAnalyser analyser;
    TlsLoopback net(analyser);
    test::RawPeer silent(net);
    ASSERT_TRUE(silent.m_IsUp);
    for (int i = 0; i < 5; ++i)
        net.m_System.tick();
    const test::SystemCalls before;
    for (int i = 0; i < 10; ++i)
        net.m_System.tick();
    const test::SystemCalls after;
    EXPECT_EQ(net.m_Server->GetClientCount(), 1);
    test::expectNoCalls(before, after);
}

TEST(TlsIdle, WhatATickSendsLeavesInOneSystemCallAndIsReadWithOne)
{
    int got = 0;
    NoteAnalyser analyser([&](CCommandSocket*, const NoteCommand&) { ++got; });
    TlsLoopback net(analyser);
    const ClientHandle socket = net.connectTls(analyser, makeClientContext());
    ASSERT_TRUE(socket);
    for (int i = 0; i < 5; ++i)
        net.m_System.tick();
    const test::SystemCalls before;
    for (int i = 0; i < 50; ++i)
        ASSERT_TRUE(socket->send(NoteCommand(i, 800)));
    ASSERT_TRUE(tickUntil(net.m_System, [&] { return got == 50; }));
    const test::SystemCalls after;
    EXPECT_EQ(after.m_Sends - before.m_Sends, 1);
    EXPECT_EQ(after.m_Receives - before.m_Receives, 1);
}

#endif

} // namespace
