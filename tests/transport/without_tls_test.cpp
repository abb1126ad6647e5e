// A library that was built without TLS reports it, and sends nothing unencrypted that should be secret.
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
    const std::wstring line = L"This library has no TLS: its module zet_Secure cannot be loaded";
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
