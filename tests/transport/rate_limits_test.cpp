// The packets and bytes per second that a peer may send: honest peers are not touched, and each way to treat the
// others.
#include "net/inner/token_bucket.h"
#include "net/limits.h"
#include "tests/support/log_lines.h"
#include "tests/support/net_pair.h"
#include "tests/support/raw_peer.h"
#include "tests/support/simulated_sleep.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace
{

using test::ClientHandle;
using test::Loopback;
using test::NoteAnalyser;
using test::NoteCommand;
using test::packetOf;
using test::RawPeer;
using test::tickUntil;
using zet::NetLimits;
using zet::inner::TokenBucket;

constexpr int kEstablished = zet::TcpConnection::kEstablished;

TEST(TokenBucket, WithoutARateIsAlwaysOpen)
{
    TokenBucket bucket;
    EXPECT_TRUE(bucket.isOpen());
    bucket.start(0, 5, 1);
    bucket.take(1000000);
    EXPECT_TRUE(bucket.isOpen());
    EXPECT_EQ(bucket.getWait(), 0u);
    EXPECT_FALSE(bucket.hasRate());
}

TEST(TokenBucket, GivesItsBurstAndThenItsRate)
{
    TokenBucket bucket;
    // The clock wraps within the test.
    unsigned int now = 0xFFFFFFF0;
    bucket.start(4, 3, now);
    for (int i = 0; i < 3; ++i)
    {
        EXPECT_TRUE(bucket.isOpen());
        bucket.take(1);
    }
    EXPECT_FALSE(bucket.isOpen());
    EXPECT_EQ(bucket.getWait(), 250u);
    bucket.refill(now += 249);
    EXPECT_FALSE(bucket.isOpen());
    EXPECT_EQ(bucket.getWait(), 1u);
    bucket.refill(now += 1);
    EXPECT_TRUE(bucket.isOpen());
    // A pause fills it to the burst, no further.
    bucket.refill(now += 1000000);
    bucket.take(3);
    EXPECT_FALSE(bucket.isOpen());
}

TEST(TokenBucket, PaysADebtBeforeItOpens)
{
    TokenBucket bucket;
    bucket.start(1000, 0, 0);
    bucket.take(5000);
    EXPECT_EQ(bucket.getWait(), 4001u);
    bucket.refill(4000);
    EXPECT_FALSE(bucket.isOpen());
    bucket.refill(4001);
    EXPECT_TRUE(bucket.isOpen());
}

TEST(TokenBucket, SurvivesTheLargestNumbers)
{
    TokenBucket bucket;
    bucket.start(0x7FFFFFFF, 0x7FFFFFFF, 0);
    for (int i = 0; i < 100; ++i)
        bucket.take(0x7FFFFFFF);
    bucket.refill(0xFFFFFFFF);
    EXPECT_TRUE(bucket.isOpen());
    bucket.start(1, 1, 0);
    bucket.take(0x7FFFFFFF);
    EXPECT_EQ(bucket.getWait(), 0x3FFFFFFFu);
}

NetLimits packetsPerSecond(int rate, int burst, NetLimits::OverRate over)
{
    NetLimits limits;
    limits.m_PacketsPerSecond = rate;
    limits.m_PacketBurst = burst;
    limits.m_OverRate = over;
    return limits;
}

std::vector<unsigned char> repeated(const std::vector<unsigned char>& bytes, int times)
{
    std::vector<unsigned char> all;
    for (int i = 0; i < times; ++i)
        all.insert(all.end(), bytes.begin(), bytes.end());
    return all;
}

// A server whose commands are counted, with a clock of its own.
struct Counted
{
    explicit Counted(const NetLimits& limits) : m_Analyser([this](auto*, const auto&) { ++m_Got; }), m_Net(m_Analyser)
    {
        m_Net.m_Server->setLimits(limits);
    }
    // Ticks often enough for everything that is there to be handled.
    void tick()
    {
        for (int i = 0; i < 10; ++i)
            m_Net.m_System.tick();
    }

    zet::TestClock m_Clock{1000000000};
    int m_Got = 0;
    NoteAnalyser m_Analyser;
    Loopback m_Net;
};

constexpr const char* kOverRateNames[] = {"Delay", "Refuse", "Close"};

class OverRate : public testing::TestWithParam<NetLimits::OverRate>
{
};

TEST_P(OverRate, AnHonestPeerIsNeverTouched)
{
    NetLimits limits = packetsPerSecond(10, 5, GetParam());
    const auto packet = packetOf(NoteCommand(1, 100));
    limits.m_BytesPerSecond = static_cast<int>(packet.size()) * 10;
    limits.m_ByteBurst = static_cast<int>(packet.size()) * 5;
    Counted net(limits);
    RawPeer peer(net.m_Net);
    ASSERT_TRUE(peer.m_IsUp);
    ASSERT_TRUE(peer.send(repeated(packet, 5)));
    net.tick();
    EXPECT_EQ(net.m_Got, 5);
    for (int i = 0; i < 50; ++i)
    {
        net.m_Clock.advance(100);
        ASSERT_TRUE(peer.send(packet));
        net.tick();
        ASSERT_EQ(net.m_Got, 6 + i);
    }
    EXPECT_EQ(net.m_Net.accepted()->getConnectionState(), kEstablished);
    EXPECT_EQ(net.m_Net.m_Server->getRefusedPackets(), 0u);
}

INSTANTIATE_TEST_SUITE_P(RateLimits, OverRate,
                         testing::Values(NetLimits::kDelay, NetLimits::kRefuse, NetLimits::kClose),
                         [](const auto& info) { return std::string(kOverRateNames[info.param]); });

TEST(RateLimits, ADelayedPeerLosesNothingAndHoldsItsRate)
{
    Counted net(packetsPerSecond(10, 5, NetLimits::kDelay));
    RawPeer peer(net.m_Net);
    ASSERT_TRUE(peer.m_IsUp);
    // More than the buffers of a connection hold.
    const int count = 10000;
    ASSERT_TRUE(peer.send(repeated(packetOf(NoteCommand(1, 2000)), count)));
    net.tick();
    EXPECT_EQ(net.m_Got, 5);
    for (int i = 0; i < 20; ++i)
    {
        net.m_Clock.advance(99);
        net.tick();
        EXPECT_EQ(net.m_Got, 5 + i);
        net.m_Clock.advance(1);
        net.tick();
        EXPECT_EQ(net.m_Got, 6 + i);
    }
    // A pause of the server gives the burst.
    net.m_Clock.advance(100000);
    net.tick();
    EXPECT_EQ(net.m_Got, 30);
    // The rest stays with the peer and in the system.
    EXPECT_GT(peer.m_Stream->getOutputSize(), 0u);
    for (int i = 0; net.m_Got < count && i < count; ++i)
    {
        net.m_Clock.advance(500);
        net.m_Net.m_System.tick();
    }
    EXPECT_EQ(net.m_Got, count);
    EXPECT_EQ(net.m_Net.accepted()->getConnectionState(), kEstablished);
}

TEST(RateLimits, ADelayedPeerIsNotIdle)
{
    NetLimits limits = packetsPerSecond(1, 1, NetLimits::kDelay);
    limits.m_IdleTime = 1500;
    Counted net(limits);
    RawPeer peer(net.m_Net);
    ASSERT_TRUE(peer.m_IsUp);
    ASSERT_TRUE(peer.send(repeated(packetOf(NoteCommand(1)), 6)));
    net.tick();
    for (int i = 1; i < 6; ++i)
    {
        net.m_Clock.advance(1000);
        net.tick();
        EXPECT_EQ(net.m_Got, i + 1);
    }
    net.m_Clock.advance(1501);
    net.tick();
    EXPECT_EQ(net.m_Net.m_Server->getEndCount(zet::EndCause::kTimedOut), 1u);
}

TEST(RateLimits, ALongPacketIsADebt)
{
    NetLimits limits;
    limits.m_BytesPerSecond = 1000;
    const auto small = packetOf(NoteCommand(1));
    const auto large = packetOf(NoteCommand(1, 10000));
    Counted net(limits);
    RawPeer peer(net.m_Net);
    ASSERT_TRUE(peer.m_IsUp);
    ASSERT_TRUE(peer.send(large));
    ASSERT_TRUE(peer.send(small));
    net.tick();
    EXPECT_EQ(net.m_Got, 1);
    // The burst of one second is paid back, and one byte more is needed.
    net.m_Clock.advance(static_cast<unsigned int>(large.size()) - 1000);
    net.tick();
    EXPECT_EQ(net.m_Got, 1);
    net.m_Clock.advance(1);
    net.tick();
    EXPECT_EQ(net.m_Got, 2);
}

TEST(RateLimits, EmptyPacketsCount)
{
    Counted net(packetsPerSecond(10, 5, NetLimits::kDelay));
    RawPeer peer(net.m_Net);
    ASSERT_TRUE(peer.m_IsUp);
    ASSERT_TRUE(peer.send(std::vector<unsigned char>(4 * 25, 0)));
    net.tick();
    ASSERT_TRUE(peer.send(packetOf(NoteCommand(1))));
    net.tick();
    EXPECT_EQ(net.m_Got, 0);
    net.m_Clock.advance(2099);
    net.tick();
    EXPECT_EQ(net.m_Got, 0);
    net.m_Clock.advance(1);
    net.tick();
    EXPECT_EQ(net.m_Got, 1);
}

TEST(RateLimits, ARefusedPacketIsCountedAndLoggedWithinTheShare)
{
    NetLimits limits = packetsPerSecond(10, 5, NetLimits::kRefuse);
    limits.m_LogLines = 3;
    Counted net(limits);
    RawPeer peer(net.m_Net);
    ASSERT_TRUE(peer.m_IsUp);
    const test::LogLines log;
    ASSERT_TRUE(peer.send(repeated(packetOf(NoteCommand(1)), 100)));
    net.tick();
    EXPECT_EQ(net.m_Got, 5);
    EXPECT_EQ(net.m_Net.accepted()->getRefusedPackets(), 95u);
    EXPECT_EQ(net.m_Net.m_Server->getRefusedPackets(), 95u);
    const auto lines = log.texts();
    EXPECT_EQ(std::count_if(lines.begin(), lines.end(),
                            [](const std::wstring& line)
                            {
                                return line.find(L" bytes is refused: more packets or bytes per second than the limit "
                                                 L"\t(127.0.0.1:") != std::wstring::npos;
                            }),
              3);
    EXPECT_EQ(net.m_Net.accepted()->getConnectionState(), kEstablished);
    net.m_Clock.advance(200);
    ASSERT_TRUE(peer.send(repeated(packetOf(NoteCommand(1)), 3)));
    net.tick();
    EXPECT_EQ(net.m_Got, 7);
    EXPECT_EQ(net.m_Net.m_Server->getRefusedPackets(), 96u);
}

TEST(RateLimits, AClosedPeerHasItsCauseAndItsNeighbourStays)
{
    Counted net(packetsPerSecond(10, 5, NetLimits::kClose));
    const ClientHandle honest = net.m_Net.connect(net.m_Analyser);
    RawPeer peer(net.m_Net);
    ASSERT_TRUE(honest && peer.m_IsUp);
    const auto far = net.m_Net.accepted();
    ASSERT_TRUE(peer.send(repeated(packetOf(NoteCommand(1)), 6)));
    net.tick();
    EXPECT_EQ(net.m_Got, 5);
    EXPECT_EQ(far->getEndCause(), (zet::EndCause{zet::EndCause::kRateLimited, 0}));
    EXPECT_EQ(net.m_Net.m_Server->getEndCount(zet::EndCause::kRateLimited), 1u);
    EXPECT_EQ(net.m_Net.m_Server->GetClientCount(), 1);
    EXPECT_EQ(honest->getConnectionState(), kEstablished);
}

TEST(RateLimits, MessagesOfASessionAreDelayed)
{
    zet::TestClock clock(1000000000);
    test::NetPair net;
    NetLimits limits = packetsPerSecond(10, 5, NetLimits::kDelay);
    net.m_Server->setLimits(limits);
    const test::NotingHandle session = net.connect();
    ASSERT_TRUE(session);
    int got = 0;
    test::NetNotes::s_Handler = [&](unsigned long, unsigned long, const NoteCommand&) { ++got; };
    NoteCommand note(1);
    for (int i = 0; i < 8; ++i)
        ASSERT_TRUE(session->sendNetCommand(&note));
    const auto tick = [&]
    {
        for (int i = 0; i < 10; ++i)
            net.m_System.tick();
    };
    tick();
    // The greeting was the first packet.
    EXPECT_EQ(got, 4);
    clock.advance(100);
    tick();
    EXPECT_EQ(got, 5);
    clock.advance(300);
    tick();
    EXPECT_EQ(got, 8);
}

TEST(RateLimits, ASessionAboveItsRateEnds)
{
    zet::TestClock clock(1000000000);
    test::NetPair net;
    net.m_Server->setLimits(packetsPerSecond(10, 5, NetLimits::kClose));
    const test::NotingHandle session = net.connect();
    ASSERT_TRUE(session);
    const test::NotingHandle far = net.accepted();
    NoteCommand note(1);
    for (int i = 0; i < 5; ++i)
        ASSERT_TRUE(session->sendNetCommand(&note));
    EXPECT_TRUE(tickUntil(net.m_System, [&] { return far->m_Notes == "oex"; }));
    EXPECT_EQ(far->getEndCause().m_Code, zet::EndCause::kRateLimited);
}

// With a long tick interval the System sleeps exactly until the peer may send again.
TEST(RateLimits, ADelaySleepsUntilItsEnd)
{
    zet::TestClock clock(0);
    const auto door = std::make_shared<test::SleepingDoor>(clock);
    int got = 0;
    NoteAnalyser analyser([&](auto*, const auto&) { ++got; });
    zet::System system;
    system.init();
    ASSERT_TRUE(zet::inner::setDoor(system, door));
    system.setTickInterval(zet::System::kLongestInterval);
    const zet::Unknown::Handle_T<test::Server> server = new test::Server(analyser);
    server->start(&system);
    ASSERT_TRUE(server->listen(0, 5));
    server->setLimits(packetsPerSecond(2, 1, NetLimits::kDelay));
    const ClientHandle client = new test::Client(analyser);
    client->start(&system);
    ASSERT_TRUE(client->connect(L"127.0.0.1", server->getPort(), false));
    const auto run = [&](int until)
    {
        for (int i = 0; i < 1000 && got < until; ++i)
        {
            system.tick();
            if (got < until)
                system.wait();
        }
        return got == until;
    };
    for (int i = 0; i < 10; ++i)
        ASSERT_TRUE(client->send(NoteCommand(i)));
    ASSERT_TRUE(run(2));
    const unsigned int start = zet::getTimeTick();
    const int sleeps = door->m_Sleeps;
    ASSERT_TRUE(run(10));
    EXPECT_EQ(zet::getTimeTick() - start, 8u * 500);
    EXPECT_EQ(door->m_Sleeps - sleeps, 8);
    client->close();
    server->close();
    system.exit();
}

} // namespace
