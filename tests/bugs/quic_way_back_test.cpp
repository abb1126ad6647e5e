// A peer whose port changed on the way and changed back soon ended the process: ngtcp2 begins a search for the path's
// packet size anew when the peer is back, and asserts that such a search was not switched off. It is on now, and finds
// nothing to search for below the size that is set.
#include "tests/support/quic_test.h"

namespace
{

using test::NoteCommand;

class WayBack : public test::QuicTest
{
protected:
    // A packet of the peer comes by where it is now, and nothing of the server's leaves in between.
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
