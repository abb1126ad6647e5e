// IPv6 over TCP and net sessions: ports of both families, peers of both, and the filters of each.
#include "framework/string_helper.h"
#include "tests/support/accepting_port.h"
#include "tests/support/ipv6.h"
#include "tests/support/net_pair.h"
#include "tests/support/passing_door.h"

#ifdef _WIN32
#include <winsock2.h>
#include <ws2tcpip.h>
#else
#include <netinet/in.h>
#endif

#include <string>

namespace
{

using test::tickUntil;
using Port = test::AcceptingPort;
using StreamHandle = zet::Unknown::Handle_T<zet::TcpStream>;

// Allows what the test says, and notes what it was asked.
class AskingPort : public Port
{
public:
    bool permission(const sockaddr_in& address) override
    {
        m_Asked += address.sin_addr.s_addr == zet::Socket::inet_addr("127.0.0.1") ? "4"
                   : address.sin_addr.s_addr == 0 && address.sin_port != 0        ? "0"
                                                                                  : "?";
        return m_IsAllowed;
    }

    std::string m_Asked;
    bool m_IsAllowed = true;
};

template <class Server = Port>
struct Net
{
    explicit Net(const wchar_t* address = L"", const std::shared_ptr<zet::inner::Door>& door = nullptr)
    {
        m_System.init();
        if (door)
        {
            EXPECT_TRUE(zet::inner::setDoor(m_System, door));
        }
        m_Port->start(&m_System);
        EXPECT_TRUE(m_Port->setBindAddress(address));
        m_IsListening = m_Port->listen(0, 10);
    }
    ~Net() { m_System.exit(); }

    // A stream to the port, whose connection has been established or has failed.
    StreamHandle connect(const wchar_t* host)
    {
        const StreamHandle stream = new zet::TcpStream;
        stream->start(&m_System);
        stream->connect(host, m_Port->getPort(), false);
        tickUntil(m_System, [&] { return stream->getConnectionState() != zet::TcpConnection::kConnecting; });
        return stream;
    }
    bool reaches(const wchar_t* host)
    {
        const size_t before = m_Port->m_Accepted.size();
        const StreamHandle stream = connect(host);
        return stream->getConnectionState() == zet::TcpConnection::kEstablished &&
               tickUntil(m_System,
                         [&] {
                             return m_Port->m_Accepted.size() > before ||
                                    stream->getConnectionState() != zet::TcpConnection::kEstablished;
                         }) &&
               m_Port->m_Accepted.size() > before;
    }

