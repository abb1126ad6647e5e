// A scripted player of arena through a real SOCKS5 server.
#include "tests/arena/player_steps.h"
#include "tests/support/socks_server.h"

#ifdef __cpp_impl_coroutine

using test::FakePlatform;

TEST(ArenaProxiedPlayer, PlaysThroughAProxy)
{
    std::unique_ptr<test::SocksServer> proxy;
    FakePlatform platform;
    platform.m_Prepare = [&](test::Loopback& loopback)
    {
        proxy = std::make_unique<test::SocksServer>(loopback.m_System, std::vector<std::string>());
        return " --proxy 127.0.0.1:" + std::to_string(proxy->port());
    };
    const test::Run run = platform.play("--platform 127.0.0.1:%d --no-login --verbose");
    if (!proxy->isUp())
        GTEST_SKIP() << proxy->reason();
    EXPECT_EQ(run.m_Code, 0) << run.m_Output;
    EXPECT_EQ(platform.m_Echoes, 10);
    // Without the proxy there is no way.
    proxy.reset();
    platform.m_Prepare = [](test::Loopback&) { return " --proxy 127.0.0.1:1"; };
    EXPECT_EQ(platform.play("--platform 127.0.0.1:%d --no-login").m_Code, 1);
    EXPECT_EQ(platform.m_Echoes, 10);
}

#endif
