// The library's ends against the programs of OpenSSL and GnuTLS.
#include "tests/support/child.h"
#include "tests/support/log_lines.h"
#include "tests/support/log_shares.h"
#include "tests/support/tls_pair.h"

#include <gtest/gtest.h>

#include <fstream>
#include <iterator>

namespace
{

using test::Child;
using test::findFreePort;
using test::isListening;
using test::makeClientContext;
using test::makeServerContext;
using test::serverCertificate;
using test::someAuthority;
using test::TextFile;
using test::tickUntil;
using test::TlsHandle;

using Words = std::vector<std::string>;
using StreamHandle = zet::Unknown::Handle_T<zet::TcpStream>;

// A server of plain streams that echoes its input.
class EchoServer : public zet::TcpServer
{
public:
    void onAccept() override
    {
        const StreamHandle stream = new zet::TcpStream;
        if (accept(stream))
            m_Streams.push_back(stream);
    }
    void onTick(unsigned int tick) override
    {
        zet::TcpServer::onTick(tick);
        for (const StreamHandle& stream : m_Streams)
        {
            stream->onTick(tick);
            unsigned char piece[4096];
            for (int got; (got = stream->read(piece, sizeof piece)) > 0;)
            {
                stream->send(piece, got);
                m_LastName = stream->getVerifiedName();
            }
            if (stream->getConnectionState() == zet::TcpConnection::kClosedByPeer)
                stream->close();
        }
    }
    std::vector<StreamHandle> m_Streams;
    // The stream that received last.
    zet::String_T<wchar_t> m_LastName;
};

struct ForeignPeer : testing::Test
{
    ForeignPeer()
        : m_Trust(someAuthority().pem()), m_Chain(serverCertificate().m_Chain), m_Key(serverCertificate().m_Key),
          m_Server(new EchoServer)
    {
        m_System.init();
    }
    ~ForeignPeer() override
    {
        for (const StreamHandle& stream : m_Server->m_Streams)
            stream->close();
        m_Server->close();
        m_System.exit();
    }

    // A foreign client sends to our server and expects an echo. Returns the client's output.
    std::string echoTo(const Words& words, TlsHandle context = makeServerContext())
    {
        m_Server->start(&m_System);
        EXPECT_TRUE(m_Server->setTlsContext(context));
        EXPECT_TRUE(m_Server->listen(0, 5));
        Words all = words;
        for (std::string& word : all)
            if (word.find("PORT") != std::string::npos)
                word.replace(word.find("PORT"), 4, std::to_string(m_Server->getPort()));
        Child client(all);
        EXPECT_TRUE(client.isStarted());
        EXPECT_TRUE(client.write("hello from afar\n"));
        tickUntil(m_System,
                  [&] { return client.output().find("hello from afar") != std::string::npos || client.isOver(); });
        client.closeInput();
        tickUntil(m_System,
                  [&]
                  {
                      const auto state = m_Server->m_Streams.empty() ? zet::TcpConnection::kConnecting
                                                                     : m_Server->m_Streams[0]->getConnectionState();
                      return state != zet::TcpConnection::kConnecting && state != zet::TcpConnection::kEstablished;
                  });
        return client.output();
    }

    // Our client sends to a foreign server on a port. Returns its stream, established or closed.
    StreamHandle sayTo(Child& server, unsigned short port, TlsHandle context)
    {
        EXPECT_TRUE(server.isStarted());
        EXPECT_TRUE(tickUntil(m_System, [&] { return isListening(port); })) << server.output();
        const StreamHandle stream = new zet::TcpStream;
        stream->start(&m_System);
        EXPECT_TRUE(stream->setTlsContext(context));
        EXPECT_TRUE(stream->connect(L"127.0.0.1", port, false));
        tickUntil(m_System, [&] { return stream->getConnectionState() != zet::TcpConnection::kConnecting; });
        stream->send("hello from here\n", 16);
        return stream;
    }
    // The input within a time limit, up to a text.
    std::string readUntil(zet::TcpStream& stream, const std::string& wanted)
    {
        std::string text;
        tickUntil(m_System,
                  [&]
                  {
                      char piece[4096];
                      for (int got; (got = stream.read(piece, sizeof piece)) > 0;)
                          text.append(piece, static_cast<size_t>(got));
                      return text.find(wanted) != std::string::npos;
                  });
        return text;
    }
    void TearDown() override { m_System.tick(); }

