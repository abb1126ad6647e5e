#include "net/quic/server.h"

#include "tests/support/udp_test.h"

#include <algorithm>
#include <string>

#ifdef _WIN32
#include <winsock2.h>
#else
#include <netinet/in.h>
#endif

namespace
{

using test::NoteCommand;
using test::NoteSocket;
using test::NoteSocketHandle;
using test::NoteUdpServer;
using test::UdpNet;

class UdpServer : public test::UdpTest
{
protected:
    explicit UdpServer(const zet::UdpServer::Settings& settings = {}) : UdpTest(settings) {}
};

TEST_F(UdpServer, TheIdThatConnectTakesReachesTheServerBeforeItAccepts)
{
    zet::Uuid id;
    zet::uuid_create(id);
    m_Net.m_Server->m_IsAccepting = false;
    const NoteSocketHandle socket = m_Net.begin(id);
    ASSERT_TRUE(socket);
    EXPECT_TRUE(socket->getConnectionId() == id);
    EXPECT_EQ(socket->getConnectionState(), NoteSocket::kConnecting);
    sockaddr_in address{};
    EXPECT_FALSE(m_Net.m_Server->getVisitorAddress(address));
    EXPECT_TRUE(m_Net.m_Server->getVisitorId().isNull());
    ASSERT_TRUE(m_Net.until([&] { return !m_Net.m_Server->m_VisitorIds.empty(); }));
    EXPECT_TRUE(m_Net.m_Server->m_VisitorIds[0] == id);
    EXPECT_TRUE(m_Net.m_Server->getVisitorId() == id);
    ASSERT_TRUE(m_Net.m_Server->getVisitorAddress(address));
    EXPECT_EQ(ntohs(address.sin_port), m_Net.m_Port->getPort());
    m_Net.m_Server->m_IsAccepting = true;
    m_Net.step();
    ASSERT_EQ(m_Net.m_Server->m_Accepted.size(), 1U);
    EXPECT_TRUE(m_Net.accepted().getConnectionId() == id);
    EXPECT_TRUE(m_Net.m_Server->getVisitorId().isNull());
}

TEST_F(UdpServer, BothEndsKnowTheirPeer)
{
    const NoteSocketHandle socket = m_Net.connect();
    ASSERT_TRUE(socket);
    EXPECT_TRUE(socket->getPeerName() == zet::formatText(L"127.0.0.1:%d", m_Net.m_Server->getPort()));
    EXPECT_EQ(m_Net.accepted().getPeerPort(), m_Net.m_Port->getPort());
    EXPECT_EQ(m_Net.accepted().getPeerAddress(), zet::Socket::inet_addr("127.0.0.1"));
}

TEST_F(UdpServer, OnePortConnectsAndAccepts)
{
    const NoteSocketHandle there = m_Net.connect();
    ASSERT_TRUE(there);
    const NoteSocketHandle back = new NoteSocket;
    ASSERT_TRUE(back->connect(m_Net.m_Server, L"127.0.0.1", m_Net.m_Port->getPort(), zet::Uuid()));
    // And to itself.
    const NoteSocketHandle self = new NoteSocket;
    ASSERT_TRUE(self->connect(m_Net.m_Server, L"localhost", m_Net.m_Server->getPort(), zet::Uuid()));
    ASSERT_TRUE(m_Net.until([&] { return UdpNet::isUp(*back) && UdpNet::isUp(*self); }));
    ASSERT_TRUE(m_Net.until([&] { return m_Net.m_Server->m_Accepted.size() == 2; }));
    for (const NoteSocketHandle& socket : {there, back, self})
        ASSERT_TRUE(socket->send(NoteCommand(1)));
    ASSERT_TRUE(m_Net.until([&] { return m_Net.accepted().m_Numbers.size() == 1; }));
    EXPECT_EQ(m_Net.m_Server->getConnectionCount(), 4);
    EXPECT_EQ(m_Net.m_Port->getConnectionCount(), 2);
}

TEST_F(UdpServer, AnswersLeaveFromTheAddressThatWasAsked)
{
    const NoteSocketHandle socket = new NoteSocket;
    ASSERT_TRUE(socket->connect(m_Net.m_Port, L"127.3.2.1", m_Net.m_Server->getPort(), zet::Uuid()));
    ASSERT_TRUE(socket->send(NoteCommand(1)));
    ASSERT_TRUE(m_Net.until([&] { return UdpNet::isUp(*socket) && !m_Net.m_Server->m_Accepted.empty(); }));
    ASSERT_TRUE(m_Net.accepted().send(NoteCommand(2)));
    ASSERT_TRUE(m_Net.until([&] { return socket->m_Numbers.size() == 1; }));
    EXPECT_TRUE(socket->getPeerName() == zet::formatText(L"127.3.2.1:%d", m_Net.m_Server->getPort()));
}

TEST_F(UdpServer, WhatIsSentWhileConnectingArrives)
{
    const NoteSocketHandle socket = m_Net.begin();
    ASSERT_TRUE(socket);
    ASSERT_TRUE(socket->send(NoteCommand(1)));
    ASSERT_TRUE(m_Net.until([&] { return !m_Net.m_Server->m_Accepted.empty(); }));
    ASSERT_TRUE(m_Net.until([&] { return m_Net.accepted().m_Numbers.size() == 1; }));
}

TEST_F(UdpServer, UserDataReachesTheOtherPortWhateverItsFirstByte)
{
    const NoteSocketHandle socket = m_Net.connect();
    ASSERT_TRUE(socket);
    const sockaddr_in to = test::loopback(m_Net.m_Server->getPort());
    for (int first = 0; first < 256; ++first)
    {
        const std::string bytes = static_cast<char>(first) + std::string(static_cast<size_t>(first), 'x');
        ASSERT_TRUE(m_Net.m_Port->sendUserData(to, bytes.data(), static_cast<int>(bytes.size())));
        m_Net.step();
    }
    ASSERT_TRUE(m_Net.until([&] { return m_Net.m_Server->m_UserData.size() == 256; }));
    for (size_t i = 0; i < 256; ++i)
    {
        const test::UserData& data = m_Net.m_Server->m_UserData[i];
        ASSERT_EQ(data.m_Bytes.size(), i + 1);
        EXPECT_EQ(data.m_Bytes[0], i);
        EXPECT_EQ(data.m_Port, m_Net.m_Port->getPort());
        EXPECT_EQ(data.m_Address, zet::Socket::inet_addr("127.0.0.1"));
    }
    EXPECT_TRUE(UdpNet::isUp(*socket));
}

TEST_F(UdpServer, UserDataHasOneTo2048Bytes)
{
    const sockaddr_in to = test::loopback(m_Net.m_Server->getPort());
    const std::string bytes(2049, 'a');
    EXPECT_FALSE(m_Net.m_Port->sendUserData(to, bytes.data(), 0));
    EXPECT_FALSE(m_Net.m_Port->sendUserData(to, bytes.data(), -1));
    EXPECT_FALSE(m_Net.m_Port->sendUserData(to, bytes.data(), 2049));
    EXPECT_TRUE(m_Net.m_Port->sendUserData(to, bytes.data(), 2048));
    ASSERT_TRUE(m_Net.until([&] { return m_Net.m_Server->m_UserData.size() == 1; }));
    EXPECT_EQ(m_Net.m_Server->m_UserData[0].m_Bytes.size(), 2048U);
    EXPECT_FALSE(NoteUdpServer().sendUserData(to, bytes.data(), 1));
}

TEST_F(UdpServer, ConnectWithoutAListenerFailsInTime)
{
    const NoteSocketHandle socket = new NoteSocket;
    ASSERT_TRUE(socket->connect(m_Net.m_Port, L"127.0.0.1", static_cast<short>(1), zet::Uuid()));
    const unsigned int begin = zet::getTimeTick();
    ASSERT_TRUE(m_Net.until([&] { return socket->m_Closes == 1; }));
    EXPECT_EQ(socket->m_StateAtClose, NoteSocket::kConnectFailed);
    EXPECT_LE(zet::getTimeTick() - begin, zet::UdpServer::Settings().m_ConnectTimeout + 100);
    EXPECT_EQ(m_Net.m_Port->getConnectionCount(), 0);
}

TEST_F(UdpServer, WhatCannotConnectChangesNothing)
{
    const NoteSocketHandle socket = new NoteSocket;
    const zet::Uuid id;
    const unsigned short port = m_Net.m_Server->getPort();
    EXPECT_FALSE(socket->connect(nullptr, L"127.0.0.1", port, id));
    EXPECT_FALSE(socket->connect(m_Net.m_Port, nullptr, port, id));
    EXPECT_FALSE(socket->connect(m_Net.m_Port, L"", port, id));
    EXPECT_FALSE(socket->connect(m_Net.m_Port, L"127.0.0.1", 0, id));
    const zet::Unknown::Handle_T<NoteUdpServer> closed = new NoteUdpServer;
    EXPECT_FALSE(socket->connect(closed, L"127.0.0.1", port, id));
    EXPECT_FALSE(m_Net.m_Server->accept(socket));
    EXPECT_FALSE(m_Net.m_Server->accept(nullptr));
    EXPECT_EQ(socket->getConnectionState(), NoteSocket::kDown);
    ASSERT_TRUE(socket->connect(m_Net.m_Port, L"127.0.0.1", port, id));
    EXPECT_FALSE(socket->connect(m_Net.m_Port, L"127.0.0.1", port, id));
    char byte = 0;
    EXPECT_EQ(NoteSocketHandle(new NoteSocket)->receive(&byte, 1), -1);
    EXPECT_EQ(NoteSocketHandle(new NoteSocket)->write(&byte, 1), 0);
}

TEST_F(UdpServer, ReadingPeekingAndSkippingAgree)
{
    class Plain : public NoteUdpServer
    {
    public:
        void onAccept() override { accept(m_Stream = new zet::UdpStream); }
        zet::Unknown::Handle_T<zet::UdpStream> m_Stream;
    };
    const zet::Unknown::Handle_T<Plain> server = new Plain;
    server->start(&m_Net.m_System);
    ASSERT_TRUE(server->listen(L"", 0));
    const zet::Unknown::Handle_T<zet::UdpStream> outward = new zet::UdpStream;
    ASSERT_TRUE(outward->connect(m_Net.m_Port, L"127.0.0.1", server->getPort(), zet::Uuid()));
    ASSERT_EQ(outward->write("hello ", 6), 6);
    ASSERT_EQ(outward->send("world", 5), 5);
    ASSERT_TRUE(m_Net.until([&] { return server->m_Stream && server->m_Stream->available() == 11; }));
    zet::UdpStream& inward = *server->m_Stream;
    char text[12] = {};
    EXPECT_EQ(inward.peek(text, 5), 5);
    EXPECT_STREQ(text, "hello");
    EXPECT_EQ(inward.skip(6), 6);
    EXPECT_EQ(std::string(reinterpret_cast<const char*>(inward.view(5)), 5), "world");
    EXPECT_EQ(inward.view(6), nullptr);
    EXPECT_EQ(inward.read(text, -1), 0);
    EXPECT_EQ(inward.receive(text, 2), 2);
    EXPECT_EQ(inward.read(text, 100), 3);
    EXPECT_EQ(inward.receive(text, 100), 0);
    outward->close();
    ASSERT_TRUE(m_Net.until([&] { return inward.getConnectionState() == zet::UdpStream::kClosedByPeer; }));
    EXPECT_EQ(inward.receive(text, 100), -1);
    EXPECT_EQ(inward.read(text, 100), 0);
    EXPECT_EQ(inward.write(text, 1), 0);
    server->close();
}

TEST_F(UdpServer, TheEndShowsAfterTheLastByte)
{
    class Slow : public NoteSocket
    {
    public:
        void onTick(unsigned int tick) override { zet::UdpStream::onTick(tick); }
    };
    const zet::Unknown::Handle_T<Slow> slow = new Slow;
    ASSERT_TRUE(slow->connect(m_Net.m_Port, L"127.0.0.1", m_Net.m_Server->getPort(), zet::Uuid()));
    ASSERT_TRUE(m_Net.until([&] { return !m_Net.m_Server->m_Accepted.empty(); }));
    ASSERT_EQ(m_Net.accepted().write("last", 4), 4);
    m_Net.accepted().close();
    ASSERT_TRUE(m_Net.until([&] { return m_Net.m_Port->getConnectionCount() == 0; }));
    for (int i = 0; i < 5; ++i)
        m_Net.step();
    EXPECT_EQ(slow->getConnectionState(), NoteSocket::kEstablished);
    EXPECT_EQ(slow->m_Closes, 0);
    EXPECT_EQ(slow->write("x", 1), 0);
    char text[5] = {};
    ASSERT_EQ(slow->read(text, 4), 4);
    EXPECT_STREQ(text, "last");
    ASSERT_TRUE(m_Net.until([&] { return slow->m_Closes == 1; }));
    EXPECT_EQ(slow->m_StateAtClose, NoteSocket::kClosedByPeer);
}

TEST_F(UdpServer, AServerThatClosesNotifiesItsPeers)
{
    const NoteSocketHandle first = m_Net.connect();
    const NoteSocketHandle second = m_Net.connect();
    ASSERT_TRUE(first && second);
    m_Net.m_Server->close();
    EXPECT_EQ(m_Net.accepted().m_Closes, 1);
    EXPECT_EQ(m_Net.accepted().m_StateAtClose, NoteSocket::kBroken);
    ASSERT_TRUE(m_Net.until([&] { return first->m_Closes == 1 && second->m_Closes == 1; }, 10));
    EXPECT_EQ(first->m_StateAtClose, NoteSocket::kClosedByPeer);
    EXPECT_EQ(m_Net.m_Port->getConnectionCount(), 0);
}

TEST_F(UdpServer, APendingConnectionWaitsUntilItIsAccepted)
{
    m_Net.m_Server->m_IsAccepting = false;
    const NoteSocketHandle first = m_Net.begin();
    const NoteSocketHandle second = m_Net.begin();
    ASSERT_TRUE(first->send(NoteCommand(1)));
    ASSERT_TRUE(second->send(NoteCommand(2)));
    ASSERT_TRUE(m_Net.until([&] { return UdpNet::isUp(*first) && UdpNet::isUp(*second); }));
    m_Net.until([] { return false; }, 100);
    EXPECT_EQ(m_Net.m_Server->GetClientCount(), 0);
    EXPECT_EQ(m_Net.m_Server->getConnectionCount(), 2);
    m_Net.m_Server->m_IsAccepting = true;
    ASSERT_TRUE(m_Net.until([&] { return m_Net.m_Server->m_Accepted.size() == 2; }));
    ASSERT_TRUE(m_Net.until([&] { return m_Net.accepted().m_Numbers.size() == 1; }));
    EXPECT_EQ(m_Net.m_Server->m_Accepted[0]->m_Numbers, std::vector<int>{1});
    EXPECT_EQ(m_Net.m_Server->m_Accepted[1]->m_Numbers, std::vector<int>{2});
}

TEST_F(UdpServer, APendingConnectionNotAcceptedInTimeIsRefused)
{
    const auto timeout = static_cast<int>(zet::UdpServer::Settings().m_ConnectTimeout);
    const NoteSocketHandle accepted = m_Net.connect();
    ASSERT_TRUE(accepted);
    m_Net.m_Server->m_IsAccepting = false;
    const NoteSocketHandle socket = m_Net.begin();
    ASSERT_TRUE(socket);
    m_Net.until([] { return false; }, timeout - 10);
    EXPECT_TRUE(UdpNet::isUp(*socket));
    EXPECT_EQ(m_Net.m_Server->getConnectionCount(), 2);
    ASSERT_TRUE(m_Net.until([&] { return socket->m_Closes == 1; }, 30));
    EXPECT_EQ(socket->m_StateAtClose, NoteSocket::kBroken);
    EXPECT_TRUE(m_Net.m_Server->getVisitorId().isNull());
    EXPECT_FALSE(m_Net.m_Server->accept(NoteSocketHandle(new NoteSocket)));
    EXPECT_EQ(m_Net.m_Server->getConnectionCount(), 1);
    EXPECT_TRUE(UdpNet::isUp(m_Net.accepted()));
}

TEST_F(UdpServer, APendingConnectionThatEndsIsForgotten)
{
    m_Net.m_Server->m_IsAccepting = false;
    const NoteSocketHandle socket = m_Net.begin();
    ASSERT_TRUE(m_Net.until([&] { return !m_Net.m_Server->m_VisitorIds.empty(); }));
    socket->close();
    ASSERT_TRUE(m_Net.until([&] { return m_Net.m_Server->getConnectionCount() == 0; }));
    EXPECT_FALSE(m_Net.m_Server->accept(NoteSocketHandle(new NoteSocket)));
}

TEST_F(UdpServer, AConnectionThatIsLetGoOfEnds)
{
    NoteSocketHandle socket = m_Net.connect();
    ASSERT_TRUE(socket);
    m_Net.m_Sockets.clear();
    socket.clear();
    ASSERT_TRUE(m_Net.until([&] { return m_Net.accepted().m_Closes == 1; }));
    EXPECT_EQ(m_Net.accepted().m_StateAtClose, NoteSocket::kClosedByPeer);
}

TEST_F(UdpServer, TheHooksReportReceivedAndAcknowledgedBytes)
{
    class Hooked : public NoteSocket
    {
    public:
        void onSend() override { ++m_Sends; }
        void onReceive() override { m_Received += available(); }
        int m_Sends = 0;
        int m_Received = 0;
    };
    const zet::Unknown::Handle_T<Hooked> socket = new Hooked;
    ASSERT_TRUE(socket->connect(m_Net.m_Port, L"127.0.0.1", m_Net.m_Server->getPort(), zet::Uuid()));
    ASSERT_TRUE(socket->send(NoteCommand(1)));
    ASSERT_TRUE(m_Net.until([&] { return socket->getOutputSize() == 0 && !m_Net.m_Server->m_Accepted.empty(); }));
    EXPECT_GT(socket->m_Sends, 0);
    EXPECT_EQ(socket->m_Received, 0);
    ASSERT_EQ(m_Net.accepted().write("abc", 3), 3);
    ASSERT_TRUE(m_Net.until([&] { return socket->m_Received > 0; }));
    EXPECT_EQ(socket->m_Received, 3);
}

TEST_F(UdpServer, ASendFailsFromTheOutputLimitOn)
{
    const NoteSocketHandle socket = m_Net.connect();
    ASSERT_TRUE(socket && m_Net.until([&] { return socket->getOutputSize() == 0; }));
    socket->setOutputLimit(1000);
    const std::string bytes(999, 'a');
    EXPECT_EQ(socket->write(bytes.data(), 999), 999);
    EXPECT_EQ(socket->write(bytes.data(), 999), 999);
    EXPECT_EQ(socket->write(bytes.data(), 1), 0);
    EXPECT_EQ(socket->getOutputSize(), 1998U);
    EXPECT_EQ(socket->write(bytes.data(), -1), 0);
}

TEST_F(UdpServer, AListeningServerMayJoinASystemLater)
{
    const zet::Unknown::Handle_T<NoteUdpServer> server = new NoteUdpServer;
    ASSERT_TRUE(server->listen(L"", 0));
    const unsigned short port = server->getPort();
    ASSERT_TRUE(server->start(&m_Net.m_System));
    EXPECT_EQ(server->getPort(), port);
    EXPECT_FALSE(server->isInvalid());
    const NoteSocketHandle socket = new NoteSocket;
    ASSERT_TRUE(socket->connect(m_Net.m_Port, L"127.0.0.1", port, zet::Uuid()));
    ASSERT_TRUE(m_Net.until([&] { return server->m_Accepted.size() == 1; }));
    server->close();
}

TEST_F(UdpServer, AServerInNoSystemWorksByItsOwnTicks)
{
    const zet::Unknown::Handle_T<NoteUdpServer> server = new NoteUdpServer;
    const zet::Unknown::Handle_T<NoteUdpServer> clients = new NoteUdpServer;
    ASSERT_TRUE(server->listen(L"", 0) && clients->listen(L"", 0));
    const NoteSocketHandle socket = new NoteSocket;
    ASSERT_TRUE(socket->connect(clients, L"127.0.0.1", server->getPort(), zet::Uuid()));
    ASSERT_TRUE(socket->send(NoteCommand(4)));
    for (int i = 0; i < 1000 && (server->m_Accepted.empty() || server->m_Accepted[0]->m_Numbers.empty()); ++i)
    {
        clients->onTick(zet::getTimeTick());
        server->onTick(zet::getTimeTick());
        m_Net.m_Clock.advance(1);
    }
    ASSERT_EQ(server->m_Accepted.size(), 1U);
    EXPECT_EQ(server->m_Accepted[0]->m_Numbers, std::vector<int>{4});
    clients->close();
    server->close();
}

TEST_F(UdpServer, AHandleMovesToAnotherServer)
{
    const NoteSocketHandle old = m_Net.connect();
    ASSERT_TRUE(old);
    const unsigned short port = m_Net.m_Server->getPort();
    const unsigned int handle = m_Net.m_Server->detach();
    ASSERT_NE(handle, zet::Socket::kNoHandle);
    EXPECT_TRUE(m_Net.m_Server->isInvalid());
    EXPECT_EQ(m_Net.m_Server->detach(), zet::Socket::kNoHandle);
    EXPECT_EQ(m_Net.accepted().m_Closes, 1);
    const zet::Unknown::Handle_T<NoteUdpServer> server = new NoteUdpServer;
    server->start(&m_Net.m_System);
    EXPECT_FALSE(server->attach(zet::Socket::kNoHandle));
    ASSERT_TRUE(server->attach(handle));
    EXPECT_EQ(server->getPort(), port);
    EXPECT_EQ(server->getHandle(), handle);
    EXPECT_FALSE(server->attach(handle));
    EXPECT_FALSE(server->listen(L"", 0));
    const NoteSocketHandle socket = new NoteSocket;
    ASSERT_TRUE(socket->connect(m_Net.m_Port, L"127.0.0.1", port, zet::Uuid()));
    ASSERT_TRUE(m_Net.until([&] { return server->m_Accepted.size() == 1; }));
    server->close();
}

TEST_F(UdpServer, APortInUseCannotBeOpened)
{
    const zet::Unknown::Handle_T<NoteUdpServer> server = new NoteUdpServer;
    EXPECT_FALSE(server->listen(L"", m_Net.m_Server->getPort()));
    EXPECT_TRUE(server->isInvalid());
    EXPECT_EQ(server->getPort(), 0);
}

TEST_F(UdpServer, ATickBeginsABoundedNumberOfHandshakes)
{
    zet::NetLimits limits;
    limits.m_HandshakeSteps = 0;
    limits.m_HandshakeTime = 0;
    m_Net.m_Server->setLimits(limits);
    // One tick for the token, and one for the packet that brings it.
    constexpr int kCount = 80;
    for (int i = 0; i < kCount; ++i)
        ASSERT_TRUE(m_Net.begin());
    int most = 0;
    ASSERT_TRUE(m_Net.until(
        [&, before = 0]() mutable
        {
            const int now = m_Net.m_Server->getConnectionCount();
            most = std::max(most, now - std::exchange(before, now));
            return m_Net.m_Server->m_Accepted.size() == kCount;
        }));
    EXPECT_EQ(most, int{zet::UdpServer::kAdmissionsPerTick});
}

class LimitedUdpServer : public UdpServer
{
protected:
    LimitedUdpServer() : UdpServer(limits()) {}
    static zet::UdpServer::Settings limits()
    {
        zet::UdpServer::Settings settings;
        settings.m_ConnectionLimit = 2;
        settings.m_IdleTimeout = 2000;
        settings.m_KeepAlive = 0;
        return settings;
    }
};

TEST_F(LimitedUdpServer, MorePeersThanTheLimitAreRefusedAtOnce)
{
    const NoteSocketHandle first = m_Net.connect();
    const NoteSocketHandle second = m_Net.connect();
    ASSERT_TRUE(first && second);
    const NoteSocketHandle third = m_Net.begin();
    ASSERT_TRUE(m_Net.until([&] { return third->m_Closes == 1; }, 100));
    EXPECT_EQ(third->m_StateAtClose, NoteSocket::kConnectFailed);
    EXPECT_EQ(m_Net.m_Server->GetClientCount(), 2);
    first->close();
    ASSERT_TRUE(m_Net.until([&] { return m_Net.m_Server->GetClientCount() == 1; }, 100));
    EXPECT_TRUE(m_Net.connect());
}

TEST_F(LimitedUdpServer, ALimitOfZeroAnswersNoPeer)
{
    auto settings = limits();
    settings.m_ConnectionLimit = 0;
    m_Net.m_Server->setSettings(settings);
    const NoteSocketHandle socket = m_Net.begin();
    ASSERT_TRUE(m_Net.until([&] { return socket->m_Closes == 1; }));
    EXPECT_EQ(m_Net.m_Server->getTraffic().m_DatagramsOut, 0U);
    EXPECT_GT(m_Net.m_Server->getTraffic().m_DatagramsIn, 0U);
}

TEST_F(LimitedUdpServer, WithoutSignsOfLifeAQuietConnectionEndsAtTheIdleTimeout)
{
    const NoteSocketHandle socket = m_Net.connect();
    ASSERT_TRUE(socket);
    const unsigned int begin = zet::getTimeTick();
    ASSERT_TRUE(m_Net.until([&] { return socket->m_Closes == 1 && m_Net.accepted().m_Closes == 1; }, 5000));
    EXPECT_LE(zet::getTimeTick() - begin, 2500U);
    EXPECT_EQ(socket->m_StateAtClose, NoteSocket::kBroken);
}

} // namespace
