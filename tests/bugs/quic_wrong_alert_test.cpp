// A peer over UDP whose certificate was refused always received bad_certificate (42). The protocol specifies unknown_ca
// (48) for an unknown issuer and certificate_expired (45).
#include "tests/support/log_lines.h"
#include "tests/support/quic_test.h"

#include "net/tls/context.h"

namespace
{

class WrongAlert : public test::QuicTest
{
protected:
    // The alert that a server with a certificate of this authority receives from our client.
    uint64_t alertFor(const test::Authority& authority, const test::CertificateWish& wish)
    {
        waitForOurs(authority.issue(wish));
        const test::NoteSocketHandle socket = m_Net.begin();
        EXPECT_TRUE(socket);
        m_Net.until([&] { return m_Peer->isOver(); }, 2000);
        return m_Peer->getCloseCode() - test::kTlsAlert;
    }
};

TEST_F(WrongAlert, NamesTheFaultOfTheCertificate)
{
    const test::LogLines log;
    const test::Authority authority("Some Authority");
    const test::Authority other("Other Authority");
    const zet::Unknown::Handle_T<zet::TlsContext> context = new zet::TlsContext;
    ASSERT_TRUE(context->addTrust(authority.pem().c_str()));
    m_Net.m_Port->close();
    m_Net.m_Port->setTlsContext(context);
    ASSERT_TRUE(m_Net.m_Port->listen(L"", 0));
    EXPECT_EQ(alertFor(other, {"", {"127.0.0.1"}}), 48U);
    EXPECT_EQ(alertFor(authority, {"", {"127.0.0.1"}, -7200, -3600}), 45U);
    EXPECT_EQ(alertFor(authority, {"", {"10.0.0.1"}}), 42U);
}

} // namespace
