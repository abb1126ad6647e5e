// The events and causes of net sessions.
#include "framework/time.h"
#include "tests/support/net_pair.h"
#include "tests/support/noting_events.h"
#include "tests/support/raw_peer.h"

#include <gtest/gtest.h>

namespace
{

using test::Events;
using test::tickUntil;
using zet::EndCause;
using Session = test::NotingEvents<test::NotingSession>;
using SessionHandle = zet::Unknown::Handle_T<Session>;

// Notes the cause in the event, too.
class Closing : public Session
{
public:
    using Session::Session;

    void onClosed(const zet::Evt_NetClosed* event) override
    {
        m_CauseOfEvent = event->m_Cause;
        Session::onClosed(event);
    }

    EndCause m_CauseOfEvent;
};

zet::NetAddress addressOf(test::NetPair& net)
{
    return zet::NetAddress(L"127.0.0.1", net.m_Server->getPort());
}

TEST(SessionEvents, EachSideGetsItsCauseOnce)
{
    test::NetPair net;
    ASSERT_TRUE(net.m_IsListening);
    const SessionHandle session = new Session(net.m_Client.get(), &net.m_Notes.m_Analyser);
    ASSERT_TRUE(session->connect(addressOf(net), zet::Uuid()));
    ASSERT_TRUE(tickUntil(net.m_System, [&] { return session->m_Events.size() == 1; }));
    EXPECT_EQ(session->m_Events, (Events{L"established"}));
    net.m_Server->m_Accepted.back()->close();
    EXPECT_EQ(net.m_Server->m_Accepted.back()->getEndCause().m_Code, EndCause::kClosedHere);
    ASSERT_TRUE(tickUntil(net.m_System, [&] { return session->m_Events.size() == 2; }));
    session->close();
    net.m_System.tick();
    EXPECT_EQ(session->m_Events, (Events{L"established", L"closed by the peer"}));
    EXPECT_EQ(session->getEndCause().m_Code, EndCause::kClosedByPeer);
}

TEST(SessionEvents, TheEventOfTheEndHasTheCause)
{
    test::NetPair net;
    const zet::Unknown::Handle_T<Closing> session = new Closing(net.m_Client.get(), &net.m_Notes.m_Analyser);
    ASSERT_TRUE(session->connect(addressOf(net), zet::Uuid()));
    ASSERT_TRUE(tickUntil(net.m_System, [&] { return session->m_Events.size() == 1; }));
    net.m_Server->m_Accepted.back()->close();
    ASSERT_TRUE(tickUntil(net.m_System, [&] { return session->m_Events.size() == 2; }));
    EXPECT_EQ(session->m_CauseOfEvent.m_Code, EndCause::kClosedByPeer);
}

TEST(SessionEvents, APeerWithoutAGreetingTimesOut)
{
    zet::TestClock clock(1700000000, 1000);
    test::NetPair net;
    const zet::Unknown::Handle_T<zet::TcpStream> silent = new zet::TcpStream;
    silent->start(&net.m_System);
    ASSERT_TRUE(silent->connect(L"127.0.0.1", net.m_Server->getPort(), false));
    ASSERT_TRUE(tickUntil(net.m_System, [&] { return net.m_Server->m_Accepted.size() == 1; }));
    clock.advance(zet::NetSession::kGreetingTime);
    ASSERT_TRUE(tickUntil(net.m_System, [&] { return static_cast<bool>(net.m_Server->m_Accepted[0]->getEndCause()); }));
    EXPECT_EQ(net.m_Server->m_Accepted[0]->getEndCause(), (EndCause{EndCause::kTimedOut, EndCause::kGreeting}));
    silent->close();
}

TEST(SessionEvents, AWrongGreetingIsMalformed)
{
    test::NetPair net;
    const zet::Unknown::Handle_T<zet::TcpStream> foreign = new zet::TcpStream;
    foreign->start(&net.m_System);
    ASSERT_TRUE(foreign->connect(L"127.0.0.1", net.m_Server->getPort(), false));
    const unsigned char packet[] = {3, 0, 0, 0, 'G', 'E', 'T'};
    foreign->send(packet, sizeof packet);
    ASSERT_TRUE(
        tickUntil(net.m_System,
                  [&] { return net.m_Server->m_Accepted.size() == 1 && net.m_Server->m_Accepted[0]->getEndCause(); }));
    EXPECT_EQ(net.m_Server->m_Accepted[0]->getEndCause().m_Code, EndCause::kMalformed);
    foreign->close();
}

} // namespace
