// The events and causes of connections over UDP.
#include "tests/support/log_lines.h"
#include "tests/support/noting_events.h"
#include "tests/support/standard_error.h"
#include "tests/support/udp_test.h"

namespace
{

using test::Events;
using test::expectIn;
using test::StandardError;
using zet::EndCause;
using NotingSocket = test::NotingEvents<test::NoteSocket>;
using NotingHandle = zet::Unknown::Handle_T<NotingSocket>;

class UdpEvents : public test::UdpTest
{
protected:
    UdpEvents()
    {
        m_Net.m_Server->m_Spare.push_back(test::NoteSocketHandle(m_Accepted));
        m_Net.m_Sockets.push_back(test::NoteSocketHandle(m_Client));
    }
    ~UdpEvents() override
    {
        m_Client->close();
        m_Accepted->close();
    }
    bool connect()
    {
        return m_Client->connect(m_Net.m_Port, L"127.0.0.1", m_Net.m_Server->getPort(), {}) &&
               m_Net.until([this] { return m_Client->m_Events.size() == 1 && m_Accepted->m_Events.size() == 1; });
    }

    NotingHandle m_Accepted = new NotingSocket;
    NotingHandle m_Client = new NotingSocket;
};

TEST_F(UdpEvents, EachSideGetsItsCauseOnce)
{
    ASSERT_TRUE(connect());
    EXPECT_FALSE(m_Client->getEndCause());
    m_Client->close();
    EXPECT_EQ(m_Client->m_Events, (Events{L"established", L"closed here"}));
    ASSERT_TRUE(m_Net.until([&] { return m_Accepted->m_Events.size() == 2; }));
    m_Client->close();
    m_Accepted->close();
    settle();
    EXPECT_EQ(m_Accepted->m_Events, (Events{L"established", L"closed by the peer"}));
    EXPECT_EQ(m_Client->m_Events.size(), 2u);
    EXPECT_EQ(m_Accepted->m_Closes, 1);
    EXPECT_EQ(m_Net.m_Server->getEndCount(EndCause::kClosedByPeer), 1u);
}

TEST_F(UdpEvents, AClosedPortEndsItsConnections)
{
    ASSERT_TRUE(connect());
    m_Net.m_Server->close();
    EXPECT_EQ(m_Accepted->m_Events, (Events{L"established", L"closed here"}));
    ASSERT_TRUE(m_Net.until([&] { return m_Client->m_Events.size() == 2; }));
    EXPECT_EQ(m_Client->m_Cause.m_Code, EndCause::kClosedByPeer);
}

TEST_F(UdpEvents, TheHostsNumberReachesTheEvent)
{
    ASSERT_TRUE(connect());
    m_Accepted->closeFor(9);
    EXPECT_EQ(m_Accepted->m_Events, (Events{L"established", L"ended by the host (reason 9)"}));
    settle();
    EXPECT_EQ(m_Net.m_Server->getEndCount(EndCause::kHost), 1u);
}

TEST_F(UdpEvents, NoPeerAnswers)
{
    StandardError error;
    const unsigned short port = m_Net.m_Server->getPort();
    m_Net.m_Server->close();
    ASSERT_TRUE(m_Client->connect(m_Net.m_Port, L"127.0.0.1", port, {}));
    ASSERT_TRUE(m_Net.until([&] { return m_Client->m_Events.size() == 1; }));
    EXPECT_EQ(m_Client->m_Events, (Events{L"timed out (no answer)"}));
    expectIn(error.text(), " [W] Connect to 127.0.0.1:" + std::to_string(port) + " failed: timed out (no answer)\n");
}

TEST_F(UdpEvents, AFullServerRefuses)
{
    StandardError error;
    zet::NetLimits limits;
    limits.m_Connections = 1;
    m_Net.m_Server->setLimits(limits);
    ASSERT_TRUE(connect());
    const NotingHandle second = new NotingSocket;
    ASSERT_TRUE(second->connect(m_Net.m_Port, L"127.0.0.1", m_Net.m_Server->getPort(), {}));
    ASSERT_TRUE(m_Net.until([&] { return second->m_Events.size() == 1; }));
    EXPECT_EQ(second->m_Events, (Events{L"refused"}));
    EXPECT_EQ(m_Net.m_Server->getFault().m_Code, EndCause::kTooMany);
    EXPECT_EQ(m_Net.m_Server->getEndCount(EndCause::kTooMany), 1u);
    expectIn(error.text(), " refused: too many connections\n");
}

TEST_F(UdpEvents, AConnectThatFailsAtOnceHasACauseAndNoEvent)
{
    StandardError error;
    EXPECT_FALSE(m_Client->connect(nullptr, L"127.0.0.1", 80, {}));
    EXPECT_EQ(m_Client->getEndCause().m_Code, EndCause::kNotStarted);
    EXPECT_FALSE(m_Client->connect(m_Net.m_Port, L"", 80, {}));
    EXPECT_EQ(m_Client->getEndCause().m_Code, EndCause::kBadAddress);
    const zet::Unknown::Handle_T<zet::UdpServer> closed = new zet::UdpServer;
    EXPECT_FALSE(m_Client->connect(closed, L"127.0.0.1", 80, {}));
    EXPECT_TRUE(m_Client->m_Events.empty());
    EXPECT_EQ(closed->getFault().m_Code, EndCause::kNone);
    ASSERT_TRUE(closed->setBindAddress(L"192.0.2.1"));
    EXPECT_FALSE(closed->listen(0));
    EXPECT_EQ(closed->getFault().m_Code, EndCause::kForeignAddress);
    const std::string text = error.text();
    expectIn(text, "Connect to 127.0.0.1:80 failed: not in a System, or without a port\n");
    expectIn(text, "Listen over UDP on 192.0.2.1:0 failed: not an address of this machine\n");
}

TEST_F(UdpEvents, MalformedInputIsTheCause)
{
    ASSERT_TRUE(connect());
    const unsigned char length[2] = {0xFF, 0xFF};
    ASSERT_EQ(m_Client->send(length, 2), 2);
    ASSERT_TRUE(m_Net.until([&] { return m_Accepted->m_Events.size() == 2; }));
    EXPECT_EQ(m_Accepted->m_Cause.m_Code, EndCause::kMalformed);
    ASSERT_TRUE(m_Net.until([&] { return m_Client->m_Events.size() == 2; }));
    EXPECT_EQ(m_Client->m_Cause.m_Code, EndCause::kCutOff);
}

TEST_F(UdpEvents, TheOutputIsReportedWritableOnceItHasFallenToHalfItsMark)
{
    ASSERT_TRUE(connect());
    m_Client->setOutputMark(4000);
    ASSERT_TRUE(m_Client->send(test::NoteCommand(1, 6000)));
    EXPECT_TRUE(m_Client->isOutputHigh());
    ASSERT_TRUE(m_Net.until([&] { return m_Client->m_Events.size() == 2; }));
    EXPECT_EQ(m_Client->m_Events.back(), L"writable");
    EXPECT_FALSE(m_Client->isOutputHigh());
}

TEST_F(UdpEvents, TheLogHasOneLineForEachEnd)
{
    ASSERT_TRUE(connect());
    m_Net.m_Clock.advance(32 * zet::PeerLog::kInterval);
    const test::LogLines log;
    const std::wstring peer = m_Client->getPeerName().getBuffer();
    m_Client->close();
    EXPECT_EQ(log.texts(), (std::vector<std::wstring>{L"Connection with " + peer + L" ended: closed here"}));
}

TEST_F(UdpEvents, CloseBeforeTheConnectionIsEstablishedIsAFailedConnect)
{
    m_Net.m_Clock.advance(32 * zet::PeerLog::kInterval);
    const test::LogLines log;
    ASSERT_TRUE(m_Client->connect(m_Net.m_Port, L"127.0.0.1", m_Net.m_Server->getPort(), {}));
    m_Client->close();
    const std::wstring peer = m_Client->getPeerName().getBuffer();
    EXPECT_EQ(log.texts(), (std::vector<std::wstring>{L"Connect to " + peer + L" failed: closed here"}));
}

} // namespace
