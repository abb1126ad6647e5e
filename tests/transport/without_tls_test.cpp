// A library that was built without TLS reports it, and sends nothing unencrypted that should be secret.
#include "net/quic/server.h"
#include "net/tls/context.h"
#include "tests/support/log_lines.h"
#include "tests/support/loopback.h"

#include <gtest/gtest.h>

namespace
{

using test::NoteAnalyser;

TEST(WithoutTls, AContextIsRefusedWithALogLine)
{
    const zet::Unknown::Handle_T<zet::TlsContext> context = new zet::TlsContext;
    EXPECT_FALSE(zet::TlsContext::isAvailable());
    NoteAnalyser analyser;
    test::Loopback net(analyser);
    const test::ClientHandle client = new test::Client(analyser);
    const std::wstring line = L"This library has no TLS";
    for (int i = 0; i < 6; ++i)
    {
        const test::LogLines log;
        switch (i)
        {
        case 0:
            EXPECT_FALSE(net.m_Server->setTlsContext(context));
            break;
        case 1:
            EXPECT_FALSE(client->setTlsContext(context));
            break;
        case 2:
            EXPECT_FALSE(context->addSystemTrust());
            break;
        case 3:
            EXPECT_FALSE(context->reload());
            break;
        case 4:
            EXPECT_FALSE(context->replaceCertificateFiles(L"", L""));
            break;
        default:
            EXPECT_FALSE(context->setCertificate("", ""));
        }
        EXPECT_TRUE(log.has(zet::Log::kError, line)) << i;
    }
    EXPECT_FALSE(net.m_Server->getTlsContext());
    EXPECT_FALSE(client->getTlsContext());
    EXPECT_TRUE(client->setTlsContext(nullptr));
}

TEST(WithoutTls, AUdpPortIsRefusedWithALogLine)
{
    EXPECT_FALSE(zet::UdpServer::isAvailable());
    zet::System system;
    system.init();
    const zet::Unknown::Handle_T<zet::UdpServer> server(new zet::UdpServer);
    ASSERT_TRUE(server->start(&system));
    const test::LogLines log;
    EXPECT_FALSE(server->listen(0));
    EXPECT_EQ(server->getFault().m_Code, zet::EndCause::kUnavailable);
    EXPECT_TRUE(log.has(zet::Log::kError, L"This library has no connections over UDP"));
    server->close();
    system.exit();
}

// What waits for TLS is dropped.
TEST(WithoutTls, NamesAndDelaysAreTaken)
{
    int got = 0;
    NoteAnalyser analyser([&](CCommandSocket*, const test::NoteCommand&) { ++got; });
    test::Loopback net(analyser);
    const test::ClientHandle client = new test::Client(analyser);
    client->setTlsHostName(L"elsewhere.example");
    client->delayTls(true);
    ASSERT_TRUE(client->start(&net.m_System));
    ASSERT_TRUE(client->connect(L"127.0.0.1", net.m_Server->getPort(), true));
    ASSERT_TRUE(client->send(test::NoteCommand(1)));
    EXPECT_TRUE(test::tickUntil(net.m_System, [&] { return got == 1; }));
    EXPECT_FALSE(client->startTls());
}

TEST(WithoutTls, PlainConnectionsStandAsEver)
{
    int got = 0;
    NoteAnalyser analyser([&](CCommandSocket*, const test::NoteCommand&) { ++got; });
    test::Loopback net(analyser);
    const test::ClientHandle client = net.connect(analyser);
    ASSERT_TRUE(client);
    EXPECT_FALSE(client->isSecure());
    ASSERT_TRUE(client->send(test::NoteCommand(1)));
    EXPECT_TRUE(test::tickUntil(net.m_System, [&] { return got == 1; }));
}

} // namespace
