// How many first packets a UDP port processes, and how many connections it admits.
#include "tests/support/quic_test.h"

#include <netinet/in.h>

#include <list>

namespace
{

using test::BareUdp;

class QuicAdmission : public test::QuicTest
{
protected:
    using QuicTest::QuicTest;
    void deliver(const BareUdp& from, const std::string& bytes)
    {
        m_Net.m_Server->deliver(test::loopback(from.getPort()), bytes.data(), static_cast<int>(bytes.size()));
    }
};

TEST_F(QuicAdmission, ATickChecksABoundedNumberOfTokens)
{
    // A relay between the peer and the server, which can hold the packet with the token.
    BareUdp between;
    test::QuicPeer peer(between.getPort());
    std::string hello;
    unsigned short client = 0;
    ASSERT_TRUE(between.receive(hello, client));
    deliver(between, hello);
    m_Net.step();
    std::string retry;
    unsigned short server = 0;
    ASSERT_TRUE(between.receive(retry, server));
    ASSERT_TRUE(between.send(client, retry));
    peer.step();
    std::string second;
    ASSERT_TRUE(between.receive(second, client));
    // After the ids, of 16 bytes each, and the token's length in two bytes.
    std::string forged = second;
    forged[6 + 16 + 1 + 16 + 2 + 20] ^= 1;
    for (int i = 0; i < zet::UdpServer::kGreetingsPerTick; ++i)
        deliver(between, forged);
    deliver(between, second);
    EXPECT_EQ(m_Net.m_Server->getConnectionCount(), 0);
    m_Net.step();
    for (int i = 1; i < zet::UdpServer::kGreetingsPerTick; ++i)
        deliver(between, forged);
    deliver(between, second);
    EXPECT_EQ(m_Net.m_Server->getConnectionCount(), 1);
}

TEST_F(QuicAdmission, TheHandshakesOfATickAreAsManyAsTheHostSays)
{
    zet::NetLimits limits;
    limits.m_HandshakeSteps = 3;
    m_Net.m_Server->setLimits(limits);
    constexpr int kCount = 10;
    for (int i = 0; i < kCount; ++i)
        ASSERT_TRUE(m_Net.begin());
    int most = 0;
    ASSERT_TRUE(m_Net.until(
        [&, before = 0]() mutable
        {
            const int now = m_Net.m_Server->getConnectionCount();
            most = std::max(most, now - std::exchange(before, now));
            return now == kCount;
        }));
    EXPECT_EQ(most, 3);
}

TEST_F(QuicAdmission, APeerWhoseHandshakeWaitsForTheNextTickNeedNotComeAgain)
{
    constexpr int kCount = 10;
    ASSERT_EQ(m_Net.m_Server->getLimits().m_HandshakeSteps, 1);
    for (int i = 0; i < kCount; ++i)
        ASSERT_TRUE(m_Net.begin());
    ASSERT_TRUE(m_Net.until([&] { return m_Net.m_Server->getConnectionCount() == 1; }));
    // One without a token and one with it, of each.
    EXPECT_EQ(m_Net.m_Server->getTraffic().m_DatagramsIn, kCount + 1U);
    ASSERT_TRUE(m_Net.until([&] { return m_Net.m_Server->getConnectionCount() == kCount; }));
    const auto after = m_Net.m_Server->getTraffic();
    EXPECT_LE(after.m_DatagramsIn, 4U * kCount);
}

TEST_F(QuicAdmission, DatagramsHoldATickForABoundedTime)
{
    class SlowServer : public zet::UdpServer
    {
    public:
        void onUserData(const sockaddr_in&, const void*, int) override
        {
            ++m_Count;
            m_Clock->advance(1);
        }
        zet::TestClock* m_Clock = nullptr;
        int m_Count = 0;
    };
    const zet::Unknown::Handle_T<SlowServer> server = new SlowServer;
    server->m_Clock = &m_Net.m_Clock;
    ASSERT_TRUE(server->start(&m_Net.m_System) && server->listen(0));
    BareUdp sender;
    constexpr int kDatagrams = 320;
    for (int i = 0; i < kDatagrams; ++i)
        ASSERT_TRUE(sender.send(server->getPort(), "data of a user"));
    // A millisecond each: the time is checked again after a batch.
    m_Net.step();
    EXPECT_LE(server->m_Count, static_cast<int>(zet::UdpServer::kReceiveTime) + 32);
    EXPECT_GT(server->m_Count, 0);
    EXPECT_TRUE(m_Net.until([&] { return server->m_Count == kDatagrams; }, 100));
    server->close();
}

class LimitedQuicAdmission : public QuicAdmission
{
protected:
    void SetUp() override
    {
        QuicAdmission::SetUp();
        zet::NetLimits limits;
        limits.m_ConnectionsPerAddress = 2;
        limits.m_ConnectionsPerSubnet = 3;
        limits.m_Connections = 5;
        m_Net.m_Server->setLimits(limits);
    }
    void TearDown() override { m_Net.m_Between = nullptr; }
    // Whether a peer from an address is admitted; it stays connected.
    bool getsIn(unsigned int address)
    {
        test::QuicWish wish;
        wish.m_Address = address;
        m_Peers.emplace_back(m_Net.m_Server->getPort(), wish);
        m_Net.m_Between = [this]
        {
            for (auto& peer : m_Peers)
                peer.step();
        };
        test::QuicPeer& peer = m_Peers.back();
        peer.send(std::string(16, 'i'));
        m_Net.until([&] { return peer.isUp() || peer.isOver(); }, 2000);
        return peer.isUp();
    }

    std::list<test::QuicPeer> m_Peers;
};

TEST_F(LimitedQuicAdmission, AnAddressAndASubnetHaveTheirShare)
{
    EXPECT_TRUE(getsIn(0x7F000002));
    EXPECT_TRUE(getsIn(0x7F000002));
    EXPECT_FALSE(getsIn(0x7F000002));
    EXPECT_EQ(m_Peers.back().getCloseCode(), 2U) << "CONNECTION_REFUSED";
    EXPECT_TRUE(getsIn(0x7F000003));
    EXPECT_FALSE(getsIn(0x7F000003));
    EXPECT_FALSE(getsIn(0x7F000004));
    // Another subnet.
    EXPECT_TRUE(getsIn(0x7F000102));
}

TEST_F(LimitedQuicAdmission, AConnectionThatEndsFreesItsPlace)
{
    ASSERT_TRUE(getsIn(0x7F000002));
    ASSERT_TRUE(getsIn(0x7F000002));
    ASSERT_FALSE(getsIn(0x7F000002));
    ASSERT_TRUE(m_Net.until([&] { return m_Net.m_Server->m_Accepted.size() == 2; }, 2000));
    m_Net.m_Server->m_Accepted[0]->close();
    settle();
    EXPECT_TRUE(getsIn(0x7F000002));
    EXPECT_FALSE(getsIn(0x7F000002));
}

TEST_F(LimitedQuicAdmission, WhereTheLimitIsZeroThereIsNone)
{
    auto limits = m_Net.m_Server->getLimits();
    limits.m_ConnectionsPerAddress = 0;
    limits.m_ConnectionsPerSubnet = 0;
    m_Net.m_Server->setLimits(limits);
    for (int i = 0; i < 5; ++i)
        EXPECT_TRUE(getsIn(0x7F000002));
    EXPECT_FALSE(getsIn(0x7F000102));
    limits.m_Connections = 0;
    m_Net.m_Server->setLimits(limits);
    EXPECT_TRUE(getsIn(0x7F000102));
}

} // namespace
