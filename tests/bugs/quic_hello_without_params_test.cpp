// A TLS hello without QUIC transport parameters ended the process: ngtcp2 continued the handshake and failed an
// assertion when it wrote the first packet after it, on a server as well as on a client. TLS now refuses such a hello
// with the alert missing_extension.
#include "tests/support/quic_test.h"

#include "net/tls/context.h"

namespace
{

using test::NoteSocket;

constexpr uint64_t kMissingExtension = test::kTlsAlert + 109;

class HelloWithoutParams : public test::QuicTest
{
protected:
    static test::QuicWish bare()
    {
        test::QuicWish wish;
        wish.m_HasParams = false;
        return wish;
    }
};

TEST_F(HelloWithoutParams, OfAClientIsRefused)
{
    beginPeer(bare());
    ASSERT_TRUE(m_Net.until([&] { return m_Peer->isOver(); }, 2000));
    EXPECT_EQ(m_Peer->getCloseCode(), kMissingExtension);
    EXPECT_EQ(m_Net.m_Server->getConnectionCount(), 0);
    EXPECT_TRUE(isServing());
}

TEST_F(HelloWithoutParams, OfAClientIsRefusedWhereCertificatesAreRequired)
{
    const test::Authority authority("Some Authority");
    const test::Certificate own = authority.issue({"", {"127.0.0.1"}});
    const zet::Unknown::Handle_T<zet::TlsContext> context = new zet::TlsContext;
    ASSERT_TRUE(context->setCertificate(own.m_Chain.c_str(), own.m_Key.c_str()) &&
                context->addTrust(authority.pem().c_str()) &&
                context->setClientCertificate(zet::TlsContext::kRequired));
    m_Net.m_Server->close();
    m_Net.m_Server->setTlsContext(context);
    ASSERT_TRUE(m_Net.m_Server->listen(L"", 0));
    beginPeer(bare());
    ASSERT_TRUE(m_Net.until([&] { return m_Peer->isOver(); }, 2000));
    EXPECT_EQ(m_Peer->getCloseCode(), kMissingExtension);
}

TEST_F(HelloWithoutParams, OfAServerIsRefused)
{
    const auto socket = beginToPeer(bare());
    ASSERT_TRUE(socket);
    ASSERT_TRUE(m_Net.until([&] { return socket->m_Closes == 1; }, 2000));
    EXPECT_EQ(socket->m_StateAtClose, NoteSocket::kConnectFailed);
    ASSERT_TRUE(m_Net.until([&] { return m_Peer->isOver(); }, 100));
    EXPECT_EQ(m_Peer->getCloseCode(), kMissingExtension);
}

} // namespace
