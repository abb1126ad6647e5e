// The scripted players of arena: what they do when a connection ends, and what their audit finds.
#include "tests/arena/player_steps.h"

// The players are coroutines.
#ifdef __cpp_impl_coroutine

using test::FakePlatform;
using test::has;

TEST(ArenaPlayer, LogsInPlaysAndFindsItsRecordAgain)
{
    FakePlatform platform;
    const test::Run run = platform.play("--platform 127.0.0.1:%d --script echo --verbose");
    EXPECT_EQ(run.m_Code, 0) << run.m_Output;
    EXPECT_TRUE(has(run, "Ann: CCmdBaseLogin -> CCmdLoginSuccess\n")) << run.m_Output;
    EXPECT_TRUE(has(run, "CCmdServerEcho: 10 sent, 10 answered, 0 refused")) << run.m_Output;
    // The second one is that of the audit.
    EXPECT_TRUE(has(run, "CCmdBaseLogin: 2 sent, 2 answered, 0 refused")) << run.m_Output;
    EXPECT_TRUE(has(run, "players: 1 done, 0 findings\n")) << run.m_Output;
    EXPECT_EQ(platform.m_Logins, 2);
    EXPECT_EQ(platform.m_Echoes, 10);
}

TEST(ArenaPlayer, ComesBackAfterAKick)
{
    FakePlatform platform;
    platform.m_KickedAt = 4;
    const test::Run run = platform.play("--platform 127.0.0.1:%d --script echo --verbose");
    EXPECT_EQ(run.m_Code, 0) << run.m_Output;
    EXPECT_TRUE(has(run, "Ann: CCmdAccountKickOut\n")) << run.m_Output;
    EXPECT_TRUE(has(run, "players: 1 done, 0 findings\n")) << run.m_Output;
    // The script is played again from its start.
    EXPECT_EQ(platform.m_Echoes, 14);
    EXPECT_EQ(platform.m_Logins, 3);
}

TEST(ArenaPlayer, TakesTheNextAddressIfOneFails)
{
    FakePlatform platform;
    const test::Run run = platform.play("--platform 127.0.0.1:1 --platform 127.0.0.1:%d --players 3 --no-login");
    EXPECT_EQ(run.m_Code, 0) << run.m_Output;
    EXPECT_EQ(platform.m_Echoes, 30);
}

TEST(ArenaPlayer, MovesToTheServerThatThePlatformNames)
{
    FakePlatform platform;
    zet::Unknown::Handle_T<test::Server> first;
    zet::Unknown::Handle_T<test::Server> second(new test::Server(platform.m_Analyser.get()));
    platform.m_Prepare = [&](test::Loopback& loopback)
    {
        first = loopback.m_Server;
        EXPECT_TRUE(second->start(&loopback.m_System) && second->listen(0, 10));
        platform.m_Chosen = second->zet::TcpServer::getPort();
        return "";
    };
    const test::Run run = platform.play("--platform 127.0.0.1:%d --script echo --choose-server --verbose");
    EXPECT_EQ(run.m_Code, 0) << run.m_Output;
    EXPECT_TRUE(has(run, "Ann: moves to 127.0.0.1:" + std::to_string(platform.m_Chosen))) << run.m_Output;
    EXPECT_EQ(first->m_Accepted.size(), 1U);
    // One to play, one for the audit.
    EXPECT_EQ(second->m_Accepted.size(), 2U);
    EXPECT_EQ(platform.m_Logins, 2);
    second->close();
}

TEST(ArenaPlayer, FindsARecordThatIsNotTheLastOne)
{
    FakePlatform platform;
    platform.m_IsForgetful = true;
    const test::Run run = platform.play("--platform 127.0.0.1:%d --script echo");
    EXPECT_EQ(run.m_Code, 1) << run.m_Output;
    EXPECT_TRUE(has(run, "Ann: FAILED the record after the last login is not the one before\n")) << run.m_Output;
    EXPECT_TRUE(has(run, "finding: 1 expectations were not met\n")) << run.m_Output;
}

TEST(ArenaPlayer, FindsARefusedLogin)
{
    FakePlatform platform;
    platform.m_Refuses = true;
    const test::Run run = platform.play("--platform 127.0.0.1:%d --script echo");
    EXPECT_EQ(run.m_Code, 1) << run.m_Output;
    EXPECT_TRUE(has(run, "Ann: FAILED CCmdBaseLogin -> CCmdLoginFail 0: not today\n")) << run.m_Output;
    EXPECT_TRUE(has(run, "CCmdBaseLogin: 1 sent, 0 answered, 1 refused")) << run.m_Output;
    EXPECT_TRUE(has(run, "finding: Ann has played nothing\n")) << run.m_Output;
}

TEST(ArenaPlayer, FindsAWrongAnswer)
{
    FakePlatform platform;
    platform.m_Lie = 1;
    const test::Run run = platform.play("--platform 127.0.0.1:%d --no-login");
    EXPECT_EQ(run.m_Code, 1) << run.m_Output;
    EXPECT_TRUE(has(run, "Ann: FAILED no echo of 1\n")) << run.m_Output;
}

#endif
