// A port with connections that changes its System, or whose handle is lost.
#include "tests/support/raw_handle.h"
#include "tests/support/udp_test.h"

#include <algorithm>
#include <utility>

namespace
{

using test::NoteCommand;
using test::NoteSocket;
using test::NoteSocketHandle;
using test::NoteUdpServer;

zet::UdpServer::Settings quickSettings()
{
    zet::UdpServer::Settings settings;
    settings.m_IdleTimeout = 2000;
    settings.m_KeepAlive = 500;
    return settings;
}

class UdpMoves : public test::UdpTest
{
protected:
    UdpMoves() : UdpTest(quickSettings()) {}
    void SetUp() override
    {
        UdpTest::SetUp();
        m_Net.m_Between = [this] { m_Other.tick(); };
    }
    // A command each way arrives.
    void expectTraffic(NoteSocket& socket, int number)
    {
        NoteSocket& far = m_Net.accepted();
        ASSERT_TRUE(socket.send(NoteCommand(number)) && far.send(NoteCommand(-number)));
        ASSERT_TRUE(m_Net.until([&] { return !socket.m_Numbers.empty() && socket.m_Numbers.back() == -number; }, 500));
        ASSERT_TRUE(m_Net.until([&] { return !far.m_Numbers.empty() && far.m_Numbers.back() == number; }, 500));
    }

