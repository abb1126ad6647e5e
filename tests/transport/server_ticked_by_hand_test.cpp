// A server that is started in a System, but ticked by the host itself.
#include "commands/registry.h"
#include "framework/time.h"
#include "tests/support/raw_peer.h"
#include "transport/send_to_all.h"

#include <gtest/gtest.h>

namespace
{

using test::NoteAnalyser;

TEST(ServerTickedByHand, SendsWhatWasQueuedBetweenItsTicks)
{
    NoteAnalyser analyser;
    zet::System system;
    system.init();
    const zet::Unknown::Handle_T<test::Server> server = new test::Server(analyser);
    ASSERT_TRUE(server->start(&system));
    ASSERT_TRUE(server->listen(0, 5));
    // In no System: they look for input themselves.
    const zet::Unknown::Handle_T<zet::TcpStream> peers[] = {new zet::TcpStream, new zet::TcpStream};
    for (const auto& peer : peers)
        ASSERT_TRUE(peer->connect(L"127.0.0.1", server->zet::TcpServer::getPort(), false));
    for (int i = 0; i < 1000 && server->GetClientCount() < 2; ++i)
    {
        server->onTick(zet::getTimeTick());
        for (const auto& peer : peers)
            peer->onTick(zet::getTimeTick());
    }
    ASSERT_EQ(server->GetClientCount(), 2);
    // What the accepted connections had to do at first is done.
    server->onTick(zet::getTimeTick());
    server->onTick(zet::getTimeTick());

    ASSERT_EQ(SendToAll(*server->GetAllClientSocket(), CCmdServerEcho()), 2);
    server->onTick(zet::getTimeTick());
    for (const auto& peer : peers)
    {
        peer->onTick(zet::getTimeTick());
        EXPECT_GT(peer->available(), 0);
        peer->close();
    }
    server->close();
    system.exit();
}

} // namespace
