// Rates and times of handshakes over TLS.
#include "framework/time.h"
#include "net/limits.h"
#include "tests/support/raw_peer.h"
#include "tests/support/tls_pair.h"

#include <gtest/gtest.h>

namespace
{

using test::ClientHandle;
using test::makeClientContext;
using test::NoteAnalyser;
using test::NoteCommand;
using test::TlsLoopback;

void tick(zet::System& system)
{
    for (int i = 0; i < 10; ++i)
        system.tick();
}

TEST(TlsRateLimits, ADelayedPeerLosesNothing)
{
    zet::TestClock clock(1700000000, 77);
    int got = 0;
    NoteAnalyser analyser([&](auto*, const auto&) { ++got; });
    TlsLoopback net(analyser);
    zet::NetLimits limits;
    limits.m_PacketsPerSecond = 10;
    limits.m_PacketBurst = 5;
    net.m_Server->setLimits(limits);
    const ClientHandle client = net.connectTls(analyser, makeClientContext());
    ASSERT_TRUE(client);
    for (int i = 0; i < 40; ++i)
        ASSERT_TRUE(client->send(NoteCommand(i, 1000)));
    tick(net.m_System);
    EXPECT_EQ(got, 5);
    for (int i = 1; i <= 35; ++i)
    {
        clock.advance(100);
        tick(net.m_System);
        EXPECT_EQ(got, 5 + i);
    }
    EXPECT_EQ(client->getConnectionState(), zet::TcpConnection::kEstablished);
}

TEST(TlsRateLimits, OneAboveItsRateIsClosed)
{
    zet::TestClock clock(1700000000, 77);
    int got = 0;
    NoteAnalyser analyser([&](auto*, const auto&) { ++got; });
    TlsLoopback net(analyser);
    zet::NetLimits limits;
    limits.m_BytesPerSecond = 5000;
    limits.m_OverRate = zet::NetLimits::kClose;
    net.m_Server->setLimits(limits);
    const ClientHandle client = net.connectTls(analyser, makeClientContext());
    ASSERT_TRUE(client);
    const auto far = net.accepted();
    for (int i = 0; i < 10; ++i)
        ASSERT_TRUE(client->send(NoteCommand(i, 1000)));
    tick(net.m_System);
    EXPECT_EQ(got, 5);
    EXPECT_EQ(far->getEndCause().m_Code, zet::EndCause::kRateLimited);
}

TEST(TlsLimits, ThePortsTimeOfAHandshakeCounts)
{
    zet::TestClock clock(1700000000, 77);
    NoteAnalyser analyser;
    TlsLoopback net(analyser);
    zet::NetLimits limits;
    limits.m_HandshakeLimit = 2000;
    net.m_Server->setLimits(limits);
    test::RawPeer silent(net);
    ASSERT_TRUE(silent.m_IsUp);
    clock.advance(1999);
    tick(net.m_System);
    EXPECT_EQ(net.m_Server->GetClientCount(), 1);
    clock.advance(1);
    tick(net.m_System);
    EXPECT_EQ(net.m_Server->GetClientCount(), 0);
    EXPECT_EQ(net.accepted()->getEndCause(), (zet::EndCause{zet::EndCause::kTimedOut, zet::EndCause::kHandshake}));
}

TEST(TlsLimits, AClientsOwnTimeOfAHandshakeCounts)
{
    zet::TestClock clock(1700000000, 77);
    NoteAnalyser analyser;
    // The pending connection is never accepted.
    zet::TcpServer server;
    ASSERT_TRUE(server.listen(0, 5));
    const ClientHandle client = new test::Client(analyser);
    zet::NetLimits limits;
    limits.m_ConnectTime = 500;
    limits.m_HandshakeLimit = 2000;
    ASSERT_TRUE(client->setLimits(limits));
    ASSERT_TRUE(client->setTlsContext(makeClientContext()));
    ASSERT_TRUE(client->connect(L"127.0.0.1", server.getPort(), false));
    for (int i = 0; i < 5; ++i)
        client->onTick(zet::getTimeTick());
    // Connected in time: the handshake has its own.
    clock.advance(1999);
    client->onTick(zet::getTimeTick());
    EXPECT_EQ(client->getConnectionState(), zet::TcpConnection::kConnecting);
    clock.advance(1);
    client->onTick(zet::getTimeTick());
    EXPECT_TRUE(client->isInvalid());
    EXPECT_EQ(client->getEndCause(), (zet::EndCause{zet::EndCause::kTimedOut, zet::EndCause::kHandshake}));
}

} // namespace
