// A peer that leaves gaps in its stream makes the library store each of them, and gets as far as their number allows.
#include "tests/support/allocations.h"
#include "tests/support/quic_test.h"

namespace
{

constexpr unsigned int kWindow = 256 * 1024;
// Of QUIC's error codes.
constexpr uint64_t kProtocolViolation = 0xA;

class Gaps : public test::QuicTest
{
protected:
    // STREAM frames of one byte each, every other byte from the given place on, as many as fit in the size.
    std::string frames(size_t size)
    {
        std::string frames;
        for (; frames.size() + 8 <= size && m_Offset < kWindow; m_Offset += 2)
        {
            frames += std::string("\x0E\0", 2);
            for (const int shift : {24, 16, 8, 0})
                frames += static_cast<char>((m_Offset >> shift & 0xFF) | (shift == 24 ? 0x80 : 0));
            frames += "\x01g";
        }
        return frames;
    }

    // After the id and what is sent in order.
    unsigned int m_Offset = 4096;
};

TEST_F(Gaps, OfAStreamEndItsConnectionAboveAThousand)
{
    test::QuicWish wish;
    bool isSending = false;
    wish.m_ChangePayload = [&](unsigned char first, std::string& payload)
    {
        if (isSending && test::isShort(first))
            payload = frames(payload.size());
    };
    ASSERT_TRUE(connectPeer(wish));
    settle();
    const auto before = test::bytesInUse();
    long long most = 0;
    isSending = true;
    const unsigned int begin = m_Offset;
    for (int i = 0; i < 3000 && m_Offset < kWindow && !m_Peer->isOver(); ++i)
    {
        m_Peer->send(std::string(1000, 's'));
        m_Net.step();
        if (before)
            most = std::max(most, *test::bytesInUse() - *before);
    }
    EXPECT_EQ(m_Peer->getCloseCode(), kProtocolViolation);
    EXPECT_LE(m_Offset - begin, 2U * 1200);
    EXPECT_TRUE(m_Net.until([&] { return m_Net.m_Server->getConnectionCount() == 0; }, 60000));
    isSending = false;
    EXPECT_TRUE(isServing());
    if (!before)
        GTEST_SKIP() << test::kNobodyTellsBytes;
    EXPECT_LT(most, 1024 * 1024);
}

} // namespace
