// As failed_attach_had_no_cause_test.cpp, for a UDP port.
#include "tests/support/udp_test.h"

namespace
{

class UdpFailedAttach : public test::UdpTest
{
};

TEST_F(UdpFailedAttach, HasItsCause)
{
    zet::UdpServer port;
    EXPECT_FALSE(port.attach(0x7FFFFFF0));
    EXPECT_EQ(port.getFault().m_Code, zet::EndCause::kSystem);
    ASSERT_TRUE(port.listen(0));
    EXPECT_FALSE(port.attach(0x7FFFFFF0));
    EXPECT_EQ(port.getFault().m_Code, zet::EndCause::kHeld);
    EXPECT_EQ(port.getEndCount(zet::EndCause::kHeld), 1u);
}

} // namespace
