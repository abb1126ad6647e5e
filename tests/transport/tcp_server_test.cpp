#include "net/tcp/server.h"

#include "framework/time.h"
#include "tests/support/log_lines.h"
#include "tests/support/loopback.h"
#include "tests/support/system_calls.h"

#include <gtest/gtest.h>

#include <functional>

#ifndef _WIN32
#include <arpa/inet.h>
#include <fcntl.h>
#include <netinet/in.h>
#include <sys/resource.h>
#include <unistd.h>
#else
#include <winsock2.h>
#endif

namespace
{

using test::tickUntil;
using StreamHandle = zet::Unknown::Handle_T<zet::TcpStream>;

class Acceptor : public zet::TcpServer
{
public:
    void onAccept() override
    {
        ++m_Visits;
        if (m_OnAccept)
        {
            m_OnAccept();
            return;
        }
        const StreamHandle stream = new zet::TcpStream;
        if (accept(stream))
            m_Streams.push_back(stream);
    }

    int m_Visits = 0;
    std::function<void()> m_OnAccept;
    std::vector<StreamHandle> m_Streams;
};
using AcceptorHandle = zet::Unknown::Handle_T<Acceptor>;

struct Listening
{
    Listening() : m_Server(new Acceptor)
    {
        m_System.init();
        m_Server->start(&m_System);
        m_IsUp = m_Server->listen(0, 5);
    }
    ~Listening() { m_System.exit(); }
    StreamHandle connect()
    {
        const StreamHandle stream = new zet::TcpStream;
        stream->start(&m_System);
        stream->connect(L"127.0.0.1", m_Server->getPort(), false);
        return stream;
    }

