// A handler that read from its socket got the bytes after its command only if the packet had arrived whole. One that
// had arrived in two parts was still in the input while it was handled: the handler got the command once more, and as
// many bytes after what it had read were lost.
#include "tests/support/raw_peer.h"

#include <gtest/gtest.h>

namespace
{

using test::NoteAnalyser;
using test::NoteCommand;
using Bytes = std::vector<unsigned char>;

TEST(Bugs, AHandlerReadsWhatFollowsItsCommandHoweverThatArrived)
{
    const Bytes packet = test::packetOf(NoteCommand(1, 1000));
    for (const size_t first : {packet.size() - 1, size_t(10), size_t(3), packet.size()})
    {
        SCOPED_TRACE(first);
        Bytes read;
        std::vector<int> got;
        NoteAnalyser analyser(
            [&](CCommandSocket* socket, const NoteCommand& note)
            {
                got.push_back(note.m_Number);
                if (note.m_Number != 1)
                    return;
                read.resize(5);
                read.resize(static_cast<size_t>(socket->read(read.data(), 5)));
            });
        test::Loopback net(analyser);
        test::RawPeer peer(net);
        ASSERT_TRUE(peer.m_IsUp);
        const auto split = packet.begin() + static_cast<Bytes::difference_type>(first);
        ASSERT_TRUE(peer.send(Bytes(packet.begin(), split)));
        if (first < packet.size())
            for (int i = 0; i < 5; ++i)
                net.m_System.tick();
        ASSERT_TRUE(got.empty());
        Bytes rest(split, packet.end());
        rest.insert(rest.end(), {5, 4, 3, 2, 1});
        const Bytes next = test::packetOf(NoteCommand(2));
        rest.insert(rest.end(), next.begin(), next.end());
        ASSERT_TRUE(peer.send(rest));
        EXPECT_TRUE(test::tickUntil(net.m_System, [&] { return got.size() == 2; }));
        EXPECT_EQ(read, (Bytes{5, 4, 3, 2, 1}));
        EXPECT_EQ(got, (std::vector<int>{1, 2}));
    }
}

} // namespace
