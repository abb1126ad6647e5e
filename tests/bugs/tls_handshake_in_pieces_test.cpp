// A handshake message split over several records, as sent by a peer with small records or a long chain, stalled the
// handshake if the records arrived with one read: a step ended with the first record, and the next step started only
// with more bytes from the network. A step now continues while there is input left and it shrinks.
#include "tests/support/child.h"
#include "tests/support/raw_peer.h"
#include "tests/support/tls_pair.h"
#include "tests/support/tls_peer.h"

#include <gtest/gtest.h>

namespace
{

using test::Certificate;
using test::makeClientContext;
using test::makeServerContext;
using test::NoteAnalyser;
using test::NoteCommand;
using test::packetOf;
using test::serverCertificate;
using test::someAuthority;
using test::tickUntil;
using test::TlsHandle;
using test::TlsLoopback;
using test::TlsPeer;
using test::TlsPeerWish;

const char* const kVersions[] = {"NORMAL:-VERS-ALL:+VERS-TLS1.2", "NORMAL:-VERS-ALL:+VERS-TLS1.3"};
constexpr size_t kSmallRecord = 512;

// Larger than one record.
const Certificate& largeCertificate()
{
    static const Certificate made = []
    {
        test::CertificateWish wish{"server.example", {"127.0.0.1"}};
        for (int i = 0; i < 800; ++i)
            wish.m_Hosts.push_back("host-" + std::to_string(i) + ".many.names.example");
        return someAuthority().issue(wish);
    }();
    return made;
}

TlsHandle wantsCertificates(const TlsHandle& context)
{
    context->addTrust(someAuthority().pem().c_str());
    context->setClientCertificate(zet::TlsContext::kRequired);
    return context;
}

// A peer with another TLS setup connects to our server, presents a certificate and sends a command.
void testServer(const std::string& version, const TlsPeerWish& wish, const TlsHandle& context)
{
    SCOPED_TRACE(version);
    int got = 0;
    NoteAnalyser analyser([&](CCommandSocket*, const NoteCommand& note) { got = note.m_Number; });
    TlsLoopback net(analyser, context);
    test::RawPeer raw(net);
    ASSERT_TRUE(raw.m_IsUp);
    TlsPeerWish all = wish;
    all.m_Priority = version;
    TlsPeer peer(*raw.m_Stream, all);
    ASSERT_TRUE(tickUntil(net.m_System, [&] { return peer.shakeHands(); }));
    ASSERT_TRUE(peer.send(packetOf(NoteCommand(7, 3000))));
    EXPECT_TRUE(tickUntil(net.m_System, [&] { return got == 7; }));
    EXPECT_TRUE(net.accepted()->isSecure());
}

// Our client connects to such a server and sends a command.
void testClient(const std::string& version, const TlsPeerWish& wish, const TlsHandle& context)
{
    SCOPED_TRACE(version);
    zet::System system;
    system.init();
    const zet::Unknown::Handle_T<test::StreamServer> server = new test::StreamServer;
    server->start(&system);
    ASSERT_TRUE(server->listen(0, 5));
    NoteAnalyser analyser;
    const test::ClientHandle client = new test::Client(analyser);
    client->start(&system);
    ASSERT_TRUE(client->setTlsContext(context));
    ASSERT_TRUE(client->connect(L"127.0.0.1", server->getPort(), false));
    ASSERT_TRUE(tickUntil(system, [&] { return !server->m_Streams.empty(); }));
    TlsPeerWish all = wish;
    all.m_Priority = version;
    all.m_IsClient = false;
    TlsPeer peer(*server->m_Streams[0], all);
    EXPECT_TRUE(tickUntil(system, [&] { return peer.shakeHands() && client->isSecure(); }));
    EXPECT_TRUE(client->send(NoteCommand(7, 3000)));
    EXPECT_TRUE(tickUntil(system, [&] { return peer.receive() == packetOf(NoteCommand(7, 3000)); }));
    client->close();
    server->m_Streams[0]->close();
    server->close();
    system.exit();
}

TEST(Bugs, AClientOfSmallTlsRecordsIsServed)
{
    TlsPeerWish wish;
    wish.m_RecordSize = kSmallRecord;
    wish.m_Certificate = someAuthority().issue({"player 7", {}});
    for (const char* version : kVersions)
        testServer(version, wish, wantsCertificates(makeServerContext()));
}

TEST(Bugs, AServerOfSmallTlsRecordsIsTalkedTo)
{
    TlsPeerWish wish;
    wish.m_RecordSize = kSmallRecord;
    wish.m_Certificate = serverCertificate();
    wish.m_Asks = true;
    const TlsHandle context = makeClientContext();
    const Certificate mine = someAuthority().issue({"player 7", {}});
    ASSERT_TRUE(context->setCertificate(mine.m_Chain.c_str(), mine.m_Key.c_str()));
    for (const char* version : kVersions)
        testClient(version, wish, context);
}

TEST(Bugs, ACertificateOfMoreThanARecordIsTakenFromAPeer)
{
    TlsPeerWish wish;
    wish.m_Certificate = largeCertificate();
    for (const char* version : kVersions)
    {
        testServer(version, wish, wantsCertificates(makeServerContext()));
        testClient(version, wish, makeClientContext());
    }
}

TEST(Bugs, ACertificateOfMoreThanARecordGoesBetweenOurEnds)
{
    ASSERT_GT(largeCertificate().m_Chain.size(), 20000u * 4 / 3);
    NoteAnalyser analyser;
    TlsLoopback net(analyser, makeServerContext(largeCertificate()));
    EXPECT_TRUE(net.connectTls(analyser, makeClientContext()));
    TlsLoopback strict(analyser, wantsCertificates(makeServerContext()));
    const TlsHandle context = makeClientContext();
    ASSERT_TRUE(context->setCertificate(largeCertificate().m_Chain.c_str(), largeCertificate().m_Key.c_str()));
    EXPECT_TRUE(strict.connectTls(analyser, context));
}

// GnuTLS sends at most 32 records of a handshake at once, so these peers use OpenSSL.
struct SmallPieces : testing::TestWithParam<const char*>
{
    SmallPieces() : m_Trust(someAuthority().pem()), m_Chain(largeCertificate().m_Chain), m_Key(largeCertificate().m_Key)
    {
    }
    void SetUp() override
    {
        if (!test::Child::isThere("openssl"))
            GTEST_SKIP() << "openssl is not installed";
    }
    std::vector<std::string> words(const char* command, const char* option, unsigned short port) const
    {
        return {"openssl", command,        option,     "127.0.0.1:" + std::to_string(port),
                "-cert",   m_Chain.path(), "-key",     m_Key.path(),
                "-CAfile", m_Trust.path(), GetParam(), "-max_send_frag",
                "512",     "-quiet"};
    }

