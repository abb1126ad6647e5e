#include "transport/net_session.h"

#include "framework/class_id.h"
#include "framework/time.h"
#include "tests/support/log_lines.h"
#include "tests/support/net_pair.h"

#include <gtest/gtest.h>

#include <cstring>
#include <stdexcept>

namespace
{

using test::NetNotes;
using test::NetPair;
using test::NoteCommand;
using test::NotingHandle;
using test::tickUntil;
using zet::NetSession;

zet::Uuid someId(unsigned int number)
{
    zet::Uuid id;
    id.m_Data1 = number;
    id.m_Node.m_Node[2] = 7;
    return id;
}

// A host's own message.
class Greeting : public zet::Message
{
public:
    static unsigned long getClassId_() { return zet::classIdOf(L"TestGreeting"); }
    static zet::Unknown* make() { return new Greeting; }
    const wchar_t* getClassName() const override { return L"TestGreeting"; }
    bool importFrom(zet::InputStream& stream) override
    {
        stream >> m_Bytes;
        return true;
    }
    bool exportTo(zet::OutputStream& stream) const override
    {
        if (m_Refuses)
            throw std::runtime_error("refused");
        stream << m_Bytes;
        return true;
    }

    zet::Buffer m_Bytes;
    bool m_Refuses = false;
};

// Handles the messages of a session.
struct Listener
{
    explicit Listener(NetSession& session)
    {
        session.getMessageDispenser().addMessageHandler(zet::MessageHandler(this, &Listener::onGreeting));
    }
    void onGreeting(Greeting* greeting)
    {
        m_Sizes.push_back(greeting->m_Bytes.getBufferSize());
        if (m_OnGreeting)
            m_OnGreeting();
    }

