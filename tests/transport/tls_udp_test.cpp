// Authentication over UDP.
#include "tests/support/log_lines.h"
#include "tests/support/tls_certificates.h"
#include "tests/support/udp_test.h"

namespace
{

using test::Authority;
using test::Certificate;
using test::NoteSocket;
using test::NoteSocketHandle;
using Context = zet::Unknown::Handle_T<zet::TlsContext>;

class TlsUdp : public test::UdpTest
{
protected:
    static Context contextOf(const Certificate& certificate, const Authority* trust)
    {
        const Context context = new zet::TlsContext;
        EXPECT_TRUE(certificate.m_Chain.empty() ||
                    context->setCertificate(certificate.m_Chain.c_str(), certificate.m_Key.c_str()));
        EXPECT_TRUE(!trust || context->addTrust(trust->pem().c_str()));
        return context;
    }
    Certificate here() const { return m_Authority.issue({"", {"127.0.0.1", "localhost"}}); }
    // Opens both ports again with these contexts.
    bool listen(const Context& server, const Context& client)
    {
        m_Net.m_Server->close();
        m_Net.m_Server->setTlsContext(server);
        m_Net.m_Port->close();
        m_Net.m_Port->setTlsContext(client);
        return m_Net.m_Server->listen(L"", 0) && m_Net.m_Port->listen(L"", 0);
    }
    bool succeeds(const wchar_t* name)
    {
        const NoteSocketHandle socket = new NoteSocket;
        EXPECT_TRUE(socket->connect(m_Net.m_Port, name, m_Net.m_Server->getPort(), zet::Uuid()));
        EXPECT_TRUE(socket->send(test::NoteCommand(1)));
        const auto has = [&] { return !m_Net.m_Server->m_Accepted.empty() && !m_Net.accepted().m_Numbers.empty(); };
        EXPECT_TRUE(m_Net.until([&] { return has() || socket->m_Closes > 0; }));
        const bool isDone = has();
        m_Net.m_Server->m_Accepted.clear();
        return isDone && socket->m_Closes == 0;
    }

