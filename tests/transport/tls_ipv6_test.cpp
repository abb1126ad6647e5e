// Authentication of IPv6 servers.
#include "framework/string_helper.h"
#include "tests/support/ipv6.h"
#include "tests/support/tls_pair.h"

namespace
{

TEST(TlsIPv6, ATlsServerIsKnownByItsAddress)
{
    SKIP_WITHOUT_IPV6();
    test::NoteAnalyser analyser;
    test::TlsLoopback net(
        analyser, test::makeServerContext(test::someAuthority().issue({"server.example", {"127.0.0.1", "::1"}})));
    const test::TlsHandle context = test::makeClientContext();
    for (const wchar_t* host : {L"::1", L"[::1]", L"127.0.0.1"})
        EXPECT_TRUE(net.connectTls(analyser, context, host)) << zet::StringHelper::wideToUtf8(host).getBuffer();
    EXPECT_FALSE(net.connectTls(analyser, context, L"localhost"));
}

} // namespace
