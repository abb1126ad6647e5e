// A TLS 1.2 ticket was discarded after its first use. A server of that version need not send a new one when a session
// is resumed, so every other connection started a new session.
#include "tests/support/child.h"
#include "tests/support/tls_pair.h"

#include <gtest/gtest.h>

namespace
{

using test::Child;
using test::tickUntil;

TEST(Bugs, ATicketOfTheVersionBeforeIsUsedAgain)
{
    if (!Child::isThere("openssl"))
        GTEST_SKIP() << "openssl is not installed";
    const test::TextFile chain(test::serverCertificate().m_Chain);
    const test::TextFile key(test::serverCertificate().m_Key);
    const unsigned short port = test::findFreePort();
    Child server({"openssl", "s_server", "-accept", "127.0.0.1:" + std::to_string(port), "-cert", chain.path(), "-key",
                  key.path(), "-rev", "-tls1_2"});
    zet::System system;
    system.init();
    ASSERT_TRUE(tickUntil(system, [&] { return test::isListening(port); })) << server.output();
    const test::TlsHandle context = test::makeClientContext();
    for (int i = 0; i < 4; ++i)
    {
        const zet::Unknown::Handle_T<zet::TcpStream> stream = new zet::TcpStream;
        stream->start(&system);
        ASSERT_TRUE(stream->setTlsContext(context));
        ASSERT_TRUE(stream->connect(L"127.0.0.1", port, false));
        ASSERT_TRUE(tickUntil(system, [&] { return stream->isSecure(); }));
        EXPECT_EQ(stream->isResumed(), i > 0) << i;
        stream->send("abc\n", 4);
        EXPECT_TRUE(tickUntil(system, [&] { return stream->available() == 4; }));
        stream->close();
        stream->stop();
    }
    system.exit();
}

} // namespace