    TextFile m_Trust;
    TextFile m_Chain;
    TextFile m_Key;
    zet::System m_System;
    zet::Unknown::Handle_T<EchoServer> m_Server;
};

#define NEED(program)                                                                                                  \
    if (!Child::isThere(program))                                                                                      \
    GTEST_SKIP() << program << " is not installed"

TEST_F(ForeignPeer, AnOpenSslClientIsServed)
{
    NEED("openssl");
    const std::string said = echoTo({"openssl", "s_client", "-connect", "127.0.0.1:PORT", "-CAfile", m_Trust.path(),
                                     "-verify_return_error", "-verify_ip", "127.0.0.1", "-tls1_3"});
    EXPECT_NE(said.find("TLSv1.3"), std::string::npos) << said;
    EXPECT_NE(said.find("Verify return code: 0 (ok)"), std::string::npos) << said;
    EXPECT_NE(said.find("hello from afar"), std::string::npos) << said;
}

TEST_F(ForeignPeer, AnOpenSslClientOfTheVersionBeforeIsServed)
{
    NEED("openssl");
    const std::string said = echoTo({"openssl", "s_client", "-connect", "127.0.0.1:PORT", "-CAfile", m_Trust.path(),
                                     "-verify_return_error", "-tls1_2"});
    EXPECT_NE(said.find("TLSv1.2"), std::string::npos) << said;
    EXPECT_NE(said.find("hello from afar"), std::string::npos) << said;
}

TEST_F(ForeignPeer, AnOpenSslClientWithoutAnAuthenticatingCipherIsRefused)
{
    NEED("openssl");
    const test::LogLines log;
    const std::string said =
        echoTo({"openssl", "s_client", "-connect", "127.0.0.1:PORT", "-CAfile", m_Trust.path(), "-tls1_2", "-cipher",
                "ECDHE-ECDSA-AES128-SHA:ECDHE-ECDSA-AES256-SHA384:@SECLEVEL=0"});
    EXPECT_NE(said.find("handshake failure"), std::string::npos) << said;
    EXPECT_EQ(said.find("hello from afar"), std::string::npos) << said;
}

TEST_F(ForeignPeer, AnOpenSslClientThatTakesSignaturesBySha1AloneIsRefused)
{
    NEED("openssl");
    const test::LogLines log;
    const std::string said = echoTo({"openssl", "s_client", "-connect", "127.0.0.1:PORT", "-CAfile", m_Trust.path(),
                                     "-tls1_2", "-cipher", "ALL:@SECLEVEL=0", "-sigalgs", "ECDSA+SHA1"});
    EXPECT_NE(said.find("alert"), std::string::npos) << said;
    EXPECT_EQ(said.find("hello from afar"), std::string::npos) << said;
}

TEST_F(ForeignPeer, AGnuTlsClientOfAnOldVersionIsRefused)
{
    NEED("gnutls-cli");
    test::refillLogShares();
    const test::LogLines log;
    const std::string said = echoTo({"gnutls-cli", "--x509cafile", m_Trust.path(), "--priority",
                                     "NORMAL:-VERS-ALL:+VERS-TLS1.1:%COMPAT", "--port", "PORT", "127.0.0.1"});
    EXPECT_EQ(said.find("Handshake was completed"), std::string::npos) << said;
    EXPECT_FALSE(m_Server->m_Streams.at(0)->isSecure());
    std::wstring line;
    for (const std::wstring& text : log.texts())
        if (text.find(L"TLS handshake with 127.0.0.1:") == 0)
            line = text;
    EXPECT_NE(line.find(L" failed: "), std::wstring::npos);
}

TEST_F(ForeignPeer, AGnuTlsClientIsServed)
{
    NEED("gnutls-cli");
    const std::string said = echoTo({"gnutls-cli", "--x509cafile", m_Trust.path(), "--port", "PORT", "127.0.0.1"});
    EXPECT_NE(said.find("Handshake was completed"), std::string::npos) << said;
    EXPECT_NE(said.find("hello from afar"), std::string::npos) << said;
    // It sends close_notify at the end of its input.
    EXPECT_EQ(m_Server->m_Streams.at(0)->getConnectionState(), zet::TcpConnection::kDown);
}

TEST_F(ForeignPeer, AnOpenSslClientShowsItsCertificate)
{
    NEED("openssl");
    const TlsHandle wants = makeServerContext();
    ASSERT_TRUE(wants->addTrust(someAuthority().pem().c_str()));
    ASSERT_TRUE(wants->setClientCertificate(zet::TlsContext::kRequired));
    const auto mine = someAuthority().issue({"player 7", {}});
    const TextFile chain(mine.m_Chain);
    const TextFile key(mine.m_Key);
    const std::string said = echoTo({"openssl", "s_client", "-connect", "127.0.0.1:PORT", "-CAfile", m_Trust.path(),
                                     "-cert", chain.path(), "-key", key.path()},
                                    wants);
    EXPECT_NE(said.find("hello from afar"), std::string::npos) << said;
    EXPECT_EQ(m_Server->m_LastName, L"player 7");
}

TEST_F(ForeignPeer, AnOpenSslClientWithoutCertificateIsTurnedAway)
{
    NEED("openssl");
    const TlsHandle wants = makeServerContext();
    ASSERT_TRUE(wants->addTrust(someAuthority().pem().c_str()));
    ASSERT_TRUE(wants->setClientCertificate(zet::TlsContext::kRequired));
    const test::LogLines log;
    const std::string said =
        echoTo({"openssl", "s_client", "-connect", "127.0.0.1:PORT", "-CAfile", m_Trust.path(), "-quiet"}, wants);
    EXPECT_EQ(said.find("hello from afar"), std::string::npos) << said;
    EXPECT_NE(said.find("certificate required"), std::string::npos) << said;
    EXPECT_EQ(m_Server->m_Streams.at(0)->getConnectionState(), zet::TcpConnection::kBroken);
}

TEST_F(ForeignPeer, AnOpenSslServerIsTalkedToAndASessionResumed)
{
    NEED("openssl");
    const unsigned short port = findFreePort();
    Child server({"openssl", "s_server", "-accept", "127.0.0.1:" + std::to_string(port), "-cert", m_Chain.path(),
                  "-key", m_Key.path(), "-rev"});
    const TlsHandle context = makeClientContext();
    for (int i = 0; i < 3; ++i)
    {
        const StreamHandle stream = sayTo(server, port, context);
        EXPECT_EQ(readUntil(*stream, "ereh morf olleh"), "ereh morf olleh\n") << server.output();
        EXPECT_EQ(stream->isResumed(), i > 0);
        EXPECT_EQ(stream->getVerifiedName(), L"server.example");
        stream->close();
        stream->stop();
    }
}

TEST_F(ForeignPeer, AnOpenSslServerOfTheVersionBeforeIsTalkedToAndASessionResumed)
{
    NEED("openssl");
    const unsigned short port = findFreePort();
    Child server({"openssl", "s_server", "-accept", "127.0.0.1:" + std::to_string(port), "-cert", m_Chain.path(),
                  "-key", m_Key.path(), "-rev", "-tls1_2"});
    const TlsHandle context = makeClientContext();
    for (int i = 0; i < 2; ++i)
    {
        const StreamHandle stream = sayTo(server, port, context);
        EXPECT_EQ(readUntil(*stream, "ereh morf olleh"), "ereh morf olleh\n") << server.output();
        EXPECT_EQ(std::wstring(stream->getTlsDescription().getBuffer()).find(L"(TLS1.2)"), 0u);
        EXPECT_EQ(stream->isResumed(), i > 0);
        stream->close();
        stream->stop();
    }
}

TEST_F(ForeignPeer, AGnuTlsServerIsTalkedTo)
{
    NEED("gnutls-serv");
    const unsigned short port = findFreePort();
    Child server({"gnutls-serv", "--echo", "--port", std::to_string(port), "--x509certfile", m_Chain.path(),
                  "--x509keyfile", m_Key.path(), "--disable-client-cert"});
    const StreamHandle stream = sayTo(server, port, makeClientContext());
    EXPECT_EQ(readUntil(*stream, "hello from here"), "hello from here\n") << server.output();
    stream->close();
    stream->stop();
}

// An OCSP response for a certificate, as a server staples it: a DER file.
std::string makeResponse(const TextFile& chain, bool isRevoked)
{
    const TextFile trust(someAuthority().pem());
    const TextFile key(someAuthority().key());
    Child serial({"openssl", "x509", "-in", chain.path(), "-noout", "-serial"});
    serial.wait();
    const std::string said = serial.output();
    const std::string number = said.substr(said.find('=') + 1, said.find('\n') - said.find('=') - 1);
    // State, expiry, revocation, serial number, file and name, with tabs between them.
    const TextFile index(isRevoked ? "R\t491231235959Z\t200101000000Z\t" + number + "\tunknown\t/CN=server.example\n"
                                   : "V\t491231235959Z\t\t" + number + "\tunknown\t/CN=server.example\n");
    const TextFile response("");
    Child answer({"openssl", "ocsp", "-index", index.path(), "-CA", trust.path(), "-rsigner", trust.path(), "-rkey",
                  key.path(), "-issuer", trust.path(), "-cert", chain.path(), "-ndays", "1", "-respout",
                  response.path(), "-noverify"});
    EXPECT_EQ(answer.wait(), 0) << answer.output();
    std::ifstream file(response.path(), std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(file), {});
}

TEST_F(ForeignPeer, AnOpenSslServersStapledResponseCounts)
{
    NEED("openssl");
    for (const bool isRevoked : {false, true})
    {
        const TextFile response(makeResponse(m_Chain, isRevoked));
        const unsigned short port = findFreePort();
        Child server({"openssl", "s_server", "-accept", "127.0.0.1:" + std::to_string(port), "-cert", m_Chain.path(),
                      "-key", m_Key.path(), "-rev", "-status_file", response.path()});
        const test::LogLines log;
        const StreamHandle stream = sayTo(server, port, makeClientContext());
        if (isRevoked)
        {
            EXPECT_EQ(stream->getConnectionState(), zet::TcpConnection::kConnectFailed);
            bool isTold = false;
            for (const std::wstring& text : log.texts())
                isTold = isTold || text.find(L"revoked") != std::wstring::npos;
            EXPECT_TRUE(isTold);
        }
        else
        {
            EXPECT_EQ(readUntil(*stream, "ereh morf olleh"), "ereh morf olleh\n") << server.output();
        }
        stream->close();
        stream->stop();
    }
}

TEST_F(ForeignPeer, AnOpenSslServerOfAnotherNameIsRefused)
{
    NEED("openssl");
    const auto other = someAuthority().issue({"", {"somewhere.example"}});
    const TextFile chain(other.m_Chain);
    const TextFile key(other.m_Key);
    const unsigned short port = findFreePort();
    Child server({"openssl", "s_server", "-accept", "127.0.0.1:" + std::to_string(port), "-cert", chain.path(), "-key",
                  key.path(), "-quiet"});
    const test::LogLines log;
    const StreamHandle stream = sayTo(server, port, makeClientContext());
    EXPECT_EQ(stream->getConnectionState(), zet::TcpConnection::kConnectFailed);
    EXPECT_EQ(server.output().find("hello"), std::string::npos);
    stream->close();
    stream->stop();
}

} // namespace
