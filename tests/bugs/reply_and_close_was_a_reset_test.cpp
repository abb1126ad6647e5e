// A connection reads away what has arrived before it closes, since a socket with unread bytes is closed by a reset,
// which can cost the peer the reply. It stopped at the first receive that did not fill its buffer; but the system
// passes on the next bytes only after these were read, if its own buffer was full.
#include "tests/support/raw_peer.h"

#include <gtest/gtest.h>

namespace
{

using test::NoteAnalyser;
using test::NoteCommand;
using Bytes = std::vector<unsigned char>;

TEST(Bugs, AReplyAndCloseIsNoResetHoweverTheUnreadBytesWereSent)
{
    for (const size_t first : {40000, 50000, 60000, 70000, 80000, 100000, 120000})
    {
        SCOPED_TRACE(first);
        NoteAnalyser server(
            [&](CCommandSocket* socket, const NoteCommand&)
            {
                EXPECT_TRUE(socket->send(NoteCommand(42)));
                socket->close();
            });
        test::Loopback net(server);
        test::RawPeer peer(net);
        ASSERT_TRUE(peer.m_IsUp);
        Bytes bytes = test::packetOf(NoteCommand(1));
        const Bytes more = test::packetOf(NoteCommand(2, 180000));
        bytes.insert(bytes.end(), more.begin(), more.end());
        // Two sends, of which each leaves at once where the system accepts it.
        const auto split = bytes.begin() + static_cast<Bytes::difference_type>(first);
        ASSERT_TRUE(peer.send(Bytes(bytes.begin(), split)));
        ASSERT_TRUE(peer.send(Bytes(split, bytes.end())));
        const int expected = static_cast<int>(test::packetOf(NoteCommand(42)).size());
        ASSERT_TRUE(test::tickUntil(net.m_System, [&] { return peer.m_Stream->available() == expected; }));
        EXPECT_EQ(peer.m_Stream->skip(expected), expected);
        ASSERT_TRUE(test::tickUntil(net.m_System, [&] { return peer.m_Stream->getConnectionState() != 2; }));
        EXPECT_EQ(peer.m_Stream->getConnectionState(), zet::TcpConnection::kClosedByPeer);
    }
}

} // namespace
