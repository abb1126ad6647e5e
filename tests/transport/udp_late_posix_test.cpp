// Replies of a port to late, unknown or too many peers: increasingly rare, and bounded per tick.
#include "tests/support/udp_road.h"
#include "tests/support/udp_test.h"

#include <netinet/in.h>

#include <algorithm>
#include <optional>
#include <utility>

namespace
{

using test::BareUdp;
using test::NoteCommand;
using test::NoteSocketHandle;
using test::Road;

class UdpLate : public test::UdpTest
{
protected:
    explicit UdpLate(const zet::UdpServer::Settings& settings = {}) : UdpTest(settings) {}
    // A connection that the server has closed without the client's knowledge, and the client's last packet before.
    void closeUnheard()
    {
        const unsigned short server = m_Net.m_Server->getPort();
        m_Road.emplace(server, m_Net.m_Port->getPort(), test::RoadProfile{}, 1);
        m_Road->m_Watch = [this, server](unsigned short to, const std::string& bytes)
        {
            if (to == server)
                m_Packet = bytes;
        };
        m_Net.m_Road = m_Road->getPort();
        m_Net.m_Between = [this] { m_Road->step(); };
        const NoteSocketHandle socket = m_Net.connect();
        ASSERT_TRUE(socket);
        ASSERT_TRUE(socket->send(NoteCommand(1)));
        settle();
        ASSERT_EQ(m_Net.accepted().m_Numbers.size(), 1U);
        // With a short header, followed by the connection's id.
        ASSERT_GT(m_Packet.size(), 17U);
        ASSERT_EQ(m_Packet[0] & 0x80, 0);
        m_Road->m_IsCut = true;
        m_Net.accepted().close();
        m_Net.step();
    }
    unsigned long long answers() const { return m_Net.m_Server->getTraffic().m_DatagramsOut; }
    void deliver(const std::string& packet)
    {
        m_Net.m_Server->deliver(test::loopback(1), packet.data(), static_cast<int>(packet.size()));
    }

