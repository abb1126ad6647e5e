// A server's packet with a short header in the same datagram as the end of its handshake ended the client's process:
// ngtcp2 reads it before it has sent the client's last handshake messages. With a frame that confirms the handshake it
// then used freed memory, and with one that retires the server's first id it failed an assertion. Such packets now wait
// until those messages are sent.
#include "tests/support/quic_test.h"

namespace
{

using test::NoteSocket;

class EarlyPacket : public test::QuicTest
{
protected:
    // A server whose first packet with a short header is sent with its handshake and contains these bytes.
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
        // Such a server can expect only that its client survives.
        EXPECT_TRUE(isServing());
    }
};

TEST_F(EarlyPacket, ThatSaysTheHandshakeIsOverWaits)
{
    expectEnd(early("\x1E"));
}

TEST_F(EarlyPacket, ThatRetiresTheFirstIdWaits)
{
    // Number 1, all earlier ones retired, 16 bytes of id and 16 of token.
    auto wish = early("\x18\x01\x01\x10" + std::string(16, 'a') + std::string(16, 'b'));
    // The first id also has a token.
    wish.m_ChangeParams = [](std::string& params) { params += "\x02\x10" + std::string(16, 'c'); };
    expectEnd(wish);
}

TEST_F(EarlyPacket, OfAnHonestServerIsNotLost)
{
    // Its token.
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
