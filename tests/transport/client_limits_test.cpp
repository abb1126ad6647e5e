// Limits of a connection's own: the times of connect() and of silence, rates, turns and log lines.
#include "net/limits.h"
#include "net/session/module.h"
#include "net/session/session.h"
#include "tests/support/log_lines.h"
#include "tests/support/raw_peer.h"
#include "tests/support/scripted_proxy.h"
#include "tests/support/simulated_sleep.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace
{

using test::ClientHandle;
using test::Loopback;
using test::NoteAnalyser;
using test::NoteCommand;
using zet::EndCause;
using zet::NetLimits;

constexpr EndCause kNoAnswer{EndCause::kTimedOut, EndCause::kAnswer};
constexpr EndCause kNoInput{EndCause::kTimedOut, EndCause::kInput};

// Connects that are never answered.
class SilentDoor : public test::SleepingDoor
{
public:
    using SleepingDoor::SleepingDoor;

    Fault connect(Handle handle, const test::Endpoint&) override
    {
        // A listening socket is never ready for output.
        test::Endpoint own;
        parse("127.0.0.1", 0, own);
        EXPECT_FALSE(getReal()->bind(handle, own));
        EXPECT_FALSE(getReal()->listen(handle, 1));
        return {};
    }
};

class ConnectTime : public testing::Test
{
protected:
    void SetUp() override
    {
        m_System.init();
        ASSERT_TRUE(zet::inner::setDoor(m_System, m_Door));
        m_System.setTickInterval(zet::System::kLongestInterval);
        m_Limits.m_ConnectTime = 3000;
    }
    void TearDown() override { m_System.exit(); }

    template <class Condition>
    unsigned int timeUntil(Condition condition)
    {
        const unsigned int start = zet::getTimeTick();
        for (int i = 0; i < 1000 && !condition(); ++i)
        {
            m_System.tick();
            if (!condition())
                m_System.wait();
        }
        return zet::getTimeTick() - start;
    }

    zet::TestClock m_Clock{0};
    const std::shared_ptr<SilentDoor> m_Door = std::make_shared<SilentDoor>(m_Clock);
    zet::System m_System;
    NoteAnalyser m_Analyser;
    NetLimits m_Limits;
};

TEST_F(ConnectTime, EndsAConnectThatIsNotAnswered)
{
    const ClientHandle client = new test::Client(m_Analyser);
    client->start(&m_System);
    ASSERT_TRUE(client->setLimits(m_Limits));
    ASSERT_TRUE(client->connect(L"127.0.0.1", 9, false));
    EXPECT_FALSE(client->setLimits(m_Limits));
    EXPECT_EQ(timeUntil([&] { return client->isInvalid(); }), 3000u);
    EXPECT_EQ(client->getEndCause(), kNoAnswer);
    // Each connect() has the time anew.
    m_Clock.advance(100000);
    ASSERT_TRUE(client->connect(L"127.0.0.1", 9, false));
    EXPECT_EQ(timeUntil([&] { return client->isInvalid(); }), 3000u);
}

TEST_F(ConnectTime, CoversTheResolvingOfAName)
{
    const ClientHandle client = new test::Client(m_Analyser);
    client->start(&m_System);
    ASSERT_TRUE(client->setLimits(m_Limits));
    ASSERT_TRUE(client->connect(L"host.test", 9, false));
    EXPECT_EQ(timeUntil([&] { return client->isInvalid(); }), 3000u);
    EXPECT_EQ(client->getEndCause(), kNoAnswer);
}

TEST_F(ConnectTime, EndsASession)
{
    const auto module = zet::NetModule::createInstance();
    module->start(&m_System);
    const auto session = zet::NetSession::createInstance(module);
    session->setLimits(m_Limits);
    ASSERT_TRUE(session->connect(zet::NetAddress(L"127.0.0.1", 9), zet::Uuid()));
    EXPECT_EQ(timeUntil([&] { return session->getState() == zet::NetSession::kDown; }), 3000u);
    EXPECT_EQ(session->getEndCause(), kNoAnswer);
}

TEST(ClientLimits, TheTimeOfConnectCoversAProxy)
{
    zet::TestClock clock(1000000000);
    test::Proxied net;
    NetLimits limits;
    limits.m_ConnectTime = 3000;
    ASSERT_TRUE(net.m_Client->setLimits(limits));
    ASSERT_TRUE(net.greets(test::kGreeting));
    ASSERT_TRUE(net.answer({5, 0}));
    clock.advance(2999);
    net.m_System.tick();
    EXPECT_EQ(net.m_Client->getConnectionState(), zet::TcpConnection::kEstablished);
    clock.advance(1);
    net.m_System.tick();
    EXPECT_EQ(net.m_Client->getConnectionState(), zet::TcpConnection::kConnectFailed);
    EXPECT_EQ(net.m_Client->getEndCause(), kNoAnswer);
}

TEST(ClientLimits, AProxyThatAnsweredInTimeEndsTheTimeOfConnect)
{
    zet::TestClock clock(1000000000);
    test::Proxied net;
    NetLimits limits;
    limits.m_ConnectTime = 3000;
    ASSERT_TRUE(net.m_Client->setLimits(limits));
    ASSERT_TRUE(net.greets(test::kGreeting));
    ASSERT_TRUE(net.answer({5, 0}));
    ASSERT_TRUE(net.says(test::kRequest));
    ASSERT_TRUE(net.answer(test::kGranted));
    EXPECT_EQ(net.m_Client->m_Workings, 1);
    clock.advance(100000);
    for (int i = 0; i < 3; ++i)
        net.m_System.tick();
    EXPECT_EQ(net.m_Client->getConnectionState(), zet::TcpConnection::kEstablished);
}

// A client with limits of its own, and a server.
struct Limited
{
    explicit Limited(const NetLimits& limits)
        : m_Analyser([this](CCommandSocket* socket, const NoteCommand&) { m_Got += socket == m_Client.get(); }),
          m_Net(m_Analyser), m_Client(new test::Client(m_Analyser))
    {
        m_Client->start(&m_Net.m_System);
        m_Net.m_Clients.push_back(m_Client);
        m_IsUp = m_Client->setLimits(limits) && m_Client->connect(L"127.0.0.1", m_Net.m_Server->getPort(), false) &&
                 test::tickUntil(m_Net.m_System, [&] { return m_Net.m_Server->m_Accepted.size() == 1; });
        tick();
    }
    void tick()
    {
        for (int i = 0; i < 10; ++i)
            m_Net.m_System.tick();
    }

    zet::TestClock m_Clock{1000000000};
    int m_Got = 0;
    NoteAnalyser m_Analyser;
    Loopback m_Net;
    const ClientHandle m_Client;
    bool m_IsUp = false;
};

TEST(ClientLimits, ASilentServerIsLeft)
{
    NetLimits limits;
    limits.m_ConnectTime = 1000;
    limits.m_IdleTime = 5000;
    Limited net(limits);
    ASSERT_TRUE(net.m_IsUp);
    EXPECT_EQ(net.m_Client->getLimits()->m_IdleTime, 5000u);
    EXPECT_FALSE(net.m_Client->getPortLimits());
    for (int i = 0; i < 5; ++i)
    {
        net.m_Clock.advance(4000);
        ASSERT_TRUE(net.m_Net.accepted()->send(NoteCommand(i)));
        net.tick();
        EXPECT_EQ(net.m_Got, i + 1);
    }
    net.m_Clock.advance(4999);
    net.tick();
    EXPECT_EQ(net.m_Client->getConnectionState(), zet::TcpConnection::kEstablished);
    net.m_Clock.advance(1);
    net.tick();
    EXPECT_TRUE(net.m_Client->isInvalid());
    EXPECT_EQ(net.m_Client->getEndCause(), kNoInput);
}

TEST(ClientLimits, AServerIsHeldToItsRate)
{
    NetLimits limits;
    limits.m_PacketsPerSecond = 10;
    limits.m_PacketBurst = 2;
    Limited net(limits);
    ASSERT_TRUE(net.m_IsUp);
    for (int i = 0; i < 6; ++i)
        ASSERT_TRUE(net.m_Net.accepted()->send(NoteCommand(i)));
    net.tick();
    EXPECT_EQ(net.m_Got, 2);
    net.m_Clock.advance(400);
    net.tick();
    EXPECT_EQ(net.m_Got, 4);
    net.m_Clock.advance(200);
    net.tick();
    EXPECT_EQ(net.m_Got, 6);
}

TEST(ClientLimits, AServerHasATurnPerTick)
{
    NetLimits limits;
    limits.m_TurnInput = 1000;
    Limited net(limits);
    ASSERT_TRUE(net.m_IsUp);
    for (int i = 0; i < 100; ++i)
        ASSERT_TRUE(net.m_Net.accepted()->send(NoteCommand(i, 90)));
    // Sent by the end of this tick.
    net.m_Net.m_System.tick();
    int before = net.m_Got;
    int most = 0;
    for (int i = 0; i < 30; ++i)
    {
        net.m_Net.m_System.tick();
        most = std::max(most, net.m_Got - before);
        before = net.m_Got;
    }
    EXPECT_EQ(net.m_Got, 100);
    EXPECT_LE(most, 20);
    EXPECT_GT(most, 0);
}

TEST(LogLimits, LinesAtOnceAndPerSecondCanBeSet)
{
    zet::TestClock clock(1000000000);
    NoteAnalyser analyser;
    Loopback net(analyser);
    NetLimits limits;
    limits.m_LogLines = 2;
    limits.m_LogLinesPerSecond = 1;
    net.m_Server->setLimits(limits);
    test::RawPeer peer(net);
    ASSERT_TRUE(peer.m_IsUp);
    // A packet of one byte that is not a frame.
    const std::vector<unsigned char> malformed{1, 0, 0, 0, 0xFF};
    const test::LogLines log;
    const auto send = [&]
    {
        for (int i = 0; i < 5; ++i)
            ASSERT_TRUE(peer.send(malformed));
        for (int i = 0; i < 10; ++i)
            net.m_System.tick();
    };
    send();
    EXPECT_EQ(log.texts().size(), 2u);
    clock.advance(999);
    send();
    EXPECT_EQ(log.texts().size(), 2u);
    clock.advance(1);
    send();
    // And the number of those omitted.
    EXPECT_EQ(log.texts().size(), 4u);
}

TEST(LogLimits, ABoundOf0IsNone)
{
    zet::TestClock clock(1000000000);
    NoteAnalyser analyser;
    Loopback net(analyser);
    NetLimits limits;
    limits.m_LogLines = 0;
    net.m_Server->setLimits(limits);
    test::RawPeer peer(net);
    ASSERT_TRUE(peer.m_IsUp);
    const test::LogLines log;
    for (int i = 0; i < 100; ++i)
        ASSERT_TRUE(peer.send({1, 0, 0, 0, 0xFF}));
    for (int i = 0; i < 10; ++i)
        net.m_System.tick();
    // Each packet has two.
    EXPECT_EQ(log.texts().size(), 200u);
}

} // namespace
