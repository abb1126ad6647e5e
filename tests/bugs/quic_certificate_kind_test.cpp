// A port without a context generated an Ed25519 certificate, which clients with the usual signature algorithms refuse.
// Its key is now on the curve P-256.
#include "tests/support/quic_test.h"

namespace
{

class CertificateKind : public test::QuicTest
{
};

TEST_F(CertificateKind, OfAPortWithoutAContextIsTakenByClientsThatKnowP256Alone)
{
    test::QuicWish wish;
    wish.m_Priority = "NORMAL:-VERS-ALL:+VERS-TLS1.3:-SIGN-ALL:+SIGN-ECDSA-SECP256R1-SHA256:%DISABLE_TLS13_COMPAT_MODE";
    EXPECT_TRUE(connectPeer(wish));
}

} // namespace
