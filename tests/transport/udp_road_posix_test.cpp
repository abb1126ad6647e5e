// Connections over a link that drops, duplicates, delays and reorders datagrams; and a link that fails.
#include "tests/support/udp_road.h"
#include "tests/support/udp_test.h"

#include <optional>

namespace
{

using test::NoteCommand;
using test::NoteSocket;
using test::NoteSocketHandle;
using test::Road;
using test::RoadProfile;
using test::UdpNet;

class UdpRoad : public test::UdpTest
{
protected:
    void build(const RoadProfile& profile, unsigned int seed)
    {
        m_Road.emplace(m_Net.m_Server->getPort(), m_Net.m_Port->getPort(), profile, seed);
        m_Net.m_Road = m_Road->getPort();
        m_Net.m_Between = [this] { m_Road->step(); };
    }
    // Commands both ways on some connections; all arrive, once each and in order.
    void exchange(const RoadProfile& profile, unsigned int seed)
    {
        build(profile, seed);
        constexpr int kSockets = 3;
        constexpr int kCommands = 60;
        std::vector<NoteSocketHandle> near;
        for (int i = 0; i < kSockets; ++i)
        {
            near.push_back(m_Net.connect());
            ASSERT_TRUE(near.back()) << "seed " << seed;
        }
        std::vector<int> expected;
        for (int i = 0; i < kCommands; ++i)
        {
            expected.push_back(i);
            for (int k = 0; k < kSockets; ++k)
            {
                ASSERT_TRUE(near[static_cast<size_t>(k)]->send(NoteCommand(i, i * 53 % 3000)));
                ASSERT_TRUE(m_Net.m_Server->m_Accepted[static_cast<size_t>(k)]->send(NoteCommand(i, i * 91 % 3000)));
            }
            m_Net.step();
        }
        const auto isDone = [&]
        {
            for (int k = 0; k < kSockets; ++k)
                if (near[static_cast<size_t>(k)]->m_Numbers.size() < expected.size() ||
                    m_Net.m_Server->m_Accepted[static_cast<size_t>(k)]->m_Numbers.size() < expected.size())
                    return false;
            return true;
        };
        ASSERT_TRUE(m_Net.until(isDone, 120000)) << "seed " << seed;
        for (int k = 0; k < kSockets; ++k)
        {
            EXPECT_EQ(near[static_cast<size_t>(k)]->m_Numbers, expected);
            EXPECT_EQ(m_Net.m_Server->m_Accepted[static_cast<size_t>(k)]->m_Numbers, expected);
        }
        // Duplicate and late packets are not user data.
        EXPECT_TRUE(m_Net.m_Server->m_UserData.empty());
        EXPECT_TRUE(m_Net.m_Port->m_UserData.empty());
    }

