// Over TLS, too, commands received whole before the peer's end of stream were lost if their handlers replied: a failed
// send ended the connection with encrypted input still unread.
#include "tests/support/tls_pair.h"

#include <gtest/gtest.h>

namespace
{

using test::ClientHandle;
using test::NoteAnalyser;
using test::NoteCommand;
using test::tickUntil;

TEST(Bugs, CommandsBeforeAnEndOfTlsAreHandledThoughTheyAreAnswered)
{
    constexpr int kCommands = 300;
    int got = 0;
    NoteAnalyser analyser(
        [&](CCommandSocket* socket, const NoteCommand& note)
        {
            EXPECT_EQ(note.m_Number, got);
            ++got;
            socket->send(NoteCommand(note.m_Number, 60000));
        });
    test::TlsLoopback net(analyser);
    const ClientHandle client = net.connectTls(analyser, test::makeClientContext());
    ASSERT_TRUE(client);
    for (int i = 0; i < kCommands; ++i)
        ASSERT_TRUE(client->send(NoteCommand(i, 100)));
    client->close();
    ASSERT_TRUE(tickUntil(net.m_System, [&] { return net.m_Server->GetClientCount() == 0; }));
    EXPECT_EQ(got, kCommands);
    EXPECT_EQ(net.accepted()->getOutputSize(), 0u);
}

} // namespace