    std::vector<int> m_Sizes;
    std::function<void()> m_OnGreeting;
};

TEST(NetSession, IsEstablishedOnBothSidesUnderTheIdThatConnectWasGiven)
{
    NetPair net;
    ASSERT_TRUE(net.m_IsListening);
    const NotingHandle session = net.connect(someId(5));
    ASSERT_TRUE(session);
    EXPECT_EQ(session->m_Notes, "o");
    EXPECT_EQ(net.accepted()->m_Notes, "o");
    EXPECT_EQ(net.accepted()->getState(), NetSession::kEstablished);
    EXPECT_TRUE(session->getConnectionId() == someId(5));
    EXPECT_TRUE(net.accepted()->getConnectionId() == someId(5));
    EXPECT_TRUE(session->getPeerName() == net.address().convertToString());
}

TEST(NetSession, AcceptsNothingWithNothingPending)
{
    NetPair net;
    EXPECT_FALSE(net.make()->accept());
    const NotingHandle session = new test::NotingSession(net.m_Server, nullptr);
    EXPECT_FALSE(session->accept());
    EXPECT_EQ(session->getState(), NetSession::kDown);
}

TEST(NetSession, AnUnacceptedPeerStaysPending)
{
    NetPair net;
    const auto module = zet::NetModule::createInstance();
    module->start(&net.m_System);
    ASSERT_TRUE(module->listen(0, 10));
    const NotingHandle session = net.make();
    ASSERT_TRUE(session->connect(zet::NetAddress(L"127.0.0.1", module->getPort()), someId(1)));
    for (int i = 0; i < 20; ++i)
        net.m_System.tick();
    EXPECT_EQ(session->getState(), NetSession::kConnecting);
    const NotingHandle other = new test::NotingSession(module, nullptr);
    ASSERT_TRUE(other->accept());
    EXPECT_FALSE(other->accept());
    EXPECT_TRUE(tickUntil(net.m_System, [&] { return session->m_Notes == "o" && other->m_Notes == "o"; }));
    module->close();
}

TEST(NetSession, ConnectIsFalseWithoutAModuleASystemOrAnAddress)
{
    NetPair net;
    const NotingHandle homeless = new test::NotingSession(nullptr, nullptr);
    EXPECT_FALSE(homeless->connect(net.address(), someId(1)));
    EXPECT_FALSE(homeless->accept());
    const auto idle = zet::NetModule::createInstance();
    const NotingHandle unstarted = new test::NotingSession(idle, nullptr);
    EXPECT_FALSE(unstarted->connect(net.address(), someId(1)));
    const NotingHandle session = net.make();
    EXPECT_FALSE(session->connect(zet::NetAddress(), someId(1)));
    EXPECT_EQ(session->getState(), NetSession::kDown);
    // It may try again.
    EXPECT_TRUE(session->connect(net.address(), someId(1)));
    EXPECT_FALSE(session->connect(net.address(), someId(2)));
    EXPECT_TRUE(session->getConnectionId() == someId(1));
    EXPECT_EQ(session->m_Notes, "");
}

TEST(NetSession, ASessionIdIsMadeWithEachSession)
{
    NetPair net;
    const auto one = CNetSession::createInstance(net.m_Client, &net.m_Notes.m_Analyser);
    const auto two = CNetSession::createInstance(net.m_Client, nullptr);
    EXPECT_FALSE(one->getSessionId().isNull());
    EXPECT_FALSE(one->getSessionId() == two->getSessionId());
    EXPECT_EQ(one->getCmdAnalyser(), &net.m_Notes.m_Analyser);
    EXPECT_GT(zet::String_T<wchar_t>(one->getClassTimestamp()).getLength(), 0);
}

TEST(NetSession, ACommandReachesTheFarSideFromTheSessionThere)
{
    NetPair net;
    const NotingHandle session = net.connect(someId(5));
    ASSERT_TRUE(session);
    int calls = 0;
    NetNotes::s_Handler = [&](unsigned long arg1, unsigned long arg2, const NoteCommand& note)
    {
        ++calls;
        EXPECT_EQ(note.m_Number, 42);
        EXPECT_EQ(note.m_Ballast, 100);
        // Whatever the frame said.
        EXPECT_TRUE(note.GetFromAddress() == net.accepted()->getSessionId());
        EXPECT_TRUE(note.GetTargetAddress() == someId(9));
        EXPECT_EQ(CNetSession::ofArgument(arg1), net.accepted().get());
        EXPECT_EQ(CNetSession::ofArgument(arg1 + 1), nullptr);
        EXPECT_EQ(arg2, 0UL);
    };
    NoteCommand note(42, 100);
    note.SetAddress(someId(8), someId(9));
    ASSERT_TRUE(session->sendNetCommand(&note));
    ASSERT_TRUE(tickUntil(net.m_System, [&] { return calls == 1; }));
    EXPECT_EQ(CNetSession::ofArgument(0), nullptr);
}

TEST(NetSession, AHandlerAnswersThroughItsSession)
{
    NetPair net;
    const NotingHandle session = net.connect();
    ASSERT_TRUE(session);
    int last = 0;
    NetNotes::s_Handler = [&](unsigned long arg1, unsigned long, const NoteCommand& note)
    {
        last = note.m_Number;
        NoteCommand answer(last + 1);
        if (last < 10)
        {
            EXPECT_TRUE(CNetSession::ofArgument(arg1)->sendNetCommand(&answer));
        }
    };
    NoteCommand first(1);
    ASSERT_TRUE(session->sendNetCommand(&first));
    EXPECT_TRUE(tickUntil(net.m_System, [&] { return last == 10; }));
}

TEST(NetSession, NothingToSendIsNotSent)
{
    NetPair net;
    const NotingHandle session = net.connect();
    ASSERT_TRUE(session);
    EXPECT_FALSE(session->sendNetCommand(static_cast<CCmdHead*>(nullptr)));
    EXPECT_FALSE(session->sendNetCommand(static_cast<CCmdPackager*>(nullptr)));
    EXPECT_FALSE(session->send(nullptr));
    class Unwritten : public NoteCommand
    {
        bool Write(CCmdPackager*) const override { return false; }
    };
    Unwritten unwritten;
    EXPECT_FALSE(session->sendNetCommand(&unwritten));
    EXPECT_EQ(session->getState(), NetSession::kEstablished);
}

TEST(NetSession, SendIsFalseBeforeAndAfterTheConnection)
{
    NetPair net;
    const NotingHandle session = net.make();
    NoteCommand note(1);
    EXPECT_FALSE(session->sendNetCommand(&note));
    ASSERT_TRUE(session->connect(net.address(), someId(1)));
    EXPECT_FALSE(session->sendNetCommand(&note));
    ASSERT_TRUE(tickUntil(net.m_System, [&] { return session->getState() == NetSession::kEstablished; }));
    EXPECT_TRUE(session->sendNetCommand(&note));
    session->close();
    EXPECT_FALSE(session->sendNetCommand(&note));
    EXPECT_EQ(session->getState(), NetSession::kDown);
    EXPECT_TRUE(session->getPeerName().isEmpty());
}

TEST(NetSession, WhatWasSentBeforeCloseArrives)
{
    NetPair net;
    const NotingHandle session = net.connect();
    ASSERT_TRUE(session);
    int calls = 0;
    NetNotes::s_Handler = [&](unsigned long, unsigned long, const NoteCommand&) { ++calls; };
    NoteCommand note(1, 1000);
    for (int i = 0; i < 3; ++i)
        ASSERT_TRUE(session->sendNetCommand(&note));
    session->close();
    EXPECT_TRUE(tickUntil(net.m_System, [&] { return net.accepted()->m_Notes == "ocx"; }));
    EXPECT_EQ(calls, 3);
}

TEST(NetSession, IsDownForTheHandlerOfItsEnd)
{
    NetPair net;
    const NotingHandle session = net.connect();
    ASSERT_TRUE(session);
    net.accepted()->close();
    ASSERT_TRUE(tickUntil(net.m_System, [&] { return session->m_Notes == "ocx"; }));
    EXPECT_EQ(session->m_StateAtEnd, NetSession::kDown);
}

TEST(NetSession, AfterOnClosedItIsClosedByTheVirtualOperationOnce)
{
    NetPair net;
    const NotingHandle session = net.connect();
    ASSERT_TRUE(session);
    net.accepted()->close();
    EXPECT_EQ(net.accepted()->m_Notes, "ox");
    ASSERT_TRUE(tickUntil(net.m_System, [&] { return session->getState() == NetSession::kDown; }));
    for (int i = 0; i < 5; ++i)
        net.m_System.tick();
    EXPECT_EQ(session->m_Notes, "ocx");
    // Neither session has left a task.
    EXPECT_EQ(net.m_System.getTaskCount(), 2);
}

TEST(NetSession, AClosedOneMayConnectAgainAlsoFromItsEvent)
{
    NetPair net;
    const NotingHandle session = net.connect(someId(1));
    ASSERT_TRUE(session);
    session->m_OnClosed = [&] { EXPECT_TRUE(session->connect(net.address(), someId(2))); };
    net.accepted()->close();
    ASSERT_TRUE(tickUntil(net.m_System, [&] { return session->m_Notes == "ocxo"; }));
    EXPECT_TRUE(net.accepted()->getConnectionId() == someId(2));
    NoteCommand note(1);
    EXPECT_TRUE(session->sendNetCommand(&note));
}

TEST(NetSession, ABareOneEndsWithoutSubscribers)
{
    NetPair net;
    const auto session = NetSession::createInstance(net.m_Client);
    ASSERT_TRUE(session->connect(net.address(), someId(3)));
    ASSERT_TRUE(tickUntil(net.m_System, [&] { return session->getState() == NetSession::kEstablished; }));
    net.accepted()->close();
    EXPECT_TRUE(tickUntil(net.m_System, [&] { return session->getState() == NetSession::kDown; }));
}

TEST(NetSession, TheLastHandleMayGoFromAHandler)
{
    NetPair net;
    NotingHandle session = net.connect();
    ASSERT_TRUE(session);
    int calls = 0;
    NetNotes::s_Handler = [&](unsigned long, unsigned long, const NoteCommand&)
    {
        ++calls;
        net.m_Server->m_Accepted.clear();
    };
    NoteCommand note(1);
    ASSERT_TRUE(session->sendNetCommand(&note));
    ASSERT_TRUE(session->sendNetCommand(&note));
    // The session lives until its message is handled; the second message has no session.
    ASSERT_TRUE(tickUntil(net.m_System, [&] { return session->m_Notes == "ocx"; }));
    EXPECT_EQ(calls, 1);
    session = nullptr;
    EXPECT_EQ(net.m_System.getTaskCount(), 2);
}

TEST(NetSession, TheLastHandleMayGoFromAnEvent)
{
    NetPair net;
    NotingHandle session = net.make();
    session->m_OnOk = [&] { session = nullptr; };
    ASSERT_TRUE(session->connect(net.address(), someId(1)));
    ASSERT_TRUE(tickUntil(net.m_System, [&] { return !session && net.accepted()->m_Notes == "ocx"; }));
    session = net.connect();
    session->m_OnClosed = [&] { session = nullptr; };
    net.accepted()->close();
    EXPECT_TRUE(tickUntil(net.m_System, [&] { return !session; }));
}

TEST(NetSession, AHandlerThatClosesGetsNoFurtherMessage)
{
    const zet::RtRegistration registered(L"TestGreeting", &Greeting::make);
    NetPair net;
    const NotingHandle session = net.connect();
    ASSERT_TRUE(session);
    Listener listener(*net.accepted());
    listener.m_OnGreeting = [&] { net.accepted()->close(); };
    Greeting greeting;
    greeting.addRef();
    for (int i = 0; i < 3; ++i)
        ASSERT_TRUE(session->send(&greeting));
    ASSERT_TRUE(tickUntil(net.m_System, [&] { return session->getState() == NetSession::kDown; }));
    EXPECT_EQ(listener.m_Sizes.size(), 1U);
}

TEST(NetSession, AMessageOfTheHostsOwnReachesItsSubscriber)
{
    const zet::RtRegistration registered(L"TestGreeting", &Greeting::make);
    NetPair net;
    const NotingHandle session = net.connect();
    ASSERT_TRUE(session);
    Listener listener(*net.accepted());
    Greeting greeting;
    greeting.addRef();
    for (const int size : {0, 1, 70000, 3000000})
    {
        greeting.m_Bytes.setBufferSize(size);
        ASSERT_TRUE(session->send(&greeting));
    }
    ASSERT_TRUE(tickUntil(net.m_System, [&] { return listener.m_Sizes.size() == 4; }));
    EXPECT_EQ(listener.m_Sizes, std::vector<int>({0, 1, 70000, 3000000}));
}

TEST(NetSession, AMessageThatDoesNotWriteItselfIsNotSent)
{
    const zet::RtRegistration registered(L"TestGreeting", &Greeting::make);
    NetPair net;
    const NotingHandle session = net.connect();
    ASSERT_TRUE(session);
    Listener listener(*net.accepted());
    Greeting greeting;
    greeting.addRef();
    greeting.m_Refuses = true;
    EXPECT_FALSE(session->send(&greeting));
    greeting.m_Refuses = false;
    EXPECT_TRUE(session->send(&greeting));
    EXPECT_TRUE(tickUntil(net.m_System, [&] { return listener.m_Sizes.size() == 1; }));
}

TEST(NetSession, AMessageAboveTheLimitIsNotSentAndCostsNoConnection)
{
    const zet::RtRegistration registered(L"TestGreeting", &Greeting::make);
    NetPair net;
    // Class name and two counts take 15 bytes before the 100.
    net.m_Client->setMessageLimit(115);
    const NotingHandle session = net.connect();
    ASSERT_TRUE(session);
    Listener listener(*net.accepted());
    Greeting greeting;
    greeting.addRef();
    greeting.m_Bytes.setBufferSize(102);
    EXPECT_FALSE(session->send(&greeting));
    greeting.m_Bytes.setBufferSize(101);
    EXPECT_TRUE(session->send(&greeting));
    EXPECT_TRUE(tickUntil(net.m_System, [&] { return listener.m_Sizes.size() == 1; }));
    EXPECT_EQ(session->getState(), NetSession::kEstablished);
}

TEST(NetSession, AMessageAboveTheReceiversLimitEndsTheSession)
{
    const zet::RtRegistration registered(L"TestGreeting", &Greeting::make);
    NetPair net;
    net.m_Server->setMessageLimit(1000);
    const NotingHandle session = net.connect();
    ASSERT_TRUE(session);
    Greeting greeting;
    greeting.addRef();
    greeting.m_Bytes.setBufferSize(1000);
    ASSERT_TRUE(session->send(&greeting));
    EXPECT_TRUE(tickUntil(net.m_System, [&] { return net.accepted()->m_Notes == "oex"; }));
}

TEST(NetSession, WhatAMessageHandlerThrowsIsLoggedAndTheSessionGoesOn)
{
    const zet::RtRegistration registered(L"TestGreeting", &Greeting::make);
    NetPair net;
    const NotingHandle session = net.connect();
    ASSERT_TRUE(session);
    Listener listener(*net.accepted());
    listener.m_OnGreeting = [] { throw std::runtime_error("handler"); };
    const test::LogLines lines;
    Greeting greeting;
    greeting.addRef();
    ASSERT_TRUE(session->send(&greeting));
    ASSERT_TRUE(session->send(&greeting));
    ASSERT_TRUE(tickUntil(net.m_System, [&] { return listener.m_Sizes.size() == 2; }));
    EXPECT_EQ(net.accepted()->getState(), NetSession::kEstablished);
    EXPECT_EQ(lines.texts().size(), 2U);
}

TEST(NetSession, WhatAnEventHandlerThrowsEndsTheSessionAllTheSame)
{
    NetPair net;
    const NotingHandle session = net.connect();
    ASSERT_TRUE(session);
    session->m_OnClosed = [] { throw std::runtime_error("handler"); };
    net.accepted()->close();
    EXPECT_TRUE(tickUntil(net.m_System, [&] { return session->m_Notes == "ocx"; }));
    EXPECT_EQ(session->getState(), NetSession::kDown);
}

TEST(NetSession, APeerThatTakesNothingLosesItsSessionAtTheOutputLimit)
{
    const zet::RtRegistration registered(L"TestGreeting", &Greeting::make);
    NetPair net;
    net.m_Client->setOutputLimit(100000);
    const NotingHandle session = net.connect();
    ASSERT_TRUE(session);
    Greeting greeting;
    greeting.addRef();
    greeting.m_Bytes.setBufferSize(1 << 20);
    // Nothing ticks, so nothing is received.
    int sent = 0;
    while (sent < 100 && session->send(&greeting))
        ++sent;
    EXPECT_LT(sent, 100);
    EXPECT_FALSE(session->send(&greeting));
    EXPECT_TRUE(tickUntil(net.m_System, [&] { return session->m_Notes == "oex"; }));
}

TEST(NetSession, AGreetingThatNeverComesFailsInItsTime)
{
    NetPair net;
    const auto module = zet::NetModule::createInstance();
    module->start(&net.m_System);
    ASSERT_TRUE(module->listen(0, 10));
    zet::TestClock clock(0, 0xFFFFFFF0);
    const NotingHandle session = net.make();
    ASSERT_TRUE(session->connect(zet::NetAddress(L"127.0.0.1", module->getPort()), someId(1)));
    for (int i = 0; i < 5; ++i)
        net.m_System.tick();
    clock.advance(NetSession::kGreetingTime - 1);
    net.m_System.tick();
    EXPECT_EQ(session->m_Notes, "");
    clock.advance(1);
    net.m_System.tick();
    EXPECT_EQ(session->m_Notes, "fx");
    EXPECT_EQ(session->getState(), NetSession::kDown);
    module->close();
}

TEST(NetSession, AnEstablishedOneOutlastsTheGreetingTime)
{
    NetPair net;
    zet::TestClock clock(0, 0xFFFFFFF0);
    const NotingHandle session = net.connect();
    ASSERT_TRUE(session);
    clock.advance(NetSession::kGreetingTime * 3);
    for (int i = 0; i < 5; ++i)
        net.m_System.tick();
    EXPECT_EQ(session->m_Notes, "o");
    EXPECT_EQ(net.accepted()->m_Notes, "o");
}

} // namespace
