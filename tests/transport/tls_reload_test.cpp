// A context that is reloaded while connections use it.
#include "tests/support/log_lines.h"
#include "tests/support/tls_pair.h"

#include <gtest/gtest.h>

#include <atomic>
#include <thread>

namespace
{

using test::Authority;
using test::Certificate;
using test::ClientHandle;
using test::LogLines;
using test::makeClientContext;
using test::makeServerContext;
using test::NoteAnalyser;
using test::NoteCommand;
using test::serverCertificate;
using test::someAuthority;
using test::TextFile;
using test::tickUntil;
using test::TlsHandle;
using test::TlsLoopback;

const Certificate& renewedCertificate()
{
    static const Certificate made = someAuthority().issue({"renewed.example", {"127.0.0.1", "localhost"}});
    return made;
}

// A server whose certificate is in files.
struct Reloading : testing::Test
{
    Reloading() : m_Analyser([this](CCommandSocket*, const NoteCommand& note) { m_Got = note.m_Number; })
    {
        EXPECT_TRUE(m_Context->setCertificateFiles(m_Chain.widePath().c_str(), m_Key.widePath().c_str()));
    }

    void write(const Certificate& certificate) const
    {
        m_Chain.write(certificate.m_Chain);
        m_Key.write(certificate.m_Key);
    }
    // The name that a new connection sees; empty if it fails.
    zet::String_T<wchar_t> seen(TlsLoopback& net, const TlsHandle& context = makeClientContext())
    {
        const ClientHandle client = net.connectTls(m_Analyser, context);
        return client ? client->getVerifiedName() : zet::String_T<wchar_t>();
    }
    // Expects that the reload fails with a line that starts so, and that new connections see the old certificate.
    void expectKept(TlsLoopback& net, const std::wstring& reason)
    {
        const LogLines log;
        EXPECT_FALSE(m_Context->reload());
        const std::vector<std::wstring> lines = log.texts();
        ASSERT_EQ(lines.size(), 2u);
        EXPECT_EQ(lines[0].find(reason), 0u) << std::string(lines[0].begin(), lines[0].end());
        EXPECT_TRUE(log.has(zet::Log::kError, L"A TLS context was not reloaded; it keeps its certificates"));
        EXPECT_EQ(seen(net), L"server.example");
    }

