// A server's packet with a short head that came in one datagram with the end of its handshake ended the process of the
// client: ngtcp2 takes it before it has sent the client's last words of the handshake. With a frame that says that the
// handshake is over it then used memory that was gone, and with one that retires the server's first id it stopped at
// an assertion. Such packets now wait until those words are sent.
#include "tests/support/quic_test.h"

namespace
{

using test::NoteSocket;

class EarlyPacket : public test::QuicTest
{
protected:
    // A server whose first packet with a short head leaves with its handshake and has these bytes.
    static test::QuicWish early(const std::string& frames)
    {
        test::QuicWish wish;
        wish.m_IsJoining = true;
        wish.m_TokenSize = 100;
        wish.m_ChangePayload = [frames, isDone = false](unsigned char first, std::string& payload) mutable
        {
            if (test::isShort(first) && !isDone)
            {
                payload = frames;
                isDone = true;
            }
        };
        return wish;
    }
    void expectEnd(const test::QuicWish& wish)
    {
        const auto socket = beginToPeer(wish);
        ASSERT_TRUE(socket);
        ASSERT_TRUE(socket->send(test::NoteCommand(1)));
        m_Net.until([&] { return socket->m_Closes > 0 || !m_Peer->received().empty(); }, 2000);
        // What such a server may expect is no more than that its client lives.
        EXPECT_TRUE(isServing());
    }
};

TEST_F(EarlyPacket, ThatSaysTheHandshakeIsOverWaits)
{
    expectEnd(early("\x1E"));
}

TEST_F(EarlyPacket, ThatRetiresTheFirstIdWaits)
{
    // Number 1, all before it retired, 16 bytes of id and as many of token.
    auto wish = early("\x18\x01\x01\x10" + std::string(16, 'a') + std::string(16, 'b'));
    // The first id has a token, too.
    wish.m_ChangeParams = [](std::string& params) { params += "\x02\x10" + std::string(16, 'c'); };
    expectEnd(wish);
}

TEST_F(EarlyPacket, OfAnHonestServerIsNotLost)
{
    // Its token, as it is.
    test::QuicWish wish;
    wish.m_IsJoining = true;
    wish.m_TokenSize = 100;
    const auto socket = beginToPeer(wish);
    ASSERT_TRUE(socket);
    ASSERT_TRUE(socket->send(test::NoteCommand(1)));
    ASSERT_TRUE(m_Net.until([&] { return !m_Peer->received().empty(); }, 2000));
    EXPECT_EQ(socket->getConnectionState(), NoteSocket::kEstablished);
}

} // namespace