    std::optional<Road> m_Road;
};

TEST_F(UdpRoad, ALongRoadOnlyTakesLonger)
{
    exchange({0, 0, 150, 0}, 1);
}

TEST_F(UdpRoad, LostDatagramsLoseNothing)
{
    exchange({100, 0, 20, 0}, 2);
    EXPECT_GT(m_Road->m_LostCount, 10);
}

TEST_F(UdpRoad, DoubledDatagramsDoubleNothing)
{
    exchange({0, 300, 5, 0}, 3);
    EXPECT_GT(m_Road->m_DoubledCount, 10);
}

TEST_F(UdpRoad, ReorderedDatagramsReorderNothing)
{
    exchange({0, 0, 5, 60}, 4);
}

TEST_F(UdpRoad, ARoadWithAllFaultsAtOnceStillCarries)
{
    for (unsigned int seed = 10; seed < 14; ++seed)
    {
        exchange({150, 100, 10, 80}, seed);
        m_Net.m_Port->close();
        m_Net.m_Server->close();
        m_Net.m_Server->m_Accepted.clear();
        m_Net.m_Sockets.clear();
        ASSERT_TRUE(m_Net.m_Server->listen(L"", 0) && m_Net.m_Port->listen(L"", 0));
    }
}

TEST_F(UdpRoad, ADeadPeerIsNoticedOnBothSides)
{
    build({}, 1);
    const NoteSocketHandle socket = m_Net.connect();
    ASSERT_TRUE(socket);
    m_Road->m_IsCut = true;
    const unsigned int begin = zet::getTimeTick();
    ASSERT_TRUE(m_Net.until([&] { return socket->m_Closes == 1 && m_Net.accepted().m_Closes == 1; }, 60000));
    EXPECT_EQ(socket->m_StateAtClose, NoteSocket::kBroken);
    EXPECT_EQ(m_Net.accepted().m_StateAtClose, NoteSocket::kBroken);
    const unsigned int idle = zet::UdpServer::Settings().m_IdleTimeout;
    EXPECT_GE(zet::getTimeTick() - begin, idle - 1000);
    EXPECT_LE(zet::getTimeTick() - begin, idle + zet::UdpServer::Settings().m_KeepAlive + 1000);
    EXPECT_EQ(m_Net.m_Server->GetClientCount(), 0);
    EXPECT_EQ(m_Net.m_Server->getConnectionCount(), 0);
}

TEST_F(UdpRoad, ADeadPeerIsNoticedByTheSender)
{
    build({}, 1);
    const NoteSocketHandle socket = m_Net.connect();
    ASSERT_TRUE(socket);
    m_Road->m_IsCut = true;
    ASSERT_TRUE(socket->send(NoteCommand(1)));
    ASSERT_TRUE(m_Net.until([&] { return socket->m_Closes == 1; }, 60000));
    EXPECT_EQ(socket->m_StateAtClose, NoteSocket::kBroken);
}

TEST_F(UdpRoad, APathThatOpensAgainInTimeLosesNothing)
{
    build({}, 1);
    const NoteSocketHandle socket = m_Net.connect();
    ASSERT_TRUE(socket);
    m_Road->m_IsCut = true;
    ASSERT_TRUE(socket->send(NoteCommand(7)));
    for (int i = 0; i < 5000; ++i)
        m_Net.step();
    m_Road->m_IsCut = false;
    ASSERT_TRUE(m_Net.until([&] { return m_Net.accepted().m_Numbers.size() == 1; }));
    EXPECT_EQ(m_Net.accepted().m_Numbers[0], 7);
}

TEST_F(UdpRoad, AQuietConnectionStays)
{
    build({50, 0, 10, 5}, 9);
    const NoteSocketHandle socket = m_Net.connect();
    ASSERT_TRUE(socket);
    // Ten minutes.
    for (int i = 0; i < 60000; ++i)
        m_Net.step(10);
    EXPECT_TRUE(UdpNet::isUp(*socket));
    EXPECT_TRUE(UdpNet::isUp(m_Net.accepted()));
    ASSERT_TRUE(socket->send(NoteCommand(3)));
    ASSERT_TRUE(m_Net.until([&] { return m_Net.accepted().m_Numbers.size() == 1; }));
}

TEST_F(UdpRoad, APeerThatMissedTheCloseFrameGetsItAgain)
{
    build({}, 1);
    const NoteSocketHandle socket = m_Net.connect();
    ASSERT_TRUE(socket);
    settle();
    socket->close();
    m_Road->m_IsCut = true;
    m_Net.step();
    m_Net.step();
    EXPECT_GE(m_Road->m_LostCount, 1);
    m_Road->m_IsCut = false;
    const unsigned int begin = zet::getTimeTick();
    ASSERT_TRUE(m_Net.until([&] { return m_Net.accepted().m_Closes == 1; }));
    // With its next keep-alive, well before the peer's idle timeout.
    EXPECT_LE(zet::getTimeTick() - begin, zet::UdpServer::Settings().m_KeepAlive + 1000);
    EXPECT_EQ(m_Net.accepted().m_StateAtClose, NoteSocket::kClosedByPeer);
}

TEST_F(UdpRoad, WhatACloseLeavesBehindEndsInTime)
{
    build({}, 1);
    const NoteSocketHandle socket = m_Net.connect();
    ASSERT_TRUE(socket);
    m_Road->m_IsCut = true;
    ASSERT_TRUE(socket->send(NoteCommand(1)));
    socket->close();
    m_Net.step();
    EXPECT_EQ(m_Net.m_Port->getConnectionCount(), 1);
    ASSERT_TRUE(m_Net.until([&] { return m_Net.m_Port->getConnectionCount() == 0; },
                            static_cast<int>(zet::UdpServer::Settings().m_LingerTime) + 10));
}

} // namespace
