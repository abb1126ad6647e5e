#include "framework/thread.h"

#include <gtest/gtest.h>

#include <set>
#include <thread>
#include <vector>

TEST(Thread, NumberStaysAndIsNotZero)
{
    const unsigned long id = zet::Thread::getCurrentThreadId();
    EXPECT_NE(id, 0u);
    EXPECT_EQ(zet::Thread::getCurrentThreadId(), id);
}

TEST(Thread, NumbersAreNeverGivenTwice)
{
    std::set<unsigned long> ids{zet::Thread::getCurrentThreadId()};
    for (int round = 0; round < 4; ++round)
    {
        std::vector<unsigned long> found(4);
        std::vector<std::thread> threads;
        for (unsigned long& id : found)
            threads.emplace_back([&id] { id = zet::Thread::getCurrentThreadId(); });
        for (std::thread& thread : threads)
            thread.join();
        ids.insert(found.begin(), found.end());
    }
    EXPECT_EQ(ids.size(), 17u);
}
