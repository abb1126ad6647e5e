// What a program without any log sink prints on standard error after a mistake with TLS, and the causes.
#include "framework/time.h"
#include "tests/support/noting_events.h"
#include "tests/support/standard_error.h"
#include "tests/support/tls_pair.h"

#include <gtest/gtest.h>

namespace
{

using test::Events;
using test::expectIn;
using test::makeClientContext;
using test::makeServerContext;
using test::NoteAnalyser;
using test::someAuthority;
using test::StandardError;
using test::tickUntil;
using test::TlsHandle;
using zet::EndCause;
using NotingClient = test::NotingEvents<test::Client>;
using NotingHandle = zet::Unknown::Handle_T<NotingClient>;

// A client that connects to a TLS server; context null for a plain one.
struct Attempt
{
    Attempt(TlsHandle server, zet::TlsContext* context, const wchar_t* host = L"127.0.0.1")
        : m_Net(m_Analyser, server), m_Client(new NotingClient(m_Analyser))
    {
        m_Net.m_Server->m_Make = [this]
        {
            m_Accepted = new NotingClient(m_Analyser);
            return test::ClientHandle(m_Accepted);
        };
        m_Client->start(&m_Net.m_System);
        EXPECT_TRUE(m_Client->setTlsContext(context));
        EXPECT_TRUE(m_Client->connect(host, m_Net.m_Server->getPort(), false));
    }
    ~Attempt() { m_Client->close(); }
    bool ends()
    {
        return tickUntil(m_Net.m_System,
                         [&] { return m_Client->isInvalid() && m_Accepted && m_Accepted->isInvalid(); });
    }

