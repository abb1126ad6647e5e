// A failed TLS handshake logged a line of its own, beyond the bound on lines about ends: a peer that connected and sent
// something else wrote as many lines as it made connections. The line kept its text and belongs to that bound now.
#include "tests/support/log_lines.h"
#include "tests/support/log_shares.h"
#include "tests/support/raw_peer.h"
#include "tests/support/tls_pair.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace
{

TEST(Bugs, FailedTlsHandshakesHaveAShareOfTheLog)
{
    test::refillLogShares();
    zet::TestClock clock(1700000000, zet::getTimeTick());
    test::NoteAnalyser analyser;
    test::TlsLoopback net(analyser);
    const test::LogLines log;
    const auto fail = [&]
    {
        test::RawPeer peer(net);
        EXPECT_TRUE(peer.m_IsUp && peer.send({'h', 'e', 'l', 'l', 'o', '\n'}));
        EXPECT_TRUE(test::tickUntil(net.m_System, [&] { return net.m_Server->GetClientCount() == 0; }));
    };
    for (int i = 0; i < 40; ++i)
        fail();
    const auto count = [&]
    {
        const auto lines = log.texts();
        return std::count_if(lines.begin(), lines.end(),
                             [](const std::wstring& line) { return line.find(L"TLS handshake with 127.0.0.1:") == 0; });
    };
    // Lines about the peers' own ends, which are warnings too, belong to the same share.
    EXPECT_LE(count(), 32);
    EXPECT_GE(count(), 16);
    const auto before = count();
    clock.advance(250);
    fail();
    EXPECT_EQ(count(), before + 1);
    EXPECT_NE(log.texts().back().find(L" lines like this one were omitted before it)"), std::wstring::npos);
}

} // namespace
