// Servers that keep themselves registered.
#include "framework/peer_log.h"
#include "tests/host/registration_steps.h"
#include "tests/support/log_lines.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <string>

namespace
{

using test::copied;
using test::DeafServer;
using test::idOf;
using test::kHost;
using test::Member;
using test::Registry;

// By value: a reference to a constant of an exported class has no symbol in the Windows library.
constexpr std::chrono::milliseconds kAnswerTime = host::Registration::kAnswerTime;
constexpr std::chrono::milliseconds kConfirmTime = host::Registration::kConfirmTime;
constexpr std::chrono::milliseconds kEchoInterval = host::Registration::kEchoInterval;

class HostRegistration : public testing::Test
{
protected:
    HostRegistration() { m_System.init(); }
    ~HostRegistration() override
    {
        m_First.reset();
        m_Second.reset();
        m_Registry.reset();
        m_System.exit();
    }

    template <class Condition>
    bool tickUntil(Condition condition)
    {
        return test::tickUntil(m_System, condition);
    }
    void advance(std::chrono::milliseconds time)
    {
        for (; time.count() > 0; time -= kStep)
        {
            m_Clock.advance(static_cast<unsigned int>(std::min(time, kStep).count()));
            m_System.tick();
        }
    }
    bool isRegistered(Member& member)
    {
        member.m_Registration.start(kHost, m_Port);
        return tickUntil([&] { return member.m_Registration.isRegistered(); });
    }
    // For what must not happen.
    void settle()
    {
        for (int i = 0; i < 50; ++i)
            m_System.tick();
    }
    // Two registered servers that know each other.
    void meet()
    {
        m_First = std::make_unique<Member>(m_System, 1, 1);
        m_Second = std::make_unique<Member>(m_System, 2, 2);
        ASSERT_TRUE(isRegistered(*m_First));
        ASSERT_TRUE(isRegistered(*m_Second));
        ASSERT_TRUE(tickUntil([&] { return m_First->m_Events == "+2 " && m_Second->m_Events == "+1 "; }));
    }

    static constexpr std::chrono::milliseconds kStep{10};

