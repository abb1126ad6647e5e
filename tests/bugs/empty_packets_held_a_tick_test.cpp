// A peer that sent only empty packets prolonged a tick for as long as it sent: the reader skipped them in a loop of its
// own, and the tick's budget was checked only before each packet that it passed on. A net session did the same, before
// any greeting. Now one read() skips a bounded number of them and reports that there may be more.
#include "framework/memory_stream.h"
#include "framework/time.h"
#include "tests/support/net_pair.h"
#include "tests/support/raw_peer.h"
#include "tests/support/system_calls.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>

namespace
{

using test::Loopback;
using test::NoteAnalyser;
using test::RawPeer;
using test::tickUntil;

// What a reader without a packet leaves unread after at most the given number of calls.
int callsUntilDry(zet::PacketReader& reader, int most)
{
    std::span<const unsigned char> packet;
    for (int calls = 1; calls <= most; ++calls)
    {
        EXPECT_TRUE(reader.read(packet));
        EXPECT_TRUE(packet.empty());
        if (!reader.hasPaused())
            return calls;
    }
    return most + 1;
}

// Shows nothing in place.
class Copying : public zet::Input
{
public:
    explicit Copying(int zeros) : m_Left(zeros) {}
    int available() const override { return m_Left; }
    int peek(void* data, int size) override
    {
        const int count = std::min(size, m_Left);
        std::memset(data, 0, static_cast<size_t>(count));
        return count;
    }
    int read(void* data, int size) override
    {
        const int count = peek(data, size);
        m_Left -= count;
        return count;
    }

private:
    int m_Left;
};

TEST(Bugs, AReaderPausesAmongEmptyPackets)
{
    constexpr int kAtOnce = zet::PacketReader::kEmptyAtOnce;
    const std::vector<unsigned char> zeros(4 * (3 * kAtOnce + 5), 0);
    const auto stream = zet::MemoryStream::createInstance();
    stream->write(zeros.data(), static_cast<int>(zeros.size()));
    zet::PacketReader reader;
    reader.attach(stream.get());
    EXPECT_EQ(callsUntilDry(reader, 10), 4);
    EXPECT_EQ(stream->available(), 0);

    Copying copying(static_cast<int>(zeros.size()));
    reader.attachOwner(&copying);
    EXPECT_EQ(callsUntilDry(reader, 10), 4);
    EXPECT_EQ(copying.available(), 0);
}

TEST(Bugs, APacketAfterEmptyOnesIsReadThoughTheReaderPauses)
{
    std::vector<unsigned char> bytes(4 * (zet::PacketReader::kEmptyAtOnce + 1), 0);
    bytes.insert(bytes.end(), {1, 0, 0, 0, 'x'});
    const auto stream = zet::MemoryStream::createInstance();
    stream->write(bytes.data(), static_cast<int>(bytes.size()));
    zet::PacketReader reader;
    reader.attach(stream.get());
    std::span<const unsigned char> packet;
    ASSERT_TRUE(reader.read(packet));
    EXPECT_TRUE(packet.empty());
    EXPECT_TRUE(reader.hasPaused());
    ASSERT_TRUE(reader.read(packet));
    EXPECT_FALSE(reader.hasPaused());
    ASSERT_EQ(packet.size(), 1u);
    EXPECT_EQ(packet[0], 'x');
}

#ifdef COUNTS_SYSTEM_CALLS
// Peers that send zeros endlessly, 64 KiB per millisecond.
struct Flood
{
    // A tick without a bound ends here.
    static constexpr int kMost = 500;
    // The tick of the stream skips one more.
    static constexpr int kBudget = static_cast<int>(CCommandSocket::kDispatchTime) + 1;

    Flood()
        : m_Receives(
              [this](void* data, size_t size) -> long
              {
                  if (m_Count == kMost)
                      return -1;
                  ++m_Count;
                  m_Clock.advance(1);
                  const size_t count = std::min<size_t>(size, 65536);
                  std::memset(data, 0, count);
                  return static_cast<long>(count);
              })
    {
    }

    zet::TestClock m_Clock{1000000000};
    int m_Count = 0;
    test::AnsweredReceives m_Receives;
};

// The time of a tick must be the only bound.
zet::NetLimits withoutTurns()
{
    zet::NetLimits limits;
    limits.m_TurnInput = 0;
    return limits;
}

TEST(Bugs, ATickOfACommandSocketEndsThoughEmptyPacketsGoOn)
{
    NoteAnalyser analyser;
    Loopback net(analyser);
    net.m_Server->setLimits(withoutTurns());
    RawPeer peer(net);
    ASSERT_TRUE(peer.m_IsUp);
    // So that the socket is ready.
    ASSERT_TRUE(peer.send({0}));
    ASSERT_TRUE(tickUntil(net.m_System, [&] { return net.accepted()->available() == 1; }));
    ASSERT_TRUE(peer.send({0}));
    Flood flood;
    ASSERT_TRUE(tickUntil(net.m_System, [&] { return flood.m_Count > 0; }));
    EXPECT_LE(flood.m_Count, Flood::kBudget);
    EXPECT_EQ(net.m_Server->GetClientCount(), 1);
    // Nothing is lost: the next ticks read the rest.
    EXPECT_TRUE(tickUntil(net.m_System, [&] { return flood.m_Count == Flood::kMost; }));
}

TEST(Bugs, ATickOfANetSessionEndsThoughEmptyPacketsGoOn)
{
    test::NetPair net;
    net.m_Server->setLimits(withoutTurns());
    const zet::Unknown::Handle_T<zet::TcpStream> stream = new zet::TcpStream;
    stream->start(&net.m_System);
    ASSERT_TRUE(stream->connect(L"127.0.0.1", net.m_Server->getPort(), false));
    ASSERT_TRUE(tickUntil(net.m_System, [&] { return !net.m_Server->m_Accepted.empty(); }));
    ASSERT_EQ(stream->send("", 1), 1);
    {
        Flood flood;
        ASSERT_TRUE(tickUntil(net.m_System, [&] { return flood.m_Count > 0; }));
        EXPECT_LE(flood.m_Count, Flood::kBudget);
    }
    stream->close();
    stream->stop();
}
#endif

} // namespace
