// The packet of a broadcast is in memory once, for all connections that have still to send it.
#include "framework/inner/fast_paths.h"
#include "net/door/door.h"
#include "net/inner/blocks.h"
#include "tests/support/allocations.h"
#include "tests/support/raw_peer.h"
#include "transport/send_to_all.h"

#include <gtest/gtest.h>

#include <memory>

namespace
{

using test::ClientHandle;
using test::Loopback;
using test::NoteAnalyser;
using test::NoteCommand;
using test::RawPeer;
using test::tickUntil;
using zet::inner::Block;
using zet::inner::BlockPool;
using zet::inner::OutputQueue;
using zet::inner::SharedBlock;

using Bytes = std::vector<unsigned char>;

Bytes bytesOf(size_t size, unsigned char first)
{
    Bytes bytes(size);
    for (size_t i = 0; i < size; ++i)
        bytes[i] = static_cast<unsigned char>(first + i * 7);
    return bytes;
}

Bytes contentOf(OutputQueue& queue)
{
    Bytes bytes;
    for (Block* block = queue.front(); block; block = block->m_Next)
    {
        const auto left = queue.left(*block);
        bytes.insert(bytes.end(), left.begin(), left.end());
    }
    return bytes;
}

Bytes joined(const Bytes& front, const Bytes& back)
{
    Bytes bytes = front;
    bytes.insert(bytes.end(), back.begin(), back.end());
    return bytes;
}

// Two queues that share a block, which this test holds too.
struct SharedOutput : testing::Test
{
    SharedOutput() : m_Bytes(bytesOf(3000, 1))
    {
        std::copy(m_Bytes.begin(), m_Bytes.end(), m_Block->data());
        m_One.share(*m_Block, 3000);
        m_Other.share(*m_Block, 3000);
    }
    ~SharedOutput() override
    {
        m_One.drop(&m_Pool);
        m_Other.drop(&m_Pool);
        EXPECT_EQ(m_Block->m_Holders, 1);
        m_Block->leave();
    }
    Bytes from(size_t begin) const
    {
        return Bytes(m_Bytes.begin() + static_cast<std::ptrdiff_t>(begin), m_Bytes.end());
    }