    test::LogLines m_Lines;
    zet::TestClock m_Clock{1000000};
    zet::System m_System;
    std::unique_ptr<Registry> m_Registry = std::make_unique<Registry>(m_System);
    const unsigned short m_Port = m_Registry->getPort();
    std::unique_ptr<Member> m_First;
    std::unique_ptr<Member> m_Second;
};

TEST_F(HostRegistration, NewServerAndEarlierOneLearnOfEachOther)
{
    meet();
    const CCmdServerRegister* const second = m_First->m_Registration.find(2);
    ASSERT_TRUE(second);
    EXPECT_EQ(second->m_ServerPort, m_Second->m_Record.m_ServerPort);
    EXPECT_EQ(second->m_ServerName, L"2");
    const CCmdServerRegister* const first = m_Second->m_Registration.find(1);
    ASSERT_TRUE(first);
    EXPECT_EQ(first->m_ServerAddress[0], kHost);
    EXPECT_EQ(first->m_ServerPort, m_First->m_Record.m_ServerPort);
    // Not the server itself.
    EXPECT_FALSE(m_First->m_Registration.find(1));
    EXPECT_EQ(m_Second->m_Registration.getCount(), 1);
}

TEST_F(HostRegistration, ServerThatLeavesIsGone)
{
    meet();
    m_Second->m_Registration.stop();
    ASSERT_TRUE(tickUntil([&] { return m_First->m_Events == "+2 -2 "; }));
    EXPECT_FALSE(m_First->m_Registration.find(2));
    EXPECT_FALSE(m_Second->m_Registration.isRegistered());
}

TEST_F(HostRegistration, LaterGreetingDoesNotBringBackAServerThatHasLeft)
{
    meet();
    m_Second->m_Registration.stop();
    ASSERT_TRUE(tickUntil([&] { return m_First->m_Events == "+2 -2 "; }));
    const auto client = CCommandSocket::createInstance(m_Second->m_Analyser.get());
    client->start(&m_System);
    ASSERT_TRUE(client->connect(kHost, m_First->m_Record.m_ServerPort, false));
    client->send(copied<CCmdServerHello>(m_Second->m_Record));
    auto unknown = copied<CCmdServerHello>(m_Second->m_Record);
    unknown.m_ServerId = idOf(3);
    client->send(unknown);
    ASSERT_TRUE(tickUntil([&] { return m_First->m_Events == "+2 -2 +3 "; }));
    client->close();
}

TEST_F(HostRegistration, LostRegistryIsSoughtWithGrowingDelays)
{
    m_First = std::make_unique<Member>(m_System, 1, 1);
    ASSERT_TRUE(isRegistered(*m_First));
    m_Registry.reset();
    ASSERT_TRUE(tickUntil([&] { return !m_First->m_Registration.isRegistered(); }));
    std::vector<std::wstring> delays;
    const auto collect = [&]
    {
        delays.clear();
        for (const std::wstring& line : m_Lines.texts())
            if (const auto at = line.find(L"next attempt in "); at != std::wstring::npos)
                delays.push_back(line.substr(at + 16));
        return delays.size();
    };
    for (size_t attempts = 1; attempts <= 7; ++attempts)
        ASSERT_TRUE(tickUntil(
            [&]
            {
                advance(std::chrono::milliseconds(500));
                return collect() >= attempts;
            }));
    delays.resize(7);
    EXPECT_EQ(delays, (std::vector<std::wstring>{L"1000 ms", L"2000 ms", L"4000 ms", L"8000 ms", L"16000 ms",
                                                 L"30000 ms", L"30000 ms"}));
}

TEST_F(HostRegistration, ServersRegisterAgainWithARestartedRegistry)
{
    meet();
    m_Registry.reset();
    ASSERT_TRUE(
        tickUntil([&] { return !m_First->m_Registration.isRegistered() && !m_Second->m_Registration.isRegistered(); }));
    // The known servers stay known meanwhile.
    EXPECT_TRUE(m_First->m_Registration.find(2));
    m_Registry = std::make_unique<Registry>(m_System, m_Port);
    ASSERT_TRUE(tickUntil(
        [&]
        {
            advance(std::chrono::milliseconds(100));
            return m_First->m_Registration.isRegistered() && m_Second->m_Registration.isRegistered();
        }));
    EXPECT_EQ(m_Registry->m_Registered.size(), 2U);
    // Both were announced or have greeted anew, so neither is dropped, and neither is reported twice.
    settle();
    advance(kConfirmTime);
    EXPECT_EQ(m_First->m_Events, "+2 ");
    EXPECT_EQ(m_Second->m_Events, "+1 ");
}

TEST_F(HostRegistration, ServerThatDoesNotReturnWithTheRegistryIsDropped)
{
    meet();
    m_Registry.reset();
    m_Second.reset();
    ASSERT_TRUE(tickUntil([&] { return !m_First->m_Registration.isRegistered(); }));
    m_Registry = std::make_unique<Registry>(m_System, m_Port);
    ASSERT_TRUE(tickUntil(
        [&]
        {
            advance(std::chrono::milliseconds(100));
            return m_First->m_Registration.isRegistered();
        }));
    advance(kConfirmTime - std::chrono::milliseconds(200));
    EXPECT_EQ(m_First->m_Events, "+2 ");
    advance(std::chrono::milliseconds(400));
    EXPECT_EQ(m_First->m_Events, "+2 -2 ");
}

TEST_F(HostRegistration, RefusedRegistrationIsRepeated)
{
    m_Registry->m_Refuses = true;
    m_First = std::make_unique<Member>(m_System, 1, 1);
    ASSERT_TRUE(m_First->m_Registration.start(kHost, m_Port));
    ASSERT_TRUE(tickUntil([&] { return m_Registry->m_Attempts == 1; }));
    ASSERT_TRUE(tickUntil(
        [&]
        {
            const auto lines = m_Lines.texts();
            return std::find(lines.begin(), lines.end(), L"The registry refuses the registration: full") != lines.end();
        }));
    EXPECT_FALSE(m_First->m_Registration.isRegistered());
    m_Registry->m_Refuses = false;
    ASSERT_TRUE(tickUntil(
        [&]
        {
            advance(std::chrono::milliseconds(100));
            return m_First->m_Registration.isRegistered();
        }));
    EXPECT_EQ(m_Registry->m_Attempts, 2);
}

TEST_F(HostRegistration, RegistryThatDoesNotAnswerIsLeft)
{
    m_First = std::make_unique<Member>(m_System, 1, 1);
    ASSERT_TRUE(isRegistered(*m_First));
    advance(kEchoInterval);
    ASSERT_TRUE(tickUntil([&] { return m_Registry->m_Echoes == 1; }));
    EXPECT_TRUE(m_First->m_Registration.isRegistered());
    m_Registry->m_IsSilent = true;
    ASSERT_TRUE(tickUntil(
        [&]
        {
            advance(std::chrono::milliseconds(100));
            return m_Registry->m_Echoes == 2;
        }));
    EXPECT_TRUE(m_First->m_Registration.isRegistered());
    advance(kAnswerTime);
    EXPECT_FALSE(m_First->m_Registration.isRegistered());
    m_Registry->m_IsSilent = false;
    ASSERT_TRUE(tickUntil(
        [&]
        {
            advance(std::chrono::milliseconds(100));
            return m_First->m_Registration.isRegistered();
        }));
}

TEST_F(HostRegistration, GreetingIsRepeatedUntilTheNewServerListens)
{
    m_First = std::make_unique<Member>(m_System, 1, 1);
    m_Second = std::make_unique<Member>(m_System, 2, 2);
    ASSERT_TRUE(isRegistered(*m_First));
    const unsigned short port = m_Second->m_Record.m_ServerPort;
    m_Second->m_Server->close();
    ASSERT_TRUE(isRegistered(*m_Second));
    ASSERT_TRUE(tickUntil([&] { return m_First->m_Events == "+2 "; }));
    settle();
    EXPECT_EQ(m_Second->m_Events, "");
    ASSERT_TRUE(m_Second->m_Server->listen(port, 100));
    ASSERT_TRUE(tickUntil(
        [&]
        {
            advance(std::chrono::milliseconds(100));
            return m_Second->m_Events == "+1 ";
        }));
}

TEST_F(HostRegistration, PeerThatMayNotGreetIsClosedAndNotKept)
{
    m_First = std::make_unique<Member>(m_System, 1, 1);
    int asked = 0;
    m_First->m_Registration.setGreetingCheck(
        [&](CCommandSocket&)
        {
            ++asked;
            return false;
        });
    ASSERT_TRUE(isRegistered(*m_First));
    m_Second = std::make_unique<Member>(m_System, 2, 2);
    const auto client = CCommandSocket::createInstance(m_Second->m_Analyser.get());
    client->start(&m_System);
    ASSERT_TRUE(client->connect(kHost, m_First->m_Record.m_ServerPort, false));
    client->send(copied<CCmdServerHello>(m_Second->m_Record));
    ASSERT_TRUE(tickUntil([&] { return client->getConnectionState() == zet::TcpConnection::kDown; }));
    EXPECT_EQ(asked, 1);
    EXPECT_EQ(m_First->m_Events, "");
}

TEST_F(HostRegistration, OrderToShutDownIsReported)
{
    m_First = std::make_unique<Member>(m_System, 1, 1);
    ASSERT_TRUE(isRegistered(*m_First));
    m_Registry->m_Registered.front().first->send(CCmdServerShutdown());
    ASSERT_TRUE(tickUntil([&] { return m_First->m_Events == "shutdown "; }));
}

TEST_F(HostRegistration, AnnouncementsOfOthersThanTheRegistryAreIgnored)
{
    // A server greets a port whose owner answers with announcements.
    m_First = std::make_unique<Member>(m_System, 1, 1);
    m_Second = std::make_unique<Member>(m_System, 2, 2);
    auto analyser = std::make_unique<CCmdAnalyserSocket>();
    host::Handlers handlers(*analyser);
    int greetings = 0;
    handlers.on<CCmdServerHello>(
        [&](CCommandSocket& socket, const CCmdServerHello&)
        {
            ++greetings;
            CCmdServerNewNotify notify;
            notify.m_ServerId = idOf(9);
            socket.send(notify);
            socket.send(CCmdServerShutdown());
            socket.send(copied<CCmdServerHelloReply>(m_Second->m_Record));
        });
    const zet::Unknown::Handle_T<test::Server> server(new test::Server(analyser.get()));
    server->start(&m_System);
    ASSERT_TRUE(server->listen(0, 10));
    m_Second->m_Record.m_ServerPort = server->zet::TcpServer::getPort();
    m_Second->m_Registration.setRecord(m_Second->m_Record);
    ASSERT_TRUE(isRegistered(*m_First));
    ASSERT_TRUE(isRegistered(*m_Second));
    ASSERT_TRUE(tickUntil(
        [&]
        {
            return greetings == 1 && !server->m_Accepted.empty() &&
                   server->m_Accepted.front()->getConnectionState() == zet::TcpConnection::kDown;
        }));
    EXPECT_EQ(m_First->m_Events, "+2 ");
    server->close();
    server->stop();
}

TEST_F(HostRegistration, AnnouncementsOfOneServerStartOneChainOfGreetings)
{
    DeafServer deaf(m_System);
    m_First = std::make_unique<Member>(m_System, 1, 1);
    ASSERT_TRUE(isRegistered(*m_First));
    const auto registry = m_Registry->m_Registered.front().first;
    registry->send(deaf.getNotify());
    ASSERT_TRUE(tickUntil([&] { return deaf.m_Greetings == 1; }));
    settle();
    for (int i = 0; i < 5; ++i)
    {
        registry->send(deaf.getNotify());
        settle();
    }
    EXPECT_EQ(deaf.m_Greetings, 1);
    // Repeated after 1 s, then 2 s, then 4 s.
    advance(std::chrono::seconds(10));
    EXPECT_GE(deaf.m_Greetings, 2);
    EXPECT_LE(deaf.m_Greetings, 4);
    // A server that has left and returns is greeted without the delay, and the earlier chain has ended.
    const int before = deaf.m_Greetings;
    CCmdServerFadeNotify fade;
    fade.m_ServerId = idOf(2);
    registry->send(fade);
    registry->send(deaf.getNotify());
    ASSERT_TRUE(tickUntil([&] { return deaf.m_Greetings == before + 1; }));
    advance(std::chrono::seconds(10));
    EXPECT_LE(deaf.m_Greetings, before + 4);
}

TEST_F(HostRegistration, ServersThatAreNotKeptDoNotFillTheLog)
{
    m_First = std::make_unique<Member>(m_System, 1, 1);
    ASSERT_TRUE(isRegistered(*m_First));
    constexpr int kMost = host::Registration::kMostServers;
    constexpr unsigned int kAtOnce = zet::PeerLog::kBurst;
    CCmdServerNewNotify notify;
    for (int known = 0; known < kMost;)
    {
        for (const int end = std::min(known + 500, kMost); known < end; ++known)
        {
            notify.m_ServerId = idOf(static_cast<unsigned int>(known) + 10);
            m_Registry->m_Registered.front().first->send(notify);
        }
        ASSERT_TRUE(tickUntil([&] { return m_First->m_Registration.getCount() == known; }));
    }
    const auto client = CCommandSocket::createInstance(m_First->m_Analyser.get());
    client->start(&m_System);
    ASSERT_TRUE(client->connect(kHost, m_First->m_Record.m_ServerPort, false));
    CCmdServerHello hello;
    for (unsigned int i = 0; i < 3 * kAtOnce; ++i)
    {
        hello.m_ServerId = idOf(1000000 + i);
        client->send(hello);
    }
    const auto count = [&]
    {
        const auto lines = m_Lines.texts();
        return std::count_if(lines.begin(), lines.end(),
                             [](const std::wstring& line) { return line.find(L" is not kept") != std::wstring::npos; });
    };
    ASSERT_TRUE(tickUntil([&] { return count() > 0; }));
    settle();
    EXPECT_LE(count(), static_cast<std::ptrdiff_t>(kAtOnce));
    EXPECT_EQ(m_First->m_Registration.getCount(), kMost);
    client->close();
    client->stop();
}

TEST_F(HostRegistration, StoppedWhileServersAreDroppedItKeepsTheOthers)
{
    meet();
    Member third(m_System, 3, 3);
    ASSERT_TRUE(isRegistered(third));
    ASSERT_TRUE(tickUntil([&] { return m_First->m_Registration.getCount() == 2; }));
    m_Registry.reset();
    third.m_Registration.stop();
    m_Second.reset();
    ASSERT_TRUE(tickUntil([&] { return !m_First->m_Registration.isRegistered(); }));
    m_Registry = std::make_unique<Registry>(m_System, m_Port);
    ASSERT_TRUE(tickUntil(
        [&]
        {
            advance(std::chrono::milliseconds(100));
            return m_First->m_Registration.isRegistered();
        }));
    int gone = 0;
    m_First->m_Registration.onGone(
        [&](const CCmdServerRegister&)
        {
            ++gone;
            m_First->m_Registration.stop();
        });
    advance(kConfirmTime + std::chrono::milliseconds(200));
    EXPECT_EQ(gone, 1);
    EXPECT_EQ(m_First->m_Registration.getCount(), 1);
}

TEST_F(HostRegistration, StoppedWhileARecordChangesItDoesNotReportTheNewOne)
{
    meet();
    m_First->m_Registration.onGone(
        [&](const CCmdServerRegister&)
        {
            m_First->m_Events += "stop ";
            m_First->m_Registration.stop();
        });
    auto changed = copied<CCmdServerNewNotify>(m_Second->m_Record);
    changed.m_ServerName = L"another name";
    m_Registry->m_Registered.front().first->send(changed);
    ASSERT_TRUE(tickUntil([&] { return m_First->m_Events.find("stop ") != std::string::npos; }));
    settle();
    EXPECT_EQ(m_First->m_Events, "+2 stop ");
}

TEST_F(HostRegistration, NeedsARecordAndStartsOnce)
{
    host::Registration registration(m_System);
    EXPECT_FALSE(registration.start(kHost, m_Port));
    CCmdServerRegister record;
    record.m_ServerType = 1;
    registration.setRecord(record);
    EXPECT_FALSE(registration.getRecord().m_ServerId.isNull());
    EXPECT_TRUE(registration.start(kHost, m_Port));
    EXPECT_FALSE(registration.start(kHost, m_Port));
}

TEST_F(HostRegistration, HandlerOfGreetingsMayOutliveIt)
{
    auto analyser = std::make_unique<CCmdAnalyserSocket>();
    host::Handlers handlers(*analyser);
    auto registration = std::make_unique<host::Registration>(m_System);
    ASSERT_TRUE(registration->acceptGreetings(handlers));
    EXPECT_FALSE(registration->acceptGreetings(handlers));
    registration.reset();
    const zet::Unknown::Handle_T<test::Server> server(new test::Server(analyser.get()));
    server->start(&m_System);
    ASSERT_TRUE(server->listen(0, 10));
    const auto client = CCommandSocket::createInstance(analyser.get());
    client->start(&m_System);
    ASSERT_TRUE(client->connect(kHost, server->zet::TcpServer::getPort(), false));
    client->send(CCmdServerHello());
    ASSERT_TRUE(tickUntil([&] { return !server->m_Accepted.empty() && server->m_Accepted.front()->available() == 0; }));
    client->close();
    server->close();
    server->stop();
}

} // namespace
