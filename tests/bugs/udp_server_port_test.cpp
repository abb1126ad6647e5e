// A UDP server that was given only a port, without an address, reported port 0. So did one that took over a bound
// handle.
#include "tests/support/udp_test.h"

namespace
{

class UdpServerPort : public test::UdpTest
{
};

TEST_F(UdpServerPort, IsKnownWithoutAnAddress)
{
    const auto server = UdpServerSocket::createInstance();
    ASSERT_TRUE(server->listen(0));
    EXPECT_NE(server->GetPort(), 0);
    EXPECT_EQ(server->GetPort(), server->getPort());
    EXPECT_STREQ(server->GetIP().getBuffer(), zet::Socket::getHostName().getBuffer());
    server->close();
}

TEST_F(UdpServerPort, IsThatOfAHandleThatWasTakenOver)
{
    const unsigned short port = m_Net.m_Server->getPort();
    const unsigned int handle = m_Net.m_Server->detach();
    const auto server = UdpServerSocket::createInstance();
    ASSERT_TRUE(server->attach(handle));
    EXPECT_EQ(server->GetPort(), port);
    server->close();
}

} // namespace
