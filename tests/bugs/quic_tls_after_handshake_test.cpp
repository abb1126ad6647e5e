// A TLS message after the handshake ended the process if it arrived with the handshake's last packet: TLS was still
// active and changed its keys, and ngtcp2 failed an assertion, since it already had keys. Data after the handshake is
// no longer passed to TLS. In the handshake's own packets GnuTLS has always refused it.
#include "tests/support/quic_test.h"

namespace
{

// A TLS message that requests new keys, without a reply.
const std::string kKeyUpdate("\x18\0\0\x01\0", 5);

class TlsAfterHandshake : public test::QuicTest
{
protected:
    // A client that sends its first data at once, together with the end of the handshake.
    static test::QuicWish eager(std::function<void(unsigned char, std::string&)> change)
    {
        test::QuicWish wish;
        wish.m_IsEager = true;
        wish.m_IsJoining = true;
        wish.m_ChangePayload = std::move(change);
        return wish;
    }
    void meet(const test::QuicWish& wish)
    {
        beginPeer(wish);
        m_Peer->send(std::string(100, 'i'));
        settle();
        EXPECT_TRUE(isServing());
    }
};

TEST_F(TlsAfterHandshake, InAPacketOfItsOwnIsNotTaken)
{
    int count = 0;
    meet(eager(
        [&](unsigned char first, std::string& payload)
        {
            if (test::isShort(first) && ++count == 1)
                payload = test::cryptoFrame(kKeyUpdate);
        }));
    EXPECT_GE(count, 1);
}

TEST_F(TlsAfterHandshake, AfterItsLastMessageIsNotTaken)
{
    int count = 0;
    auto wish = eager(
        [&](unsigned char first, std::string& payload)
        {
            const size_t finished = payload.find(std::string("\x14\0\0", 3));
            if (!test::isHandshake(first) || finished == std::string::npos)
                return;
            const size_t size = 4 + static_cast<size_t>(payload[finished + 3]);
            payload = test::cryptoFrame(payload.substr(finished, size)) + test::cryptoFrame(kKeyUpdate, size);
            ++count;
        });
    // Leaves space for the second frame.
    wish.m_BehindFinished = std::string(20, '\0');
    meet(wish);
    EXPECT_GE(count, 1);
}

} // namespace
