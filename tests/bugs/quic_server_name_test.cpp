// A client over UDP told its server no name, as one over TCP does, so that a server for several names could not choose.
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
