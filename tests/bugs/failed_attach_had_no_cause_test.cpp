// A TCP port that could not take over a handle said so by false alone: getFault() kept the cause of an earlier failure,
// or none, though its comment promised the cause of a failed attach().
#include "framework/system.h"
#include "net/tcp/server.h"

#include <gtest/gtest.h>

namespace
{

TEST(Bugs, AFailedAttachOfATcpPortHasItsCause)
{
    zet::TcpServer port;
    EXPECT_EQ(port.getFault().m_Code, zet::EndCause::kNone);
    // Not a handle of this process.
    EXPECT_FALSE(port.attach(0x7FFFFFF0));
    EXPECT_EQ(port.getFault().m_Code, zet::EndCause::kSystem);
    ASSERT_TRUE(port.listen(0, 1));
    EXPECT_FALSE(port.attach(0x7FFFFFF0));
    EXPECT_EQ(port.getFault().m_Code, zet::EndCause::kHeld);
    EXPECT_EQ(port.getEndCount(zet::EndCause::kHeld), 1u);
}

} // namespace
