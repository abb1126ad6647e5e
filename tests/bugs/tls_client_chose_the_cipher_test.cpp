// A server chose the first algorithm of the client's list that it supported; now its own order decides.
#include "tests/support/raw_peer.h"
#include "tests/support/tls_pair.h"
#include "tests/support/tls_peer.h"

#include <gtest/gtest.h>

namespace
{

using test::tickUntil;

TEST(Bugs, TheServersOrderOfCiphersCounts)
{
    test::NoteAnalyser analyser;
    test::TlsLoopback net(analyser);
    for (const char* version : {"+VERS-TLS1.2", "+VERS-TLS1.3"})
    {
        test::RawPeer raw(net);
        ASSERT_TRUE(raw.m_IsUp);
        test::TlsPeerWish wish;
        wish.m_Priority = "NORMAL:-VERS-ALL:-CIPHER-ALL:+AES-128-GCM:+CHACHA20-POLY1305:+AES-256-GCM:";
        wish.m_Priority += version;
        test::TlsPeer peer(*raw.m_Stream, wish);
        ASSERT_TRUE(tickUntil(net.m_System, [&] { return peer.shakeHands(); })) << version;
        EXPECT_EQ(peer.cipher(), "AES-256-GCM") << version;
    }
}

} // namespace
