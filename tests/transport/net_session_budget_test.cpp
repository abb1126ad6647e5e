// The time of one tick that a net session spends on messages.
#include "framework/time.h"
#include "tests/support/net_pair.h"

#include <gtest/gtest.h>

#include <vector>

namespace
{

using test::NetNotes;
using test::NetPair;
using test::NoteCommand;
using test::NotingHandle;

TEST(NetSession, OfTenMessagesWithHandlersOf30MillisecondsFourAreHandedOverATick)
{
    NetPair net;
    const NotingHandle session = net.connect();
    ASSERT_TRUE(session);
    zet::TestClock clock(0, 0xFFFFFFFF - 50);
    std::vector<int> got;
    NetNotes::s_Handler = [&](unsigned long, unsigned long, const NoteCommand& note)
    {
        got.push_back(note.m_Number);
        clock.advance(30);
    };
    for (int i = 0; i < 10; ++i)
    {
        NoteCommand note(i);
        ASSERT_TRUE(session->sendNetCommand(&note));
    }
    std::vector<size_t> perTick;
    for (int i = 0; i < 100 && got.size() < 10; ++i)
    {
        const size_t before = got.size();
        net.m_System.tick();
        if (got.size() > before)
            perTick.push_back(got.size() - before);
        net.m_System.wait();
    }
    EXPECT_EQ(perTick, (std::vector<size_t>{4, 4, 2}));
    EXPECT_EQ(got, (std::vector<int>{0, 1, 2, 3, 4, 5, 6, 7, 8, 9}));
}

} // namespace
