// A connection that its host kept after Abandon() and ticked itself received only what was left of its last turn among
// the server's connections, and then nothing more, without a log line.
#include "tests/support/loopback.h"

#include <gtest/gtest.h>

namespace
{

using test::ClientHandle;
using test::Loopback;
using test::NoteAnalyser;
using test::NoteCommand;
using test::tickUntil;

TEST(Bugs, AConnectionThatItsHostKeepsReceivesWithoutTurns)
{
    int got = 0;
    NoteAnalyser analyser([&](CCommandSocket*, const NoteCommand&) { ++got; });
    Loopback net(analyser);
    const ClientHandle client = net.connect(analyser);
    // With another connection there are turns.
    ASSERT_TRUE(client && net.connect(analyser));
    const ClientHandle kept = net.m_Server->m_Accepted.front();
    ASSERT_TRUE(client->send(NoteCommand(1, 1000)));
    ASSERT_TRUE(tickUntil(net.m_System, [&] { return got == 1; }));
    net.m_Server->Abandon(kept);
    for (int i = 0; i < 5; ++i)
        ASSERT_TRUE(client->send(NoteCommand(2, 60000)));
    EXPECT_TRUE(tickUntil(net.m_System,
                          [&]
                          {
                              kept->onTick(0);
                              return got == 6;
                          }));
    kept->close();
}

} // namespace
