// A program that a host started inherited the host's UDP ports, like its other handles.
#ifdef __linux__

#include "tests/support/handles_of_program.h"
#include "tests/support/udp_loopback.h"

#include <gtest/gtest.h>

namespace
{

TEST(Bugs, AStartedProgramInheritsNoUdpPort)
{
    if (!zet::UdpServer::isAvailable())
        GTEST_SKIP() << "built without connections over UDP";
    const std::multiset<std::string> before = test::handlesOfAProgram();
    test::UdpNet udp;
    ASSERT_TRUE(udp.m_IsListening);
    ASSERT_FALSE(udp.connect().isNull());
    EXPECT_EQ(test::handlesOfAProgram(), before);
}

} // namespace

#endif
