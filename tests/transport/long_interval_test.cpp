// A System with the longest tick interval: idle, it sleeps until something happens, and every time that the library
// keeps is still met to the millisecond. The sleeps take no time; each advances the test clock.
#include "commands/registry.h"
#include "host/tasks.h"
#include "net/session/module.h"
#include "net/session/session.h"
#include "net/tcp/inner/race.h"
#include "tests/support/loopback.h"
#include "tests/support/simulated_sleep.h"

#include <gtest/gtest.h>

namespace
{

using test::Client;
using test::ClientHandle;
using test::Endpoint;
using test::NoteAnalyser;
using test::NoteCommand;
using test::Server;
using test::SleepingDoor;

constexpr unsigned int kLong = zet::System::kLongestInterval;

// Refuses to accept once, and never answers at 127.0.0.2.
class Network : public SleepingDoor
{
public:
    using SleepingDoor::SleepingDoor;

    Handle accept(Handle listener, Endpoint& peer, Fault& fault) override
    {
        if (!std::exchange(m_IsExhausted, false))
            return SleepingDoor::accept(listener, peer, fault);
        fault = {Fault::kExhausted, 1};
        return kNoHandle;
    }
    Fault connect(Handle handle, const Endpoint& peer) override
    {
        if (print(peer) != "127.0.0.2")
            return SleepingDoor::connect(handle, peer);
        // A listening socket is never ready for output.
        Endpoint own;
        parse("127.0.0.1", 0, own);
        EXPECT_FALSE(getReal()->bind(handle, own));
        EXPECT_FALSE(getReal()->listen(handle, 1));
        return {};
    }

    bool m_IsExhausted = false;
};

class LongInterval : public testing::Test
{
protected:
    void SetUp() override
    {
        m_System.init();
        ASSERT_TRUE(zet::inner::setDoor(m_System, m_Door));
        m_System.setTickInterval(kLong);
        m_Server->start(&m_System);
        ASSERT_TRUE(m_Server->listen(0, 100));
    }
    void TearDown() override
    {
        m_Server->close();
        m_System.exit();
    }

    ClientHandle connect()
    {
        const ClientHandle client = new Client(m_Analyser);
        client->start(&m_System);
        EXPECT_TRUE(client->connect(L"127.0.0.1", m_Server->getPort(), false));
        const size_t before = m_Server->m_Accepted.size();
        EXPECT_LE(timeUntil([&] { return m_Server->m_Accepted.size() > before; }), +zet::System::kTickInterval);
        return client;
    }
    // Runs until the condition holds, for a day at most. Returns the milliseconds that it took.
    template <class Condition>
    unsigned int timeUntil(Condition condition)
    {
        const unsigned int start = zet::getTimeTick();
        while (!condition() && zet::getTimeTick() - start < kLong)
        {
            m_System.tick();
            if (!condition())
                m_System.wait();
        }
        return zet::getTimeTick() - start;
    }
    int sleepsOf(unsigned int time)
    {
        const int before = m_Door->m_Sleeps;
        const unsigned int start = zet::getTimeTick();
        timeUntil([&] { return zet::getTimeTick() - start >= time; });
        return m_Door->m_Sleeps - before;
    }

