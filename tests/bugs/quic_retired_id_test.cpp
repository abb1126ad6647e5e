// A connection id that a peer announced again after it had retired its number ended the process: ngtcp2 retired it
// twice and failed a check of its own. Any peer could do that with two frames, and an honest one whose packet was
// considered lost could come close to it. A repeated id is now removed before ngtcp2 reads it.
#include "tests/support/quic_test.h"

namespace
{

using test::NoteCommand;

// An id of 16 bytes with its token; ids below the second number are retired.
std::string idFrame(char number, char retired)
{
    return '\x18' + std::string{number, retired, '\x10'} + std::string(16, static_cast<char>('a' + number)) +
           std::string(16, static_cast<char>('A' + number));
}

class RetiredId : public test::QuicTest
{
protected:
    // Frames that replace the peer's next ones.
    test::QuicWish wish()
    {
        test::QuicWish wish;
        wish.m_ChangePayload = [this](unsigned char first, std::string& payload)
        {
            if (test::isShort(first) && !m_Frames.empty() && payload.size() >= m_Frames.size())
                payload = std::exchange(m_Frames, std::string());
        };
        return wish;
    }
    void sendFrames(const std::string& frames)
    {
        m_Frames = frames;
        m_Peer->send(std::string(600, 's'));
        settle();
        EXPECT_TRUE(m_Frames.empty());
    }

    std::string m_Frames;
};

TEST_F(RetiredId, ThatComesTwiceToAServerIsTakenOnce)
{
    ASSERT_TRUE(connectPeer(wish()));
    settle();
    // The peer has announced the numbers 1 to 7, so 9 is new, and all below 12 are retired.
    sendFrames(idFrame(12, 12) + idFrame(9, 0) + idFrame(9, 0));
    EXPECT_TRUE(isServing());
}

TEST_F(RetiredId, ThatWasInUseAndComesAgainIsNotTaken)
{
    ASSERT_TRUE(connectPeer(wish()));
    settle();
    sendFrames(idFrame(12, 12) + idFrame(3, 0) + idFrame(0, 0));
    EXPECT_TRUE(isServing());
}

TEST_F(RetiredId, ThatComesTwiceToAClientIsTakenOnce)
{
    const auto socket = beginToPeer(wish());
    ASSERT_TRUE(socket);
    ASSERT_TRUE(socket->send(NoteCommand(1)));
    ASSERT_TRUE(m_Net.until([&] { return m_Peer->isUp() && !m_Peer->received().empty(); }, 2000));
    settle();
    sendFrames(idFrame(12, 12) + idFrame(9, 0) + idFrame(9, 0));
    EXPECT_TRUE(isServing());
}

TEST_F(RetiredId, IsFoundAfterFramesOfEveryKind)
{
    const auto bytes = [](std::initializer_list<int> values) { return std::string(values.begin(), values.end()); };
    const std::string before[] = {
        // PADDING and PING; ACK of one packet, and with counts; CRYPTO.
        bytes({0, 0, 1}), bytes({2, 0, 0, 0, 0}), bytes({3, 0, 0, 0, 0, 0, 0, 0}), bytes({6, 0x40, 0x50, 1, 'c'}),
        // MAX_DATA, MAX_STREAM_DATA, MAX_STREAMS; DATA_BLOCKED, STREAM_DATA_BLOCKED, STREAMS_BLOCKED.
        bytes({0x10, 0x40, 1}), bytes({0x11, 0, 1}), bytes({0x12, 1}), bytes({0x13, 1}), bytes({0x14, 1}),
        bytes({0x15, 0, 1}), bytes({0x16, 1}), bytes({0x17, 0}),
        // PATH_CHALLENGE and PATH_RESPONSE.
        '\x1A' + std::string(8, 'p'), '\x1B' + std::string(8, 'q'),
        // STREAM with an offset and a length, and a type that ngtcp2 reads as one.
        bytes({0x0E, 0, 0, 1, 's'}), bytes({0x2E, 0, 0, 1, 's'})};
    for (const std::string& frames : before)
    {
        ASSERT_TRUE(connectPeer(wish()));
        settle();
        sendFrames(frames + idFrame(12, 12) + idFrame(9, 0) + frames + idFrame(9, 0));
        EXPECT_EQ(m_Peer->getCloseCode(), 0U) << static_cast<int>(frames[0]);
    }
    EXPECT_TRUE(isServing());
}

} // namespace
