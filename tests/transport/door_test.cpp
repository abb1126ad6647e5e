// The interface to the operating system's network, and host names, which are resolved without delaying a tick.
#include "framework/system.h"
#include "net/tcp/stream.h"
#include "tests/support/accepting_port.h"
#include "tests/support/eventually.h"
#include "tests/support/loopback.h"
#include "tests/support/passing_door.h"
#include "tests/support/udp_test.h"

#include <gtest/gtest.h>

#include <thread>

namespace
{

using test::PassingDoor;
using test::tickUntil;
using Port = test::AcceptingPort;
using StreamHandle = zet::Unknown::Handle_T<zet::TcpStream>;

class DoorTest : public testing::Test
{
protected:
    void SetUp() override
    {
        m_System.init();
        ASSERT_TRUE(zet::inner::setDoor(m_System, m_Door));
        m_Port->start(&m_System);
        ASSERT_TRUE(m_Port->listen(0, 10));
    }
    void TearDown() override { m_System.exit(); }

    StreamHandle connect(const wchar_t* host)
    {
        const StreamHandle stream = new zet::TcpStream;
        stream->start(&m_System);
        EXPECT_TRUE(stream->connect(host, m_Port->getPort(), false));
        return stream;
    }

    const std::shared_ptr<PassingDoor> m_Door = std::make_shared<PassingDoor>();
    zet::System m_System;
    const zet::Unknown::Handle_T<Port> m_Port = new Port;
};

TEST_F(DoorTest, EachCallOfASystemsSocketsGoesThroughIt)
{
    const StreamHandle stream = connect(L"127.0.0.1");
    ASSERT_TRUE(tickUntil(m_System, [&] { return m_Port->m_Accepted.size() == 1; }));
    ASSERT_EQ(stream->send("hello", 5), 5);
    ASSERT_TRUE(tickUntil(m_System,
                          [&]
                          {
                              m_Port->m_Accepted[0]->onTick(0);
                              return m_Port->m_Accepted[0]->available() == 5;
                          }));
    for (const char* call : {"makePoller", "bind", "listen", "connect", "endConnect", "watchPeer", "send"})
        EXPECT_EQ(m_Door->count(call), 1) << call;
    EXPECT_EQ(m_Door->count("open"), 2);
    EXPECT_GE(m_Door->count("accept"), 1);
    EXPECT_GE(m_Door->count("receive"), 1);
    stream->close();
    EXPECT_EQ(m_Door->count("close"), 1);
    EXPECT_EQ(m_Door->count("unblock"), 0);
}

TEST_F(DoorTest, IsSetBeforeTheFirstSocketOnly)
{
    EXPECT_FALSE(zet::inner::setDoor(m_System, std::make_shared<PassingDoor>()));
}

TEST_F(DoorTest, ATickDoesNotWaitForAName)
{
    const StreamHandle stream = connect(L"host.test");
    ASSERT_EQ(m_Door->m_Questions.size(), 1u);
    EXPECT_EQ(m_Door->m_Questions[0].first, "host.test");
    EXPECT_EQ(stream->send("early", 5), 5);
    for (int i = 0; i < 10; ++i)
        m_System.tick();
    EXPECT_EQ(stream->getConnectionState(), zet::TcpConnection::kConnecting);
    EXPECT_TRUE(stream->getPeerName().isEmpty());
    EXPECT_EQ(m_Door->count("connect"), 0);
    // Another thread passes the answer, which ends a sleep.
    std::thread([&] { m_Door->answer({"127.0.0.1"}); }).join();
    ASSERT_TRUE(tickUntil(m_System, [&] { return m_Port->m_Accepted.size() == 1; }));
    EXPECT_EQ(stream->getConnectionState(), zet::TcpConnection::kEstablished);
    EXPECT_EQ(stream->getPeerAddress(), zet::Socket::inet_addr("127.0.0.1"));
    ASSERT_TRUE(tickUntil(m_System,
                          [&]
                          {
                              m_Port->m_Accepted[0]->onTick(0);
                              return m_Port->m_Accepted[0]->available() == 5;
                          }));
}

TEST_F(DoorTest, AnAnswerEndsTheSleepOfTheSystem)
{
    // Longer than a test may take.
    m_System.setTickInterval(3600000);
    const StreamHandle stream = connect(L"host.test");
    m_System.tick();
    std::thread answering([&] { m_Door->answer({}); });
    while (stream->getConnectionState() == zet::TcpConnection::kConnecting)
    {
        m_System.wait();
        m_System.tick();
    }
    answering.join();
    EXPECT_EQ(stream->getConnectionState(), zet::TcpConnection::kConnectFailed);
}

TEST_F(DoorTest, AnAnswerThatComesTooLateChangesNothing)
{
    StreamHandle closed = connect(L"host.test");
    closed->close();
    closed = connect(L"host.test");
    closed->stop();
    closed = nullptr;
    ASSERT_EQ(m_Door->m_Questions.size(), 2u);
    m_Door->answer({"127.0.0.1"});
    for (int i = 0; i < 10; ++i)
        m_System.tick();
    EXPECT_EQ(m_Door->count("connect"), 0);
    EXPECT_TRUE(m_Port->m_Accepted.empty());
}

TEST(Door, ASystemEndsBeforeItsNamesAreResolved)
{
    const auto door = std::make_shared<PassingDoor>();
    {
        zet::System system;
        system.init();
        ASSERT_TRUE(zet::inner::setDoor(system, door));
        const StreamHandle stream = new zet::TcpStream;
        stream->start(&system);
        ASSERT_TRUE(stream->connect(L"host.test", 1, false));
        system.exit();
    }
    ASSERT_EQ(door->m_Questions.size(), 1u);
    door->answer({"127.0.0.1"});
    EXPECT_EQ(door->count("connect"), 0);
}

TEST(Door, TheRealOneResolvesOnAThreadOfItsOwn)
{
    std::atomic<bool> isThere{false};
    std::thread::id thread;
    std::vector<test::Endpoint> found;
    const auto asker = std::make_shared<int>(0);
    // This name is resolved without a name server.
    test::Door::getReal()->resolve(
        "127.1",
        [&](std::vector<test::Endpoint> addresses)
        {
            thread = std::this_thread::get_id();
            found = std::move(addresses);
            isThere = true;
        },
        asker);
    ASSERT_TRUE(test::eventually([&] { return isThere.load(); }));
    EXPECT_NE(thread, std::this_thread::get_id());
    ASSERT_FALSE(found.empty());
    EXPECT_EQ(found[0].v4(), zet::Socket::inet_addr("127.0.0.1"));
}

class UdpNames : public test::UdpTest
{
};

TEST_F(UdpNames, ATickOfAPortDoesNotWaitForAName)
{
    zet::System system;
    system.init();
    const auto door = std::make_shared<PassingDoor>();
    ASSERT_TRUE(zet::inner::setDoor(system, door));
    const zet::Unknown::Handle_T<zet::UdpServer> port = new zet::UdpServer;
    port->start(&system);
    ASSERT_TRUE(port->listen(0));
    const test::NoteSocketHandle socket = new test::NoteSocket;
    const test::NoteSocketHandle lost = new test::NoteSocket;
    ASSERT_TRUE(socket->connect(port, L"host.test", m_Net.m_Server->getPort(), zet::Uuid()));
    ASSERT_TRUE(socket->send(test::NoteCommand(1)));
    for (int i = 0; i < 10; ++i)
        system.tick();
    EXPECT_EQ(socket->getConnectionState(), 1);
    EXPECT_EQ(door->count("sendBatch") + door->count("sendSegmented"), 0);
    door->answer({"127.0.0.1"});
    ASSERT_TRUE(m_Net.until(
        [&]
        {
            system.tick();
            return !m_Net.m_Server->m_Accepted.empty() && m_Net.accepted().m_Numbers.size() == 1;
        }));
    EXPECT_EQ(socket->getPeerAddress(), zet::Socket::inet_addr("127.0.0.1"));
    // A name without an address, and a lookup whose socket is closed.
    ASSERT_TRUE(lost->connect(port, L"nowhere.test", m_Net.m_Server->getPort(), zet::Uuid()));
    door->answer({});
    ASSERT_TRUE(m_Net.until(
        [&]
        {
            system.tick();
            return lost->m_Closes == 1;
        }));
    ASSERT_TRUE(lost->connect(port, L"nowhere.test", m_Net.m_Server->getPort(), zet::Uuid()));
    lost->close();
    door->answer({"127.0.0.1"});
    system.tick();
    EXPECT_EQ(port->getConnectionCount(), 1);
    socket->close();
    port->close();
    system.exit();
}

} // namespace
