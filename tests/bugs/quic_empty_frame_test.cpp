// A stream that a frame without bytes ended before the 16 bytes of an id had arrived made the server copy zero bytes
// from a null pointer, which the undefined behaviour sanitizer reports.
#include "tests/support/quic_test.h"

namespace
{

class EmptyFrame : public test::QuicTest
{
};

TEST_F(EmptyFrame, ThatEndsAStreamOfNoBytesEndsTheConnection)
{
    beginPeer();
    m_Peer->finish();
    ASSERT_TRUE(m_Net.until([&] { return m_Peer->isOver(); }, 2000));
    EXPECT_EQ(m_Net.m_Server->getConnectionCount(), 0);
    EXPECT_TRUE(m_Net.m_Server->m_VisitorIds.empty());
}

} // namespace