    zet::TestClock m_Clock{0};
    const std::shared_ptr<Network> m_Door = std::make_shared<Network>(m_Clock);
    NoteAnalyser m_Analyser;
    zet::System m_System;
    const zet::Unknown::Handle_T<Server> m_Server = new Server(m_Analyser);
};

TEST_F(LongInterval, AnIdleSystemSleepsOnce)
{
    const ClientHandle client = connect();
    sleepsOf(100);
    // A sleep is one system call: hundred per second by default, one in a day with this interval.
    EXPECT_EQ(sleepsOf(1000), 1);
    m_System.setTickInterval(zet::System::kTickInterval);
    m_System.tick();
    EXPECT_EQ(sleepsOf(1000), 100);
}

TEST_F(LongInterval, InputEndsASleep)
{
    int got = 0;
    m_Analyser.m_Handler = [&](CCommandSocket*, const NoteCommand&) { ++got; };
    const ClientHandle client = connect();
    sleepsOf(100);
    ASSERT_TRUE(client->send(NoteCommand(1)));
    // Also what is sent between two ticks.
    EXPECT_LT(timeUntil([&] { return got == 1; }), +zet::System::kTickInterval);
}

TEST_F(LongInterval, AConnectionClosedBetweenTicksLeavesItsServer)
{
    const ClientHandle client = connect();
    sleepsOf(100);
    m_Server->m_Accepted.back()->close();
    EXPECT_EQ(timeUntil([&] { return m_Server->GetClientCount() == 0; }), 0u);
}

TEST_F(LongInterval, ASilentPeerIsEndedInTime)
{
    zet::NetLimits limits;
    limits.m_IdleTime = 5000;
    m_Server->setLimits(limits);
    const ClientHandle client = connect();
    EXPECT_EQ(timeUntil([&] { return m_Server->GetClientCount() == 0; }), 5000u);
}

TEST_F(LongInterval, AcceptGoesOnAfterItsPause)
{
    m_Door->m_IsExhausted = true;
    const ClientHandle client = new Client(m_Analyser);
    client->start(&m_System);
    ASSERT_TRUE(client->connect(L"127.0.0.1", m_Server->getPort(), false));
    EXPECT_EQ(timeUntil([&] { return m_Server->m_Accepted.size() == 1; }), zet::TcpServer::kRestTime);
}

TEST_F(LongInterval, TheNextAddressOfANameIsTriedInTime)
{
    const ClientHandle client = new Client(m_Analyser);
    client->start(&m_System);
    ASSERT_TRUE(client->connect(L"host.test", m_Server->getPort(), false));
    m_Door->answer({"127.0.0.2", "127.0.0.1"});
    const auto time = timeUntil([&] { return client->getConnectionState() == zet::TcpConnection::kEstablished; });
    EXPECT_EQ(time, zet::inner::TcpRace::kNextAfter);
    timeUntil([&] { return m_Server->m_Accepted.size() == 1; });
    client->close();
}

TEST_F(LongInterval, ASessionWithoutGreetingEndsInTime)
{
    const auto module = zet::NetModule::createInstance();
    module->start(&m_System);
    const auto session = zet::NetSession::createInstance(module);
    zet::Uuid id;
    zet::uuid_create(id);
    // Its port accepts, and sends no greeting.
    ASSERT_TRUE(session->connect(zet::NetAddress(L"127.0.0.1", m_Server->getPort()), id));
    EXPECT_EQ(timeUntil([&] { return session->getState() == zet::NetSession::kDown; }),
              +zet::NetSession::kGreetingTime);
}

TEST_F(LongInterval, AQuestionTimesOutInTime)
{
    static CCmdAnalyserSocket analyser;
    host::Handlers handlers(analyser);
    host::Questions questions(handlers, m_System);
    questions.expect<CCmdServerEchoReply>();
    host::Tasks tasks(questions);
    const auto client = CCommandSocket::createInstance(&analyser);
    client->start(&m_System);
    ASSERT_TRUE(client->connect(L"127.0.0.1", m_Server->getPort(), false));
    bool isOver = false;
    tasks.ask<CCmdServerEchoReply>(*client, CCmdServerEcho(), std::chrono::milliseconds(1234),
                                   [&](const auto&) { isOver = true; });
    EXPECT_EQ(timeUntil([&] { return isOver; }), 1234u);
    isOver = false;
    tasks.after(std::chrono::milliseconds(4321), [&] { isOver = true; });
    EXPECT_EQ(timeUntil([&] { return isOver; }), 4321u);
    client->close();
}

} // namespace
