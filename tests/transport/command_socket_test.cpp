#include "transport/command_socket.h"

#include "framework/thread.h"
#include "framework/time.h"
#include "tests/support/log_lines.h"
#include "tests/support/raw_peer.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <thread>

namespace
{

using test::ClientHandle;
using test::Loopback;
using test::NoteAnalyser;
using test::NoteCommand;
using test::packetOf;
using test::RawPeer;
using test::tickUntil;
using zet::TcpConnection;

// A sink that fails on demand.
class StubbornClient : public test::Client
{
public:
    using Client::Client;
    int write(const void* data, int size) override { return m_Refuses ? 0 : Client::write(data, size); }
    void OnCmdSend(int size) override { m_Sizes.push_back(size); }
    void OnCmdRecv(int size) override { m_Received.push_back(size); }
    void close() override
    {
        ++m_Closes;
        Client::close();
    }

    bool m_Refuses = false;
    int m_Closes = 0;
    std::vector<int> m_Sizes;
    std::vector<int> m_Received;
};

TEST(CommandSocket, ANewOneIsInvalidAndDown)
{
    NoteAnalyser analyser;
    const auto socket = CCommandSocket::createInstance(analyser);
    EXPECT_TRUE(socket->isInvalid());
    EXPECT_EQ(socket->getConnectionState(), 0);
    EXPECT_EQ(socket->GetCmdAnalyser(), analyser.get());
    EXPECT_TRUE(zet::String_T<wchar_t>(socket->getClassTimestamp()) == L"Mon Dec  9 15:18:50 2019");
    EXPECT_TRUE(socket->getPeerName() == L"");
}

TEST(CommandSocket, ATickOnAnInvalidOneDoesNothing)
{
    NoteAnalyser analyser;
    const auto socket = CCommandSocket::createInstance(analyser);
    socket->onTick(0);
    EXPECT_TRUE(socket->isInvalid());
    EXPECT_EQ(socket->getConnectionState(), 0);
}

TEST(CommandSocket, SendOnAnInvalidOneIsASilentFalse)
{
    test::LogLines lines;
    NoteAnalyser analyser;
    const auto socket = CCommandSocket::createInstance(analyser);
    EXPECT_FALSE(socket->send(NoteCommand(1)));
    EXPECT_TRUE(lines.texts().empty());
}

TEST(CommandSocket, CommandsArriveInOrderAndAreAnswered)
{
    std::vector<int> got;
    NoteAnalyser server([&](CCommandSocket* socket, const NoteCommand& note)
                        { EXPECT_TRUE(socket->send(NoteCommand(note.m_Number * 10, note.m_Ballast))); });
    NoteAnalyser client([&](CCommandSocket*, const NoteCommand& note) { got.push_back(note.m_Number); });
    Loopback net(server);
    const ClientHandle socket = net.connect(client);
    ASSERT_TRUE(socket);
    for (int i = 0; i < 5; ++i)
        ASSERT_TRUE(socket->send(NoteCommand(i, i * 1000)));
    ASSERT_TRUE(tickUntil(net.m_System, [&] { return got.size() == 5; }));
    EXPECT_EQ(got, (std::vector<int>{0, 10, 20, 30, 40}));
}

TEST(CommandSocket, FramesOfEverySizeArrive)
{
    std::vector<int> got;
    NoteAnalyser analyser([&](CCommandSocket*, const NoteCommand& note) { got.push_back(note.m_Ballast); });
    Loopback net(analyser);
    const ClientHandle socket = net.connect(analyser);
    ASSERT_TRUE(socket);
    // Around the packager's inline payload, around a block of the queue, and far above both.
    const std::vector<int> sizes = {0, 1, 1000, 65520, 65523, 65524, 65525, 65536, 65537, 131072, 5000000};
    for (const int size : sizes)
        ASSERT_TRUE(socket->send(NoteCommand(1, size)));
    ASSERT_TRUE(tickUntil(net.m_System, [&] { return got.size() == sizes.size(); }));
    EXPECT_EQ(got, sizes);
}

TEST(CommandSocket, AddressesTravelWithTheCommand)
{
    zet::Uuid from, target, gotFrom, gotTarget;
    zet::uuid_create(from);
    zet::uuid_create(target);
    bool isThere = false;
    NoteAnalyser analyser(
        [&](CCommandSocket*, const NoteCommand& note)
        {
            note.GetAddress(gotFrom, gotTarget);
            isThere = true;
        });
    Loopback net(analyser);
    const ClientHandle socket = net.connect(analyser);
    ASSERT_TRUE(socket);
    NoteCommand note(7);
    note.SetAddress(from, target);
    ASSERT_TRUE(socket->send(note));
    ASSERT_TRUE(tickUntil(net.m_System, [&] { return isThere; }));
    EXPECT_EQ(gotFrom, from);
    EXPECT_EQ(gotTarget, target);
}

TEST(CommandSocket, OfTenPacketsWithHandlersOf30MillisecondsFourAreDispatchedATick)
{
    zet::TestClock clock(0, 0xFFFFFFFF - 50);
    std::vector<int> got;
    NoteAnalyser server(
        [&](CCommandSocket*, const NoteCommand& note)
        {
            got.push_back(note.m_Number);
            clock.advance(30);
        });
    NoteAnalyser client;
    Loopback net(server);
    const ClientHandle socket = net.connect(client);
    ASSERT_TRUE(socket);
    for (int i = 0; i < 10; ++i)
        ASSERT_TRUE(socket->send(NoteCommand(i)));
    std::vector<size_t> perTick;
    for (int i = 0; i < 100 && got.size() < 10; ++i)
    {
        const size_t before = got.size();
        net.m_System.tick();
        if (got.size() > before)
            perTick.push_back(got.size() - before);
        net.m_System.wait();
    }
    EXPECT_EQ(perTick, (std::vector<size_t>{4, 4, 2}));
    EXPECT_EQ(got, (std::vector<int>{0, 1, 2, 3, 4, 5, 6, 7, 8, 9}));
}

TEST(CommandSocket, WhatTheBudgetLeavesIsDispatchedWithoutANewEvent)
{
    zet::TestClock clock(0);
    int got = 0;
    NoteAnalyser server(
        [&](CCommandSocket*, const NoteCommand&)
        {
            ++got;
            clock.advance(100);
        });
    NoteAnalyser client;
    Loopback net(server);
    // The next tick must follow at once; by the interval it would be due after minutes.
    net.m_System.setTickInterval(10 * 60 * 1000);
    const ClientHandle socket = new test::Client(client);
    socket->start(&net.m_System);
    ASSERT_TRUE(socket->connect(L"127.0.0.1", net.m_Server->getPort(), false));
    net.m_System.tick();
    for (int i = 0; i < 5; ++i)
        ASSERT_TRUE(socket->send(NoteCommand(i)));
    for (int i = 0; i < 50 && got < 5; ++i)
    {
        net.m_System.tick();
        if (got < 5)
            net.m_System.wait();
    }
    EXPECT_EQ(got, 5);
    socket->close();
}

TEST(CommandSocket, SendFromAnotherThreadIsRefusedWithTheIdInHexadecimal)
{
    int got = 0;
    NoteAnalyser analyser([&](CCommandSocket*, const NoteCommand&) { ++got; });
    Loopback net(analyser);
    const ClientHandle socket = net.connect(analyser);
    ASSERT_TRUE(socket);
    test::LogLines lines;
    bool result = true;
    std::thread([&] { result = socket->send(NoteCommand(1)); }).join();
    EXPECT_FALSE(result);
    EXPECT_EQ(lines.texts(), (std::vector<std::wstring>{L"Command Send Error:0x123, Invoke on Wrong Thread"}));
    // The socket is intact.
    EXPECT_FALSE(socket->m_bNetError);
    EXPECT_TRUE(socket->send(NoteCommand(2)));
    ASSERT_TRUE(tickUntil(net.m_System, [&] { return got > 0; }));
    EXPECT_EQ(got, 1);
}

TEST(CommandSocket, AnAcceptedOneBelongsToTheThreadOfItsServer)
{
    NoteAnalyser analyser;
    Loopback net(analyser);
    const ClientHandle socket = net.connect(analyser);
    ASSERT_TRUE(socket);
    EXPECT_EQ(net.accepted()->getRunThreadId(), net.m_System.getRunThreadId());
    EXPECT_EQ(socket->getRunThreadId(), net.m_System.getRunThreadId());
    bool result = true;
    std::thread([&] { result = net.accepted()->send(NoteCommand(1)); }).join();
    EXPECT_FALSE(result);
}

TEST(CommandSocket, ARebindingMovesTheRightToSend)
{
    NoteAnalyser analyser;
    Loopback net(analyser);
    const ClientHandle socket = net.connect(analyser);
    ASSERT_TRUE(socket);
    socket->bindRunThreadId(zet::Thread::getCurrentThreadId() + 1000000);
    EXPECT_FALSE(socket->send(NoteCommand(1)));
    socket->bindRunThreadId(zet::Thread::getCurrentThreadId());
    EXPECT_TRUE(socket->send(NoteCommand(1)));
}

TEST(CommandSocket, AWriteFailureIsReportedAndClosesAtTheEndOfTheTick)
{
    NoteAnalyser analyser;
    Loopback net(analyser);
    const zet::Unknown::Handle_T<StubbornClient> socket = new StubbornClient(analyser);
    socket->start(&net.m_System);
    ASSERT_TRUE(socket->connect(L"127.0.0.1", net.m_Server->getPort(), false));
    ASSERT_TRUE(tickUntil(net.m_System, [&] { return socket->getConnectionState() == 2; }));
    socket->m_Refuses = true;
    test::LogLines lines;
    EXPECT_FALSE(socket->send(NoteCommand(1)));
    const std::wstring report =
        std::wstring(L"Error while writing data to network:") + socket->getPeerName().getBuffer();
    EXPECT_EQ(lines.texts(), (std::vector<std::wstring>{report}));
    EXPECT_TRUE(socket->m_bNetError);

    // Further sends fail: the one with its report, the other without.
    socket->m_Refuses = false;
    EXPECT_FALSE(socket->send(NoteCommand(1)));
    EXPECT_EQ(lines.texts().back(), L"Command Package Error:291");
    EXPECT_EQ(lines.texts().size(), 2U);
    CCmdPackager packager;
    EXPECT_FALSE(socket->send(packager));
    EXPECT_EQ(lines.texts().size(), 2U);
    EXPECT_EQ(socket->m_Sizes.size(), 1U);

    EXPECT_EQ(socket->m_Closes, 0);
    net.m_System.tick();
    EXPECT_EQ(socket->m_Closes, 1);
    EXPECT_TRUE(socket->isInvalid());
    EXPECT_FALSE(socket->m_bNetError);
}

TEST(CommandSocket, ACommandThatDoesNotWriteItselfIsReportedInDecimal)
{
    struct BadCommand : CCmdHead
    {
        BadCommand() : CCmdHead(0x0200) {}
        bool Write(CCmdPackager*) const override { return false; }
    };
    NoteAnalyser analyser;
    Loopback net(analyser);
    const ClientHandle socket = net.connect(analyser);
    ASSERT_TRUE(socket);
    test::LogLines lines;
    EXPECT_FALSE(socket->send(BadCommand()));
    EXPECT_EQ(lines.texts(), (std::vector<std::wstring>{L"Command Package Error:512"}));
    EXPECT_FALSE(socket->m_bNetError);
    EXPECT_TRUE(socket->send(NoteCommand(1)));
}

TEST(CommandSocket, TheHooksGetThePayloadSizes)
{
    NoteAnalyser analyser;
    Loopback net(analyser);
    net.m_Server->m_Make = [&] { return ClientHandle(new StubbornClient(analyser)); };
    const zet::Unknown::Handle_T<StubbornClient> socket = new StubbornClient(analyser);
    socket->start(&net.m_System);
    ASSERT_TRUE(socket->connect(L"127.0.0.1", net.m_Server->getPort(), false));
    ASSERT_TRUE(tickUntil(net.m_System, [&] { return net.m_Server->m_Accepted.size() == 1; }));
    ASSERT_TRUE(socket->send(NoteCommand(1, 5)));
    ASSERT_TRUE(socket->send(NoteCommand(1, 0)));
    // Before the frame: a refused write has been counted.
    socket->m_Refuses = true;
    ASSERT_FALSE(socket->send(NoteCommand(1, 2)));
    EXPECT_EQ(socket->m_Sizes, (std::vector<int>{17, 12, 14}));
    auto* const peer = static_cast<StubbornClient*>(net.accepted().get());
    ASSERT_TRUE(tickUntil(net.m_System, [&] { return peer->m_Received.size() == 2; }));
    EXPECT_EQ(peer->m_Received, (std::vector<int>{17, 12}));
}

TEST(CommandSocket, AMalformedFrameAnUnknownIdAndARefusedPayloadCostTheirLogLinesOnly)
{
    std::vector<int> got;
    NoteAnalyser analyser([&](CCommandSocket*, const NoteCommand& note) { got.push_back(note.m_Number); });
    Loopback net(analyser);
    RawPeer peer(net);
    ASSERT_TRUE(peer.m_IsUp);
    test::LogLines lines;
    ASSERT_TRUE(peer.send({3, 0, 0, 0, 1, 2, 3}));
    CCmdPackager unknown;
    unknown.SetCmdID(0x0777);
    ASSERT_TRUE(peer.send({6, 0, 0, 0, 0x77, 0x07, 0, 0, 0, 0}));
    ASSERT_TRUE(peer.send({6, 0, 0, 0, 0x23, 0x01, 0, 0, 0, 0}));
    ASSERT_TRUE(peer.send(packetOf(NoteCommand(42))));
    ASSERT_TRUE(tickUntil(net.m_System, [&] { return !got.empty(); }));
    EXPECT_EQ(got, (std::vector<int>{42}));
    const std::wstring name = net.accepted()->getPeerName().getBuffer();
    EXPECT_TRUE(lines.has(zet::Log::kError, L"Error:CmdPackager analyze error! (" + name + L")"));
    EXPECT_TRUE(
        lines.has(zet::Log::kError, L"CCmdAnalyserSocket cannot Analyse NULL command(0x0777) \t(" + name + L")"));
    EXPECT_TRUE(lines.has(zet::Log::kMessage, L"指令(0x0123)解析出错 (" + name + L")"));
    EXPECT_EQ(net.m_Server->GetClientCount(), 1);
}

TEST(CommandSocket, APacketAboveTheLimitClosesAtTheEndOfTheTick)
{
    std::vector<int> got;
    NoteAnalyser analyser([&](CCommandSocket*, const NoteCommand& note) { got.push_back(note.m_Number); });
    Loopback net(analyser);
    RawPeer peer(net);
    ASSERT_TRUE(peer.m_IsUp);
    net.accepted()->SetPacketLimit(100);
    ASSERT_TRUE(peer.send(packetOf(NoteCommand(1))));
    ASSERT_TRUE(peer.send(packetOf(NoteCommand(2, 1000))));
    ASSERT_TRUE(peer.send(packetOf(NoteCommand(3))));
    ASSERT_TRUE(tickUntil(net.m_System, [&] { return net.m_Server->GetClientCount() == 0; }));
    EXPECT_EQ(got, (std::vector<int>{1}));
    EXPECT_TRUE(net.accepted()->isInvalid());
    EXPECT_FALSE(net.accepted()->m_bNetError);
}

TEST(CommandSocket, WithoutAnotherLimitTheLargestFrameIsAcceptedAndOneByteMoreCloses)
{
    NoteAnalyser analyser;
    Loopback net(analyser);
    zet::NetLimits limits;
    limits.m_FirstInput = 0;
    net.m_Server->setLimits(limits);
    for (const unsigned char more : {0, 1})
    {
        RawPeer peer(net);
        ASSERT_TRUE(peer.m_IsUp);
        // The length word of a frame with both addresses and the largest payload.
        const unsigned int size = CCmdPackager::kMaxHeaderSize + CCmdPackager::kMaxDataSize + more;
        ASSERT_TRUE(peer.send({static_cast<unsigned char>(size), static_cast<unsigned char>(size >> 8),
                               static_cast<unsigned char>(size >> 16), static_cast<unsigned char>(size >> 24), 1}));
        const auto isRefused = [&] { return net.m_Server->GetClientCount() == 0; };
        if (more)
        {
            EXPECT_TRUE(tickUntil(net.m_System, isRefused));
            continue;
        }
        ASSERT_TRUE(tickUntil(net.m_System, [&] { return net.accepted()->available() == 5; }));
        for (int i = 0; i < 3; ++i)
            net.m_System.tick();
        EXPECT_FALSE(isRefused());
        peer.m_Stream->close();
        EXPECT_TRUE(tickUntil(net.m_System, isRefused));
    }
}

TEST(CommandSocket, WhatAHandlerThrowsCostsThatCommandOnly)
{
    std::vector<int> got;
    NoteAnalyser analyser(
        [&](CCommandSocket*, const NoteCommand& note)
        {
            if (note.m_Number == 2)
                throw std::runtime_error("no such player");
            if (note.m_Number == 3)
                throw zet::Exception(L"cut", __FILE__, __LINE__);
            got.push_back(note.m_Number);
        });
    Loopback net(analyser);
    const ClientHandle socket = net.connect(analyser);
    ASSERT_TRUE(socket);
    test::LogLines lines;
    for (int i = 1; i <= 4; ++i)
        socket->send(NoteCommand(i));
    ASSERT_TRUE(tickUntil(net.m_System, [&] { return got.size() == 2; }));
    EXPECT_EQ(got, (std::vector<int>{1, 4}));
    EXPECT_EQ(lines.texts().size(), 2U);
    EXPECT_EQ(net.m_Server->GetClientCount(), 1);
}

} // namespace
