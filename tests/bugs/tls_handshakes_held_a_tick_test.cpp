// A tick ran as many TLS handshake steps as there was input for: hellos at 740 kB/s delayed an established connection
// by more than a second. And each tick checked the deadline of each half-open connection. The port now runs a bounded
// number of steps per tick, in order of arrival, and keeps the deadlines in a heap.
#include "framework/time.h"
#include "net/tcp/inner/ready_list.h"
#include "tests/support/log_lines.h"
#include "tests/support/raw_peer.h"
#include "tests/support/tls_pair.h"
#include "tests/support/tls_peer.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace
{

using test::NoteAnalyser;
using test::RawPeer;
using test::tickUntil;
using test::TlsLoopback;
using test::TlsPeer;

struct Visitors
{
    Visitors(TlsLoopback& net, int count)
    {
        for (int i = 0; i < count; ++i)
            m_Raw.push_back(std::make_unique<RawPeer>(net));
    }
    int countAnswered() const
    {
        return static_cast<int>(
            std::count_if(m_Raw.begin(), m_Raw.end(), [](const auto& raw) { return raw->m_Stream->available() > 0; }));
    }
    std::vector<std::unique_ptr<RawPeer>> m_Raw;
};

TEST(Bugs, ATickTakesSoManyStepsOfHandshakes)
{
    constexpr int kVisitors = 20;
    NoteAnalyser analyser;
    TlsLoopback net(analyser);
    zet::NetLimits limits;
    limits.m_HandshakeSteps = 3;
    limits.m_HandshakeTime = 0;
    net.m_Server->setLimits(limits);
    const Visitors visitors(net, kVisitors);
    std::vector<std::unique_ptr<TlsPeer>> peers;
    for (const auto& raw : visitors.m_Raw)
    {
        ASSERT_TRUE(raw->m_IsUp);
        peers.push_back(std::make_unique<TlsPeer>(*raw->m_Stream, test::TlsPeerWish()));
        // Sends the hello.
        EXPECT_FALSE(peers.back()->shakeHands());
    }
    int before = 0;
    int most = 0;
    ASSERT_TRUE(tickUntil(net.m_System,
                          [&]
                          {
                              const int now = visitors.countAnswered();
                              most = std::max(most, now - before);
                              before = now;
                              return now == kVisitors;
                          }));
    EXPECT_EQ(most, 3);
    EXPECT_TRUE(tickUntil(net.m_System,
                          [&]
                          {
                              for (const auto& peer : peers)
                                  peer->shakeHands();
                              return std::all_of(net.m_Server->m_Accepted.begin(), net.m_Server->m_Accepted.end(),
                                                 [](const auto& each) { return each->isSecure(); });
                          }));
}

TEST(Bugs, AHalfOpenConnectionIsNotVisitedWithEachTick)
{
    zet::TestClock clock(1000000000);
    zet::System system;
    system.init();
    const zet::Unknown::Handle_T<test::StreamServer> server = new test::StreamServer;
    server->start(&system);
    ASSERT_TRUE(server->setTlsContext(test::makeServerContext()));
    ASSERT_TRUE(server->listen(0, 5));
    const zet::Unknown::Handle_T<zet::TcpStream> peer = new zet::TcpStream;
    peer->start(&system);
    ASSERT_TRUE(peer->connect(L"127.0.0.1", server->getPort(), false));
    ASSERT_TRUE(tickUntil(system, [&] { return !server->m_Streams.empty(); }));
    zet::TcpStream& stream = *server->m_Streams[0];
    zet::inner::ReadyList ready;
    ready.enter(stream, false);
    for (int i = 0; i < 3; ++i)
    {
        ready.begin(nullptr);
        while (ready.peek())
            ready.take();
        ready.end();
        clock.advance(1000);
        system.tick();
        EXPECT_TRUE(ready.isEmpty()) << i;
    }
    // Its deadline is still in force.
    const test::LogLines log;
    clock.advance(zet::TlsContext::kDefaultHandshakeTime);
    system.tick();
    EXPECT_EQ(stream.getConnectionState(), zet::TcpConnection::kBroken);
    EXPECT_FALSE(ready.isEmpty());
    EXPECT_EQ(log.texts().size(), 1u);
    ready.leave(stream);
    stream.close();
    peer->close();
    server->close();
    system.exit();
}

TEST(Bugs, AHandshakeGoesOnWhenThePortIsClosed)
{
    zet::TestClock clock(1000000000);
    zet::System system;
    system.init();
    const zet::Unknown::Handle_T<test::StreamServer> server = new test::StreamServer;
    server->start(&system);
    ASSERT_TRUE(server->setTlsContext(test::makeServerContext()));
    ASSERT_TRUE(server->listen(0, 5));
    std::vector<zet::Unknown::Handle_T<zet::TcpStream>> streams;
    std::vector<std::unique_ptr<TlsPeer>> peers;
    for (int i = 0; i < 2; ++i)
    {
        streams.push_back(new zet::TcpStream);
        streams.back()->start(&system);
        ASSERT_TRUE(streams.back()->connect(L"127.0.0.1", server->getPort(), false));
        peers.push_back(std::make_unique<TlsPeer>(*streams.back(), test::TlsPeerWish()));
    }
    ASSERT_TRUE(tickUntil(system, [&] { return server->m_Streams.size() == 2; }));
    server->zet::TcpServer::close();
    EXPECT_TRUE(tickUntil(system, [&] { return peers[0]->shakeHands() && server->m_Streams[0]->isSecure(); }));
    const test::LogLines log;
    clock.advance(zet::TlsContext::kDefaultHandshakeTime);
    system.tick();
    system.tick();
    EXPECT_EQ(server->m_Streams[1]->getConnectionState(), zet::TcpConnection::kBroken);
    for (const auto& stream : server->m_Streams)
        stream->close();
    for (const auto& stream : streams)
        stream->close();
    system.exit();
}

} // namespace
