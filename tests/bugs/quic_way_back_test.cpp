// A peer whose port changed and soon changed back ended the process: ngtcp2 restarts path MTU discovery when the peer
// is back, and asserts that discovery is enabled. It is now enabled, and finds nothing to probe below the configured
// packet size.
#include "tests/support/quic_test.h"

namespace
{

using test::NoteCommand;

class WayBack : public test::QuicTest
{
protected:
    // Sends a packet from the peer's current port, without a packet from the server in between.
    void comeBy(int number)
    {
        m_Peer->send(messageOf(NoteCommand(number)));
        m_Peer->step();
    }
    void goAndComeBack()
    {
        settle();
        for (int i = 1; i <= 10; ++i)
        {
            m_Peer->rebind();
            comeBy(2 * i - 1);
            m_Net.step();
            m_Peer->rebindBack();
            comeBy(2 * i);
            ASSERT_TRUE(
                m_Net.until([&] { return m_Net.accepted().m_Numbers.size() == static_cast<size_t>(2 * i); }, 5000))
                << i;
        }
        EXPECT_EQ(m_Net.accepted().getPeerPort(), m_Peer->getPort());
        EXPECT_EQ(m_Net.accepted().m_Closes, 0);
    }
};

TEST_F(WayBack, OfAPeerWhoseOldPortIsNotForgottenYetIsTaken)
{
    ASSERT_TRUE(connectPeer());
    goAndComeBack();
}

TEST_F(WayBack, OfAPeerThatGivesItselfNoIdIsTaken)
{
    test::QuicWish wish;
    wish.m_IdSize = 0;
    ASSERT_TRUE(connectPeer(wish));
    goAndComeBack();
}

} // namespace
