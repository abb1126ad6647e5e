#include "framework/buffer.h"

#include <gtest/gtest.h>

#include <cstring>
#include <limits>

using zet::Buffer;

TEST(Buffer, HasTheSizeThatWasAsked)
{
    const Buffer buffer(5);
    ASSERT_EQ(buffer.getBufferSize(), 5);
    for (int i = 0; i < 5; ++i)
        EXPECT_EQ(buffer.getBuffer()[i], 0);
    EXPECT_EQ(Buffer().getBufferSize(), 0);
    EXPECT_EQ(Buffer(-1).getBufferSize(), 0);
}

TEST(Buffer, ResizingKeepsWhatFits)
{
    Buffer buffer(4);
    std::memcpy(buffer.getBuffer(), "abcd", 4);
    EXPECT_EQ(buffer.setBufferSize(6), 6);
    EXPECT_EQ(std::memcmp(buffer.getBuffer(), "abcd\0\0", 6), 0);
    EXPECT_EQ(buffer.setBufferSize(2), 2);
    EXPECT_EQ(std::memcmp(buffer.getBuffer(), "ab", 2), 0);
    EXPECT_EQ(buffer.setBufferSize(0), 0);
}

TEST(Buffer, NegativeSizeLeavesTheBlock)
{
    Buffer buffer(3);
    EXPECT_EQ(buffer.setBufferSize(-7), 3);
    EXPECT_EQ(buffer.getBufferSize(), 3);
}

TEST(Buffer, CopiesOwnTheirBlocks)
{
    Buffer first(2);
    first.getBuffer()[0] = 1;
    Buffer second(first);
    EXPECT_TRUE(first == second);
    second.getBuffer()[0] = 9;
    EXPECT_EQ(first.getBuffer()[0], 1);
    first = second;
    EXPECT_EQ(first.getBuffer()[0], 9);
    EXPECT_NE(first.getBuffer(), second.getBuffer());
}

TEST(Buffer, AssignReplacesAllBytesOrNone)
{
    Buffer buffer(3);
    const unsigned char bytes[] = {1, 2, 3, 4, 5};
    EXPECT_TRUE(buffer.assign(bytes, 5));
    ASSERT_EQ(buffer.getBufferSize(), 5);
    EXPECT_EQ(std::memcmp(buffer.getBuffer(), bytes, 5), 0);
    EXPECT_FALSE(buffer.assign(bytes, -1));
    EXPECT_EQ(buffer.getBufferSize(), 5);
    EXPECT_EQ(std::memcmp(buffer.getBuffer(), bytes, 5), 0);
    EXPECT_TRUE(buffer.assign(bytes, 0));
    EXPECT_EQ(buffer.getBufferSize(), 0);
}
