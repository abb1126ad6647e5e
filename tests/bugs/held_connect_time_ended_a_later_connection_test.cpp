// A connect through a proxy holds the time of the connect until the proxy has answered. If that connect failed, the
// time stayed held, and a connection that the object took over later ended by it.
#include "framework/time.h"
#include "net/limits.h"
#include "net/tcp/server.h"
#include "tests/support/raw_peer.h"

#include <gtest/gtest.h>

namespace
{

using test::tickUntil;

class ProxyClient : public zet::TcpStream
{
public:
    bool connectByProxy(unsigned short port)
    {
        const bool isBegun = connect(L"127.0.0.1", port, false);
        holdConnectTime(true);
        return isBegun;
    }
};

TEST(Bugs, AHeldConnectTimeEndsNoLaterConnection)
{
    zet::TestClock clock(1000000000);
    zet::System system;
    system.init();
    const zet::Unknown::Handle_T<zet::TcpServer> server = new zet::TcpServer;
    ASSERT_TRUE(server->start(&system));
    ASSERT_TRUE(server->listen(0, 5));
    const zet::Unknown::Handle_T<ProxyClient> client = new ProxyClient;
    zet::NetLimits limits;
    limits.m_ConnectTime = 1000;
    limits.m_IdleTime = 60000;
    ASSERT_TRUE(client->setLimits(limits));
    ASSERT_TRUE(client->start(&system));
    ASSERT_TRUE(client->connectByProxy(server->getPort()));
    client->close();

    const zet::Unknown::Handle_T<zet::TcpStream> other = new zet::TcpStream;
    other->start(&system);
    ASSERT_TRUE(other->connect(L"127.0.0.1", server->getPort(), false));
    ASSERT_TRUE(tickUntil(system, [&] { return other->getConnectionState() == zet::TcpConnection::kEstablished; }));
    clock.advance(2000);
    ASSERT_TRUE(client->attach(other->detach()));
    for (int i = 0; i < 3; ++i)
        system.tick();
    EXPECT_EQ(client->getConnectionState(), zet::TcpConnection::kEstablished);
    EXPECT_EQ(client->getEndCause().m_Code, zet::EndCause::kNone);
    client->close();
    server->close();
    system.exit();
}

} // namespace