    zet::System m_Other;
};

TEST_F(UdpMoves, APortTakesItsConnectionsToAnotherSystem)
{
    const NoteSocketHandle socket = m_Net.connect();
    ASSERT_TRUE(socket);
    int number = 0;
    for (const auto& moved : {m_Net.m_Server, m_Net.m_Port})
    {
        const unsigned short port = moved->getPort();
        const unsigned int handle = moved->getHandle();
        ASSERT_NO_FATAL_FAILURE(expectTraffic(*socket, ++number));
        moved->stop();
        ASSERT_TRUE(moved->start(&m_Other));
        EXPECT_EQ(moved->getSystem(), &m_Other);
        EXPECT_EQ(moved->getPort(), port);
        EXPECT_EQ(moved->getHandle(), handle);
        ASSERT_NO_FATAL_FAILURE(expectTraffic(*socket, ++number));
        // And new ones can still connect.
        ASSERT_TRUE(m_Net.connect());
        EXPECT_EQ(m_Net.m_Server->m_Accepted.size(), static_cast<size_t>(number / 2 + 1));
        std::swap(m_Net.m_Server->m_Accepted.front(), m_Net.m_Server->m_Accepted.back());
    }
    EXPECT_EQ(socket->m_Closes + m_Net.accepted().m_Closes, 0);
}

TEST_F(UdpMoves, AMemberOfOneSystemJoinsNoOther)
{
    const NoteSocketHandle socket = m_Net.connect();
    ASSERT_TRUE(socket);
    EXPECT_FALSE(m_Net.m_Server->start(&m_Other));
    EXPECT_FALSE(m_Net.m_Server->start(&m_Net.m_System));
    EXPECT_EQ(m_Net.m_Server->getSystem(), &m_Net.m_System);
    EXPECT_EQ(m_Other.getTaskCount(), 0);
    ASSERT_NO_FATAL_FAILURE(expectTraffic(*socket, 1));
}

TEST_F(UdpMoves, WhatWasSentBeforeTheMoveLeavesAfterIt)
{
    const NoteSocketHandle socket = m_Net.connect();
    ASSERT_TRUE(socket);
    settle();
    ASSERT_TRUE(m_Net.accepted().send(NoteCommand(7)));
    m_Net.m_Server->stop();
    ASSERT_TRUE(m_Net.m_Server->start(&m_Other));
    // The previous System no longer ticks it.
    const auto before = m_Net.m_Server->getTraffic().m_DatagramsOut;
    m_Net.m_System.tick();
    EXPECT_EQ(m_Net.m_Server->getTraffic().m_DatagramsOut, before);
    ASSERT_TRUE(m_Net.until([&] { return socket->m_Numbers == std::vector<int>{7}; }, 500));
}

TEST_F(UdpMoves, AConnectingOneIsEstablishedInTheOtherSystem)
{
    for (const auto& moved : {m_Net.m_Server, m_Net.m_Port})
    {
        const NoteSocketHandle socket = m_Net.begin();
        ASSERT_TRUE(socket);
        m_Net.step();
        m_Net.step();
        EXPECT_EQ(socket->getConnectionState(), NoteSocket::kConnecting);
        const size_t before = m_Net.m_Server->m_Accepted.size();
        moved->stop();
        ASSERT_TRUE(moved->start(&m_Other));
        ASSERT_TRUE(m_Net.until([&] { return m_Net.m_Server->m_Accepted.size() > before && m_Net.isUp(*socket); }));
        ASSERT_NO_FATAL_FAILURE(expectTraffic(*socket, 1));
    }
}

TEST_F(UdpMoves, APortWhoseSystemIsGoneGoesOnByItsOwnTicks)
{
    const zet::Unknown::Handle_T<NoteUdpServer> server = new NoteUdpServer;
    {
        zet::System gone;
        ASSERT_TRUE(server->start(&gone));
        ASSERT_TRUE(server->listen(L"", 0));
    }
    EXPECT_EQ(server->getSystem(), nullptr);
    m_Net.m_Road = server->getPort();
    m_Net.m_Between = [&] { server->onTick(zet::getTimeTick()); };
    const NoteSocketHandle socket = m_Net.begin();
    ASSERT_TRUE(socket);
    ASSERT_TRUE(m_Net.until([&] { return server->m_Accepted.size() == 1; }));
    ASSERT_TRUE(server->m_Accepted[0]->send(NoteCommand(1)));
    ASSERT_TRUE(m_Net.until([&] { return socket->m_Numbers.size() == 1; }, 500));
    // And in the System that it joins next.
    m_Net.m_Between = nullptr;
    ASSERT_TRUE(server->start(&m_Net.m_System));
    ASSERT_TRUE(server->m_Accepted[0]->send(NoteCommand(2)));
    ASSERT_TRUE(m_Net.until([&] { return socket->m_Numbers.size() == 2; }, 500));
    server->close();
}

TEST_F(UdpMoves, AHandleThatIsClosedUnderItsServerCostsItsConnectionsInTime)
{
    const NoteSocketHandle first = m_Net.connect();
    const NoteSocketHandle second = m_Net.connect();
    ASSERT_TRUE(first && second);
    const auto port = m_Net.m_Server->getPort();
    test::closeRaw(m_Net.m_Server->getHandle());
    ASSERT_TRUE(first->send(NoteCommand(1)));
    for (const NoteSocketHandle& socket : m_Net.m_Server->m_Accepted)
        ASSERT_TRUE(socket->send(NoteCommand(2)));
    const auto areOver = [](const auto& sockets)
    { return std::all_of(sockets.begin(), sockets.end(), [](const auto& each) { return each->m_Closes == 1; }); };
    ASSERT_TRUE(m_Net.until([&] { return areOver(m_Net.m_Sockets) && areOver(m_Net.m_Server->m_Accepted); }, 5000));
    for (const auto& sockets : {m_Net.m_Sockets, m_Net.m_Server->m_Accepted})
        for (const NoteSocketHandle& socket : sockets)
        {
            EXPECT_EQ(socket->m_StateAtClose, NoteSocket::kBroken);
            EXPECT_TRUE(socket->m_Numbers.empty());
        }
    EXPECT_EQ(m_Net.m_Server->GetClientCount(), 0);
    EXPECT_EQ(m_Net.m_Server->getConnectionCount(), 0);
    // It can have its port again.
    m_Net.m_Server->close();
    ASSERT_TRUE(m_Net.m_Server->listen(L"", port));
    const NoteSocketHandle third = m_Net.connect();
    ASSERT_TRUE(third);
    ASSERT_NO_FATAL_FAILURE(expectTraffic(*third, 3));
}

TEST_F(UdpMoves, AServerThatCannotTakeItsHandleAlongEndsItsConnections)
{
    const NoteSocketHandle socket = m_Net.connect();
    ASSERT_TRUE(socket);
    m_Net.m_Server->stop();
    test::closeRaw(m_Net.m_Server->getHandle());
    // It joins, but without a port.
    ASSERT_TRUE(m_Net.m_Server->start(&m_Other));
    EXPECT_TRUE(m_Net.m_Server->isInvalid());
    EXPECT_EQ(m_Net.m_Server->getPort(), 0);
    EXPECT_EQ(m_Net.accepted().m_Closes, 1);
    EXPECT_EQ(m_Net.accepted().m_StateAtClose, NoteSocket::kBroken);
    EXPECT_EQ(m_Net.m_Server->GetClientCount(), 0);
    // The peer cannot be notified.
    ASSERT_TRUE(m_Net.until([&] { return socket->m_Closes == 1; }, 5000));
    EXPECT_EQ(socket->m_StateAtClose, NoteSocket::kBroken);
    ASSERT_TRUE(m_Net.m_Server->listen(L"", 0));
    const NoteSocketHandle next = m_Net.connect();
    ASSERT_TRUE(next);
    ASSERT_NO_FATAL_FAILURE(expectTraffic(*next, 1));
}

TEST_F(UdpMoves, ADetachedPortHasNotifiedItsPeers)
{
    const NoteSocketHandle first = m_Net.connect();
    const NoteSocketHandle second = m_Net.connect();
    ASSERT_TRUE(first && second);
    const unsigned int handle = m_Net.m_Server->detach();
    ASSERT_NE(handle, zet::Socket::kNoHandle);
    for (const NoteSocketHandle& socket : m_Net.m_Server->m_Accepted)
    {
        EXPECT_EQ(socket->m_Closes, 1);
        EXPECT_EQ(socket->m_StateAtClose, NoteSocket::kBroken);
        EXPECT_FALSE(socket->write("x", 1));
    }
    EXPECT_EQ(m_Net.m_Server->GetClientCount(), 0);
    ASSERT_TRUE(m_Net.until([&] { return first->m_Closes == 1 && second->m_Closes == 1; }, 10));
    EXPECT_EQ(first->m_StateAtClose, NoteSocket::kClosedByPeer);
    EXPECT_EQ(second->m_StateAtClose, NoteSocket::kClosedByPeer);
    test::closeRaw(handle);
}

} // namespace
