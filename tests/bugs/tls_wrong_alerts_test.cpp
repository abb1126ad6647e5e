// A peer whose certificate was refused received "bad certificate" if its issuer was unknown, and a TLS 1.2 client that
// had not sent the required certificate received an alert of an old version. The protocol specifies unknown_ca (48) and
// handshake_failure (40).
#include "tests/support/log_lines.h"
#include "tests/support/raw_peer.h"
#include "tests/support/tls_pair.h"
#include "tests/support/tls_peer.h"

#include <gtest/gtest.h>

namespace
{

using test::makeServerContext;
using test::NoteAnalyser;
using test::someAuthority;
using test::tickUntil;
using test::TlsHandle;
using test::TlsLoopback;
using test::TlsPeer;
using test::TlsPeerWish;

constexpr int kHandshakeFailure = 40;
constexpr int kBadCertificate = 42;
constexpr int kExpired = 45;
constexpr int kUnknownAuthority = 48;
constexpr int kCertificateRequired = 116;

const char* const kVersion12 = "NORMAL:-VERS-ALL:+VERS-TLS1.2";
const char* const kVersion13 = "NORMAL:-VERS-ALL:+VERS-TLS1.3";

// The alert that a test client receives from a server that requires certificates.
int alertOfServer(const char* version, const test::Certificate& certificate)
{
    const test::LogLines log;
    const TlsHandle context = makeServerContext();
    context->addTrust(someAuthority().pem().c_str());
    context->setClientCertificate(zet::TlsContext::kRequired);
    NoteAnalyser analyser;
    TlsLoopback net(analyser, context);
    test::RawPeer raw(net);
    EXPECT_TRUE(raw.m_IsUp);
    TlsPeerWish wish;
    wish.m_Priority = version;
    wish.m_Certificate = certificate;
    TlsPeer peer(*raw.m_Stream, wish);
    // A TLS 1.3 client completes before the server has verified its certificate.
    tickUntil(net.m_System,
              [&]
              {
                  if (peer.shakeHands())
                      peer.receive();
                  return peer.alert() >= 0;
              });
    return peer.alert();
}

// The alert that a test server receives from our client.
int alertOfClient(const char* version, const test::Certificate& certificate)
{
    const test::LogLines log;
    zet::System system;
    system.init();
    const zet::Unknown::Handle_T<test::StreamServer> server = new test::StreamServer;
    server->start(&system);
    EXPECT_TRUE(server->listen(0, 5));
    NoteAnalyser analyser;
    const test::ClientHandle client = new test::Client(analyser);
    client->start(&system);
    EXPECT_TRUE(client->setTlsContext(test::makeClientContext()));
    EXPECT_TRUE(client->connect(L"127.0.0.1", server->getPort(), false));
    EXPECT_TRUE(tickUntil(system, [&] { return !server->m_Streams.empty(); }));
    TlsPeerWish wish;
    wish.m_Priority = version;
    wish.m_Certificate = certificate;
    wish.m_IsClient = false;
    TlsPeer peer(*server->m_Streams[0], wish);
    tickUntil(system,
              [&]
              {
                  peer.shakeHands();
                  return peer.alert() >= 0;
              });
    client->close();
    server->m_Streams[0]->close();
    server->close();
    system.exit();
    return peer.alert();
}

TEST(Bugs, AnUnknownIssuerIsNamedInTheAlert)
{
    const test::Authority other("Other Authority");
    const auto theirs = other.issue({"server.example", {"127.0.0.1"}});
    const auto expired = someAuthority().issue({"", {"127.0.0.1"}, -7200, -3600});
    const auto elsewhere = someAuthority().issue({"", {"10.0.0.1"}});
    for (const char* version : {kVersion12, kVersion13})
    {
        EXPECT_EQ(alertOfServer(version, theirs), kUnknownAuthority) << version;
        EXPECT_EQ(alertOfClient(version, theirs), kUnknownAuthority) << version;
        EXPECT_EQ(alertOfServer(version, expired), kExpired) << version;
        EXPECT_EQ(alertOfClient(version, elsewhere), kBadCertificate) << version;
    }
}

TEST(Bugs, AMissingCertificateFailsTheHandshakeOfTheVersionBefore)
{
    EXPECT_EQ(alertOfServer(kVersion12, {}), kHandshakeFailure);
    EXPECT_EQ(alertOfServer(kVersion13, {}), kCertificateRequired);
}

} // namespace
