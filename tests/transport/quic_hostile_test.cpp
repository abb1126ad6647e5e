// Peers that seal arbitrary frames into valid packets. The process keeps running, and no connection is left.
#include "tests/support/quic_hostile.h"

#include "tests/support/udp_test.h"

#include <random>

namespace
{

// Each connection has its own seed, so that it can be repeated alone.
constexpr unsigned int kMeetings = 300;

TEST(QuicHostile, NoPeerEndsTheProcessOrLeavesAConnection)
{
    if (!zet::UdpServer::isAvailable())
        GTEST_SKIP() << "built without connections over UDP";
    for (unsigned int seed = 0; seed < kMeetings; ++seed)
    {
        SCOPED_TRACE(seed);
        std::mt19937 random(seed);
        ASSERT_EQ(test::meetHostilePeer([&] { return static_cast<unsigned char>(random()); }), 0);
    }
}

} // namespace
