// A connection through TLS that was established outside of a System and then started in one sent commands of 32 KiB and
// more in the clear: sends of that size pass the queue, and the System's new link of the connection had not taken over
// that its output is encrypted. The peer ended the connection at the first such byte.
#include "tests/support/tls_pair.h"

#include <gtest/gtest.h>

namespace
{

using test::NoteAnalyser;
using test::NoteCommand;

TEST(Bugs, ALongCommandIsEncryptedAfterTheConnectionHasJoinedASystem)
{
    constexpr int kLong = 60 * 1024;
    int got = 0;
    NoteAnalyser server([&](CCommandSocket*, const NoteCommand& note) { got += note.m_Ballast; });
    NoteAnalyser client;
    test::TlsLoopback net(server);
    const auto context = test::makeClientContext();
    const test::ClientHandle socket = new test::Client(client);
    ASSERT_TRUE(socket->setTlsContext(context));
    ASSERT_TRUE(socket->connect(L"127.0.0.1", net.m_Server->getPort(), false));
    ASSERT_TRUE(test::tickUntil(net.m_System,
                                [&]
                                {
                                    socket->onTick(0);
                                    return socket->isSecure() && net.m_Server->m_Accepted.size() == 1 &&
                                           net.accepted()->isSecure();
                                }));
    ASSERT_TRUE(socket->start(&net.m_System));
    net.m_Clients.push_back(socket);
    ASSERT_TRUE(socket->send(NoteCommand(1, kLong)));
    // All of it waits to be encrypted.
    EXPECT_GT(socket->getOutputSize(), static_cast<size_t>(kLong));
    EXPECT_TRUE(test::tickUntil(net.m_System, [&] { return got == kLong; }));
}

} // namespace
