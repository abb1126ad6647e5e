// Exceptions from a host's overrides on a port of connections over UDP.
#include "tests/support/log_lines.h"
#include "tests/support/udp_test.h"

#include <stdexcept>

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

class UdpThrowing : public test::UdpTest
{
};

TEST_F(UdpThrowing, WhatATaskThrowsInItsTickLosesNothing)
{
    const NoteSocketHandle socket = m_Net.connect();
    const NoteSocketHandle other = m_Net.connect();
    ASSERT_TRUE(socket && other);
    class Thrower : public NoteSocket
    {
    public:
        void onReceive() override
        {
            if (m_Throws-- > 0)
                throw std::runtime_error("as the test wants it");
        }
        int m_Throws = 2;
    };
    const zet::Unknown::Handle_T<Thrower> thrower = new Thrower;
    ASSERT_TRUE(thrower->connect(m_Net.m_Port, L"127.0.0.1", m_Net.m_Server->getPort(), zet::Uuid()));
    ASSERT_TRUE(m_Net.until([&] { return m_Net.m_Server->m_Accepted.size() == 3; }));
    for (const NoteSocketHandle& accepted : m_Net.m_Server->m_Accepted)
        for (int i = 0; i < 3; ++i)
            ASSERT_TRUE(accepted->send(NoteCommand(i)));
    const std::vector<int> expected{0, 1, 2};
    ASSERT_TRUE(m_Net.until(
        [&]
        { return socket->m_Numbers == expected && other->m_Numbers == expected && thrower->m_Numbers == expected; }));
}

// Throws from the function that a test selects.
class ThrowingServer : public NoteUdpServer
{
public:
    void onAccept() override
    {
        if (std::exchange(m_ThrowsOnAccept, false))
            throw std::runtime_error("as the test wants it");
        NoteUdpServer::onAccept();
    }
    void onUserData(const sockaddr_in& address, const void* data, int size) override
    {
        NoteUdpServer::onUserData(address, data, size);
        throw 7;
    }
    void onEnd(zet::UdpServer::UdpConnection* connection) override
    {
        NoteUdpServer::onEnd(connection);
        throw std::runtime_error("as the test wants it");
    }

    bool m_ThrowsOnAccept = false;
};

class ThrowingSocket : public NoteSocket
{
public:
    void onClose() override
    {
        NoteSocket::onClose();
        throw std::runtime_error("as the test wants it");
    }
};

TEST_F(UdpThrowing, WhatTheServersOverridesThrowCostsNoOtherATurn)
{
    const test::LogLines log;
    const zet::Unknown::Handle_T<ThrowingServer> server = new ThrowingServer;
    ASSERT_TRUE(server->listen(L"", 0));
    m_Net.m_Road = server->getPort();
    server->m_ThrowsOnAccept = true;
    const NoteSocketHandle first = m_Net.begin();
    const NoteSocketHandle second = m_Net.begin();
    const auto until = [&](auto condition)
    {
        return m_Net.until(
            [&]
            {
                server->onTick(zet::getTimeTick());
                return condition();
            });
    };
    ASSERT_TRUE(until([&] { return server->m_Accepted.size() == 2; }));
    EXPECT_FALSE(server->m_ThrowsOnAccept);
    EXPECT_TRUE(log.has(zet::Log::kError, L"Exception in a handler of a UDP port: as the test wants it"));
    m_Net.until([] { return false; }, 100);
    // In one tick: data of an unknown sender, two commands, and then the ends of both.
    const sockaddr_in stranger = test::loopback(9);
    server->deliver(stranger, "a", 1);
    EXPECT_TRUE(log.has(zet::Log::kError, L"Exception in a handler of a UDP port: ?"));
    ASSERT_TRUE(m_Net.m_Port->sendUserData(test::loopback(server->getPort()), "b", 1));
    ASSERT_TRUE(first->send(NoteCommand(1)) && second->send(NoteCommand(2)));
    m_Net.step();
    server->onTick(zet::getTimeTick());
    EXPECT_EQ(server->m_UserData.size(), 2U);
    EXPECT_EQ(server->m_Accepted[0]->m_Numbers.size() + server->m_Accepted[1]->m_Numbers.size(), 2U);
    first->close();
    second->close();
    ASSERT_TRUE(until([&] { return server->GetClientCount() == 0; }));
    EXPECT_EQ(server->m_Accepted[0]->m_Closes, 1);
    EXPECT_EQ(server->m_Accepted[1]->m_Closes, 1);
    server->close();
}

TEST_F(UdpThrowing, WhatAConnectionThrowsAtItsEndStopsNoOtherReport)
{
    for (const bool isDetaching : {false, true})
    {
        const zet::Unknown::Handle_T<NoteUdpServer> server = new NoteUdpServer;
        ASSERT_TRUE(server->listen(L"", 0));
        std::vector<NoteSocketHandle> sockets;
        for (int i = 0; i < 3; ++i)
        {
            sockets.push_back(new ThrowingSocket);
            ASSERT_TRUE(sockets.back()->connect(server, L"127.0.0.1", m_Net.m_Server->getPort(), zet::Uuid()));
        }
        const unsigned int handle = isDetaching ? server->detach() : zet::Socket::kNoHandle;
        EXPECT_EQ(handle != zet::Socket::kNoHandle, isDetaching);
        server->close();
        for (const NoteSocketHandle& socket : sockets)
        {
            EXPECT_EQ(socket->m_Closes, 1);
            EXPECT_FALSE(socket->send("x", 1));
        }
        // So that the handle is closed.
        EXPECT_EQ(server->attach(handle), isDetaching);
        server->close();
    }
}

TEST_F(UdpThrowing, AConnectionThatThrowsAtItsEndIsStillAbandoned)
{
    m_Net.m_Server->m_Spare.push_back(new ThrowingSocket);
    const NoteSocketHandle socket = m_Net.connect();
    ASSERT_TRUE(socket);
    socket->close();
    ASSERT_TRUE(m_Net.until([&] { return m_Net.accepted().m_Closes == 1; }));
    EXPECT_EQ(m_Net.m_Server->GetClientCount(), 0);
}

} // namespace
