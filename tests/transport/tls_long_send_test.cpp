#include "tests/support/tls_pair.h"

#include <gtest/gtest.h>

namespace
{

using test::NoteAnalyser;
using test::NoteCommand;

TEST(TlsLongSend, ItIsQueuedAndSealed)
{
    constexpr int kLong = 60 * 1024;
    int got = 0;
    NoteAnalyser server([&](CCommandSocket*, const NoteCommand& note) { got += note.m_Ballast; });
    NoteAnalyser client;
    test::TlsLoopback net(server);
    const auto context = test::makeClientContext();
    const auto socket = net.connectTls(client, context);
    ASSERT_TRUE(socket);
    ASSERT_TRUE(socket->send(NoteCommand(1, kLong)));
    EXPECT_GT(socket->getOutputSize(), static_cast<size_t>(kLong));
    ASSERT_TRUE(net.accepted()->send(NoteCommand(2, kLong)));
    EXPECT_GT(net.accepted()->getOutputSize(), static_cast<size_t>(kLong));
    ASSERT_TRUE(test::tickUntil(net.m_System, [&] { return got == kLong; }));
}

} // namespace
