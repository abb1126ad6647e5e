// Peers and contexts that TLS refuses, without effect on others.
#include "framework/time.h"
#include "tests/support/log_lines.h"
#include "tests/support/log_shares.h"
#include "tests/support/raw_peer.h"
#include "tests/support/tls_pair.h"

#include <gtest/gtest.h>

namespace
{

using test::Authority;
using test::ClientHandle;
using test::LogLines;
using test::makeClientContext;
using test::makeServerContext;
using test::NoteAnalyser;
using test::NoteCommand;
using test::RawPeer;
using test::serverCertificate;
using test::someAuthority;
using test::tickUntil;
using test::TlsHandle;
using test::TlsLoopback;

// The log lines about handshakes.
std::wstring failures(const LogLines& log)
{
    std::wstring all;
    for (const std::wstring& text : log.texts())
        if (text.find(L"TLS handshake with ") == 0)
            all += text.substr(text.find(L" failed: ") + 9) + L"\n";
    return all;
}

// Expects that client and server end the connection, and that the server still serves others.
struct Refusal
{
    explicit Refusal(TlsHandle server) : m_Net(m_Analyser, server) {}

    std::wstring of(zet::TlsContext* context, const wchar_t* host = L"127.0.0.1")
    {
        const LogLines log;
        const ClientHandle client = m_Net.begin(m_Analyser, context, host);
        EXPECT_TRUE(m_Net.m_IsBegun);
        EXPECT_TRUE(tickUntil(m_Net.m_System,
                              [&] { return client->isInvalid() && m_Net.m_Server->m_Abandons == m_Refused + 1; }));
        ++m_Refused;
        EXPECT_EQ(m_Net.m_Server->GetClientCount(), 0);
        return failures(log);
    }