    const test::TextFile m_Trust;
    const test::TextFile m_Chain;
    const test::TextFile m_Key;
};

TEST_P(SmallPieces, ACertificateOfManyRecordsIsTakenFromAClient)
{
    NoteAnalyser analyser;
    TlsLoopback net(analyser, wantsCertificates(makeServerContext(largeCertificate())));
    test::Child client(words("s_client", "-connect", net.m_Server->getPort()));
    EXPECT_TRUE(
        tickUntil(net.m_System, [&] { return !net.m_Server->m_Accepted.empty() && net.accepted()->isSecure(); }))
        << client.output();
}

TEST_P(SmallPieces, ACertificateOfManyRecordsIsTakenFromAServer)
{
    const unsigned short port = test::findFreePort();
    std::vector<std::string> all = words("s_server", "-accept", port);
    all.insert(all.end(), {"-Verify", "1"});
    test::Child server(all);
    zet::System system;
    system.init();
    ASSERT_TRUE(tickUntil(system, [&] { return test::isListening(port); })) << server.output();
    const TlsHandle context = makeClientContext();
    ASSERT_TRUE(context->setCertificate(largeCertificate().m_Chain.c_str(), largeCertificate().m_Key.c_str()));
    NoteAnalyser analyser;
    const test::ClientHandle client = new test::Client(analyser);
    client->start(&system);
    ASSERT_TRUE(client->setTlsContext(context));
    ASSERT_TRUE(client->connect(L"127.0.0.1", port, false));
    EXPECT_TRUE(tickUntil(system, [&] { return client->isSecure(); })) << server.output();
    client->close();
    system.exit();
}

INSTANTIATE_TEST_SUITE_P(Bugs, SmallPieces, testing::Values("-tls1_2", "-tls1_3"));

} // namespace
