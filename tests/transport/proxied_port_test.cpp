// A port whose connections come through a proxy, which names each peer in a header.
#include "framework/time.h"
#include "net/limits.h"
#include "tests/support/log_lines.h"
#include "tests/support/passing_door.h"
#include "tests/support/proxy_header.h"
#include "tests/support/raw_peer.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace
{

using test::Bytes;
using test::headerOfPeer;
using test::NoteCommand;
using test::packetOf;
using test::tickUntil;
using zet::EndCause;
using StreamHandle = zet::Unknown::Handle_T<zet::TcpStream>;

class ProxiedPort : public testing::Test
{
protected:
    void SetUp() override
    {
        ASSERT_TRUE(m_Net.m_IsListening);
        ASSERT_TRUE(server().expectProxyHeader(L"10.0.0.0/8 127.0.0.0/8"));
    }
    void TearDown() override
    {
        for (const StreamHandle& each : m_Proxies)
        {
            each->close();
            each->stop();
        }
    }
    test::Server& server() { return *m_Net.m_Server; }
    size_t accepted() { return m_Net.m_Server->m_Accepted.size(); }
    // A connection of the proxy, established on its side.
    StreamHandle connect()
    {
        const StreamHandle proxy = new zet::TcpStream;
        m_Proxies.push_back(proxy);
        proxy->start(&m_Net.m_System);
        EXPECT_TRUE(proxy->connect(L"127.0.0.1", server().getPort(), false));
        EXPECT_TRUE(
            tickUntil(m_Net.m_System, [&] { return proxy->getConnectionState() != zet::TcpConnection::kConnecting; }));
        return proxy;
    }
    static void send(const StreamHandle& proxy, const Bytes& bytes)
    {
        EXPECT_EQ(proxy->send(bytes.data(), static_cast<int>(bytes.size())), static_cast<int>(bytes.size()));
    }
    StreamHandle connectWith(const Bytes& bytes)
    {
        const StreamHandle proxy = connect();
        send(proxy, bytes);
        return proxy;
    }
    bool isEnded(const StreamHandle& proxy)
    {
        return tickUntil(m_Net.m_System,
                         [&]
                         {
                             return proxy->getConnectionState() != zet::TcpConnection::kEstablished &&
                                    proxy->getConnectionState() != zet::TcpConnection::kConnecting;
                         });
    }
    // A number of ticks in which what was sent over the loopback arrives.
    void settle()
    {
        for (int i = 0; i < 5; ++i)
            m_Net.m_System.tick();
    }
    bool isLogged(const wchar_t* part) const
    {
        const auto lines = m_Lines.texts();
        return std::any_of(lines.begin(), lines.end(),
                           [&](const std::wstring& line) { return line.find(part) != std::wstring::npos; });
    }

    zet::TestClock m_Clock{1000000000};
    test::LogLines m_Lines;
    std::vector<int> m_Numbers;
    test::NoteAnalyser m_Analyser{[this](CCommandSocket*, const NoteCommand& note)
                                  { m_Numbers.push_back(note.m_Number); }};
    test::Loopback m_Net{m_Analyser};
    std::vector<StreamHandle> m_Proxies;
};

Bytes operator+(Bytes a, const Bytes& b)
{
    a.insert(a.end(), b.begin(), b.end());
    return a;
}

TEST_F(ProxiedPort, PeerIsTheOneThatTheHeaderNames)
{
    connectWith(headerOfPeer("203.0.113.7", 4711));
    ASSERT_TRUE(tickUntil(m_Net.m_System, [&] { return accepted() == 1; }));
    EXPECT_STREQ(m_Net.accepted()->getPeerName(), L"203.0.113.7:4711");
    EXPECT_EQ(m_Net.accepted()->getPeerAddress(), zet::Socket::inet_addr("203.0.113.7"));
    EXPECT_EQ(m_Net.accepted()->getPeerPort(), 4711);
    connectWith(headerOfPeer("2001:db8::7", 4712, Bytes(20, 4)));
    ASSERT_TRUE(tickUntil(m_Net.m_System, [&] { return accepted() == 2; }));
    EXPECT_STREQ(m_Net.accepted()->getPeerName(), L"[2001:db8::7]:4712");
}

TEST_F(ProxiedPort, HeaderNeverReachesThePackets)
{
    const Bytes header = headerOfPeer("203.0.113.7", 4711, Bytes(7, 4));
    // With the first packets at once.
    connectWith(header + packetOf(NoteCommand(1, 300)) + packetOf(NoteCommand(2)));
    ASSERT_TRUE(tickUntil(m_Net.m_System, [&] { return m_Numbers.size() == 2; }));
    // Byte by byte, each in a segment of its own.
    const StreamHandle slow = connect();
    for (const unsigned char each : header + packetOf(NoteCommand(3)))
    {
        send(slow, {each});
        m_Net.m_System.tick();
    }
    ASSERT_TRUE(tickUntil(m_Net.m_System, [&] { return m_Numbers.size() == 3; }));
    EXPECT_EQ(m_Numbers, (std::vector<int>{1, 2, 3}));
    EXPECT_FALSE(isLogged(L"ended"));
}

TEST_F(ProxiedPort, HeaderCutAnywhereIsCompletedLater)
{
    const Bytes header = headerOfPeer("2001:db8::7", 4711, Bytes(3, 4));
    for (size_t cut = 1; cut < header.size(); ++cut)
    {
        const auto middle = header.begin() + static_cast<std::ptrdiff_t>(cut);
        const StreamHandle proxy = connectWith(Bytes(header.begin(), middle));
        settle();
        ASSERT_EQ(accepted(), cut - 1);
        send(proxy, Bytes(middle, header.end()));
        ASSERT_TRUE(tickUntil(m_Net.m_System, [&] { return accepted() == cut; })) << cut;
    }
}

TEST_F(ProxiedPort, ConnectionOfTheProxyItselfKeepsItsAddress)
{
    connectWith(test::localHeader());
    ASSERT_TRUE(tickUntil(m_Net.m_System, [&] { return accepted() == 1; }));
    EXPECT_TRUE(std::wstring(m_Net.accepted()->getPeerName()).starts_with(L"127.0.0.1:"));
    connectWith(test::proxyHeader(0x21, 0x00, Bytes(5, 1)));
    ASSERT_TRUE(tickUntil(m_Net.m_System, [&] { return accepted() == 2; }));
    EXPECT_TRUE(std::wstring(m_Net.accepted()->getPeerName()).starts_with(L"127.0.0.1:"));
}

TEST_F(ProxiedPort, FiltersDecideOnThePeer)
{
    server().addRejectSubnet(L"203.0.113.0/24");
    server().addRejectSubnet(L"2001:db8::/32");
    EXPECT_TRUE(isEnded(connectWith(headerOfPeer("203.0.113.7", 4711))));
    EXPECT_TRUE(isEnded(connectWith(headerOfPeer("2001:db8::7", 4711))));
    EXPECT_EQ(server().getEndCount(EndCause::kFiltered), 2u);
    EXPECT_TRUE(isLogged(L"Connection of 203.0.113.7:4711 refused: filtered"));
    connectWith(headerOfPeer("198.51.100.7", 4711));
    EXPECT_TRUE(tickUntil(m_Net.m_System, [&] { return accepted() == 1; }));
}

TEST_F(ProxiedPort, LimitsPerAddressCountThePeer)
{
    zet::NetLimits limits;
    limits.m_ConnectionsPerAddress = 2;
    limits.m_ConnectionsPerSubnet = 3;
    server().setLimits(limits);
    for (const char* const address : {"203.0.113.7", "203.0.113.7", "203.0.113.8", "198.51.100.7", "198.51.100.8"})
        connectWith(headerOfPeer(address, 4711));
    ASSERT_TRUE(tickUntil(m_Net.m_System, [&] { return accepted() == 5; }));
    EXPECT_TRUE(isEnded(connectWith(headerOfPeer("203.0.113.9", 4711))));
    EXPECT_TRUE(isEnded(connectWith(headerOfPeer("203.0.113.7", 4711))));
    EXPECT_EQ(server().getEndCount(EndCause::kTooMany), 2u);
    // A place that a connection leaves is that of its peer.
    m_Proxies.front()->close();
    ASSERT_TRUE(tickUntil(m_Net.m_System, [&] { return server().GetClientCount() == 4; }));
    connectWith(headerOfPeer("203.0.113.7", 4711));
    EXPECT_TRUE(tickUntil(m_Net.m_System, [&] { return server().GetClientCount() == 5; }));
}

TEST_F(ProxiedPort, OnlyTrustedProxiesMayConnect)
{
    ASSERT_TRUE(server().expectProxyHeader(L"10.0.0.0/8 2001:db8::/32"));
    EXPECT_TRUE(isEnded(connectWith(headerOfPeer("203.0.113.7", 4711))));
    EXPECT_TRUE(isLogged(L"refused: not a trusted proxy"));
    // Without a network, none is trusted.
    ASSERT_TRUE(server().expectProxyHeader(L""));
    EXPECT_TRUE(isEnded(connect()));
    EXPECT_EQ(server().getEndCount(EndCause::kFiltered), 2u);
    EXPECT_EQ(accepted(), 0u);
    // What is not a list of networks changes nothing.
    EXPECT_FALSE(server().expectProxyHeader(L"127.0.0.1 proxy.example"));
    EXPECT_FALSE(server().expectProxyHeader(L"127.0.0.1/33"));
    EXPECT_TRUE(isEnded(connect()));
    ASSERT_TRUE(server().expectProxyHeader(nullptr));
    connect();
    EXPECT_TRUE(tickUntil(m_Net.m_System, [&] { return accepted() == 1; }));
}

TEST_F(ProxiedPort, MalformedHeaderEndsTheConnection)
{
    const Bytes good = headerOfPeer("203.0.113.7", 4711);
    unsigned long long ends = 0;
    for (size_t at = 0; at < 14; ++at)
    {
        Bytes bad = good;
        bad[at] = static_cast<unsigned char>(bad[at] ^ 0x80);
        EXPECT_TRUE(isEnded(connectWith(bad)));
        EXPECT_EQ(server().getEndCount(EndCause::kMalformed), ++ends) << at;
        EXPECT_EQ(server().getFault().m_Code, EndCause::kMalformed);
    }
    // A peer that bypasses the proxy.
    EXPECT_TRUE(isEnded(connectWith(packetOf(NoteCommand(1)))));
    EXPECT_EQ(server().getEndCount(EndCause::kMalformed), ++ends);
    EXPECT_TRUE(isLogged(L"refused: malformed PROXY header"));
    // Many lines are one.
    for (int i = 0; i < 60; ++i)
        isEnded(connectWith({'G', 'E', 'T'}));
    const auto lines = m_Lines.texts();
    EXPECT_LT(std::count_if(lines.begin(), lines.end(),
                            [](const std::wstring& line) { return line.find(L"malformed") != std::wstring::npos; }),
              40);
    EXPECT_EQ(accepted(), 0u);
    EXPECT_TRUE(m_Numbers.empty());
}

TEST_F(ProxiedPort, ProxyThatLeavesBeforeItsHeaderIsCounted)
{
    const StreamHandle proxy = connectWith(Bytes(5, '\r'));
    const StreamHandle early = connect();
    early->close();
    EXPECT_TRUE(tickUntil(m_Net.m_System, [&] { return server().getEndCount(EndCause::kClosedByPeer) == 1; }));
    EXPECT_TRUE(isEnded(proxy));
    EXPECT_EQ(accepted(), 0u);
}

TEST_F(ProxiedPort, HeaderHasLimitedTime)
{
    zet::NetLimits limits;
    limits.m_ProxyHeaderTime = 3000;
    server().setLimits(limits);
    const StreamHandle silent = connect();
    const StreamHandle slow = connectWith({'\r', '\n'});
    settle();
    m_Clock.advance(2000);
    // More bytes do not prolong it.
    send(slow, {'\r', '\n'});
    settle();
    EXPECT_EQ(silent->getConnectionState(), zet::TcpConnection::kEstablished);
    EXPECT_EQ(slow->getConnectionState(), zet::TcpConnection::kEstablished);
    m_Clock.advance(1000);
    EXPECT_TRUE(isEnded(silent));
    EXPECT_TRUE(isEnded(slow));
    EXPECT_EQ(server().getEndCount(EndCause::kTimedOut), 2u);
    EXPECT_TRUE(isLogged(L"refused: no PROXY header in time"));
}

TEST_F(ProxiedPort, NumberOfUnknownPeersIsLimited)
{
    zet::NetLimits limits;
    limits.m_ProxyHeaders = 2;
    server().setLimits(limits);
    const StreamHandle first = connect();
    const StreamHandle second = connect();
    settle();
    EXPECT_TRUE(isEnded(connect()));
    EXPECT_EQ(server().getEndCount(EndCause::kTooMany), 1u);
    send(first, headerOfPeer("203.0.113.7", 4711));
    ASSERT_TRUE(tickUntil(m_Net.m_System, [&] { return accepted() == 1; }));
    connectWith(headerOfPeer("203.0.113.8", 4711));
    EXPECT_TRUE(tickUntil(m_Net.m_System, [&] { return accepted() == 2; }));
    EXPECT_EQ(second->getConnectionState(), zet::TcpConnection::kEstablished);
}

TEST_F(ProxiedPort, ConnectionsWithoutAHeaderEndWithThePort)
{
    const StreamHandle first = connect();
    settle();
    server().close();
    EXPECT_TRUE(isEnded(first));
    ASSERT_TRUE(server().listen(0, 5));
    const StreamHandle second = connect();
    settle();
    ASSERT_TRUE(server().expectProxyHeader(nullptr));
    EXPECT_TRUE(isEnded(second));
    const StreamHandle third = connect();
    EXPECT_TRUE(tickUntil(m_Net.m_System, [&] { return accepted() == 1; }));
}

TEST_F(ProxiedPort, ManyAreAcceptedInSeveralTicks)
{
    for (int i = 0; i < 100; ++i)
        connectWith(headerOfPeer("203.0.113.7", static_cast<unsigned short>(1000 + i)));
    // One tick accepts kAcceptsPerTick at most.
    EXPECT_TRUE(tickUntil(m_Net.m_System, [&] { return accepted() == 100; }));
}

// Without a proxy, an accepted connection costs the calls that it always did, and its bytes are not read before it is
// accepted.
TEST(UnproxiedPort, AcceptsWithTheSameCalls)
{
    const auto door = std::make_shared<test::PassingDoor>();
    zet::System system;
    system.init();
    ASSERT_TRUE(zet::inner::setDoor(system, door));
    test::NoteAnalyser analyser;
    const zet::Unknown::Handle_T<test::Server> server = new test::Server(analyser);
    server->start(&system);
    ASSERT_TRUE(server->listen(0, 5));
    const test::ClientHandle client = new test::Client(analyser);
    client->start(&system);
    ASSERT_TRUE(client->connect(L"127.0.0.1", server->getPort(), false));
    ASSERT_TRUE(tickUntil(system, [&] { return server->GetClientCount() == 1; }));
    // The connection, and that there is no other.
    EXPECT_EQ(door->count("accept"), 2);
    EXPECT_EQ(door->count("receive"), 0);
    EXPECT_EQ(door->count("getPeerEndpoint"), 0);
    EXPECT_EQ(door->count("close"), 0);
    client->close();
    server->close();
    system.exit();
}

} // namespace
