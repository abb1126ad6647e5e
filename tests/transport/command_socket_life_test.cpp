// The life of a command socket: connect, close, destruction in handlers.
#include "transport/command_socket.h"

#include "framework/thread.h"
#include "framework/time.h"
#include "tests/support/raw_peer.h"

#include <gtest/gtest.h>

namespace
{

using test::ClientHandle;
using test::Loopback;
using test::NoteAnalyser;
using test::NoteCommand;
using test::tickUntil;

class ClosesCounted : public test::Client
{
public:
    using Client::Client;
    void close() override
    {
        ++m_Closes;
        Client::close();
    }

    int m_Closes = 0;
};

TEST(CommandSocketLife, AStateNeitherEstablishedNorConnectingClosesWithoutAnError)
{
    NoteAnalyser analyser;
    Loopback net(analyser);
    const zet::Unknown::Handle_T<ClosesCounted> socket = new ClosesCounted(analyser);
    socket->start(&net.m_System);
    ASSERT_TRUE(socket->connect(L"127.0.0.1", net.m_Server->getPort(), false));
    ASSERT_TRUE(tickUntil(net.m_System, [&] { return net.m_Server->m_Accepted.size() == 1; }));
    net.accepted()->close();
    ASSERT_TRUE(tickUntil(net.m_System, [&] { return socket->m_Closes > 0; }));
    EXPECT_EQ(socket->m_Closes, 1);
    EXPECT_TRUE(socket->isInvalid());
    EXPECT_EQ(socket->getConnectionState(), 0);
}

TEST(CommandSocketLife, PacketsBeforeTheEndOfTheConnectionAreDispatched)
{
    zet::TestClock clock(0);
    std::vector<int> got;
    NoteAnalyser server(
        [&](CCommandSocket*, const NoteCommand& note)
        {
            got.push_back(note.m_Number);
            clock.advance(60);
        });
    NoteAnalyser client;
    Loopback net(server);
    const ClientHandle socket = net.connect(client);
    ASSERT_TRUE(socket);
    for (int i = 0; i < 7; ++i)
        ASSERT_TRUE(socket->send(NoteCommand(i)));
    // Commands sent outside a tick leave with close().
    socket->close();
    EXPECT_TRUE(socket->isInvalid());
    ASSERT_TRUE(tickUntil(net.m_System, [&] { return net.m_Server->GetClientCount() == 0; }));
    EXPECT_EQ(got, (std::vector<int>{0, 1, 2, 3, 4, 5, 6}));
}

TEST(CommandSocketLife, ItMayBeAttachedAnewAfterClose)
{
    int got = 0;
    NoteAnalyser analyser([&](CCommandSocket*, const NoteCommand&) { ++got; });
    Loopback net(analyser);
    const ClientHandle socket = net.connect(analyser);
    ASSERT_TRUE(socket);
    socket->close();
    EXPECT_FALSE(socket->m_PacketReader.isAttached());
    EXPECT_FALSE(socket->m_PacketWriter.isAttached());
    EXPECT_FALSE(socket->send(NoteCommand(1)));
    ASSERT_TRUE(socket->connect(L"127.0.0.1", net.m_Server->getPort(), false));
    ASSERT_TRUE(tickUntil(net.m_System, [&] { return net.m_Server->m_Accepted.size() == 2; }));
    EXPECT_TRUE(socket->m_PacketReader.isAttached());
    ASSERT_TRUE(socket->send(NoteCommand(1)));
    ASSERT_TRUE(tickUntil(net.m_System, [&] { return got == 1; }));
}

TEST(CommandSocketLife, AttachOfNoHandleFailsAndAttachesNothing)
{
    NoteAnalyser analyser;
    const ClientHandle socket = new test::Client(analyser);
    EXPECT_FALSE(socket->attach(zet::Socket::kNoHandle));
    EXPECT_FALSE(socket->m_PacketReader.isAttached());
    EXPECT_TRUE(socket->isInvalid());
}

TEST(CommandSocketLife, CommandsSentWhileConnectingLeaveOnceEstablished)
{
    int got = 0;
    NoteAnalyser analyser([&](CCommandSocket*, const NoteCommand&) { ++got; });
    Loopback net(analyser);
    class EarlyClient : public test::Client
    {
    public:
        using Client::Client;
        void rise() { m_State = kConnecting; }
        void stand() { attach(getHandle()); }
    };
    const zet::Unknown::Handle_T<EarlyClient> socket = new EarlyClient(analyser);
    socket->start(&net.m_System);
    ASSERT_TRUE(socket->connect(L"127.0.0.1", net.m_Server->getPort(), false));
    // On the loopback a connection is established at once; this one simulates one that is not.
    socket->rise();
    socket->m_PacketWriter.detach();
    ASSERT_TRUE(socket->send(NoteCommand(1)));
    for (int i = 0; i < 5; ++i)
        net.m_System.tick();
    EXPECT_EQ(got, 0);
    EXPECT_GT(socket->getOutputSize(), 0U);
    socket->stand();
    ASSERT_TRUE(tickUntil(net.m_System, [&] { return got == 1; }));
    socket->close();
}

TEST(CommandSocketLife, AHandlerMayCloseItsOwnSocket)
{
    std::vector<int> got;
    NoteAnalyser server(
        [&](CCommandSocket* socket, const NoteCommand& note)
        {
            got.push_back(note.m_Number);
            if (note.m_Number == 2)
                socket->close();
        });
    NoteAnalyser client;
    Loopback net(server);
    const ClientHandle socket = net.connect(client);
    ASSERT_TRUE(socket);
    for (int i = 0; i < 5; ++i)
        ASSERT_TRUE(socket->send(NoteCommand(i)));
    ASSERT_TRUE(tickUntil(net.m_System, [&] { return net.m_Server->GetClientCount() == 0; }));
    EXPECT_EQ(got, (std::vector<int>{0, 1, 2}));
    EXPECT_TRUE(tickUntil(net.m_System, [&] { return socket->isInvalid(); }));
}

TEST(CommandSocketLife, AHandlerMayReplyAndCloseAndTheReplyArrives)
{
    std::vector<int> got;
    NoteAnalyser server(
        [&](CCommandSocket* socket, const NoteCommand& note)
        {
            EXPECT_TRUE(socket->send(NoteCommand(note.m_Number + 1)));
            socket->close();
        });
    NoteAnalyser client([&](CCommandSocket*, const NoteCommand& note) { got.push_back(note.m_Number); });
    Loopback net(server);
    const ClientHandle socket = net.connect(client);
    ASSERT_TRUE(socket);
    ASSERT_TRUE(socket->send(NoteCommand(1)));
    ASSERT_TRUE(tickUntil(net.m_System, [&] { return socket->isInvalid(); }));
    EXPECT_EQ(got, (std::vector<int>{2}));
}

TEST(CommandSocketLife, AReplyAndCloseIsNoResetDespiteUnreadInput)
{
    NoteAnalyser server(
        [&](CCommandSocket* socket, const NoteCommand&)
        {
            EXPECT_TRUE(socket->send(NoteCommand(42)));
            socket->close();
        });
    Loopback net(server);
    test::RawPeer peer(net);
    ASSERT_TRUE(peer.m_IsUp);
    ASSERT_TRUE(peer.send(test::packetOf(NoteCommand(1))));
    // More than one receive reads.
    ASSERT_TRUE(peer.send(test::packetOf(NoteCommand(2, 150000))));
    const int expected = static_cast<int>(test::packetOf(NoteCommand(42)).size());
    ASSERT_TRUE(tickUntil(net.m_System, [&] { return peer.m_Stream->available() == expected; }));
    EXPECT_EQ(peer.m_Stream->skip(expected), expected);
    ASSERT_TRUE(tickUntil(net.m_System, [&] { return peer.m_Stream->getConnectionState() != 2; }));
    EXPECT_EQ(peer.m_Stream->getConnectionState(), zet::TcpConnection::kClosedByPeer);
}

TEST(CommandSocketLife, AHandlerMayLetGoOfTheLastHandle)
{
    NoteAnalyser server;
    ClientHandle only;
    int got = 0;
    NoteAnalyser client(
        [&](CCommandSocket* socket, const NoteCommand&)
        {
            ++got;
            if (only)
                only->stop();
            only.clear();
            EXPECT_TRUE(socket->send(NoteCommand(9)));
        });
    Loopback net(server);
    only = new test::Client(client);
    only->start(&net.m_System);
    ASSERT_TRUE(only->connect(L"127.0.0.1", net.m_Server->getPort(), false));
    ASSERT_TRUE(tickUntil(net.m_System, [&] { return net.m_Server->m_Accepted.size() == 1; }));
    net.accepted()->send(NoteCommand(1));
    net.accepted()->send(NoteCommand(2));
    ASSERT_TRUE(tickUntil(net.m_System, [&] { return net.m_Server->GetClientCount() == 0; }));
    EXPECT_TRUE(only.isNull());
    EXPECT_EQ(got, 2);
}

TEST(CommandSocketLife, AHandlerMayStopTheSystem)
{
    NoteAnalyser analyser;
    Loopback net(analyser);
    analyser.m_Handler = [&](CCommandSocket*, const NoteCommand&) { net.m_System.exit(); };
    const ClientHandle socket = net.connect(analyser);
    ASSERT_TRUE(socket);
    ASSERT_TRUE(socket->send(NoteCommand(1)));
    ASSERT_TRUE(tickUntil(net.m_System, [&] { return net.m_System.getTaskCount() == 0; }));
    EXPECT_EQ(socket->getSystem(), nullptr);
    net.m_System.tick();
}

TEST(CommandSocketLife, AnUnstartedOneLooksForItself)
{
    std::vector<int> got;
    NoteAnalyser analyser([&](CCommandSocket*, const NoteCommand& note) { got.push_back(note.m_Number); });
    Loopback net(analyser);
    const ClientHandle socket = new test::Client(analyser);
    ASSERT_TRUE(socket->connect(L"127.0.0.1", net.m_Server->getPort(), false));
    EXPECT_EQ(socket->getRunThreadId(), zet::Thread::getCurrentThreadId());
    ASSERT_TRUE(socket->send(NoteCommand(1)));
    for (int i = 0; i < 1000 && got.size() < 1; ++i)
    {
        socket->onTick(0);
        net.m_System.tick();
    }
    ASSERT_FALSE(net.m_Server->m_Accepted.empty());
    net.accepted()->send(NoteCommand(2));
    for (int i = 0; i < 1000 && got.size() < 2; ++i)
    {
        net.m_System.tick();
        socket->onTick(0);
    }
    EXPECT_EQ(got, (std::vector<int>{1, 2}));
    socket->close();
}

TEST(CommandSocketLife, AConnectionMovesToTheSystemItIsStartedIn)
{
    std::vector<int> got;
    NoteAnalyser analyser([&](CCommandSocket*, const NoteCommand& note) { got.push_back(note.m_Number); });
    Loopback net(analyser);
    const ClientHandle socket = new test::Client(analyser);
    ASSERT_TRUE(socket->connect(L"127.0.0.1", net.m_Server->getPort(), false));
    ASSERT_TRUE(socket->send(NoteCommand(1)));
    ASSERT_TRUE(socket->start(&net.m_System));
    ASSERT_TRUE(tickUntil(net.m_System, [&] { return got.size() == 1; }));
    net.accepted()->send(NoteCommand(2));
    // By a network event, not by the interval.
    net.m_System.setTickInterval(10 * 60 * 1000);
    for (int i = 0; i < 20 && got.size() < 2; ++i)
    {
        net.m_System.tick();
        if (got.size() < 2)
            net.m_System.wait();
    }
    EXPECT_EQ(got, (std::vector<int>{1, 2}));
    socket->close();
}

} // namespace