    Authority m_Authority{"Some Authority"};
};

TEST_F(TlsUdp, ATrustedCertificateForTheAddressOrTheNameIsTaken)
{
    ASSERT_TRUE(listen(contextOf(here(), nullptr), contextOf({}, &m_Authority)));
    EXPECT_TRUE(succeeds(L"127.0.0.1"));
    EXPECT_TRUE(succeeds(L"localhost"));
}

TEST_F(TlsUdp, WithoutATrustStoreAnyCertificateIsAccepted)
{
    ASSERT_TRUE(listen(contextOf(m_Authority.issue({"", {"elsewhere.test"}}), nullptr), nullptr));
    EXPECT_TRUE(succeeds(L"127.0.0.1"));
}

TEST_F(TlsUdp, AContextWithoutAuthoritiesServesNoClient)
{
    ASSERT_TRUE(listen(contextOf(here(), nullptr), contextOf(here(), nullptr)));
    const test::LogLines log;
    const NoteSocketHandle socket = new NoteSocket;
    EXPECT_FALSE(socket->connect(m_Net.m_Port, L"127.0.0.1", m_Net.m_Server->getPort(), zet::Uuid()));
    EXPECT_EQ(m_Net.m_Port->getConnectionCount(), 0);
    EXPECT_TRUE(log.has(zet::Log::kError, L"A TLS client needs authorities to hold the server's certificate against"));
}

TEST_F(TlsUdp, ACertificateOfAnotherAuthorityIsRefusedAndTheLogSaysWhy)
{
    const Authority other("Other Authority");
    ASSERT_TRUE(listen(contextOf(here(), nullptr), contextOf({}, &other)));
    const test::LogLines log;
    EXPECT_FALSE(succeeds(L"127.0.0.1"));
    ASSERT_FALSE(log.texts().empty());
    const std::wstring said = log.texts()[0];
    const std::wstring peer = L"127.0.0.1:" + std::to_wstring(m_Net.m_Server->getPort());
    EXPECT_EQ(said.find(L"TLS handshake over UDP with " + peer + L" failed: "), 0u)
        << std::string(said.begin(), said.end());
    EXPECT_NE(said.find(L"issuer is unknown"), std::wstring::npos) << std::string(said.begin(), said.end());
}

TEST_F(TlsUdp, ACertificateForAnotherNameIsRefused)
{
    ASSERT_TRUE(listen(contextOf(m_Authority.issue({"", {"elsewhere.test", "10.0.0.1"}}), nullptr),
                       contextOf({}, &m_Authority)));
    EXPECT_FALSE(succeeds(L"127.0.0.1"));
    EXPECT_FALSE(succeeds(L"localhost"));
}

TEST_F(TlsUdp, ACertificateThatRanOutIsRefused)
{
    ASSERT_TRUE(
        listen(contextOf(m_Authority.issue({"", {"127.0.0.1"}, -7200, -3600}), nullptr), contextOf({}, &m_Authority)));
    EXPECT_FALSE(succeeds(L"127.0.0.1"));
}

TEST_F(TlsUdp, ACertificateThatThePortMadeProvesNoIdentity)
{
    ASSERT_TRUE(listen(nullptr, contextOf({}, &m_Authority)));
    EXPECT_FALSE(succeeds(L"127.0.0.1"));
    ASSERT_TRUE(listen(contextOf({}, &m_Authority), contextOf({}, &m_Authority)));
    EXPECT_FALSE(succeeds(L"127.0.0.1"));
    ASSERT_TRUE(listen(nullptr, nullptr));
    EXPECT_TRUE(succeeds(L"127.0.0.1"));
}

TEST_F(TlsUdp, AServerMayAskForACertificateOfTheClient)
{
    const Authority other("Other Authority");
    for (const auto wanted : {zet::TlsContext::kAsked, zet::TlsContext::kRequired})
    {
        const auto asking = [&]
        {
            const Context context = contextOf(here(), &m_Authority);
            EXPECT_TRUE(context->setClientCertificate(wanted));
            return context;
        };
        ASSERT_TRUE(listen(asking(), contextOf(m_Authority.issue({"player", {}}), &m_Authority)));
        EXPECT_TRUE(succeeds(L"127.0.0.1"));
        ASSERT_TRUE(listen(asking(), contextOf({}, &m_Authority)));
        EXPECT_EQ(succeeds(L"127.0.0.1"), wanted == zet::TlsContext::kAsked);
        ASSERT_TRUE(listen(asking(), contextOf(m_Authority.issue({"player", {}, -7200, -3600}), &m_Authority)));
        EXPECT_FALSE(succeeds(L"127.0.0.1"));
        // A certificate that the server would not accept is not sent.
        ASSERT_TRUE(listen(asking(), contextOf(other.issue({"player", {}}), &m_Authority)));
        EXPECT_EQ(succeeds(L"127.0.0.1"), wanted == zet::TlsContext::kAsked);
    }
}

TEST_F(TlsUdp, AContextInUseIsNotChanged)
{
    const Context context = contextOf(here(), nullptr);
    ASSERT_TRUE(listen(context, nullptr));
    EXPECT_FALSE(context->addTrust(m_Authority.pem().c_str()));
    EXPECT_EQ(m_Net.m_Server->getTlsContext(), context.get());
}

TEST_F(TlsUdp, AReloadedCertificateIsShownToNewConnectionsAndOthersContinue)
{
    const Context context = contextOf(here(), nullptr);
    ASSERT_TRUE(listen(context, contextOf({}, &m_Authority)));
    const NoteSocketHandle before = new NoteSocket;
    ASSERT_TRUE(before->connect(m_Net.m_Port, L"127.0.0.1", m_Net.m_Server->getPort(), zet::Uuid()));
    ASSERT_TRUE(m_Net.until(
        [&] {
            return before->getConnectionState() == UdpClientSocket::kEstablished && !m_Net.m_Server->m_Accepted.empty();
        }));
    const NoteSocketHandle served = m_Net.m_Server->m_Accepted[0];

    // The client does not know who signed the new certificate, so its refusal shows that this one was sent.
    const Certificate renewed = Authority("Other Authority").issue({"", {"127.0.0.1"}});
    ASSERT_TRUE(context->replaceCertificate(renewed.m_Chain.c_str(), renewed.m_Key.c_str()));
    m_Net.m_Server->m_Accepted.clear();
    EXPECT_FALSE(succeeds(L"127.0.0.1"));
    EXPECT_TRUE(before->send(test::NoteCommand(7)));
    EXPECT_TRUE(m_Net.until([&] { return !served->m_Numbers.empty() && served->m_Numbers.back() == 7; }));

    EXPECT_FALSE(context->replaceCertificate(here().m_Chain.c_str(), "no key"));
    EXPECT_FALSE(succeeds(L"127.0.0.1"));
    const Certificate good = here();
    ASSERT_TRUE(context->replaceCertificate(good.m_Chain.c_str(), good.m_Key.c_str()));
    m_Net.m_Server->m_Accepted.clear();
    EXPECT_TRUE(succeeds(L"127.0.0.1"));
    EXPECT_EQ(before->m_Closes, 0);
}

} // namespace