    std::optional<Road> m_Road;
    std::string m_Packet;
};

TEST_F(UdpLate, LatePacketsAreAnsweredEverMoreRarelyAndInTheEndNoMore)
{
    ASSERT_NO_FATAL_FAILURE(closeUnheard());
    std::vector<int> answered;
    for (int i = 1; i <= 5000; ++i)
    {
        const auto before = answers();
        deliver(m_Packet);
        if (answers() > before)
            answered.push_back(i);
    }
    EXPECT_EQ(answered, (std::vector<int>{1, 2, 4, 8, 16, 32, 64, 128, 256, 512, 1024}));
    EXPECT_TRUE(m_Net.m_Server->m_UserData.empty());
}

TEST_F(UdpLate, TheCloseFrameGoesToThePeerAloneWhoeverSendsItsPackets)
{
    ASSERT_NO_FATAL_FAILURE(closeUnheard());
    BareUdp stranger;
    m_Net.step();
    const int lost = m_Road->m_LostCount;
    const auto before = answers();
    for (int i = 0; i < 8; ++i)
    {
        ASSERT_TRUE(stranger.send(m_Net.m_Server->getPort(), m_Packet));
        m_Net.step();
    }
    m_Net.step();
    EXPECT_EQ(answers() - before, 4U);
    EXPECT_EQ(m_Road->m_LostCount - lost, 4);
    std::string bytes;
    unsigned short port = 0;
    EXPECT_FALSE(stranger.receive(bytes, port));
}

TEST_F(UdpLate, ACloseFrameIsForgottenOnceThePeerMustHaveGivenUp)
{
    ASSERT_NO_FATAL_FAILURE(closeUnheard());
    const unsigned int idle = zet::UdpServer::Settings().m_IdleTimeout;
    m_Net.m_Clock.advance(idle - 1000);
    m_Net.m_Server->onTick(zet::getTimeTick());
    auto before = answers();
    deliver(m_Packet);
    EXPECT_EQ(answers() - before, 1U);
    EXPECT_TRUE(m_Net.m_Server->m_UserData.empty());
    m_Net.m_Clock.advance(1000);
    m_Net.m_Server->onTick(zet::getTimeTick());
    before = answers();
    deliver(m_Packet);
    EXPECT_EQ(answers(), before);
    EXPECT_EQ(m_Net.m_Server->m_UserData.size(), 1U);
}

TEST_F(UdpLate, PacketsOfNoConnectionDrawNothing)
{
    ASSERT_NO_FATAL_FAILURE(closeUnheard());
    const auto before = answers();
    std::string packet = m_Packet;
    for (int i = 0; i < 1000; ++i)
    {
        packet[1] = static_cast<char>(m_Packet[1] + 1 + i % 255);
        packet[2] = static_cast<char>(m_Packet[2] + i / 255);
        deliver(packet);
    }
    EXPECT_EQ(answers(), before);
    EXPECT_EQ(m_Net.m_Server->m_UserData.size(), 1000U);
    // Long headers of each other kind, with unknown ids: not even user data.
    for (const char first : {'\xD0', '\xE0', '\xF0'})
        deliver(first + std::string("\0\0\0\1\x10", 5) + std::string(16, 'i') + '\0' + std::string(1200, 'x'));
    EXPECT_EQ(answers(), before);
    EXPECT_EQ(m_Net.m_Server->m_UserData.size(), 1000U);
}

// A first packet, as far as it is visible without its keys.
std::string firstPacket(char version)
{
    return std::string("\xC0\0\0\0", 4) + version + '\x10' + std::string(16, 'i') + '\x08' + std::string(8, 's') +
           '\0' + std::string("\x44\x80", 2) + std::string(1200, 'x');
}

TEST_F(UdpLate, ATickAnswersABoundedNumberOfFirstPackets)
{
    static_assert(zet::UdpServer::kGreetingsPerTick == 32);
    m_Net.step();
    const auto before = answers();
    // Without a token, and of another version: the two limits are separate.
    for (const char version : {'\1', '\x1A'})
        for (int i = 0; i < 3000; ++i)
            deliver(firstPacket(version));
    EXPECT_EQ(answers() - before, 64U);
    m_Net.step();
    deliver(firstPacket('\1'));
    EXPECT_EQ(answers() - before, 65U);
    EXPECT_EQ(m_Net.m_Server->getConnectionCount(), 0);
}

class FullUdpLate : public UdpLate
{
protected:
    FullUdpLate() : UdpLate(limits()) {}
    static zet::UdpServer::Settings limits()
    {
        zet::UdpServer::Settings settings;
        settings.m_ConnectionLimit = 1;
        return settings;
    }
};

TEST_F(FullUdpLate, ATickRefusesABoundedNumberOfPeers)
{
    zet::NetLimits limits;
    limits.m_HandshakeSteps = 0;
    limits.m_HandshakeTime = 0;
    m_Net.m_Server->setLimits(limits);
    constexpr int kCount = zet::UdpServer::kAdmissionsPerTick + 8;
    ASSERT_TRUE(m_Net.connect());
    settle();
    for (int i = 0; i < kCount; ++i)
        ASSERT_TRUE(m_Net.begin());
    // The datagrams of each tick in which the server sends: tokens, and then refusals.
    std::vector<int> sent;
    ASSERT_TRUE(m_Net.until(
        [&, before = answers()]() mutable
        {
            if (const auto now = answers(); now != before)
                sent.push_back(static_cast<int>(now - std::exchange(before, now)));
            return std::count_if(m_Net.m_Sockets.begin(), m_Net.m_Sockets.end(),
                                 [](const auto& socket) { return socket->m_Closes == 1; }) == kCount;
        }));
    EXPECT_EQ(sent, (std::vector<int>{kCount, zet::UdpServer::kAdmissionsPerTick, 8}));
    EXPECT_EQ(m_Net.m_Server->GetClientCount(), 1);
}

} // namespace