    NoteAnalyser m_Analyser;
    test::TlsLoopback m_Net;
    NotingHandle m_Client;
    NotingHandle m_Accepted;
};

TEST(TlsMistakes, EachRuleOfACertificateIsACause)
{
    test::CertificateWish forClients{"", {"127.0.0.1"}};
    forClients.m_IsForServers = false;
    const struct
    {
        test::Certificate m_Certificate;
        EndCause::Rule m_Rule;
        const wchar_t* m_Text;
    } cases[] = {
        {someAuthority().issue({"", {"127.0.0.1"}, -7200, -3600}), EndCause::kExpired, L"certificate: expired"},
        {someAuthority().issue({"", {"127.0.0.1"}, 3600, 7200}), EndCause::kNotYetValid, L"certificate: not yet valid"},
        {someAuthority().issue({"", {"10.0.0.1"}}), EndCause::kWrongName, L"certificate: for another host"},
        {someAuthority().issue(forClients), EndCause::kWrongPurpose, L"certificate: for another purpose"},
        {test::Authority("Other").issue({"", {"127.0.0.1"}}), EndCause::kUntrusted,
         L"certificate: not signed by a trusted authority"},
    };
    for (const auto& each : cases)
    {
        StandardError error;
        Attempt attempt(makeServerContext(each.m_Certificate), makeClientContext());
        ASSERT_TRUE(attempt.ends());
        const std::string text = error.text();
        EXPECT_EQ(attempt.m_Client->m_Cause, (EndCause{EndCause::kCertificate, each.m_Rule}));
        EXPECT_EQ(attempt.m_Client->m_Events, (Events{each.m_Text}));
        // The server learns it from the alert.
        EXPECT_EQ(attempt.m_Accepted->m_Cause.m_Code, EndCause::kTls);
        EXPECT_GT(attempt.m_Accepted->m_Cause.m_Detail, 0);
        expectIn(text, " [W] TLS handshake with 127.0.0.1:");
        // One line for each side.
        EXPECT_EQ(text.find(" ended: "), std::string::npos) << text;
    }
}

TEST(TlsMistakes, TheServerSpeaksNoTls)
{
    StandardError error;
    NoteAnalyser analyser;
    test::Loopback net(analyser);
    const NotingHandle client = new NotingClient(analyser);
    client->start(&net.m_System);
    ASSERT_TRUE(client->setTlsContext(makeClientContext()));
    ASSERT_TRUE(client->connect(L"127.0.0.1", net.m_Server->getPort(), false));
    // The server takes the greeting for the length of a packet.
    ASSERT_TRUE(tickUntil(net.m_System, [&] { return !client->m_Events.empty(); }));
    expectIn(error.text(), "ended: the peer announced a packet above the limit\n");
    EXPECT_EQ(client->m_Events.size(), 1u);
    client->close();
}

TEST(TlsMistakes, TheClientSpeaksNoTls)
{
    StandardError error;
    Attempt attempt(makeServerContext(), nullptr);
    ASSERT_TRUE(attempt.m_Client->send(test::NoteCommand(1)));
    ASSERT_TRUE(attempt.ends());
    expectIn(error.text(), " [W] TLS handshake with 127.0.0.1:");
    EXPECT_EQ(attempt.m_Accepted->m_Events, (Events{L"TLS failed"}));
    EXPECT_EQ(attempt.m_Client->m_Events.front(), L"established");
    EXPECT_EQ(attempt.m_Client->m_Events.size(), 2u);
}

TEST(TlsMistakes, FilesAndKeysAreNamed)
{
    StandardError error;
    const TlsHandle context = new zet::TlsContext;
    EXPECT_FALSE(context->setCertificateFiles(L"no-such-file.pem", L"no-such-key.pem"));
    const test::Certificate one = someAuthority().issue({"", {"127.0.0.1"}});
    const test::Certificate other = someAuthority().issue({"", {"127.0.0.1"}});
    EXPECT_FALSE(context->setCertificate(one.m_Chain.c_str(), ""));
    EXPECT_FALSE(context->setCertificate(one.m_Chain.c_str(), other.m_Key.c_str()));
    NoteAnalyser analyser;
    test::Loopback net(analyser);
    EXPECT_FALSE(net.m_Server->setTlsContext(context));
    const std::string text = error.text();
    expectIn(text, " [E] File 'no-such-file.pem' cannot be read for TLS\n");
    expectIn(text, " [E] No TLS certificate: ");
    expectIn(text, " [E] A TLS server needs a certificate\n");
}

TEST(TlsMistakes, AClientWithoutAuthoritiesHasACause)
{
    StandardError error;
    NoteAnalyser analyser;
    test::Loopback net(analyser);
    const NotingHandle client = new NotingClient(analyser);
    client->start(&net.m_System);
    const TlsHandle empty = new zet::TlsContext;
    ASSERT_TRUE(client->setTlsContext(empty));
    EXPECT_FALSE(client->connect(L"127.0.0.1", net.m_Server->getPort(), false));
    const std::string text = error.text();
    expectIn(text, "A TLS client needs authorities");
    expectIn(text, " failed: the TLS context lacks what this side needs\n");
    EXPECT_EQ(client->getEndCause().m_Code, EndCause::kTlsContext);
    EXPECT_TRUE(client->m_Events.empty());
}

TEST(TlsMistakes, EstablishedComesAfterTheHandshakeOnBothSides)
{
    Attempt attempt(makeServerContext(), makeClientContext());
    ASSERT_TRUE(tickUntil(attempt.m_Net.m_System,
                          [&] {
                              return attempt.m_Accepted && attempt.m_Accepted->m_Events.size() == 1 &&
                                     attempt.m_Client->m_Events.size() == 1;
                          }));
    EXPECT_TRUE(attempt.m_Client->isSecure());
    EXPECT_TRUE(attempt.m_Accepted->isSecure());
    attempt.m_Client->close();
    ASSERT_TRUE(attempt.ends());
    EXPECT_EQ(attempt.m_Client->m_Events, (Events{L"established", L"closed here"}));
    EXPECT_EQ(attempt.m_Accepted->m_Events, (Events{L"established", L"closed by the peer"}));
}

TEST(TlsMistakes, AHandshakeThatTakesTooLongTimesOut)
{
    zet::TestClock clock(1700000000, 1000);
    const TlsHandle context = makeServerContext();
    ASSERT_TRUE(context->setHandshakeTime(1000));
    Attempt attempt(context, nullptr);
    ASSERT_TRUE(tickUntil(attempt.m_Net.m_System, [&] { return static_cast<bool>(attempt.m_Accepted); }));
    clock.advance(1000);
    ASSERT_TRUE(attempt.ends());
    EXPECT_EQ(attempt.m_Accepted->m_Cause, (EndCause{EndCause::kTimedOut, EndCause::kHandshake}));
}

} // namespace
