// A server that was closed by its own permission() kept the connection in question: it was queued for onAccept() after
// all others had been dropped, and its socket stayed open.
#include "tests/support/raw_peer.h"

#include <gtest/gtest.h>

namespace
{

using test::NoteAnalyser;
using test::tickUntil;

class Closing : public test::Server
{
public:
    using Server::Server;
    bool permission(const sockaddr_in&) override
    {
        close();
        m_IsListening = m_ListensAgain && listen(0, 5);
        return true;
    }
    bool m_ListensAgain = false;
    bool m_IsListening = false;
};

TEST(Bugs, AServerClosedInPermissionKeepsNoSocket)
{
    for (const bool listensAgain : {false, true})
    {
        NoteAnalyser analyser;
        zet::System system;
        system.init();
        const zet::Unknown::Handle_T<Closing> server = new Closing(analyser);
        server->m_ListensAgain = listensAgain;
        server->start(&system);
        ASSERT_TRUE(server->listen(0, 5));
        const zet::Unknown::Handle_T<zet::TcpStream> peer = new zet::TcpStream;
        peer->start(&system);
        ASSERT_TRUE(peer->connect(L"127.0.0.1", server->getPort(), false));
        EXPECT_TRUE(tickUntil(system, [&] { return peer->getConnectionState() > zet::TcpConnection::kEstablished; }));
        EXPECT_EQ(server->m_IsListening, listensAgain);
        EXPECT_EQ(server->isInvalid(), !listensAgain);
        EXPECT_TRUE(server->m_Accepted.empty());
        peer->close();
        peer->stop();
        server->close();
        system.exit();
    }
}

} // namespace
