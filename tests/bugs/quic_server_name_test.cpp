// A client over UDP did not send the server's name, unlike one over TCP, so that a server with several names could not
// choose a certificate.
#include "tests/support/quic_test.h"

namespace
{

class ServerName : public test::QuicTest
{
protected:
    std::string toldTo(const wchar_t* host)
    {
        waitForOurs();
        const test::NoteSocketHandle socket = new test::NoteSocket;
        EXPECT_TRUE(socket->connect(m_Net.m_Port, host, m_Peer->getPort(), zet::Uuid()));
        EXPECT_TRUE(m_Net.until([&] { return m_Peer->isUp(); }, 2000));
        return m_Peer->getServerName();
    }
};

TEST_F(ServerName, IsTheHostThatWasAskedFor)
{
    EXPECT_EQ(toldTo(L"localhost"), "localhost");
}

TEST_F(ServerName, IsNoAddress)
{
    EXPECT_EQ(toldTo(L"127.0.0.1"), "");
}

} // namespace
