// The layers above the stream also work over TLS: the proxy socket, after its proxy handshake, and net sessions.
#include "tests/support/log_lines.h"
#include "tests/support/net_pair.h"
#include "tests/support/proxy_client.h"
#include "tests/support/socks_server.h"
#include "tests/support/tls_pair.h"

#include <gtest/gtest.h>

namespace
{

using test::makeClientContext;
using test::makeServerContext;
using test::NoteAnalyser;
using test::NoteCommand;
using test::ProxyClient;
using test::ProxyClientHandle;
using test::tickUntil;
using test::TlsLoopback;

struct ProxiedTls : testing::Test
{
    ProxiedTls()
        : m_Analyser([this](CCommandSocket*, const NoteCommand& note) { m_Got.push_back(note.m_Number); }),
          m_Net(m_Analyser), m_Client(new ProxyClient(m_Analyser))
    {
        m_Client->start(&m_Net.m_System);
    }
    ~ProxiedTls() override { m_Client->close(); }

    std::vector<int> m_Got;
    NoteAnalyser m_Analyser;
    TlsLoopback m_Net;
    ProxyClientHandle m_Client;
};

TEST_F(ProxiedTls, TheHandshakeIsWithTheTargetAndNotWithTheProxy)
{
    test::SocksServer proxy(m_Net.m_System, {});
    if (!proxy.isUp())
        GTEST_SKIP() << proxy.reason();
    m_Client->SetProxy(L"127.0.0.1", proxy.port(), L"", L"");
    ASSERT_TRUE(m_Client->setTlsContext(makeClientContext()));
    m_Client->m_OnWorking = [&] { EXPECT_TRUE(m_Client->send(NoteCommand(3))); };
    ASSERT_TRUE(m_Client->connect(L"127.0.0.1", m_Net.m_Server->getPort(), false));
    ASSERT_TRUE(tickUntil(m_Net.m_System, [&] { return m_Got.size() == 1; }));
    EXPECT_TRUE(m_Client->isSecure());
    EXPECT_EQ(m_Client->getVerifiedName(), L"server.example");
}

TEST_F(ProxiedTls, WithoutAProxyTheHandshakeComesAtOnce)
{
    ASSERT_TRUE(m_Client->setTlsContext(makeClientContext()));
    ASSERT_TRUE(m_Client->connect(L"127.0.0.1", m_Net.m_Server->getPort(), false));
    ASSERT_TRUE(m_Client->send(NoteCommand(4)));
    ASSERT_TRUE(tickUntil(m_Net.m_System, [&] { return m_Got.size() == 1; }));
    EXPECT_TRUE(m_Client->isSecure());
}

TEST(TlsSession, MessagesGoThroughTls)
{
    test::NetPair net;
    ASSERT_TRUE(net.m_Server->setTlsContext(makeServerContext()));
    int got = 0;
    test::NetNotes::s_Handler = [&](unsigned long, unsigned long, const NoteCommand& note) { got += note.m_Number; };
    const test::NotingHandle session = net.make();
    session->setTlsContext(makeClientContext());
    ASSERT_TRUE(session->connect(net.address(), zet::Uuid()));
    ASSERT_TRUE(tickUntil(net.m_System, [&] { return session->getState() == zet::NetSession::kEstablished; }));
    NoteCommand question(5);
    ASSERT_TRUE(session->sendNetCommand(&question));
    ASSERT_TRUE(tickUntil(net.m_System, [&] { return got == 5; }));
    NoteCommand answer(6);
    ASSERT_TRUE(net.accepted()->sendNetCommand(&answer));
    ASSERT_TRUE(tickUntil(net.m_System, [&] { return got == 11; }));
    session->close();
    ASSERT_TRUE(tickUntil(net.m_System, [&] { return net.accepted()->m_Notes.starts_with("oc"); }));
}

TEST(TlsSession, APlainSessionDoesNotReachATlsModule)
{
    test::NetPair net;
    ASSERT_TRUE(net.m_Server->setTlsContext(makeServerContext()));
    const test::LogLines log;
    const test::NotingHandle session = net.make();
    ASSERT_TRUE(session->connect(net.address(), zet::Uuid()));
    ASSERT_TRUE(tickUntil(net.m_System, [&] { return session->m_Notes.starts_with("f"); }));
    EXPECT_TRUE(net.accepted()->m_Notes.starts_with("f"));
}

} // namespace