    zet::System m_System;
    AcceptorHandle m_Server;
    bool m_IsUp;
};

sockaddr_in addressOf(const char* text)
{
    sockaddr_in address = {};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = zet::Socket::inet_addr(text);
    return address;
}

in_addr inOf(const char* text)
{
    return addressOf(text).sin_addr;
}

TEST(TcpServer, Port0TakesAFreePort)
{
    Listening net;
    ASSERT_TRUE(net.m_IsUp);
    EXPECT_NE(net.m_Server->getPort(), 0);
    EXPECT_FALSE(net.m_Server->isInvalid());
    net.m_Server->close();
    EXPECT_EQ(net.m_Server->getPort(), 0);
    EXPECT_TRUE(net.m_Server->isInvalid());
}

TEST(TcpServer, ListenTwiceAndListenOnATakenPortFail)
{
    Listening net;
    ASSERT_TRUE(net.m_IsUp);
    EXPECT_FALSE(net.m_Server->listen(0, 5));
    EXPECT_FALSE(net.m_Server->isInvalid());
    const AcceptorHandle other = new Acceptor;
    EXPECT_FALSE(other->listen(net.m_Server->getPort(), 5));
    EXPECT_TRUE(other->isInvalid());
    EXPECT_EQ(other->getPort(), 0);
}

TEST(TcpServer, MayListenAgainOnItsPortAfterClose)
{
    Listening net;
    ASSERT_TRUE(net.m_IsUp);
    const unsigned short port = net.m_Server->getPort();
    const StreamHandle stream = net.connect();
    ASSERT_TRUE(tickUntil(net.m_System, [&] { return net.m_Server->m_Streams.size() == 1; }));
    net.m_Server->m_Streams.clear();
    net.m_Server->close();
    ASSERT_TRUE(net.m_Server->listen(port, 0));
    EXPECT_EQ(net.m_Server->getPort(), port);
}

TEST(TcpServer, AnUnacceptedPeerStaysPendingAndIsAnnouncedAgain)
{
    Listening net;
    net.m_Server->m_OnAccept = [] {};
    const StreamHandle first = net.connect();
    const StreamHandle second = net.connect();
    ASSERT_TRUE(tickUntil(net.m_System, [&] { return net.m_Server->m_Visits == 3; }));
    EXPECT_EQ(first->getConnectionState(), 2);
    const StreamHandle stream = new zet::TcpStream;
    ASSERT_TRUE(net.m_Server->accept(stream));
    ASSERT_EQ(first->send("me", 2), 2);
    stream->start(&net.m_System);
    EXPECT_TRUE(tickUntil(net.m_System, [&] { return stream->available() == 2; }));
    net.m_Server->close();
    EXPECT_TRUE(tickUntil(net.m_System, [&] { return second->getConnectionState() > 2; }));
}

TEST(TcpServer, AcceptWithNothingPendingIsFalse)
{
    Listening net;
    const StreamHandle stream = new zet::TcpStream;
    EXPECT_FALSE(net.m_Server->accept(stream));
    EXPECT_FALSE(net.m_Server->accept(nullptr));
    EXPECT_TRUE(stream->isInvalid());
    net.m_Server->close();
    EXPECT_FALSE(net.m_Server->accept(stream));
}

TEST(TcpServer, AcceptMayBeCalledByHand)
{
    Listening net;
    const StreamHandle client = net.connect();
    const StreamHandle stream = new zet::TcpStream;
    bool isAccepted = false;
    for (int i = 0; i < 1000 && !isAccepted; ++i)
        isAccepted = net.m_Server->accept(stream);
    EXPECT_TRUE(isAccepted);
    EXPECT_EQ(stream->getConnectionState(), 2);
}

TEST(TcpServer, AnObjectWithAConnectionIsNotGivenAnother)
{
    Listening net;
    const StreamHandle first = net.connect();
    ASSERT_TRUE(tickUntil(net.m_System, [&] { return net.m_Server->m_Streams.size() == 1; }));
    bool result = true;
    net.m_Server->m_OnAccept = [&] { result = net.m_Server->accept(net.m_Server->m_Streams[0]); };
    const StreamHandle second = net.connect();
    ASSERT_TRUE(tickUntil(net.m_System, [&] { return net.m_Server->m_Visits == 2; }));
    EXPECT_FALSE(result);
    EXPECT_EQ(net.m_Server->m_Streams[0]->getConnectionState(), 2);
}

TEST(TcpServer, AnAttachThatFailsRefusesThePeer)
{
    class Choosy : public zet::TcpStream
    {
    public:
        bool attach(unsigned int) override { return false; }
    };
    Listening net;
    const zet::Unknown::Handle_T<Choosy> choosy = new Choosy;
    bool result = true;
    net.m_Server->m_OnAccept = [&] { result = net.m_Server->accept(choosy); };
    const StreamHandle stream = net.connect();
    ASSERT_TRUE(tickUntil(net.m_System, [&] { return stream->getConnectionState() != 2; }));
    EXPECT_FALSE(result);
    EXPECT_TRUE(choosy->isInvalid());
    EXPECT_EQ(choosy->getConnectionState(), 0);
}

TEST(TcpServer, MayBeClosedInOnAccept)
{
    Listening net;
    net.m_Server->m_OnAccept = [&] { net.m_Server->close(); };
    const StreamHandle one = net.connect();
    const StreamHandle two = net.connect();
    ASSERT_TRUE(tickUntil(net.m_System, [&] { return net.m_Server->m_Visits == 1; }));
    net.m_System.tick();
    EXPECT_EQ(net.m_Server->m_Visits, 1);
    EXPECT_TRUE(net.m_Server->isInvalid());
}

TEST(TcpServer, ListenBeforeStartMovesToTheSystem)
{
    const AcceptorHandle server = new Acceptor;
    ASSERT_TRUE(server->listen(0, 5));
    const unsigned short port = server->getPort();
    zet::System system;
    system.init();
    ASSERT_TRUE(server->start(&system));
    EXPECT_EQ(server->getPort(), port);
    const StreamHandle stream = new zet::TcpStream;
    stream->start(&system);
    ASSERT_TRUE(stream->connect(L"127.0.0.1", port, false));
    EXPECT_TRUE(tickUntil(system, [&] { return server->m_Streams.size() == 1; }));
}

TEST(TcpServer, AnUnstartedOneLooksForItself)
{
    const AcceptorHandle server = new Acceptor;
    ASSERT_TRUE(server->listen(0, 5));
    const StreamHandle stream = new zet::TcpStream;
    ASSERT_TRUE(stream->connect(L"127.0.0.1", server->getPort(), false));
    for (int i = 0; i < 1000 && server->m_Streams.empty(); ++i)
        server->onTick(0);
    ASSERT_EQ(server->m_Streams.size(), 1U);
}

TEST(TcpServer, AHandleThatListensMayBeGivenAway)
{
    Listening net;
    const unsigned short port = net.m_Server->getPort();
    const unsigned int handle = net.m_Server->detach();
    ASSERT_NE(handle, zet::Socket::kNoHandle);
    EXPECT_TRUE(net.m_Server->isInvalid());
    const AcceptorHandle other = new Acceptor;
    other->start(&net.m_System);
    EXPECT_FALSE(other->attach(zet::Socket::kNoHandle));
    ASSERT_TRUE(other->attach(handle));
    EXPECT_EQ(other->getPort(), port);
    const StreamHandle stream = new zet::TcpStream;
    stream->start(&net.m_System);
    ASSERT_TRUE(stream->connect(L"127.0.0.1", port, false));
    EXPECT_TRUE(tickUntil(net.m_System, [&] { return other->m_Streams.size() == 1; }));
}

TEST(TcpServer, WithoutRulesEveryAddressHasPermission)
{
    Acceptor server;
    EXPECT_TRUE(server.permission(addressOf("10.1.2.3")));
}

TEST(TcpServer, AnAddressOnTheRejectListHasNoPermission)
{
    Acceptor server;
    server.addRejectAddress(inOf("10.0.0.0"), inOf("255.0.0.0"));
    EXPECT_FALSE(server.permission(addressOf("10.1.2.3")));
    EXPECT_TRUE(server.permission(addressOf("11.1.2.3")));
    // Bits of the network outside its mask do not count.
    server.addRejectAddress(inOf("192.168.7.7"), inOf("255.255.0.0"));
    EXPECT_FALSE(server.permission(addressOf("192.168.1.1")));
}

TEST(TcpServer, AnAddressOnBothListsHasPermission)
{
    Acceptor server;
    server.addRejectAddress(inOf("10.0.0.0"), inOf("255.0.0.0"));
    server.addPermissionAddress(inOf("10.1.0.0"), inOf("255.255.0.0"));
    EXPECT_TRUE(server.permission(addressOf("10.1.2.3")));
    EXPECT_FALSE(server.permission(addressOf("10.2.2.3")));
}

TEST(TcpServer, AnAddressOnNeitherListHasPermission)
{
    Acceptor server;
    server.addRejectAddress(inOf("10.0.0.0"), inOf("255.0.0.0"));
    server.addPermissionAddress(inOf("10.1.0.0"), inOf("255.255.0.0"));
    EXPECT_TRUE(server.permission(addressOf("172.16.0.1")));
}

TEST(TcpServer, ARejectOfEverythingLetsInThePermissionListAlone)
{
    Acceptor server;
    const unsigned char zero[4] = {0, 0, 0, 0};
    const unsigned char network[4] = {10, 1, 0, 0};
    const unsigned char mask[4] = {255, 255, 0, 0};
    server.addRejectAddress(zero, zero);
    server.addPermissionAddress(network, mask);
    EXPECT_TRUE(server.permission(addressOf("10.1.200.200")));
    EXPECT_FALSE(server.permission(addressOf("10.2.0.0")));
    EXPECT_FALSE(server.permission(addressOf("127.0.0.1")));
}

TEST(TcpServer, WithoutPermissionNoPeerReachesOnAccept)
{
    Listening net;
    net.m_Server->addRejectAddress(inOf("127.0.0.0"), inOf("255.0.0.0"));
    const StreamHandle stream = net.connect();
    ASSERT_TRUE(tickUntil(net.m_System, [&] { return stream->getConnectionState() != 2; }));
    EXPECT_EQ(net.m_Server->m_Visits, 0);
}

#ifndef _WIN32
TEST(TcpServer, AcceptPausesWithoutHandlesAndResumes)
{
#ifdef IS_SANITIZED
    GTEST_SKIP() << "the sanitizers need handles for checks of their own";
#endif
    zet::TestClock clock(0);
    Listening net;
    ASSERT_TRUE(net.m_IsUp);
    const StreamHandle stream = net.connect();
    ASSERT_EQ(stream->getConnectionState(), 2);
    rlimit old;
    ASSERT_EQ(getrlimit(RLIMIT_NOFILE, &old), 0);
    test::LogLines lines;
    const int spare = dup(0);
    rlimit none = old;
    none.rlim_cur = static_cast<rlim_t>(spare);
    ASSERT_EQ(setrlimit(RLIMIT_NOFILE, &none), 0);
    close(spare);
    // Handles below the limit may still be free; these take them.
    std::vector<int> taken;
    for (int handle = dup(0); handle >= 0; handle = dup(0))
        taken.push_back(handle);
    for (int i = 0; i < 5; ++i)
        net.m_System.tick();
    EXPECT_EQ(net.m_Server->m_Visits, 0);
    EXPECT_EQ(lines.texts().size(), 1U);
    EXPECT_EQ(lines.texts().at(0).find(L"Pausing accept for 100 ms: "), 0U);
    for (const int handle : taken)
        close(handle);
    ASSERT_EQ(setrlimit(RLIMIT_NOFILE, &old), 0);
    net.m_System.tick();
    EXPECT_EQ(net.m_Server->m_Visits, 0);
    clock.advance(zet::TcpServer::kRestTime);
    net.m_System.tick();
    EXPECT_EQ(net.m_Server->m_Streams.size(), 1U);
}
#else
TEST(TcpServer, AcceptPausesWithoutHandlesAndResumes)
{
    GTEST_SKIP() << "no limit of handles that a test could run into";
}
#endif

} // namespace
