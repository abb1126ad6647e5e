#include "tests/support/tls_pair.h"
#include "transport/send_to_all.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace
{

using test::ClientHandle;
using test::NoteAnalyser;
using test::NoteCommand;
using test::tickUntil;

TEST(TlsSendToAll, EachConnectionSealsTheFrameItself)
{
    std::vector<int> got;
    NoteAnalyser server;
    NoteAnalyser client([&](CCommandSocket*, const NoteCommand& note) { got.push_back(note.m_Ballast); });
    test::TlsLoopback net(server);
    const auto context = test::makeClientContext();
    for (int i = 0; i < 3; ++i)
        ASSERT_TRUE(net.connectTls(client, context));
    EXPECT_TRUE(net.accepted()->isSecure());
    EXPECT_EQ(SendToAll(*net.m_Server->GetAllClientSocket(), NoteCommand(1, 10)), 3);
    // Longer than one record; first after another command, then alone.
    EXPECT_EQ(SendToAll(*net.m_Server->GetAllClientSocket(), NoteCommand(1, 50000)), 3);
    ASSERT_TRUE(tickUntil(net.m_System, [&] { return got.size() == 6; }));
    EXPECT_EQ(std::count(got.begin(), got.end(), 50000), 3);
    EXPECT_EQ(SendToAll(*net.m_Server->GetAllClientSocket(), NoteCommand(1, 60000)), 3);
    ASSERT_TRUE(tickUntil(net.m_System, [&] { return got.size() == 9; }));
    EXPECT_EQ(std::count(got.begin(), got.end(), 60000), 3);
}

} // namespace
