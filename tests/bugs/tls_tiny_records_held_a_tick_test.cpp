// A peer that sent a packet in one-byte TLS records prolonged a tick for as many of them as had arrived: one read of
// the stream decrypted records until it had the packet, or 1 MiB of it. A read now decrypts a bounded number, and
// leaves the rest to the next tick.
#include "framework/time.h"
#include "tests/support/raw_peer.h"
#include "tests/support/tls_pair.h"
#include "tests/support/tls_peer.h"

#include <gtest/gtest.h>

namespace
{

using test::NoteAnalyser;
using test::NoteCommand;
using test::tickUntil;

TEST(Bugs, ATickOpensNotAllOfManyTinyTlsRecords)
{
    int got = 0;
    NoteAnalyser analyser([&](CCommandSocket*, const NoteCommand& note) { got += note.m_Ballast == 20000; });
    test::TlsLoopback net(analyser);
    test::RawPeer raw(net);
    ASSERT_TRUE(raw.m_IsUp);
    test::TlsPeer peer(*raw.m_Stream, {});
    ASSERT_TRUE(tickUntil(net.m_System, [&] { return peer.shakeHands() && net.accepted()->isSecure(); }));
    ASSERT_TRUE(peer.send(test::packetOf(NoteCommand(1, 20000)), 1));
    ASSERT_TRUE(peer.send(test::packetOf(NoteCommand(2, 20000)), 1));
    int most = 0;
    for (int before = 0; got < 2;)
    {
        const int commands = got;
        ASSERT_TRUE(tickUntil(net.m_System, [&] { return got > commands || net.accepted()->available() != before; }));
        if (got == commands)
            most = std::max(most, net.accepted()->available() - before);
        before = net.accepted()->available();
    }
    // Two reads for the packet, plus the tick of the stream.
    EXPECT_LE(most, 1024);
}

} // namespace