    zet::System m_System;
    const zet::Unknown::Handle_T<Server> m_Port = new Server;
    bool m_IsListening = false;
};

std::wstring textOf(const zet::String_T<wchar_t>& text)
{
    return text.getBuffer();
}

TEST(IPv6, AnEmptyAddressListensOnBothFamilies)
{
    SKIP_WITHOUT_IPV6();
    Net net;
    ASSERT_TRUE(net.m_IsListening);
    sockaddr_in6 address{};
    for (const wchar_t* host : {L"::1", L"[::1]", L"0:0::1"})
    {
        ASSERT_TRUE(net.reaches(host));
        const zet::TcpStream& peer = *net.m_Port->m_Accepted.back();
        EXPECT_EQ(textOf(peer.getPeerName()), L"[::1]:" + std::to_wstring(peer.getPeerPort()));
        EXPECT_EQ(peer.getPeerAddress(), 0u);
        EXPECT_NE(peer.getPeerPort(), 0);
        ASSERT_TRUE(peer.getPeerAddressIPv6(address));
        EXPECT_EQ(address.sin6_family, AF_INET6);
        EXPECT_EQ(address.sin6_addr.s6_addr[15], 1);
    }
    const StreamHandle out = net.connect(L"[::1]");
    EXPECT_EQ(textOf(out->getPeerName()), L"[::1]:" + std::to_wstring(net.m_Port->getPort()));
    out->close();
    EXPECT_EQ(textOf(out->getPeerName()), L"[::1]:" + std::to_wstring(net.m_Port->getPort()));
}

TEST(IPv6, AnIPv4PeerOfAPortOfBothFamiliesIsOneOfIPv4)
{
    Net net;
    ASSERT_TRUE(net.m_IsListening);
    sockaddr_in6 address{};
    for (const wchar_t* host : {L"127.0.0.1", L"::ffff:127.0.0.1"})
    {
        ASSERT_TRUE(net.reaches(host));
        const zet::TcpStream& peer = *net.m_Port->m_Accepted.back();
        EXPECT_EQ(textOf(peer.getPeerName()), L"127.0.0.1:" + std::to_wstring(peer.getPeerPort()));
        EXPECT_EQ(peer.getPeerAddress(), zet::Socket::inet_addr("127.0.0.1"));
        EXPECT_FALSE(peer.getPeerAddressIPv6(address));
    }
}

TEST(IPv6, AnAddressBoundIsTheOnlyOne)
{
    SKIP_WITHOUT_IPV6();
    for (const wchar_t* own : {L"::1", L"[::1]"})
    {
        Net net(own);
        ASSERT_TRUE(net.m_IsListening);
        EXPECT_TRUE(net.reaches(L"::1"));
        EXPECT_EQ(net.connect(L"127.0.0.1")->getConnectionState(), zet::TcpConnection::kConnectFailed);
    }
    Net onlyV4(L"0.0.0.0");
    ASSERT_TRUE(onlyV4.m_IsListening);
    EXPECT_TRUE(onlyV4.reaches(L"127.0.0.1"));
    EXPECT_EQ(onlyV4.connect(L"::1")->getConnectionState(), zet::TcpConnection::kConnectFailed);
    Net both(L"::");
    ASSERT_TRUE(both.m_IsListening);
    EXPECT_TRUE(both.reaches(L"127.0.0.1"));
    EXPECT_TRUE(both.reaches(L"::1"));
}

TEST(IPv6, ASystemWithoutItListensOnIPv4)
{
    const auto door = std::make_shared<test::PassingDoor>();
    door->m_HasIPv6 = false;
    Net net(L"", door);
    ASSERT_TRUE(net.m_IsListening);
    EXPECT_EQ(door->count("open"), 2);
    EXPECT_TRUE(net.reaches(L"127.0.0.1"));
    EXPECT_EQ(net.connect(L"::1")->getConnectionState(), zet::TcpConnection::kConnectFailed);
    net.m_Port->close();
    ASSERT_TRUE(net.m_Port->setBindAddress(L"::1"));
    EXPECT_FALSE(net.m_Port->listen(0, 10));
    EXPECT_TRUE(net.m_Port->isInvalid());
}

TEST(IPv6, APortThatIsTakenInOneFamilyIsNotListenedOnInTheOther)
{
    SKIP_WITHOUT_IPV6();
    Net taken(L"127.0.0.1");
    ASSERT_TRUE(taken.m_IsListening);
    const zet::Unknown::Handle_T<Port> other = new Port;
    EXPECT_FALSE(other->listen(taken.m_Port->getPort(), 10));
    EXPECT_TRUE(other->isInvalid());
}

TEST(IPv6, WhatIsNoAddressIsRefused)
{
    const zet::Unknown::Handle_T<Port> port = new Port;
    for (const wchar_t* text : {L":", L":::", L"[::1", L"::1]", L"[]", L"[127.0.0.1]", L"::1/128", L"[::1]:80", L"::1%",
                                L"localhost", L"1.2.3", L"::1 "})
        EXPECT_FALSE(port->setBindAddress(text)) << zet::StringHelper::wideToUtf8(text).getBuffer();
}

TEST(IPv6, FiltersOfEachFamilyMeetTheirOwnPeers)
{
    SKIP_WITHOUT_IPV6();
    Net net;
    ASSERT_TRUE(net.m_Port->addRejectSubnet(L"127.0.0.0/8"));
    EXPECT_FALSE(net.reaches(L"127.0.0.1"));
    EXPECT_TRUE(net.reaches(L"::1"));
    ASSERT_TRUE(net.m_Port->addPermissionSubnet(L"127.0.0.1"));
    EXPECT_TRUE(net.reaches(L"127.0.0.1"));
    // All of IPv6, and no mapped address.
    ASSERT_TRUE(net.m_Port->addRejectSubnet(L"::/0"));
    EXPECT_FALSE(net.reaches(L"::1"));
    EXPECT_TRUE(net.reaches(L"127.0.0.1"));
    ASSERT_TRUE(net.m_Port->addPermissionSubnet(L"[::1]"));
    EXPECT_TRUE(net.reaches(L"::1"));
}

bool permits(zet::TcpServer& server, const char* text)
{
    zet::inner::Endpoint peer;
    EXPECT_TRUE(test::Door::parse(text, 1, peer));
    sockaddr_in6 address{};
    address.sin6_family = AF_INET6;
    address.sin6_port = htons(peer.m_Port);
    std::memcpy(&address.sin6_addr, peer.m_Bytes, sizeof peer.m_Bytes);
    return server.permissionIPv6(address);
}

TEST(IPv6, ASubnetHoldsTheAddressesThatShareItsBits)
{
    const zet::Unknown::Handle_T<Port> port = new Port;
    ASSERT_TRUE(port->addRejectSubnet(L"2001:db8:8000::/33"));
    EXPECT_FALSE(permits(*port, "2001:db8:8000::1"));
    EXPECT_FALSE(permits(*port, "2001:db8:ffff::1"));
    EXPECT_TRUE(permits(*port, "2001:db8:7fff::1"));
    in6_addr inside{};
    inside.s6_addr[0] = 0x20;
    inside.s6_addr[1] = 0x01;
    EXPECT_FALSE(port->addPermissionAddress(inside, 129));
    EXPECT_FALSE(port->addPermissionAddress(inside, -1));
    ASSERT_TRUE(port->addPermissionAddress(inside, 16));
    EXPECT_TRUE(permits(*port, "2001:db8:8000::1"));
    ASSERT_TRUE(port->addRejectAddress(inside, 128));
    for (const wchar_t* text : {L"", L"/8", L"::1/", L"::1/129", L"10.0.0.0/33", L"::1/a", L"::1/-1", L"::1/ 8",
                                L"::1/1000", L"host/8", L"10.0.0.0 255.0.0.0"})
        EXPECT_FALSE(port->addRejectSubnet(text)) << zet::StringHelper::wideToUtf8(text).getBuffer();
    EXPECT_FALSE(port->addRejectSubnet(nullptr));
}

TEST(IPv6, AHostThatAllowsListedAddressesRefusesIPv6UntilItSaysOtherwise)
{
    SKIP_WITHOUT_IPV6();
    Net net;
    ASSERT_TRUE(net.m_Port->addRejectSubnet(L"0.0.0.0/0"));
    ASSERT_TRUE(net.m_Port->addPermissionSubnet(L"127.0.0.0/8"));
    EXPECT_TRUE(net.reaches(L"127.0.0.1"));
    EXPECT_FALSE(net.reaches(L"::1"));
    ASSERT_TRUE(net.m_Port->addPermissionSubnet(L"::1/128"));
    EXPECT_TRUE(net.reaches(L"::1"));
}

TEST(IPv6, AnOverriddenPermissionIsAskedFor0000)
{
    SKIP_WITHOUT_IPV6();
    Net<AskingPort> net;
    EXPECT_TRUE(net.reaches(L"127.0.0.1"));
    EXPECT_TRUE(net.reaches(L"::1"));
    net.m_Port->m_IsAllowed = false;
    EXPECT_FALSE(net.reaches(L"::1"));
    EXPECT_EQ(net.m_Port->m_Asked, "400");
}

TEST(IPv6, ANetSessionConnectsToAnAddressInBrackets)
{
    SKIP_WITHOUT_IPV6();
    test::NetPair net;
    ASSERT_TRUE(net.m_IsListening);
    zet::NetAddress address;
    const std::wstring text = L"[::1]:" + std::to_wstring(net.m_Server->getPort());
    ASSERT_TRUE(address.convertFromString(text.c_str()));
    const test::NotingHandle session = net.make();
    ASSERT_TRUE(session->connect(address, zet::Uuid()));
    ASSERT_TRUE(tickUntil(net.m_System, [&] { return session->getState() == zet::NetSession::kEstablished; }));
    EXPECT_EQ(textOf(session->getPeerName()), text);
}

#ifdef __GNUC__

template <class Operation>
std::ptrdiff_t offsetOf(Operation operation)
{
    std::ptrdiff_t words[sizeof(Operation) / sizeof(std::ptrdiff_t)];
    std::memcpy(words, &operation, sizeof operation);
    return words[0];
}

// A host built against the required order calls by it.
TEST(IPv6, TheOperationsOfAServerKeepTheirOrder)
{
    struct Slots : CFrameworkServerSocket
    {
        using CFrameworkServerSocket::Abandon;
        using CFrameworkServerSocket::onAccept;
    };
    EXPECT_EQ(offsetOf(&Slots::Abandon) - offsetOf(&Slots::onAccept), static_cast<std::ptrdiff_t>(sizeof(void*)));
}

#endif

} // namespace
