// The events of connections over TCP, and the causes of their ends.
#include "framework/time.h"
#include "tests/support/accepting_port.h"
#include "tests/support/log_lines.h"
#include "tests/support/log_shares.h"
#include "tests/support/loopback.h"
#include "tests/support/noting_events.h"
#include "tests/support/passing_door.h"
#include "tests/support/places.h"
#include "tests/support/raw_peer.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <iterator>
#include <stdexcept>

namespace
{

using test::Events;
using test::LogLines;
using test::NoteAnalyser;
using test::NoteCommand;
using test::tickUntil;
using zet::EndCause;
using NotingClient = test::NotingEvents<test::Client>;
using NotingHandle = zet::Unknown::Handle_T<NotingClient>;
using NotingStream = test::NotingEvents<zet::TcpStream>;

// A server whose ends note their events, and one client that does.
class TcpEvents : public testing::Test
{
protected:
    TcpEvents()
    {
        m_Net.m_Server->m_Make = [this]
        {
            m_Accepted = new NotingClient(m_Analyser);
            return test::ClientHandle(m_Accepted);
        };
        m_Client->start(&m_Net.m_System);
    }
    ~TcpEvents() override { m_Client->close(); }

    bool connect()
    {
        return m_Client->connect(L"127.0.0.1", m_Net.m_Server->getPort(), false) &&
               until([this]
                     { return m_Accepted && m_Accepted->m_Events.size() == 1 && m_Client->m_Events.size() == 1; });
    }
    template <class Condition>
    bool until(Condition condition)
    {
        return tickUntil(m_Net.m_System, condition);
    }
    void tick(int ticks = 3)
    {
        for (int i = 0; i < ticks; ++i)
            m_Net.m_System.tick();
    }

