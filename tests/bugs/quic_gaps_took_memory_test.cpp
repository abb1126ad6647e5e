// A peer that sent every other byte of its window made ngtcp2 hold a gap for each byte that was missing: 131,072 of
// them, 13 MB for one connection of 256 KiB. What ngtcp2 takes for a connection has a bound now, and the connection
// that reaches it is ended.
#include "tests/support/allocations.h"
#include "tests/support/quic_test.h"

namespace
{

constexpr unsigned int kWindow = 256 * 1024;

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

    // Behind the id and what goes in order.
    unsigned int m_Offset = 4096;
};

TEST_F(Gaps, InAStreamTakeABoundedAmountOfMemory)
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
    for (int i = 0; i < 3000 && m_Offset < kWindow && !m_Peer->isOver(); ++i)
    {
        m_Peer->send(std::string(1000, 's'));
        m_Net.step();
        if (before)
            most = std::max(most, *test::bytesInUse() - *before);
    }
    EXPECT_TRUE(m_Net.until([&] { return m_Net.m_Server->getConnectionCount() == 0; }, 60000));
    isSending = false;
    EXPECT_TRUE(isServing());
    if (!before)
        GTEST_SKIP() << test::kNobodyTellsBytes;
    EXPECT_LT(most, 9 * 1024 * 1024);
}

} // namespace
