// Peers that violate the protocol lose their own connection and affect little else.
#include "tests/support/allocations.h"
#include "tests/support/log_lines.h"
#include "tests/support/raw_handle.h"
#include "tests/support/raw_peer.h"

#include <gtest/gtest.h>

namespace
{

using test::bytesInUse;
using test::ClientHandle;
using test::Loopback;
using test::NoteAnalyser;
using test::NoteCommand;
using test::packetOf;
using test::RawPeer;
using test::tickUntil;

std::vector<unsigned char> announcement(unsigned int size)
{
    return {static_cast<unsigned char>(size), static_cast<unsigned char>(size >> 8),
            static_cast<unsigned char>(size >> 16), static_cast<unsigned char>(size >> 24)};
}

TEST(HostilePeer, APacketOf256MebibytesAnnouncedAndTenBytesSentCostsNothing)
{
    NoteAnalyser analyser;
    Loopback net(analyser);
    // Not even from an unknown peer.
    zet::NetLimits limits;
    limits.m_FirstInput = 0;
    net.m_Server->setLimits(limits);
    RawPeer peer(net);
    ASSERT_TRUE(peer.m_IsUp);
    auto bytes = announcement(0x0FFFFFFF);
    bytes.resize(10);
    const auto before = bytesInUse();
    ASSERT_TRUE(peer.send(bytes));
    ASSERT_TRUE(tickUntil(net.m_System, [&] { return net.accepted()->available() == 10; }));
    net.m_System.tick();
    const auto after = bytesInUse();
    EXPECT_EQ(net.m_Server->GetClientCount(), 1);
    // The connection waits for the rest; the others are served.
    int got = 0;
    analyser.m_Handler = [&](CCommandSocket*, const NoteCommand&) { ++got; };
    const ClientHandle other = net.connect(analyser);
    ASSERT_TRUE(other);
    ASSERT_TRUE(other->send(NoteCommand(1)));
    EXPECT_TRUE(tickUntil(net.m_System, [&] { return got == 1; }));
    if (!before)
        GTEST_SKIP() << test::kNobodyTellsBytes;
    EXPECT_LT(*after - *before, 200000);
}

TEST(HostilePeer, AFrameThatAnnouncesMoreThanItsPacketIsRefused)
{
    int got = 0;
    NoteAnalyser analyser([&](CCommandSocket*, const NoteCommand&) { ++got; });
    Loopback net(analyser);
    RawPeer peer(net);
    ASSERT_TRUE(peer.m_IsUp);
    test::LogLines lines;
    const auto before = bytesInUse();
    // A size word of 256 MiB less one in a packet of seven bytes.
    ASSERT_TRUE(peer.send({7, 0, 0, 0, 0x23, 0x01, 0xFC, 0xFF, 0xFF, 0x3F, 1}));
    ASSERT_TRUE(peer.send(packetOf(NoteCommand(1))));
    ASSERT_TRUE(tickUntil(net.m_System, [&] { return got == 1; }));
    EXPECT_TRUE(lines.has(zet::Log::kError, L"Error:Read Command(291) data error!"));
    EXPECT_EQ(net.m_Server->GetClientCount(), 1);
    if (!before)
        GTEST_SKIP() << test::kNobodyTellsBytes;
    EXPECT_LT(*bytesInUse() - *before, 1000000);
}

TEST(HostilePeer, ALengthAboveTheLimitClosesItsConnectionOnly)
{
    NoteAnalyser analyser;
    Loopback net(analyser);
    const ClientHandle good = net.connect(analyser);
    ASSERT_TRUE(good);
    RawPeer peer(net);
    ASSERT_TRUE(peer.m_IsUp);
    ASSERT_TRUE(peer.send(announcement(0xFFFFFFFF)));
    ASSERT_TRUE(tickUntil(net.m_System, [&] { return net.m_Server->GetClientCount() == 1; }));
    EXPECT_TRUE(tickUntil(net.m_System, [&] { return peer.m_Stream->getConnectionState() > 2; }));
    EXPECT_EQ(good->getConnectionState(), 2);
}

TEST(HostilePeer, OneThatNeverReadsCostsItsOwnConnection)
{
    NoteAnalyser server([](CCommandSocket* socket, const NoteCommand& note)
                        { socket->send(NoteCommand(note.m_Number, 60000)); });
    int answers = 0;
    NoteAnalyser client([&](CCommandSocket*, const NoteCommand&) { ++answers; });
    Loopback net(server);
    const ClientHandle good = net.connect(client);
    ASSERT_TRUE(good);
    RawPeer deaf(net);
    ASSERT_TRUE(deaf.m_IsUp);
    net.accepted()->setOutputLimit(1000000);
    // The peer has stopped ticking: its input stays in the system's buffers.
    deaf.m_Stream->sleep(0x7FFFFFFF);
    test::LogLines lines;
    int asked = 0;
    const auto question = packetOf(NoteCommand(1));
    for (int i = 0; i < 1000 && net.m_Server->GetClientCount() == 2; ++i)
    {
        ASSERT_TRUE(deaf.send(question));
        ASSERT_TRUE(good->send(NoteCommand(2)));
        ++asked;
        net.m_System.tick();
        EXPECT_LE(net.accepted()->getOutputSize(), 1000000U + 60100U);
    }
    EXPECT_EQ(net.m_Server->GetClientCount(), 1);
    const auto report =
        L"Error while writing data to network:" + std::wstring(net.accepted()->getPeerName().getBuffer());
    EXPECT_TRUE(lines.has(zet::Log::kError, report));
    EXPECT_TRUE(tickUntil(net.m_System, [&] { return answers == asked; }));
    EXPECT_EQ(good->getConnectionState(), 2);
}

TEST(HostilePeer, BytesThatTrickleInHoldLittleMemory)
{
    int got = 0;
    NoteAnalyser analyser([&](CCommandSocket*, const NoteCommand&) { ++got; });
    Loopback net(analyser);
    constexpr int kPeers = 50;
    std::vector<std::unique_ptr<RawPeer>> peers;
    for (int i = 0; i < kPeers; ++i)
    {
        peers.push_back(std::make_unique<RawPeer>(net));
        ASSERT_TRUE(peers.back()->m_IsUp);
    }
    for (int i = 0; i < 3; ++i)
        net.m_System.tick();
    const auto before = bytesInUse();
    const auto packet = packetOf(NoteCommand(1));
    for (const unsigned char byte : packet)
    {
        for (const auto& peer : peers)
            ASSERT_TRUE(peer->send({byte}));
        const int expected = net.accepted()->available() + 1;
        if (expected < static_cast<int>(packet.size()))
        {
            ASSERT_TRUE(tickUntil(net.m_System,
                                  [&]
                                  {
                                      for (const ClientHandle& client : net.m_Server->m_Accepted)
                                          if (client->available() != expected)
                                              return false;
                                      return true;
                                  }));
            // 64 KiB blocks for each would be 3 MiB; the reactor keeps up to one for its own use.
            if (before)
            {
                EXPECT_LT(*bytesInUse() - *before, 300000);
            }
        }
    }
    EXPECT_TRUE(tickUntil(net.m_System, [&] { return got == kPeers; }));
    if (!before)
        GTEST_SKIP() << test::kNobodyTellsBytes;
}

TEST(HostilePeer, APacketInManyPiecesOfTheNetworkArrivesWhole)
{
    int ballast = 0;
    NoteAnalyser analyser([&](CCommandSocket*, const NoteCommand& note) { ballast = note.m_Ballast; });
    Loopback net(analyser);
    RawPeer peer(net);
    ASSERT_TRUE(peer.m_IsUp);
    const auto packet = packetOf(NoteCommand(3, 1000000));
    for (size_t at = 0; at < packet.size();)
    {
        const size_t count = std::min<size_t>(packet.size() - at, 12345);
        ASSERT_EQ(peer.m_Stream->send(packet.data() + at, static_cast<int>(count)), static_cast<int>(count));
        at += count;
        net.m_System.tick();
    }
    EXPECT_TRUE(tickUntil(net.m_System, [&] { return ballast == 1000000; }));
}

zet::Uuid someId(unsigned short node)
{
    zet::Uuid id;
    id.m_Data1 = 1;
    id.m_Node.m_Node[0] = node;
    return id;
}

TEST(HostilePeer, AResetLeavesBothDictionaries)
{
    NoteAnalyser analyser;
    Loopback net(analyser);
    RawPeer peer(net);
    ASSERT_TRUE(peer.m_IsUp);
    net.accepted()->m_PeerServerId = someId(1);
    net.m_Server->SetFrameworkSocket(net.accepted());
    ASSERT_TRUE(peer.send({1, 2, 3}));
    net.m_System.tick();
    ASSERT_TRUE(test::resetRaw(peer.m_Stream->detach()));
    ASSERT_TRUE(tickUntil(net.m_System, [&] { return net.m_Server->GetClientCount() == 0; }));
    EXPECT_EQ(net.m_Server->GetAllFrameworkSocket()->getSize(), 0);
    EXPECT_EQ(net.m_Server->m_Abandons, 1);
}

TEST(HostilePeer, AHalfClosedConnectionIsAnsweredAndLeavesBothDictionaries)
{
    NoteAnalyser analyser([](CCommandSocket* socket, const NoteCommand& note)
                          { EXPECT_TRUE(socket->send(NoteCommand(note.m_Number, 5))); });
    Loopback net(analyser);
    RawPeer peer(net);
    ASSERT_TRUE(peer.m_IsUp);
    net.accepted()->m_PeerServerId = someId(1);
    net.m_Server->SetFrameworkSocket(net.accepted());
    const auto question = packetOf(NoteCommand(1));
    const unsigned int handle = peer.m_Stream->getHandle();
    // Both at once, so that the end has arrived when the command is handled.
    ASSERT_TRUE(test::sendRaw(handle, question.data(), question.size()));
    ASSERT_TRUE(test::endOutput(handle));
    ASSERT_TRUE(tickUntil(net.m_System, [&] { return net.m_Server->GetClientCount() == 0; }));
    EXPECT_EQ(net.m_Server->GetAllFrameworkSocket()->getSize(), 0);
    EXPECT_TRUE(
        tickUntil(net.m_System,
                  [&] { return peer.m_Stream->available() == static_cast<int>(packetOf(NoteCommand(1, 5)).size()); }));
}

} // namespace
