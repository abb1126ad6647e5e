// IPv6 over UDP: connections and user data of both families on one port.
#include "tests/support/ipv6.h"
#include "tests/support/passing_door.h"
#include "tests/support/udp_test.h"

#ifdef _WIN32
#include <winsock2.h>
#include <ws2tcpip.h>
#else
#include <netinet/in.h>
#endif

#include <cstring>
#include <string>

namespace
{

class UdpIPv6 : public test::UdpTest
{
protected:
    void SetUp() override
    {
        SKIP_WITHOUT_IPV6();
        UdpTest::SetUp();
    }
    test::NoteSocketHandle connect(const wchar_t* host)
    {
        const size_t before = m_Net.m_Server->m_Accepted.size();
        const test::NoteSocketHandle socket = new test::NoteSocket;
        m_Net.m_Sockets.push_back(socket);
        EXPECT_TRUE(socket->connect(m_Net.m_Port, host, m_Net.m_Server->getPort(), zet::Uuid()));
        const auto isUp = [&] { return m_Net.isUp(*socket) && m_Net.m_Server->m_Accepted.size() > before; };
        return m_Net.until(isUp, 2000) ? socket : test::NoteSocketHandle();
    }
};

sockaddr_in6 loopback6(unsigned short port)
{
    sockaddr_in6 address{};
    address.sin6_family = AF_INET6;
    address.sin6_port = htons(port);
    address.sin6_addr.s6_addr[15] = 1;
    return address;
}

TEST_F(UdpIPv6, APortTakesConnectionsOfBothFamilies)
{
    for (const wchar_t* host : {L"::1", L"[::1]"})
    {
        const test::NoteSocketHandle socket = connect(host);
        ASSERT_TRUE(socket);
        ASSERT_TRUE(socket->send(test::NoteCommand(7, 20000)));
        EXPECT_TRUE(m_Net.until([&] { return m_Net.accepted().m_Numbers.size() == 1; }));
        ASSERT_TRUE(m_Net.accepted().send(test::NoteCommand(8)));
        EXPECT_TRUE(m_Net.until([&] { return socket->m_Numbers.size() == 1; }));
        EXPECT_TRUE(socket->getPeerName().find(L'[', 0) == 0);
        EXPECT_EQ(std::wstring(m_Net.accepted().getPeerName().getBuffer()),
                  L"[::1]:" + std::to_wstring(m_Net.m_Port->getPort()));
        EXPECT_EQ(m_Net.accepted().getPeerAddress(), 0u);
        sockaddr_in6 address{};
        ASSERT_TRUE(m_Net.accepted().getPeerAddressIPv6(address));
        EXPECT_EQ(address.sin6_port, htons(m_Net.m_Port->getPort()));
        EXPECT_EQ(std::memcmp(&address.sin6_addr, &in6addr_loopback, sizeof address.sin6_addr), 0);
    }
    const test::NoteSocketHandle socket = connect(L"127.0.0.1");
    ASSERT_TRUE(socket);
    EXPECT_EQ(std::wstring(m_Net.accepted().getPeerName().getBuffer()),
              L"127.0.0.1:" + std::to_wstring(m_Net.m_Port->getPort()));
    EXPECT_EQ(m_Net.accepted().getPeerAddress(), zet::Socket::inet_addr("127.0.0.1"));
    sockaddr_in6 address{};
    EXPECT_FALSE(m_Net.accepted().getPeerAddressIPv6(address));
}

TEST_F(UdpIPv6, APendingPeerHasItsAddressInItsFamily)
{
    m_Net.m_Server->m_IsAccepting = false;
    const test::NoteSocketHandle socket = new test::NoteSocket;
    m_Net.m_Sockets.push_back(socket);
    ASSERT_TRUE(socket->connect(m_Net.m_Port, L"::1", m_Net.m_Server->getPort(), zet::Uuid()));
    sockaddr_in v4{};
    sockaddr_in6 v6{};
    EXPECT_FALSE(m_Net.m_Server->getVisitorAddressIPv6(v6));
    ASSERT_TRUE(m_Net.until([&] { return m_Net.m_Server->getVisitorAddressIPv6(v6); }));
    EXPECT_EQ(v6.sin6_port, htons(m_Net.m_Port->getPort()));
    EXPECT_FALSE(m_Net.m_Server->getVisitorAddress(v4));
}

TEST_F(UdpIPv6, ABoundPortTakesItsAddressOnly)
{
    const unsigned short port = m_Net.m_Server->getPort();
    m_Net.m_Server->close();
    EXPECT_FALSE(m_Net.m_Server->setBindAddress(L"localhost"));
    EXPECT_FALSE(m_Net.m_Server->setBindAddress(L"1.2.3"));
    ASSERT_TRUE(m_Net.m_Server->setBindAddress(L"::1"));
    ASSERT_TRUE(m_Net.m_Server->listen(L"", port));
    EXPECT_TRUE(connect(L"::1"));
    EXPECT_FALSE(connect(L"127.0.0.1"));
    m_Net.m_Server->close();
    ASSERT_TRUE(m_Net.m_Server->setBindAddress(L"127.0.0.1"));
    ASSERT_TRUE(m_Net.m_Server->listen(L"", port));
    EXPECT_TRUE(connect(L"127.0.0.1"));
    EXPECT_FALSE(connect(L"::1"));
    // The same port is free on another address.
    m_Net.m_Port->close();
    ASSERT_TRUE(m_Net.m_Port->setBindAddress(L"127.0.0.2"));
    EXPECT_TRUE(m_Net.m_Port->listen(L"", port));
}

TEST_F(UdpIPv6, UserDataThatNoOverrideTakesIsDroppedAndCounted)
{
    ASSERT_TRUE(m_Net.m_Port->sendUserDataIPv6(loopback6(m_Net.m_Server->getPort()), "six", 3));
    ASSERT_TRUE(m_Net.until([&] { return m_Net.m_Server->getTraffic().m_DatagramsIn == 1; }));
    EXPECT_EQ(m_Net.m_Server->getTraffic().m_DatagramsDropped, 1u);
    EXPECT_TRUE(m_Net.m_Server->m_UserData.empty());
    m_Net.m_Server->deliverIPv6(loopback6(1), "too", 3);
    EXPECT_EQ(m_Net.m_Server->getTraffic().m_DatagramsDropped, 2u);
    ASSERT_TRUE(m_Net.m_Port->sendUserData(test::loopback(m_Net.m_Server->getPort()), "four", 4));
    ASSERT_TRUE(m_Net.until([&] { return m_Net.m_Server->m_UserData.size() == 1; }));
    EXPECT_EQ(m_Net.m_Server->m_UserData[0].m_Address, zet::Socket::inet_addr("127.0.0.1"));
    EXPECT_EQ(m_Net.m_Server->getTraffic().m_DatagramsDropped, 2u);
    EXPECT_FALSE(m_Net.m_Port->sendUserDataIPv6(loopback6(m_Net.m_Server->getPort()), "", 0));
}

TEST(UdpUserDataIPv6, ReachesAnOverrideAndItsAnswerComesBack)
{
    SKIP_WITHOUT_IPV6();
    if (!zet::UdpServer::isAvailable())
        GTEST_SKIP() << "built without connections over UDP";
    class Echo : public zet::UdpServer
    {
    public:
        void onUserDataIPv6(const sockaddr_in6& address, const void* data, int size) override
        {
            m_Received.append(static_cast<const char*>(data), static_cast<size_t>(size));
            if (m_IsAnswering)
                sendUserDataIPv6(address, data, size);
        }
        std::string m_Received;
        bool m_IsAnswering = false;
    };
    zet::System system;
    system.init();
    const zet::Unknown::Handle_T<Echo> one = new Echo;
    const zet::Unknown::Handle_T<Echo> other = new Echo;
    other->m_IsAnswering = true;
    for (const auto& each : {one, other})
    {
        each->start(&system);
        ASSERT_TRUE(each->listen(0));
    }
    ASSERT_TRUE(one->sendUserDataIPv6(loopback6(other->getPort()), "hello", 5));
    EXPECT_TRUE(test::tickUntil(system, [&] { return one->m_Received == "hello"; }));
    EXPECT_EQ(other->m_Received, "hello");
    EXPECT_EQ(other->getTraffic().m_DatagramsDropped, 0u);
    system.exit();
}

TEST(UdpUserDataIPv6, ASystemWithoutIPv6HasAPortOfIPv4)
{
    if (!zet::UdpServer::isAvailable())
        GTEST_SKIP() << "built without connections over UDP";
    zet::System system;
    system.init();
    const auto door = std::make_shared<test::PassingDoor>();
    door->m_HasIPv6 = false;
    ASSERT_TRUE(zet::inner::setDoor(system, door));
    const zet::Unknown::Handle_T<zet::UdpServer> port = new zet::UdpServer;
    port->start(&system);
    ASSERT_TRUE(port->listen(0));
    EXPECT_EQ(door->count("open"), 2);
    EXPECT_NE(port->getPort(), 0);
    port->close();
    ASSERT_TRUE(port->setBindAddress(L"::1"));
    EXPECT_FALSE(port->listen(0));
    system.exit();
}

// IPv4 first, since a connection over UDP learns late that an address does not answer.
TEST_F(UdpIPv6, ANameWithBothFamiliesIsReachedByIPv4)
{
    zet::System system;
    system.init();
    const auto door = std::make_shared<test::PassingDoor>();
    ASSERT_TRUE(zet::inner::setDoor(system, door));
    const zet::Unknown::Handle_T<zet::UdpServer> port = new zet::UdpServer;
    port->start(&system);
    ASSERT_TRUE(port->listen(0));
    for (const std::vector<const char*>& addresses :
         {std::vector<const char*>{"::1", "127.0.0.1"}, std::vector<const char*>{"::1"}})
    {
        const test::NoteSocketHandle socket = new test::NoteSocket;
        ASSERT_TRUE(socket->connect(port, L"host.test", m_Net.m_Server->getPort(), zet::Uuid()));
        door->answer(addresses);
        ASSERT_TRUE(m_Net.until(
            [&]
            {
                system.tick();
                return m_Net.isUp(*socket);
            }));
        EXPECT_EQ(socket->getPeerAddress(), addresses.size() == 2 ? zet::Socket::inet_addr("127.0.0.1") : 0u);
        socket->close();
    }
    port->close();
    system.exit();
}

} // namespace
