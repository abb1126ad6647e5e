// Peers that seal anything into good packets. The process goes on, and no connection is left.
#include "tests/support/quic_hostile.h"

#include "tests/support/udp_test.h"

#include <random>

namespace
{

// Each meeting has its own seed, so that one can be repeated alone.
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