    const Bytes m_Bytes;
    BlockPool m_Pool;
    SharedBlock* const m_Block = SharedBlock::make(3000);
    OutputQueue m_One;
    OutputQueue m_Other;
};

TEST_F(SharedOutput, EachQueueSendsItAtItsOwnPace)
{
    EXPECT_EQ(m_Block->m_Holders, 3);
    m_One.consume(1000, m_Pool);
    EXPECT_EQ(contentOf(m_One), from(1000));
    EXPECT_EQ(contentOf(m_Other), m_Bytes);
    m_One.consume(1999, m_Pool);
    EXPECT_EQ(contentOf(m_One), from(2999));
    EXPECT_EQ(m_Block->m_Holders, 3);
    m_One.consume(1, m_Pool);
    EXPECT_EQ(m_One.size(), 0U);
    EXPECT_EQ(m_One.front(), nullptr);
    EXPECT_EQ(m_Block->m_Holders, 2);
    EXPECT_EQ(contentOf(m_Other), m_Bytes);
}

TEST_F(SharedOutput, BytesThatFollowAreTheQueuesOwn)
{
    for (const size_t sent : {size_t(0), size_t(1234)})
        for (const size_t size : {size_t(1), size_t(500), size_t(1096), size_t(1097), size_t(100000)})
        {
            SCOPED_TRACE(std::to_string(sent) + " sent, " + std::to_string(size) + " more");
            OutputQueue queue;
            queue.share(*m_Block, 3000);
            queue.consume(sent, m_Pool);
            const Bytes more = bytesOf(size, 99);
            ASSERT_TRUE(queue.write(more.data(), static_cast<int>(size), m_Pool));
            EXPECT_EQ(m_Block->m_Holders, 3);
            EXPECT_EQ(queue.size(), 3000 - sent + size);
            EXPECT_EQ(contentOf(queue), joined(from(sent), more));
            queue.consume(3000 - sent + size - 1, m_Pool);
            EXPECT_EQ(contentOf(queue), Bytes{more.back()});
            queue.drop(&m_Pool);
        }
    EXPECT_EQ(contentOf(m_Other), m_Bytes);
}

TEST_F(SharedOutput, WithoutMemoryNothingFollowsAndItStays)
{
    m_One.consume(10, m_Pool);
    const unsigned char more = 5;
    bool canFail = false;
    bool isQueued = true;
    {
        const test::FailingAllocations failures(0, 1);
        isQueued = m_One.write(&more, 1, m_Pool);
        canFail = failures.isOver();
    }
    if (!canFail)
        GTEST_SKIP() << "the library's allocations do not fail here";
    EXPECT_FALSE(isQueued);
    EXPECT_EQ(contentOf(m_One), from(10));
    EXPECT_EQ(m_Block->m_Holders, 3);
    EXPECT_TRUE(m_One.write(&more, 1, m_Pool));
    EXPECT_EQ(contentOf(m_One), joined(from(10), {more}));
}

TEST_F(SharedOutput, AQueueMayHoldItsEndOnly)
{
    OutputQueue queue;
    queue.share(*m_Block, 100);
    EXPECT_EQ(contentOf(queue), from(2900));
    queue.consume(40, m_Pool);
    EXPECT_EQ(contentOf(queue), from(2940));
    OutputQueue next;
    next.swap(queue);
    EXPECT_EQ(queue.front(), nullptr);
    EXPECT_EQ(contentOf(next), from(2940));
    EXPECT_EQ(m_Block->m_Holders, 4);
}

TEST_F(SharedOutput, IsTakenForItsLastBytesWhileItIsOffered)
{
    SharedBlock* const inner = SharedBlock::make(8);
    const unsigned char* const data = m_Block->data();
    EXPECT_EQ(m_Pool.getOffered(data, 3000), nullptr);
    {
        const BlockPool::Offer offer(m_Pool, *m_Block);
        EXPECT_EQ(m_Pool.getOffered(data, 3000), m_Block);
        EXPECT_EQ(m_Pool.getOffered(data + 1500, 1500), m_Block);
        // Less than half.
        EXPECT_EQ(m_Pool.getOffered(data + 1501, 1499), nullptr);
        EXPECT_EQ(m_Pool.getOffered(data, 2999), nullptr);
        EXPECT_EQ(m_Pool.getOffered(m_Bytes.data(), 3000), nullptr);
        {
            const BlockPool::Offer nested(m_Pool, *inner);
            EXPECT_EQ(m_Pool.getOffered(data, 3000), nullptr);
            EXPECT_EQ(m_Pool.getOffered(inner->data(), 8), inner);
        }
        EXPECT_EQ(m_Pool.getOffered(data, 3000), m_Block);
    }
    EXPECT_EQ(m_Pool.getOffered(data, 3000), nullptr);
    inner->leave();
}

TEST(SharedOutputOfSockets, TakesTheMemoryOfOnePacket)
{
    constexpr int kSockets = 30;
    NoteAnalyser sender;
    NoteAnalyser receiver;
    Loopback net(sender);
    for (int i = 0; i < kSockets; ++i)
        ASSERT_TRUE(net.connect(receiver));
    CCmdPackager packager;
    ASSERT_TRUE(NoteCommand(1, 20000).Write(&packager));
    const test::AllocationCount count;
    EXPECT_EQ(SendToAll(*net.m_Server->GetAllClientSocket(), packager), kSockets);
    if (!zet::inner::kHasFastPaths)
        GTEST_SKIP() << "without fast paths each connection copies the packet";
    // The first connection copies: a second one may never come.
    EXPECT_LE(count.blocks(), 2);
    EXPECT_LT(count.bytes(), 3 * 20000);
}

TEST(SharedOutputOfSockets, WithoutMemoryForItEachCopiesThePacket)
{
    NoteAnalyser sender;
    int arrived = 0;
    NoteAnalyser receiver([&](CCommandSocket*, const NoteCommand& note) { arrived += note.m_Ballast == 20; });
    Loopback net(sender);
    for (int i = 0; i < 3; ++i)
        ASSERT_TRUE(net.connect(receiver));
    auto& sockets = *net.m_Server->GetAllClientSocket();
    // Each copies the first one when the second one follows, into a block that is kept.
    EXPECT_EQ(SendToAll(sockets, NoteCommand(1, 1)), 3);
    EXPECT_EQ(SendToAll(sockets, NoteCommand(1, 1)), 3);
    net.m_System.tick();
    CCmdPackager packager;
    ASSERT_TRUE(NoteCommand(1, 20).Write(&packager));
    bool canFail = false;
    {
        const test::FailingAllocations failures(0, zet::inner::kHasFastPaths ? 2 : 0);
        EXPECT_EQ(SendToAll(sockets, packager), 3);
        canFail = failures.isOver();
    }
    if (!canFail)
        GTEST_SKIP() << "the library's allocations do not fail here";
    EXPECT_TRUE(tickUntil(net.m_System, [&] { return arrived == 3; }));
}

// Peers read at paces of their own, and one not at all: each gets exactly its bytes, in order, and each byte of the
// packets is sent although the broadcasts are gone and one connection ends meanwhile.
TEST(SharedOutputOfSockets, ReachesPeersOfDifferentPaces)
{
    constexpr int kPeers = 5;
    NoteAnalyser sender;
    Loopback net(sender);
    std::vector<std::unique_ptr<RawPeer>> peers;
    for (int i = 0; i < kPeers; ++i)
    {
        peers.push_back(std::make_unique<RawPeer>(net));
        ASSERT_TRUE(peers.back()->m_IsUp);
        // So that a packet leaves in many parts.
        zet::inner::Door::getReal()->setOption(net.accepted()->getHandle(), zet::inner::Door::kSendBuffer, 16384);
    }
    std::vector<Bytes> wanted(kPeers);
    std::vector<Bytes> got(kPeers);
    const auto sendToAll = [&](const NoteCommand& note)
    {
        EXPECT_EQ(SendToAll(net.m_Server->m_Accepted, note), kPeers);
        for (Bytes& each : wanted)
            each = joined(each, test::packetOf(note));
    };
    const auto sendToEach = [&](int number)
    {
        for (int i = 0; i < kPeers; ++i)
        {
            const NoteCommand note(number + i, 10);
            EXPECT_TRUE(net.m_Server->m_Accepted[static_cast<size_t>(i)]->send(note));
            wanted[static_cast<size_t>(i)] = joined(wanted[static_cast<size_t>(i)], test::packetOf(note));
        }
    };
    const auto read = [&](int round)
    {
        // The last peer never reads.
        for (size_t i = 0; i + 1 < kPeers; ++i)
        {
            Bytes part(static_cast<size_t>(round % 3 == 0 ? 100000 : 1000) * (i + 1));
            const int count = peers[i]->m_Stream->read(part.data(), static_cast<int>(part.size()));
            got[i].insert(got[i].end(), part.begin(), part.begin() + std::max(count, 0));
        }
    };
    for (int round = 0; round < 40; ++round)
    {
        sendToAll(NoteCommand(round, round % 4 == 3 ? 300000 : round * 50));
        if (round % 5 == 1)
            sendToEach(1000 * round);
        if (round % 3 != 1)
            net.m_System.tick();
        read(round);
    }
    net.m_Server->m_Accepted.back()->close();
    int round = 0;
    EXPECT_TRUE(tickUntil(net.m_System,
                          [&]
                          {
                              read(round++);
                              for (size_t i = 0; i + 1 < kPeers; ++i)
                                  if (got[i].size() < wanted[i].size())
                                      return false;
                              return true;
                          }));
    for (size_t i = 0; i + 1 < kPeers; ++i)
        EXPECT_TRUE(got[i] == wanted[i]) << "peer " << i << ": " << got[i].size() << " of " << wanted[i].size();
}

} // namespace