    int m_Got = 0;
    NoteAnalyser m_Analyser;
    const TextFile m_Chain{serverCertificate().m_Chain};
    const TextFile m_Key{serverCertificate().m_Key};
    const TlsHandle m_Context = new zet::TlsContext;
};

TEST_F(Reloading, NewConnectionsSeeTheNewCertificateAndOthersContinue)
{
    TlsLoopback net(m_Analyser, m_Context);
    const ClientHandle before = net.connectTls(m_Analyser, makeClientContext());
    ASSERT_TRUE(before);
    const auto served = net.accepted();
    write(renewedCertificate());
    EXPECT_EQ(seen(net), L"server.example");
    ASSERT_TRUE(m_Context->reload());
    EXPECT_EQ(seen(net), L"renewed.example");
    EXPECT_EQ(before->getVerifiedName(), L"server.example");
    for (const int number : {3, 4})
    {
        EXPECT_TRUE(number == 3 ? before->send(NoteCommand(number)) : served->send(NoteCommand(number)));
        EXPECT_TRUE(tickUntil(net.m_System, [&] { return m_Got == number; }));
    }
}

TEST_F(Reloading, AnInvalidPairIsReportedAndTheOldOneStays)
{
    TlsLoopback net(m_Analyser, m_Context);
    m_Key.write(renewedCertificate().m_Key);
    expectKept(net, L"No TLS certificate: The certificate and the given key do not match.");
    m_Chain.write("");
    expectKept(net, L"No TLS certificate: ");
    write(someAuthority().issue({"late", {"127.0.0.1"}, -7200, -3600}));
    expectKept(net, L"No TLS certificate: it has expired");
    write(someAuthority().issue({"early", {"127.0.0.1"}, 3600, 7200}));
    expectKept(net, L"No TLS certificate: it is not valid yet");
    write(renewedCertificate());
    EXPECT_TRUE(m_Context->reload());
    EXPECT_EQ(seen(net), L"renewed.example");
}

TEST_F(Reloading, AMissingFileIsReportedAndTheOldPairStays)
{
    std::wstring path;
    const TlsHandle context = new zet::TlsContext;
    {
        const TextFile key(serverCertificate().m_Key);
        path = key.widePath();
        ASSERT_TRUE(context->setCertificateFiles(m_Chain.widePath().c_str(), path.c_str()));
    }
    TlsLoopback net(m_Analyser, context);
    const LogLines log;
    EXPECT_FALSE(context->reload());
    EXPECT_TRUE(log.has(zet::Log::kError, L"File '" + path + L"' cannot be read for TLS"));
    EXPECT_EQ(seen(net), L"server.example");
}

TEST_F(Reloading, APairCanBeReplacedByTextsAndByOtherFiles)
{
    TlsLoopback net(m_Analyser, m_Context);
    EXPECT_EQ(seen(net), L"server.example");
    ASSERT_TRUE(
        m_Context->replaceCertificate(renewedCertificate().m_Chain.c_str(), renewedCertificate().m_Key.c_str()));
    EXPECT_EQ(seen(net), L"renewed.example");
    // The files that it had before do not return.
    ASSERT_TRUE(m_Context->reload());
    EXPECT_EQ(seen(net), L"renewed.example");
    ASSERT_TRUE(m_Context->replaceCertificateFiles(m_Chain.widePath().c_str(), m_Key.widePath().c_str()));
    EXPECT_EQ(seen(net), L"server.example");
    const LogLines log;
    EXPECT_FALSE(m_Context->replaceCertificate(nullptr, nullptr));
    EXPECT_FALSE(m_Context->replaceCertificateFiles(nullptr, nullptr));
    EXPECT_EQ(log.texts().size(), 4u);
    write(renewedCertificate());
    ASSERT_TRUE(m_Context->reload());
    EXPECT_EQ(seen(net), L"renewed.example");
}

TEST_F(Reloading, ARevocationListIsReadAgain)
{
    const Certificate mine = someAuthority().issue({"player", {}});
    const TextFile revoked(someAuthority().revoke(serverCertificate()));
    ASSERT_TRUE(m_Context->addTrust(someAuthority().pem().c_str()));
    ASSERT_TRUE(m_Context->addRevocationFile(revoked.widePath().c_str()));
    ASSERT_TRUE(m_Context->setClientCertificate(zet::TlsContext::kRequired));
    TlsLoopback net(m_Analyser, m_Context);
    const TlsHandle context = makeClientContext();
    ASSERT_TRUE(context->setCertificate(mine.m_Chain.c_str(), mine.m_Key.c_str()));
    EXPECT_EQ(seen(net, context), L"server.example");
    revoked.write(someAuthority().revoke(mine));
    ASSERT_TRUE(m_Context->reload());
    const LogLines log;
    const ClientHandle client = net.begin(m_Analyser, context);
    EXPECT_TRUE(tickUntil(net.m_System, [&] { return client->isInvalid() && net.m_Server->m_Abandons == 1; }));
    ASSERT_FALSE(log.texts().empty());
    EXPECT_NE(log.texts()[0].find(L"revoked"), std::wstring::npos);
}

TEST_F(Reloading, AClientTrustsTheNewAuthorities)
{
    const Authority other("Other Authority");
    const TextFile trust(other.pem());
    const TlsHandle context = new zet::TlsContext;
    ASSERT_TRUE(context->addTrustFile(trust.widePath().c_str()));
    TlsLoopback net(m_Analyser, m_Context);
    EXPECT_EQ(seen(net, context), L"");
    trust.write(someAuthority().pem());
    ASSERT_TRUE(context->reload());
    EXPECT_EQ(seen(net, context), L"server.example");
    trust.write("nothing");
    EXPECT_FALSE(context->reload());
    EXPECT_EQ(seen(net, context), L"server.example");
}

TEST_F(Reloading, SessionsFromBeforeAreNotResumed)
{
    TlsLoopback net(m_Analyser, m_Context);
    const TlsHandle context = makeClientContext();
    const auto isResumed = [&]
    {
        const ClientHandle client = net.connectTls(m_Analyser, context);
        m_Got = 0;
        EXPECT_TRUE(client && net.accepted()->send(NoteCommand(1)));
        // With the command the ticket has arrived.
        EXPECT_TRUE(tickUntil(net.m_System, [&] { return m_Got == 1; }));
        return client && client->isResumed();
    };
    EXPECT_FALSE(isResumed());
    EXPECT_TRUE(isResumed());
    write(renewedCertificate());
    ASSERT_TRUE(m_Context->reload());
    EXPECT_FALSE(isResumed());
    EXPECT_TRUE(isResumed());
}

TEST_F(Reloading, OtherThreadsMayConnectMeanwhile)
{
    constexpr int kConnections = 8;
    std::atomic<int> established{0};
    std::atomic<int> reloads{0};
    const auto connect = [&]
    {
        NoteAnalyser analyser;
        TlsLoopback net(analyser, m_Context);
        const TlsHandle context = makeClientContext();
        for (int i = 0; i < kConnections; ++i)
            established += net.connectTls(analyser, context) != nullptr;
    };
    std::thread one(connect);
    std::thread other(connect);
    while (established < 2 * kConnections && reloads < 10000)
        reloads += m_Context->reload();
    one.join();
    other.join();
    EXPECT_EQ(established, 2 * kConnections);
    EXPECT_GT(reloads, 0);
}

TEST(TlsReload, AContextThatIsNotUsedYetCanBeReloadedAndThenSetUp)
{
    const TextFile chain(serverCertificate().m_Chain);
    const TextFile key(serverCertificate().m_Key);
    const TlsHandle context = new zet::TlsContext;
    EXPECT_TRUE(context->reload());
    EXPECT_FALSE(context->hasCertificate());
    ASSERT_TRUE(context->setCertificateFiles(chain.widePath().c_str(), key.widePath().c_str()));
    EXPECT_TRUE(context->reload());
    EXPECT_TRUE(context->hasCertificate());
    EXPECT_FALSE(context->hasTrust());
    EXPECT_TRUE(context->addTrust(someAuthority().pem().c_str()));
    EXPECT_TRUE(context->reload());
    EXPECT_TRUE(context->hasTrust());
}

} // namespace
