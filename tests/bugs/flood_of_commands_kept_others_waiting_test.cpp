// A peer that sent small commands endlessly used up to 100 ms of each tick, and so did each further one: an honest
// connection waited thousands of times longer than alone. A connection now receives a bounded number of bytes per tick
// if there are others, and the connections of a port share the tick's time in turns.
#include "framework/time.h"
#include "tests/support/raw_peer.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>

namespace
{

using test::ClientHandle;
using test::Loopback;
using test::NoteAnalyser;
using test::NoteCommand;
using test::packetOf;
using test::RawPeer;
using test::tickUntil;

TEST(Bugs, AFloodOfCommandsHandsTheTurnOn)
{
    constexpr int kFlood = 20000;
    std::vector<int> got;
    NoteAnalyser analyser([&](CCommandSocket*, const NoteCommand& note) { got.push_back(note.m_Number); });
    Loopback net(analyser);
    const ClientHandle honest = net.connect(analyser);
    ASSERT_TRUE(honest);
    RawPeer peer(net);
    ASSERT_TRUE(peer.m_IsUp);
    const auto packet = packetOf(NoteCommand(1));
    std::vector<unsigned char> flood;
    for (int i = 0; i < kFlood; ++i)
        flood.insert(flood.end(), packet.begin(), packet.end());
    ASSERT_TRUE(peer.send(flood));
    ASSERT_TRUE(honest->send(NoteCommand(2)));
    const size_t turn = static_cast<size_t>(zet::NetLimits().m_TurnInput) / packet.size() + 1;
    size_t before = 0;
    ASSERT_TRUE(tickUntil(net.m_System,
                          [&]
                          {
                              const size_t now = got.size() - before;
                              before = got.size();
                              EXPECT_LE(now, turn + 1);
                              return got.size() == kFlood + 1;
                          }));
    EXPECT_EQ(std::count(got.begin(), got.end(), 2), 1);
    // Not after the flood.
    EXPECT_LT(static_cast<size_t>(std::find(got.begin(), got.end(), 2) - got.begin()), 4 * turn);
}

TEST(Bugs, ConnectionsShareATickInTurns)
{
    zet::TestClock clock(1000000000);
    std::map<CCommandSocket*, int> turns;
    NoteAnalyser analyser(
        [&](CCommandSocket* socket, const NoteCommand&)
        {
            ++turns[socket];
            clock.advance(60);
        });
    Loopback net(analyser);
    zet::NetLimits limits;
    limits.m_TurnTime = 150;
    net.m_Server->setLimits(limits);
    constexpr size_t kPeers = 7;
    std::vector<ClientHandle> clients;
    for (size_t i = 0; i < kPeers; ++i)
    {
        clients.push_back(net.connect(analyser));
        ASSERT_TRUE(clients.back());
    }
    // Two commands of 60 ms are one connection's turn.
    for (const ClientHandle& client : clients)
        for (int i = 0; i < 6; ++i)
            ASSERT_TRUE(client->send(NoteCommand(i)));
    unsigned int before = zet::getTimeTick();
    const auto isBounded = [&]
    {
        const unsigned int now = zet::getTimeTick();
        // The time of all connections, plus the turn that started within it.
        const bool isShort = now - std::exchange(before, now) <= limits.m_TurnTime + 120;
        EXPECT_TRUE(isShort);
        return isShort;
    };
    ASSERT_TRUE(tickUntil(net.m_System, [&] { return isBounded() && turns.size() == kPeers; }));
    // No connection had its third turn before every other had its first.
    for (const auto& each : turns)
        EXPECT_LE(each.second, 4);
    EXPECT_TRUE(tickUntil(net.m_System,
                          [&] {
                              return isBounded() && std::all_of(turns.begin(), turns.end(),
                                                                [](const auto& each) { return each.second == 6; });
                          }));
}

} // namespace