    NoteAnalyser m_Analyser;
    test::Loopback m_Net{m_Analyser};
    NotingHandle m_Accepted;
    NotingHandle m_Client = new NotingClient(m_Analyser);
};

TEST_F(TcpEvents, BothSidesAreEstablishedBeforeTheFirstCommand)
{
    size_t eventsThen = 0;
    m_Analyser.m_Handler = [&](CCommandSocket*, const NoteCommand&) { eventsThen = m_Accepted->m_Events.size(); };
    ASSERT_TRUE(m_Client->connect(L"127.0.0.1", m_Net.m_Server->getPort(), false));
    EXPECT_TRUE(m_Client->m_Events.empty());
    ASSERT_TRUE(m_Client->send(NoteCommand(1)));
    ASSERT_TRUE(until([&] { return eventsThen > 0; }));
    EXPECT_EQ(eventsThen, 1u);
    EXPECT_EQ(m_Client->m_Events, (Events{L"established"}));
    EXPECT_FALSE(m_Client->getEndCause());
}

TEST_F(TcpEvents, EachSideGetsItsCauseOnce)
{
    ASSERT_TRUE(connect());
    m_Client->close();
    EXPECT_EQ(m_Client->m_Events, (Events{L"established", L"closed here"}));
    ASSERT_TRUE(until([&] { return m_Accepted->m_Events.size() == 2; }));
    m_Client->close();
    m_Accepted->close();
    tick();
    EXPECT_EQ(m_Accepted->m_Events, (Events{L"established", L"closed by the peer"}));
    EXPECT_EQ(m_Client->m_Events.size(), 2u);
    EXPECT_EQ(m_Client->getEndCause(), (EndCause{EndCause::kClosedHere, 0}));
    EXPECT_EQ(m_Accepted->getEndCause().m_Code, EndCause::kClosedByPeer);
}

TEST_F(TcpEvents, TheHostsNumberReachesTheEvent)
{
    ASSERT_TRUE(connect());
    m_Accepted->closeFor(17);
    EXPECT_EQ(m_Accepted->m_Events, (Events{L"established", L"ended by the host (reason 17)"}));
    EXPECT_EQ(m_Accepted->m_Cause, (EndCause{EndCause::kHost, 17}));
}

TEST_F(TcpEvents, AClosedServerEndsItsConnections)
{
    ASSERT_TRUE(connect());
    m_Net.m_Server->close();
    EXPECT_EQ(m_Accepted->m_Events, (Events{L"established", L"closed here"}));
}

TEST_F(TcpEvents, ADetachedHandleIsAnEnd)
{
    ASSERT_TRUE(connect());
    const unsigned int handle = m_Client->detach();
    EXPECT_EQ(m_Client->m_Events, (Events{L"established", L"its handle was detached"}));
    ASSERT_TRUE(m_Client->attach(handle));
    EXPECT_FALSE(m_Client->getEndCause());
    ASSERT_TRUE(until([&] { return m_Client->m_Events.size() == 3; }));
    EXPECT_EQ(m_Client->m_Events.back(), L"established");
}

TEST_F(TcpEvents, APacketAboveTheLimitIsTheCause)
{
    ASSERT_TRUE(connect());
    m_Accepted->SetPacketLimit(100);
    ASSERT_TRUE(m_Client->send(NoteCommand(1, 1000)));
    ASSERT_TRUE(until([&] { return m_Accepted->m_Events.size() == 2; }));
    EXPECT_EQ(m_Accepted->m_Cause.m_Code, EndCause::kPacketTooLong);
    EXPECT_TRUE(m_Accepted->isInvalid());
}

TEST_F(TcpEvents, AFullQueueIsTheCause)
{
    ASSERT_TRUE(connect());
    m_Client->setOutputLimit(1);
    ASSERT_TRUE(m_Client->send(NoteCommand(1)));
    ASSERT_FALSE(m_Client->send(NoteCommand(2)));
    ASSERT_TRUE(until([&] { return m_Client->m_Events.size() == 2; }));
    EXPECT_EQ(m_Client->m_Cause.m_Code, EndCause::kOutputFull);
}

TEST_F(TcpEvents, AThrowingOverrideIsLoggedAndCostsNothingElse)
{
    const LogLines log;
    ASSERT_TRUE(connect());
    m_Client->m_OnEnd = [] { throw std::runtime_error("mistake"); };
    m_Client->close();
    EXPECT_TRUE(log.has(zet::Log::kError, L"Exception in onEnd(): mistake ()"));
    EXPECT_TRUE(m_Client->isInvalid());
}

TEST_F(TcpEvents, AConnectionMayConnectAnewInItsEnd)
{
    ASSERT_TRUE(connect());
    m_Client->m_OnEnd = [this]
    {
        m_Client->m_OnEnd = nullptr;
        EXPECT_TRUE(m_Client->connect(L"127.0.0.1", m_Net.m_Server->getPort(), false));
    };
    m_Accepted->close();
    ASSERT_TRUE(until([&] { return m_Client->m_Events.size() == 3; }));
    EXPECT_EQ(m_Client->m_Events, (Events{L"established", L"closed by the peer", L"established"}));
    EXPECT_FALSE(m_Client->getEndCause());
}

TEST_F(TcpEvents, TheLastHandleMayGoInTheEnd)
{
    NotingHandle released = new NotingClient(m_Analyser);
    released->start(&m_Net.m_System);
    ASSERT_TRUE(released->connect(L"127.0.0.1", m_Net.m_Server->getPort(), false));
    ASSERT_TRUE(until([&] { return released->m_Events.size() == 1; }));
    int ends = 0;
    released->m_OnEnd = [&]
    {
        ++ends;
        released->stop();
        released = nullptr;
    };
    m_Accepted->close();
    EXPECT_TRUE(until([&] { return ends == 1; }));
    tick();
}

TEST_F(TcpEvents, TheQueueIsReportedWritableOnceItHasFallenToHalfItsMark)
{
    ASSERT_TRUE(connect());
    m_Client->setOutputMark(4000);
    m_Client->setOutputLimit(100000);
    EXPECT_FALSE(m_Client->isOutputHigh());
    ASSERT_TRUE(m_Client->send(NoteCommand(1, 3000)));
    EXPECT_FALSE(m_Client->isOutputHigh());
    ASSERT_TRUE(m_Client->send(NoteCommand(2, 3000)));
    EXPECT_TRUE(m_Client->isOutputHigh());
    ASSERT_TRUE(until([&] { return m_Client->m_Events.size() == 2; }));
    EXPECT_EQ(m_Client->m_Events.back(), L"writable");
    EXPECT_FALSE(m_Client->isOutputHigh());
    // Below the mark there is nothing to report.
    ASSERT_TRUE(m_Client->send(NoteCommand(3, 100)));
    tick();
    EXPECT_EQ(m_Client->m_Events.size(), 2u);
}

TEST_F(TcpEvents, EndsAreCountedByCauseOnThePortAndInTheProcess)
{
    const unsigned long long hostBefore = EndCause::getCount(EndCause::kHost);
    const unsigned long long peerBefore = EndCause::getCount(EndCause::kClosedByPeer);
    ASSERT_TRUE(connect());
    m_Client->closeFor(1);
    ASSERT_TRUE(until([&] { return m_Accepted->m_Events.size() == 2; }));
    EXPECT_EQ(EndCause::getCount(EndCause::kHost), hostBefore + 1);
    EXPECT_EQ(EndCause::getCount(EndCause::kClosedByPeer), peerBefore + 1);
    EXPECT_EQ(m_Net.m_Server->getEndCount(EndCause::kClosedByPeer), 1u);
    EXPECT_EQ(m_Net.m_Server->getEndCount(EndCause::kHost), 0u);
}

TEST_F(TcpEvents, TheLogHasOneLineForEachEnd)
{
    ASSERT_TRUE(connect());
    test::refillLogShares();
    const LogLines log;
    const std::wstring peer = m_Client->getPeerName().getBuffer();
    m_Client->close();
    m_Client->close();
    EXPECT_EQ(log.texts(), (std::vector<std::wstring>{L"Connection with " + peer + L" ended: closed here"}));
}

TEST_F(TcpEvents, TheDestructorReportsNothingButCounts)
{
    ASSERT_TRUE(connect());
    const unsigned long long before = EndCause::getCount(EndCause::kClosedHere);
    Events* const events = &m_Accepted->m_Events;
    const auto peerEnds = [&] { return events->size() == 2; };
    m_Client->stop();
    m_Client = new NotingClient(m_Analyser);
    EXPECT_EQ(EndCause::getCount(EndCause::kClosedHere), before + 1);
    EXPECT_TRUE(until(peerEnds));
}

TEST(TcpConnectCauses, AnUnknownNameReachesTheEnd)
{
    const auto door = std::make_shared<test::PassingDoor>();
    zet::System system;
    system.init();
    ASSERT_TRUE(zet::inner::setDoor(system, door));
    const zet::Unknown::Handle_T<NotingStream> stream = new NotingStream;
    stream->start(&system);
    ASSERT_TRUE(stream->connect(L"nowhere.example", 8000, false));
    test::refillLogShares();
    const LogLines log;
    door->answer({});
    ASSERT_TRUE(tickUntil(system, [&] { return !stream->m_Events.empty(); }));
    EXPECT_EQ(stream->m_Events, (Events{L"the host name has no address"}));
    EXPECT_EQ(stream->getConnectionState(), zet::TcpConnection::kConnectFailed);
    EXPECT_TRUE(log.has(zet::Log::kWarning, L"Connect to nowhere.example:8000 failed: the host name has no address"));
    EXPECT_EQ(log.texts().size(), 1u);
    stream->close();
    EXPECT_EQ(stream->m_Events.size(), 1u);
    system.exit();
}

TEST(TcpConnectCauses, AConnectThatFailsAtOnceHasACauseAndNoEvent)
{
    zet::System system;
    system.init();
    unsigned short port = 0;
    {
        const zet::Unknown::Handle_T<test::AcceptingPort> other = new test::AcceptingPort;
        ASSERT_TRUE(other->listen(0, 1));
        port = other->getPort();
        other->close();
    }
    const zet::Unknown::Handle_T<NotingStream> stream = new NotingStream;
    stream->start(&system);
    EXPECT_FALSE(stream->connect(L"", 80, false));
    EXPECT_EQ(stream->getEndCause().m_Code, EndCause::kBadAddress);
    // On some systems the refusal comes with a later tick.
    const bool isBegun = stream->connect(L"127.0.0.1", port, false);
    ASSERT_TRUE(tickUntil(system, [&] { return stream->getConnectionState() == zet::TcpConnection::kConnectFailed; }));
    EXPECT_EQ(stream->getEndCause().m_Code, EndCause::kRefused);
    system.tick();
    EXPECT_EQ(stream->m_Events.size(), isBegun ? 1u : 0u);
    stream->close();
    system.exit();
}

TEST(TcpListenCauses, EachFailureHasACause)
{
    const LogLines log;
    const zet::Unknown::Handle_T<test::AcceptingPort> first = new test::AcceptingPort;
    EXPECT_FALSE(first->getFault());
    ASSERT_TRUE(first->listen(0, 1));
    EXPECT_FALSE(first->listen(0, 1));
    EXPECT_EQ(first->getFault().m_Code, EndCause::kHeld);
    const zet::Unknown::Handle_T<test::AcceptingPort> second = new test::AcceptingPort;
    EXPECT_FALSE(second->listen(first->getPort(), 1));
    EXPECT_EQ(second->getFault().m_Code, EndCause::kPortInUse);
    EXPECT_EQ(second->getEndCount(EndCause::kPortInUse), 1u);
    ASSERT_TRUE(second->setBindAddress(L"192.0.2.1"));
    EXPECT_FALSE(second->listen(0, 1));
    EXPECT_EQ(second->getFault().m_Code, EndCause::kForeignAddress);
    EXPECT_TRUE(log.has(zet::Log::kError, L"Listen on 192.0.2.1:0 failed: not an address of this machine"));
    first->close();
}

TEST(TcpEndCause, EachCodeHasItsOwnNameAndText)
{
    std::vector<std::string> labels;
    std::vector<std::wstring> texts;
    for (int code = 0; code < EndCause::kCodes; ++code)
    {
        const EndCause cause{static_cast<EndCause::Code>(code), 0};
        labels.emplace_back(EndCause::getLabel(cause.m_Code));
        texts.emplace_back(cause.getText().getBuffer());
        EXPECT_FALSE(labels.back().empty());
        EXPECT_FALSE(texts.back().empty());
        EXPECT_EQ(std::count(labels.begin(), labels.end(), labels.back()), 1) << labels.back();
        EXPECT_EQ(std::count(texts.begin(), texts.end(), texts.back()), 1) << labels.back();
    }
    EXPECT_EQ(std::string(EndCause::getLabel(static_cast<EndCause::Code>(200))), "unknown");
    EXPECT_EQ(sizeof(EndCause), 4u);
}

TEST(TcpEndCause, TheOperatorsPageNamesEachCounter)
{
    std::ifstream file(test::getTestsFolder() + "/../docs/operating.md");
    const std::string page{std::istreambuf_iterator<char>(file), {}};
    for (int code = EndCause::kClosedHere; code < EndCause::kCodes; ++code)
    {
        const std::string label = EndCause::getLabel(static_cast<EndCause::Code>(code));
        EXPECT_NE(page.find("`" + label + "`"), std::string::npos) << label;
    }
}

} // namespace
