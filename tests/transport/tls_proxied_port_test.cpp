// A port with TLS behind a proxy: the header comes before the handshake.
#include "tests/support/proxy_header.h"
#include "tests/support/raw_handle.h"
#include "tests/support/tls_pair.h"

#include <gtest/gtest.h>

namespace
{

using test::NoteCommand;

// Sends the header before its hello.
class Through : public test::Client
{
public:
    using Client::Client;
    bool attach(unsigned int handle) override
    {
        const test::Bytes header = test::headerOfPeer("203.0.113.7", 4711);
        return test::sendRaw(handle, header.data(), header.size()) && Client::attach(handle);
    }
};

TEST(TlsProxiedPort, HandshakeFollowsTheHeader)
{
    int number = 0;
    test::NoteAnalyser analyser([&](CCommandSocket*, const NoteCommand& note) { number = note.m_Number; });
    test::TlsLoopback net(analyser);
    ASSERT_TRUE(net.m_IsListening);
    ASSERT_TRUE(net.m_Server->expectProxyHeader(L"127.0.0.1"));
    const auto trust = test::makeClientContext();
    const test::ClientHandle client = new Through(analyser);
    client->start(&net.m_System);
    net.m_Clients.push_back(client);
    ASSERT_TRUE(client->setTlsContext(trust));
    ASSERT_TRUE(client->connect(L"127.0.0.1", net.m_Server->getPort(), false));
    ASSERT_TRUE(test::tickUntil(net.m_System, [&] { return client->isSecure(); }));
    ASSERT_TRUE(client->send(NoteCommand(7)));
    ASSERT_TRUE(test::tickUntil(net.m_System, [&] { return number == 7; }));
    EXPECT_TRUE(net.accepted()->isSecure());
    EXPECT_STREQ(net.accepted()->getPeerName(), L"203.0.113.7:4711");
}

} // namespace
