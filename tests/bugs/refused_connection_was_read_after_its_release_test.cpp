// A connection whose attach() returned false was closed while it was accepted. If the host released its last handle in
// onEnd(), the server then read the cause of the end from the freed object.
#include "net/tcp/server.h"
#include "net/tcp/stream.h"
#include "tests/support/raw_peer.h"

#include <gtest/gtest.h>

namespace
{

using test::tickUntil;

class RefusingServer;

class Refused : public zet::TcpStream
{
public:
    explicit Refused(RefusingServer& server) : m_Server(server) {}
    ~Refused() override;
    bool attach(unsigned int) override { return false; }
    void onEnd(const zet::EndCause&) override;

private:
    RefusingServer& m_Server;
};

class RefusingServer : public zet::TcpServer
{
public:
    void onAccept() override
    {
        m_Kept = new Refused(*this);
        m_IsAccepted = accept(m_Kept.get());
    }
    zet::Unknown::Handle_T<Refused> m_Kept;
    bool m_IsAccepted = true;
    int m_Destroyed = 0;
};

Refused::~Refused()
{
    ++m_Server.m_Destroyed;
}

void Refused::onEnd(const zet::EndCause&)
{
    m_Server.m_Kept = nullptr;
}

TEST(Bugs, AServerReadsTheCauseOfARefusedConnectionBeforeItsRelease)
{
    zet::System system;
    system.init();
    const zet::Unknown::Handle_T<RefusingServer> server = new RefusingServer;
    ASSERT_TRUE(server->start(&system));
    ASSERT_TRUE(server->listen(0, 5));
    const zet::Unknown::Handle_T<zet::TcpStream> peer = new zet::TcpStream;
    peer->start(&system);
    ASSERT_TRUE(peer->connect(L"127.0.0.1", server->getPort(), false));
    EXPECT_TRUE(tickUntil(system, [&] { return server->m_Destroyed == 1; }));
    EXPECT_FALSE(server->m_IsAccepted);
    EXPECT_EQ(server->getFault().m_Code, zet::EndCause::kThrown);
    EXPECT_EQ(server->getEndCount(zet::EndCause::kThrown), 1U);
    peer->close();
    peer->stop();
    server->close();
    system.exit();
}

} // namespace
