// After a peer's RESET_STREAM or STOP_SENDING the connection reported that the peer had closed it and that everything
// was received. Both mean that data is lost, with STOP_SENDING the data sent next, so the connection is broken. A
// stream that the peer has finished is a different case.
#include "tests/support/quic_test.h"

namespace
{

using test::NoteCommand;
using test::NoteSocket;

class CutStream : public test::QuicTest
{
protected:
    void SetUp() override
    {
        QuicTest::SetUp();
        ASSERT_TRUE(connectPeer());
        m_Peer->send(messageOf(NoteCommand(1)));
        ASSERT_TRUE(m_Net.until([&] { return m_Net.accepted().m_Numbers.size() == 1; }, 2000));
    }
    void expectEnd(NoteSocket::ConnectionState state)
    {
        ASSERT_TRUE(m_Net.until([&] { return m_Net.accepted().m_Closes == 1; }, 2000));
        EXPECT_EQ(m_Net.accepted().m_StateAtClose, state);
    }
};

TEST_F(CutStream, ByAResetIsBroken)
{
    m_Peer->reset();
    ASSERT_NO_FATAL_FAILURE(expectEnd(NoteSocket::kBroken));
}

TEST_F(CutStream, ByAPeerThatStopsReadingIsBroken)
{
    m_Peer->stop();
    settle();
    // Data sent from here on is lost.
    ASSERT_TRUE(m_Net.accepted().send(NoteCommand(2)));
    ASSERT_NO_FATAL_FAILURE(expectEnd(NoteSocket::kBroken));
}

TEST_F(CutStream, ByItsEndIsClosed)
{
    m_Peer->send(messageOf(NoteCommand(2)));
    m_Peer->finish();
    ASSERT_NO_FATAL_FAILURE(expectEnd(NoteSocket::kClosedByPeer));
    EXPECT_EQ(m_Net.accepted().m_Numbers, (std::vector<int>{1, 2}));
}

} // namespace
