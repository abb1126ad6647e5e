// Resumed sessions.
#include "tests/support/tls_pair.h"

#include <gtest/gtest.h>

#include <atomic>
#include <thread>

namespace
{

using test::ClientHandle;
using test::makeClientContext;
using test::makeServerContext;
using test::NoteAnalyser;
using test::NoteCommand;
using test::someAuthority;
using test::tickUntil;
using test::TlsHandle;
using test::TlsLoopback;

struct Resuming : testing::Test
{
    Resuming() : m_Analyser([this](CCommandSocket*, const NoteCommand&) { ++m_Got; }) {}

    // Connects, exchanges a command, so that the ticket arrives, and closes. Returns whether the session was resumed.
    bool visit(TlsLoopback& net, zet::TlsContext* context, const wchar_t* host = L"127.0.0.1")
    {
        const ClientHandle client = net.connectTls(m_Analyser, context, host);
        EXPECT_TRUE(client);
        if (!client)
            return false;
        const int before = m_Got;
        EXPECT_TRUE(net.accepted()->send(NoteCommand(1)));
        EXPECT_TRUE(tickUntil(net.m_System, [&] { return m_Got == before + 1; }));
        const bool isResumed = client->isResumed();
        EXPECT_EQ(net.accepted()->isResumed(), isResumed);
        EXPECT_EQ(client->getVerifiedName(), L"server.example");
        m_ClientName = net.accepted()->getVerifiedName();
        client->close();
        EXPECT_TRUE(tickUntil(net.m_System, [&] { return net.m_Server->GetClientCount() == 0; }));
        return isResumed;
    }

    int m_Got = 0;
    NoteAnalyser m_Analyser;
    zet::String_T<wchar_t> m_ClientName;
};

TEST_F(Resuming, TheSecondConnectionGoesOnFromTheFirst)
{
    TlsLoopback net(m_Analyser);
    const TlsHandle context = makeClientContext();
    EXPECT_FALSE(visit(net, context));
    for (int i = 0; i < 5; ++i)
        EXPECT_TRUE(visit(net, context)) << i;
}

TEST_F(Resuming, AContextKnowsOnlyItsOwnSessions)
{
    TlsLoopback net(m_Analyser);
    EXPECT_FALSE(visit(net, makeClientContext()));
    EXPECT_FALSE(visit(net, makeClientContext()));
}

TEST_F(Resuming, ASessionBelongsToOnePeerAndOneName)
{
    TlsLoopback one(m_Analyser);
    TlsLoopback other(m_Analyser);
    const TlsHandle context = makeClientContext();
    EXPECT_FALSE(visit(one, context));
    EXPECT_FALSE(visit(one, context, L"localhost"));
    EXPECT_FALSE(visit(other, context));
    EXPECT_TRUE(visit(one, context));
    EXPECT_TRUE(visit(one, context, L"localhost"));
    EXPECT_TRUE(visit(other, context));
}

TEST_F(Resuming, AServerWithNewKeysStartsAnew)
{
    TlsLoopback net(m_Analyser);
    const TlsHandle context = makeClientContext();
    EXPECT_FALSE(visit(net, context));
    ASSERT_TRUE(net.m_Server->setTlsContext(makeServerContext()));
    EXPECT_FALSE(visit(net, context));
    EXPECT_TRUE(visit(net, context));
}

TEST_F(Resuming, TheClientsNameComesAlong)
{
    const TlsHandle wants = makeServerContext();
    ASSERT_TRUE(wants->addTrust(someAuthority().pem().c_str()));
    ASSERT_TRUE(wants->setClientCertificate(zet::TlsContext::kRequired));
    TlsLoopback net(m_Analyser, wants);
    const TlsHandle context = makeClientContext();
    const auto mine = someAuthority().issue({"player 7", {}});
    ASSERT_TRUE(context->setCertificate(mine.m_Chain.c_str(), mine.m_Key.c_str()));
    EXPECT_FALSE(visit(net, context));
    EXPECT_EQ(m_ClientName, L"player 7");
    m_ClientName = L"";
    EXPECT_TRUE(visit(net, context));
    EXPECT_EQ(m_ClientName, L"player 7");
}

TEST_F(Resuming, OneTicketServesOneConnection)
{
    TlsLoopback net(m_Analyser);
    const TlsHandle context = makeClientContext();
    EXPECT_FALSE(visit(net, context));
    const ClientHandle first = net.begin(m_Analyser, context);
    const ClientHandle second = net.begin(m_Analyser, context);
    ASSERT_TRUE(tickUntil(net.m_System, [&] { return first->isSecure() && second->isSecure(); }));
    EXPECT_TRUE(first->isResumed());
    EXPECT_FALSE(second->isResumed());
}

TEST(TlsContext, OneContextServesSystemsOfSeveralThreads)
{
    const TlsHandle server = makeServerContext();
    const TlsHandle client = makeClientContext();
    std::atomic<int> stood{0};
    std::atomic<int> resumed{0};
    const auto work = [&]
    {
        int got = 0;
        NoteAnalyser analyser([&](CCommandSocket*, const NoteCommand&) { ++got; });
        TlsLoopback net(analyser, server);
        for (int i = 0; i < 10; ++i)
        {
            const ClientHandle socket = net.connectTls(analyser, client);
            if (!socket || !net.accepted()->send(NoteCommand(i)) ||
                !tickUntil(net.m_System, [&] { return got == i + 1; }))
                return;
            ++stood;
            resumed += socket->isResumed();
            socket->close();
        }
    };
    std::vector<std::thread> threads;
    for (int i = 0; i < 4; ++i)
        threads.emplace_back(work);
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(stood, 40);
    // Each thread's server has its own port, so each has one full handshake.
    EXPECT_EQ(resumed, 36);
}

} // namespace