    NoteAnalyser m_Analyser;
    TlsLoopback m_Net;
    int m_Refused = 0;
};

// These tests read single lines, whatever the tests before them have logged.
class TlsRefusal : public testing::Test
{
protected:
    void SetUp() override { test::refillLogShares(); }
};

TEST_F(TlsRefusal, AnotherHostsCertificateIsRefused)
{
    Refusal refusal(makeServerContext(someAuthority().issue({"somewhere", {"somewhere.example", "10.0.0.1"}})));
    const std::wstring why = refusal.of(makeClientContext());
    EXPECT_NE(why.find(L"The name in the certificate does not match the expected."), std::wstring::npos);
    EXPECT_NE(refusal.of(makeClientContext(), L"localhost").find(L"does not match"), std::wstring::npos);
}

TEST_F(TlsRefusal, ACertificateThatHasRunOutIsRefused)
{
    Refusal refusal(makeServerContext(someAuthority().issue({"", {"127.0.0.1"}, -7200, -3600})));
    EXPECT_NE(refusal.of(makeClientContext()).find(L"expired"), std::wstring::npos);
}

TEST_F(TlsRefusal, ACertificateThatIsNotYetGoodIsRefused)
{
    Refusal refusal(makeServerContext(someAuthority().issue({"", {"127.0.0.1"}, 3600, 7200})));
    EXPECT_NE(refusal.of(makeClientContext()).find(L"not yet"), std::wstring::npos);
}

TEST_F(TlsRefusal, AnUnknownAuthorityIsRefused)
{
    const Authority other("Other Authority");
    Refusal refusal(makeServerContext());
    EXPECT_NE(refusal.of(makeClientContext(other)).find(L"issuer is unknown"), std::wstring::npos);
    // The name alone does not make an authority.
    const Authority pretender("Some Authority");
    EXPECT_NE(refusal.of(makeClientContext(pretender)).find(L"signature"), std::wstring::npos);
}

TEST_F(TlsRefusal, AServersCertificateForClientsOnlyIsRefused)
{
    test::CertificateWish wish{"", {"127.0.0.1"}};
    wish.m_IsForServers = false;
    Refusal refusal(makeServerContext(someAuthority().issue(wish)));
    EXPECT_NE(refusal.of(makeClientContext()).find(L"intended purpose"), std::wstring::npos);
}

TEST_F(TlsRefusal, AShortRsaKeyIsRefused)
{
    test::CertificateWish wish{"", {"127.0.0.1"}};
    wish.m_RsaBits = 1024;
    Refusal refusal(makeServerContext(someAuthority().issue(wish)));
    EXPECT_NE(refusal.of(makeClientContext()).find(L"insecure"), std::wstring::npos);
    wish.m_RsaBits = 2048;
    NoteAnalyser analyser;
    TlsLoopback net(analyser, makeServerContext(someAuthority().issue(wish)));
    EXPECT_TRUE(net.connectTls(analyser, makeClientContext()));
}

TEST_F(TlsRefusal, AHostNamedInTheSubjectAloneIsRefused)
{
    Refusal refusal(makeServerContext(someAuthority().issue({"localhost", {}})));
    EXPECT_NE(refusal.of(makeClientContext(), L"localhost").find(L"names no host"), std::wstring::npos);
}

TEST_F(TlsRefusal, ARevokedCertificateIsRefused)
{
    const auto revoked = someAuthority().issue({"", {"127.0.0.1"}});
    const TlsHandle knows = makeClientContext();
    ASSERT_TRUE(knows->addRevocations(someAuthority().revoke(revoked).c_str()));
    Refusal refusal(makeServerContext(revoked));
    EXPECT_NE(refusal.of(knows).find(L"revoked"), std::wstring::npos);
    // Another certificate of the same authority is still valid, and so is this one without a revocation list.
    NoteAnalyser analyser;
    TlsLoopback other(analyser);
    EXPECT_TRUE(other.connectTls(analyser, knows));
    TlsLoopback unlisted(analyser, makeServerContext(revoked));
    EXPECT_TRUE(unlisted.connectTls(analyser, makeClientContext()));
}

TEST_F(TlsRefusal, ARevokedClientIsRefused)
{
    const auto revoked = someAuthority().issue({"player 7", {}});
    const test::TextFile list(someAuthority().revoke(revoked));
    const TlsHandle wants = makeServerContext();
    ASSERT_TRUE(wants->addTrust(someAuthority().pem().c_str()));
    ASSERT_TRUE(wants->addRevocationFile(list.widePath().c_str()));
    ASSERT_TRUE(wants->setClientCertificate(zet::TlsContext::kRequired));
    Refusal refusal(wants);
    const TlsHandle shows = makeClientContext();
    ASSERT_TRUE(shows->setCertificate(revoked.m_Chain.c_str(), revoked.m_Key.c_str()));
    EXPECT_NE(refusal.of(shows).find(L"revoked"), std::wstring::npos);
}

TEST_F(TlsRefusal, AnInvalidRevocationListIsRefused)
{
    const LogLines log;
    const TlsHandle context = makeClientContext();
    EXPECT_FALSE(context->addRevocations(nullptr));
    EXPECT_FALSE(context->addRevocations(someAuthority().pem().c_str()));
    EXPECT_FALSE(context->addRevocationFile(L"no such file"));
    EXPECT_EQ(log.texts().size(), 3u);
}

TEST_F(TlsRefusal, AClientWithoutTheRequiredCertificateIsRefused)
{
    const TlsHandle wants = makeServerContext();
    ASSERT_TRUE(wants->addTrust(someAuthority().pem().c_str()));
    ASSERT_TRUE(wants->setClientCertificate(zet::TlsContext::kRequired));
    Refusal refusal(wants);
    EXPECT_FALSE(refusal.of(makeClientContext()).empty());
    // An authority with the right name but another key; for another name, the client does not send its certificate.
    const Authority other("Some Authority");
    const auto foreign = other.issue({"player 8", {}});
    const TlsHandle shows = makeClientContext();
    ASSERT_TRUE(shows->setCertificate(foreign.m_Chain.c_str(), foreign.m_Key.c_str()));
    EXPECT_NE(refusal.of(shows).find(L"signature"), std::wstring::npos);
    const auto expired = someAuthority().issue({"player 9", {}, -7200, -3600});
    const TlsHandle late = makeClientContext();
    ASSERT_TRUE(late->setCertificate(expired.m_Chain.c_str(), expired.m_Key.c_str()));
    EXPECT_NE(refusal.of(late).find(L"expired"), std::wstring::npos);
}

TEST_F(TlsRefusal, APlainPeerOnATlsPortIsRefusedAndTheServerGoesOn)
{
    int got = 0;
    NoteAnalyser analyser([&](CCommandSocket*, const NoteCommand&) { ++got; });
    TlsLoopback net(analyser);
    {
        const LogLines log;
        RawPeer peer(net);
        ASSERT_TRUE(peer.m_IsUp);
        ASSERT_TRUE(peer.send(test::packetOf(NoteCommand(1, 100))));
        ASSERT_TRUE(tickUntil(net.m_System, [&] { return net.m_Server->m_Abandons == 1; }));
        EXPECT_FALSE(failures(log).empty());
        ASSERT_TRUE(tickUntil(net.m_System,
                              [&]
                              {
                                  unsigned char piece[100];
                                  while (peer.m_Stream->read(piece, sizeof piece) > 0)
                                      continue;
                                  return peer.m_Stream->getConnectionState() == zet::TcpConnection::kClosedByPeer;
                              }));
    }
    EXPECT_EQ(got, 0);
    const ClientHandle good = net.connectTls(analyser, makeClientContext());
    ASSERT_TRUE(good);
    ASSERT_TRUE(good->send(NoteCommand(2)));
    ASSERT_TRUE(tickUntil(net.m_System, [&] { return got == 1; }));
}

TEST_F(TlsRefusal, APlainCommandSocketOnATlsPortIsRefused)
{
    NoteAnalyser analyser;
    TlsLoopback net(analyser);
    const ClientHandle plain = net.begin(analyser, nullptr);
    ASSERT_TRUE(plain->send(NoteCommand(1, 100)));
    EXPECT_TRUE(tickUntil(net.m_System, [&] { return plain->isInvalid() && net.m_Server->m_Abandons == 1; }));
}

TEST_F(TlsRefusal, ATlsClientOnAPlainPortFails)
{
    NoteAnalyser analyser;
    TlsLoopback net(analyser);
    ASSERT_TRUE(net.m_Server->setTlsContext(nullptr));
    zet::TestClock clock(1700000000, 5000);
    const ClientHandle client = net.begin(analyser, makeClientContext());
    ASSERT_TRUE(net.m_IsBegun);
    // A server of commands may wait for the rest of a packet that never comes; the time limit ends it.
    const bool isAnswered = tickUntil(net.m_System,
                                      [&]
                                      {
                                          clock.advance(200);
                                          return client->isInvalid();
                                      });
    EXPECT_TRUE(isAnswered);
    EXPECT_EQ(client->getConnectionState(), zet::TcpConnection::kDown);
}

TEST_F(TlsRefusal, ASilentPeerTimesOut)
{
    zet::TestClock clock(1700000000, 0xFFFFFF00);
    NoteAnalyser analyser;
    const TlsHandle server = makeServerContext();
    ASSERT_TRUE(server->setHandshakeTime(3000));
    TlsLoopback net(analyser, server);
    RawPeer silent(net);
    ASSERT_TRUE(silent.m_IsUp);
    clock.advance(2999);
    for (int i = 0; i < 5; ++i)
        net.m_System.tick();
    EXPECT_EQ(net.m_Server->GetClientCount(), 1);
    const LogLines log;
    clock.advance(1);
    for (int i = 0; i < 2; ++i)
        net.m_System.tick();
    EXPECT_EQ(net.m_Server->GetClientCount(), 0);
    EXPECT_EQ(failures(log), L"it did not end in time\n");
}

TEST_F(TlsRefusal, AClientGivesUpOnAServerThatNeverAnswers)
{
    zet::TestClock clock(1700000000, 77);
    NoteAnalyser analyser;
    // The pending connection is never accepted.
    zet::TcpServer server;
    ASSERT_TRUE(server.listen(0, 5));
    const ClientHandle client = new test::Client(analyser);
    ASSERT_TRUE(client->setTlsContext(makeClientContext()));
    ASSERT_TRUE(client->connect(L"127.0.0.1", server.getPort(), false));
    for (int i = 0; i < 5; ++i)
        client->onTick(zet::getTimeTick());
    EXPECT_EQ(client->getConnectionState(), zet::TcpConnection::kConnecting);
    clock.advance(zet::TlsContext::kDefaultHandshakeTime);
    client->onTick(zet::getTimeTick());
    EXPECT_TRUE(client->isInvalid());
}

TEST_F(TlsRefusal, AHandshakeOfEndlessRecordsIsCutOff)
{
    NoteAnalyser analyser;
    TlsLoopback net(analyser);
    const LogLines log;
    RawPeer peer(net);
    ASSERT_TRUE(peer.m_IsUp);
    // A handshake message of 16 MiB, in records of 16 KiB, of which only the start is sent.
    std::vector<unsigned char> record{0x16, 3, 1, 0x40, 0};
    record.resize(5 + 0x4000, 0);
    record[5] = 1;
    record[6] = 0xFF;
    for (int i = 0; i < 20; ++i)
        peer.send(record);
    ASSERT_TRUE(tickUntil(net.m_System, [&] { return net.m_Server->m_Abandons == 1; }));
    EXPECT_FALSE(failures(log).empty());
}

TEST_F(TlsRefusal, AHandshakeOfEndlessSmallMessagesIsCutOff)
{
    NoteAnalyser analyser;
    TlsLoopback net(analyser);
    const LogLines log;
    RawPeer peer(net);
    ASSERT_TRUE(peer.m_IsUp);
    // The hello of an honest TLS 1.2 client, and then warnings, each in its own record, which a handshake ignores.
    std::vector<unsigned char> all{0x16, 3, 1, 0, 79, 1, 0, 0, 75, 3, 3};
    all.resize(all.size() + 32, 7);
    // No session; two ciphers, one for either kind of key; no compression.
    all.insert(all.end(), {0, 0, 4, 0xC0, 0x2B, 0xC0, 0x2F, 1, 0});
    // Groups, point formats, signature algorithms.
    all.insert(all.end(),
               {0, 30, 0, 10, 0, 6, 0, 4, 0, 29, 0, 23, 0, 11, 0, 2, 1, 0, 0, 13, 0, 10, 0, 8, 4, 3, 8, 4, 4, 1, 8, 7});
    const std::vector<unsigned char> warning{0x15, 3, 3, 0, 2, 1, 90};
    while (all.size() <= zet::TlsContext::kHandshakeInput + warning.size())
        all.insert(all.end(), warning.begin(), warning.end());
    peer.send(all);
    ASSERT_TRUE(tickUntil(net.m_System, [&] { return net.m_Server->m_Abandons == 1; }));
    EXPECT_EQ(failures(log), L"too long\n");
}

TEST_F(TlsRefusal, GarbageInAnEstablishedSessionBreaksItAlone)
{
    int got = 0;
    NoteAnalyser analyser([&](CCommandSocket*, const NoteCommand&) { ++got; });
    TlsLoopback net(analyser);
    const ClientHandle good = net.connectTls(analyser, makeClientContext());
    const ClientHandle bad = net.connectTls(analyser, makeClientContext());
    ASSERT_TRUE(good && bad);
    zet::TcpConnection plain;
    ASSERT_TRUE(plain.attach(bad->detach()));
    const std::vector<unsigned char> garbage(300, 0x17);
    ASSERT_EQ(plain.send(garbage.data(), 300), 300);
    plain.onTick(0);
    ASSERT_TRUE(tickUntil(net.m_System, [&] { return net.m_Server->m_Abandons == 1; }));
    ASSERT_TRUE(good->send(NoteCommand(1)));
    ASSERT_TRUE(tickUntil(net.m_System, [&] { return got == 1; }));
}

TEST_F(TlsRefusal, AConnectionWithoutATlsLayerIsNotAccepted)
{
    zet::TcpServer server;
    ASSERT_TRUE(server.setTlsContext(makeServerContext()));
    ASSERT_TRUE(server.listen(0, 5));
    zet::TcpConnection client;
    ASSERT_TRUE(client.connect(L"127.0.0.1", server.getPort(), false));
    zet::TcpConnection bare;
    EXPECT_FALSE(server.accept(&bare));
    EXPECT_TRUE(bare.isInvalid());
}

TEST_F(TlsRefusal, AContextIsRefusedByWhomItDoesNotServe)
{
    const LogLines log;
    zet::TcpServer server;
    EXPECT_FALSE(server.setTlsContext(makeClientContext()));
    const TlsHandle asks = makeServerContext();
    ASSERT_TRUE(asks->setClientCertificate(zet::TlsContext::kAsked));
    EXPECT_FALSE(server.setTlsContext(asks));
    EXPECT_FALSE(server.getTlsContext());
    ASSERT_TRUE(server.listen(0, 5));
    zet::TcpStream stream;
    ASSERT_TRUE(stream.setTlsContext(makeServerContext()));
    EXPECT_FALSE(stream.connect(L"127.0.0.1", server.getPort(), false));
    EXPECT_TRUE(stream.isInvalid());
    // The last one is the failed connect.
    EXPECT_EQ(log.texts().size(), 4u);
}

TEST_F(TlsRefusal, AContextTakesOnlyWhatIsGood)
{
    const LogLines log;
    const TlsHandle context = new zet::TlsContext;
    const auto other = someAuthority().issue({"other", {}});
    EXPECT_FALSE(context->setCertificate(serverCertificate().m_Chain.c_str(), other.m_Key.c_str()));
    EXPECT_FALSE(context->setCertificate("", ""));
    EXPECT_FALSE(context->setCertificate(nullptr, nullptr));
    EXPECT_FALSE(context->addTrust("no certificate"));
    EXPECT_FALSE(context->addTrust(nullptr));
    EXPECT_FALSE(context->addTrustFile(L"/nonexistent/file.pem"));
    EXPECT_FALSE(context->setCertificateFiles(nullptr, nullptr));
    EXPECT_FALSE(context->setHandshakeTime(0));
    EXPECT_FALSE(context->hasCertificate());
    EXPECT_FALSE(context->hasTrust());
    EXPECT_EQ(log.texts().size(), 7u);
    const test::TextFile chain(serverCertificate().m_Chain);
    const test::TextFile key(serverCertificate().m_Key);
    const test::TextFile trust(someAuthority().pem());
    EXPECT_TRUE(context->setCertificateFiles(chain.widePath().c_str(), key.widePath().c_str()));
    EXPECT_TRUE(context->addTrustFile(trust.widePath().c_str()));
    EXPECT_TRUE(context->hasCertificate());
    EXPECT_TRUE(context->hasTrust());
}

TEST_F(TlsRefusal, AContextInUseIsNotChanged)
{
    NoteAnalyser analyser;
    const TlsHandle server = makeServerContext();
    TlsLoopback net(analyser, server);
    const TlsHandle client = makeClientContext();
    ASSERT_TRUE(net.connectTls(analyser, client));
    EXPECT_FALSE(server->setCertificate(serverCertificate().m_Chain.c_str(), serverCertificate().m_Key.c_str()));
    EXPECT_FALSE(server->setClientCertificate(zet::TlsContext::kRequired));
    EXPECT_FALSE(client->addTrust(someAuthority().pem().c_str()));
    EXPECT_FALSE(client->setHandshakeTime(1));
}

TEST_F(TlsRefusal, AContextIsNotExchangedUnderAConnection)
{
    NoteAnalyser analyser;
    TlsLoopback net(analyser);
    const ClientHandle client = net.connectTls(analyser, makeClientContext());
    ASSERT_TRUE(client);
    EXPECT_FALSE(client->setTlsContext(nullptr));
    EXPECT_TRUE(client->isSecure());
}

} // namespace
