// Which connections have a turn, and in what order.
#include "net/tcp/inner/ready_list.h"

#include "net/tcp/stream.h"

#include <gtest/gtest.h>

#include <array>
#include <functional>
#include <string>

namespace
{

using zet::inner::ReadyList;

class ReadyListTest : public testing::Test
{
protected:
    void SetUp() override
    {
        for (zet::TcpStream& each : m_Streams)
            m_Ready.enter(each, false);
        walk();
    }
    void TearDown() override
    {
        for (zet::TcpStream& each : m_Streams)
            m_Ready.leave(each);
    }

    // The turns of a walk, as numbers of streams.
    std::string walk(int first = 0, const std::function<void(int)>& onTurn = {})
    {
        std::string turns;
        m_Ready.begin(&m_Streams[static_cast<size_t>(first)]);
        while (const auto* const next = m_Ready.peek())
        {
            m_Ready.take();
            const auto number = static_cast<int>(static_cast<const zet::TcpStream*>(next) - m_Streams.data());
            turns += std::to_string(number);
            if (onTurn)
                onTurn(number);
        }
        m_Ready.end();
        return turns;
    }
    void add(int number) { m_Ready.add(m_Streams[static_cast<size_t>(number)]); }

    // Side by side in memory, so in the order of their addresses.
    std::array<zet::TcpStream, 6> m_Streams;
    ReadyList m_Ready;
};

TEST_F(ReadyListTest, GivesOnlyThoseThatHaveSomethingToDoInTheirOrder)
{
    EXPECT_EQ(walk(), "");
    for (const int each : {4, 1, 4, 3})
        add(each);
    EXPECT_EQ(walk(), "134");
    EXPECT_EQ(walk(), "");
}

TEST_F(ReadyListTest, BeginsWithOneAndGoesAround)
{
    for (const int each : {0, 1, 3, 5})
        add(each);
    EXPECT_EQ(walk(2), "3501");
    add(2);
    add(0);
    EXPECT_EQ(walk(2), "20");
}

TEST_F(ReadyListTest, GivesWhatBecomesReadyMeanwhileThisTimeOrNextTime)
{
    add(2);
    const auto onTurn = [&](int number)
    {
        if (number != 2)
            return;
        for (const int each : {1, 2, 4})
            add(each);
    };
    EXPECT_EQ(walk(0, onTurn), "24");
    EXPECT_EQ(walk(), "12");
}

TEST_F(ReadyListTest, KeepsThoseWhoseTurnHasNotCome)
{
    for (const int each : {1, 3, 5})
        add(each);
    m_Ready.begin(nullptr);
    m_Ready.take();
    m_Ready.end();
    add(1);
    EXPECT_EQ(walk(3), "351");
}

TEST_F(ReadyListTest, ForgetsWhoLeavesBeforeItsTurn)
{
    for (const int each : {0, 1, 3})
        add(each);
    EXPECT_EQ(walk(0,
                   [&](int number)
                   {
                       if (number == 0)
                           m_Ready.leave(m_Streams[1]);
                   }),
              "03");
    add(1);
    EXPECT_TRUE(m_Ready.isEmpty());
}

TEST_F(ReadyListTest, LosesAConnectionThatEntersAnotherList)
{
    ReadyList other;
    add(1);
    add(2);
    other.enter(m_Streams[1], false);
    EXPECT_EQ(walk(), "2");
    // It is listed once, there.
    other.add(m_Streams[1]);
    other.begin(nullptr);
    EXPECT_EQ(other.peek(), &m_Streams[1]);
    other.take();
    EXPECT_EQ(other.peek(), nullptr);
    other.end();
    other.leave(m_Streams[1]);
    EXPECT_TRUE(other.isEmpty());
}

TEST_F(ReadyListTest, ListsWithEachWalkThoseThatAskForIt)
{
    m_Ready.leave(m_Streams[3]);
    m_Ready.enter(m_Streams[3], true);
    EXPECT_EQ(walk(), "3");
    add(4);
    add(3);
    EXPECT_EQ(walk(), "34");
    EXPECT_EQ(walk(), "3");
}

TEST_F(ReadyListTest, AMemberIsListedOnceWhenItEntersAgain)
{
    m_Ready.enter(m_Streams[2], false);
    m_Ready.enter(m_Streams[2], false);
    EXPECT_EQ(walk(), "2");
}

} // namespace
