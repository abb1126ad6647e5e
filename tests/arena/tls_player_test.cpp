// A scripted player of arena over TLS.
#include "tests/arena/player_steps.h"
#include "tests/support/tls_pair.h"

#ifdef __cpp_impl_coroutine

using test::FakePlatform;
using test::has;

static std::string useTls(test::Loopback& loopback)
{
    EXPECT_TRUE(loopback.m_Server->setTlsContext(test::makeServerContext()));
    return "";
}

TEST(ArenaTlsPlayer, PlaysOverTlsIfItTrustsTheAuthority)
{
    const test::TextFile authority(test::someAuthority().pem());
    FakePlatform platform;
    platform.m_Prepare = useTls;
    const test::Run run = platform.play("--platform 127.0.0.1:%d --no-login --tls \"" + authority.path() + '"');
    EXPECT_EQ(run.m_Code, 0) << run.m_Output;
    EXPECT_EQ(platform.m_Echoes, 10);
}

TEST(ArenaTlsPlayer, RefusesACertificateOfAnotherAuthority)
{
    const test::Authority other("Other Authority");
    const test::TextFile authority(other.pem());
    FakePlatform platform;
    platform.m_Prepare = useTls;
    const test::Run run = platform.play("--platform 127.0.0.1:%d --no-login --tls \"" + authority.path() + '"');
    EXPECT_EQ(run.m_Code, 1) << run.m_Output;
    EXPECT_TRUE(has(run, "Ann: FAILED no connection: certificate")) << run.m_Output;
    EXPECT_EQ(platform.m_Echoes, 0);
}

#endif
