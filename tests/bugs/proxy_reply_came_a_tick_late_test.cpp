// A proxy socket outside a System saw each reply one tick late: it received first, and only the tick of the connection
// below checked for input.
#include "tests/support/scripted_proxy.h"

#include <gtest/gtest.h>

namespace
{

using test::Bytes;
using test::ProxyClient;
using test::tickUntil;

TEST(Bugs, AProxySocketInNoSystemSeesAReplyWithItsNextTick)
{
    zet::System system;
    system.init();
    const zet::Unknown::Handle_T<test::ProxyServer> proxy = new test::ProxyServer;
    proxy->start(&system);
    ASSERT_TRUE(proxy->listen(0, 5));
    const test::BothLogs logs;
    const test::ProxyClientHandle client = new ProxyClient(nullptr);
    client->SetProxy(test::kHere, proxy->getPort(), L"", L"");
    ASSERT_TRUE(client->connect(test::kTarget, test::kTargetPort, false));
    const auto hears = [&](const Bytes& bytes)
    {
        return tickUntil(system,
                         [&]
                         {
                             client->onTick(0);
                             return proxy->m_Stream && proxy->m_Stream->available() == static_cast<int>(bytes.size());
                         }) &&
               proxy->m_Stream->skip(static_cast<int>(bytes.size())) > 0;
    };
    const auto answer = [&](const Bytes& bytes)
    {
        EXPECT_GT(proxy->m_Stream->send(bytes.data(), static_cast<int>(bytes.size())), 0);
        system.tick();
        client->onTick(0);
    };
    ASSERT_TRUE(hears(test::kGreeting));
    answer({5, 0});
    EXPECT_EQ(client->m_ProxyState, ProxyClient::kAwaitsTarget);
    ASSERT_TRUE(hears(test::kRequest));
    answer(test::kGranted);
    EXPECT_EQ(client->m_ProxyState, ProxyClient::kWorking);
    client->close();
    system.exit();
}

} // namespace
