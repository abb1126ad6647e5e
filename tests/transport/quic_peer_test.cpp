// A server over UDP with a test peer as its client, which changes its address and retires ids.
#include "tests/support/quic_test.h"

#include "tests/support/allocations.h"

#include <netinet/in.h>

#include <optional>
#include <set>

namespace
{

using test::NoteCommand;
using test::NoteSocket;

class QuicPeer : public test::QuicTest
{
protected:
    void SetUp() override
    {
        QuicTest::SetUp();
        ASSERT_TRUE(connectPeer());
        settle();
    }
    // A command each way arrives.
    void expectTraffic(int number)
    {
        NoteSocket& far = m_Net.accepted();
        m_Peer->send(messageOf(NoteCommand(number)));
        ASSERT_TRUE(m_Net.until([&] { return !far.m_Numbers.empty() && far.m_Numbers.back() == number; }, 5000));
        const std::string expected = messageOf(NoteCommand(-number));
        ASSERT_TRUE(far.send(NoteCommand(-number)));
        ASSERT_TRUE(m_Net.until([&] { return m_Peer->received().size() >= expected.size(); }, 5000));
        ASSERT_EQ(m_Peer->takeReceived(), expected);
    }
    // A move, and the time during which the server keeps the previous path.
    void move(int number)
    {
        ASSERT_TRUE(m_Peer->move()) << number;
        ASSERT_NO_FATAL_FAILURE(expectTraffic(number)) << number;
        for (int i = 0; i < 500; ++i)
            m_Net.step(10);
    }
    // Whether the server treats a packet with this id as user data.
    bool isUserData(const std::string& id)
    {
        const size_t before = m_Net.m_Server->m_UserData.size();
        const std::string packet = '\x40' + id + std::string(40, 'x');
        m_Net.m_Server->deliver(test::loopback(1), packet.data(), static_cast<int>(packet.size()));
        return m_Net.m_Server->m_UserData.size() > before;
    }
};

TEST_F(QuicPeer, SpeaksWithOurServer)
{
    ASSERT_NO_FATAL_FAILURE(expectTraffic(1));
    EXPECT_EQ(m_Net.accepted().getPeerPort(), m_Peer->getPort());
    EXPECT_TRUE(m_Peer->getRetiredIds().empty());
    EXPECT_FALSE(isUserData(m_Peer->getId()));
}

TEST_F(QuicPeer, OneThatMovesAndRetiresItsIdsIsFoundByTheNextOnes)
{
    constexpr int kMoves = 300;
    m_Net.accepted().m_Numbers.reserve(kMoves + 1);
    std::optional<long long> before;
    for (int i = 1; i <= kMoves; ++i)
    {
        ASSERT_NO_FATAL_FAILURE(move(i));
        if (i == kMoves / 10)
            before = test::bytesInUse();
    }
    const auto used = test::bytesInUse();
    const auto retired = m_Peer->getRetiredIds();
    EXPECT_GE(retired.size(), static_cast<size_t>(kMoves));
    EXPECT_EQ(std::set<std::string>(retired.begin(), retired.end()).size(), retired.size());
    // The server has also switched to other ids of the peer.
    EXPECT_GE(m_Peer->getReturnedIds(), kMoves);
    // A retired id belongs to no connection.
    for (const std::string& id : retired)
        EXPECT_TRUE(isUserData(id));
    EXPECT_FALSE(isUserData(m_Peer->getId()));
    EXPECT_EQ(m_Net.accepted().m_Closes, 0);
    EXPECT_EQ(m_Net.m_Server->getConnectionCount(), 1);
    ASSERT_NO_FATAL_FAILURE(expectTraffic(kMoves + 1));
    if (!before)
        GTEST_SKIP() << test::kNobodyTellsBytes;
    RecordProperty("BytesKept", static_cast<int>(*used - *before));
    EXPECT_LT(*used - *before, 2048);
}

TEST_F(QuicPeer, OneThatMovesManyTimesASecondKeepsItsConnection)
{
    for (int i = 1; i <= 20; ++i)
    {
        ASSERT_TRUE(m_Peer->move());
        ASSERT_NO_FATAL_FAILURE(expectTraffic(i)) << i;
        settle();
    }
}

TEST_F(QuicPeer, OneWhosePortChangesKeepsItsConnection)
{
    for (int i = 1; i <= 20; ++i)
    {
        m_Peer->rebind();
        ASSERT_NO_FATAL_FAILURE(expectTraffic(i)) << i;
        settle();
    }
    EXPECT_EQ(m_Net.accepted().m_Closes, 0);
    EXPECT_FALSE(isUserData(m_Peer->getId()));
    // The server's close frame reaches the peer at its current address.
    m_Net.accepted().close();
    ASSERT_TRUE(m_Net.until([&] { return m_Peer->isOver(); }, 100));
}

TEST_F(QuicPeer, AllIdsOfAConnectionAreForgottenWithIt)
{
    for (int i = 1; i <= 5; ++i)
        ASSERT_NO_FATAL_FAILURE(move(i));
    const std::string id = m_Peer->getId();
    m_Net.accepted().close();
    m_Net.step();
    // Its close frame is repeated while the peer may not have received it.
    EXPECT_FALSE(isUserData(id));
    m_Peer.reset();
    m_Net.m_Clock.advance(zet::UdpServer::Settings().m_IdleTimeout);
    m_Net.step();
    EXPECT_TRUE(isUserData(id));
}

} // namespace
