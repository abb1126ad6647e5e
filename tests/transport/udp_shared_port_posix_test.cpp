// Two Systems on one UDP port: each gets connections and keeps them.
#include "tests/support/udp_loopback.h"

#include <gtest/gtest.h>

#include <algorithm>

#ifdef __linux__

namespace
{

using test::NoteCommand;
using test::NoteSocket;
using test::NoteSocketHandle;
using test::NoteUdpServer;
using PortHandle = zet::Unknown::Handle_T<NoteUdpServer>;

// A System of this thread with a port.
struct Half
{
    Half(bool isShared, unsigned short port)
    {
        m_System.init();
        m_Port->start(&m_System);
        m_Port->setSharedPort(isShared);
        m_IsListening = m_Port->listen(L"127.0.0.1", port);
    }
    ~Half()
    {
        m_Port->close();
        m_System.exit();
    }

    zet::System m_System;
    const PortHandle m_Port = new NoteUdpServer;
    bool m_IsListening = false;
};

TEST(UdpSharedPort, BothSystemsGetConnectionsAndServeTheirOwn)
{
    if (!zet::UdpServer::isAvailable())
        GTEST_SKIP() << "built without connections over UDP";
    zet::TestClock clock(1700000000, 1000);
    Half first(true, 0);
    Half second(true, first.m_Port->getPort());
    ASSERT_TRUE(first.m_IsListening && second.m_IsListening);
    Half* const servers[2] = {&first, &second};
    for (int i = 0; i < 2; ++i)
        servers[i]->m_Port->m_Handler = [i](NoteSocket& socket, const NoteCommand&)
        { EXPECT_TRUE(socket.send(NoteCommand(i))); };
    // The system divides them by the peer's port, so each peer has one of its own. All go to one server once in 2^15
    // times; then the test repeats with other ports.
    size_t counts[2] = {0, 0};
    for (int round = 0; round < 4 && (counts[0] == 0 || counts[1] == 0); ++round)
    {
        zet::System system;
        system.init();
        std::vector<PortHandle> ports;
        std::vector<NoteSocketHandle> peers;
        for (int i = 0; i < 16; ++i)
        {
            ports.push_back(new NoteUdpServer);
            ports.back()->start(&system);
            ASSERT_TRUE(ports.back()->listen(L"127.0.0.1", 0));
            peers.push_back(new NoteSocket);
            zet::Uuid id;
            zet::uuid_create(id);
            ASSERT_TRUE(peers.back()->connect(ports.back(), L"127.0.0.1", servers[0]->m_Port->getPort(), id));
        }
        std::vector<bool> hasAsked(peers.size(), false);
        const auto isAnswered = [](const auto& peer) { return peer->m_Numbers.size() == 1; };
        for (int i = 0; i < 5000 && !std::all_of(peers.begin(), peers.end(), isAnswered); ++i)
        {
            system.tick();
            servers[0]->m_System.tick();
            servers[1]->m_System.tick();
            clock.advance(1);
            for (size_t k = 0; k < peers.size(); ++k)
                if (!hasAsked[k] && peers[k]->getConnectionState() == NoteSocket::kEstablished)
                    hasAsked[k] = peers[k]->send(NoteCommand(7));
        }
        for (const NoteSocketHandle& peer : peers)
        {
            ASSERT_EQ(peer->m_Numbers.size(), 1u);
            ++counts[peer->m_Numbers[0]];
        }
        system.exit();
    }
    for (int i = 0; i < 2; ++i)
    {
        EXPECT_GT(counts[i], 0u) << i;
        EXPECT_EQ(servers[i]->m_Port->m_Accepted.size(), counts[i]) << i;
    }
}

TEST(UdpSharedPort, EachServerOfAPortHasToShareIt)
{
    if (!zet::UdpServer::isAvailable())
        GTEST_SKIP() << "built without connections over UDP";
    const Half shared(true, 0);
    ASSERT_TRUE(shared.m_IsListening);
    EXPECT_FALSE(Half(false, shared.m_Port->getPort()).m_IsListening);
    const Half alone(false, 0);
    EXPECT_FALSE(Half(true, alone.m_Port->getPort()).m_IsListening);
}

} // namespace

#endif
