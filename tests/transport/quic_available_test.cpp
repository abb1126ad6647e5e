// A library that was built with connections over UDP has them: other tests skip where it has none.
#include "net/quic/server.h"

#include <gtest/gtest.h>

namespace
{

TEST(QuicAvailable, InThisBuild)
{
    EXPECT_TRUE(zet::UdpServer::isAvailable());
}

} // namespace
