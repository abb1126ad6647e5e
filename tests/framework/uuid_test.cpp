#include "framework/uuid.h"

#include <gtest/gtest.h>

#include <set>

using zet::Uuid;

namespace
{

Uuid uuidOf(const unsigned char (&bytes)[16])
{
    Uuid id;
    std::memcpy(&id, bytes, sizeof id);
    return id;
}

} // namespace

TEST(Uuid, DefaultIsAllZeroAndNull)
{
    const Uuid id;
    EXPECT_TRUE(id == uuidOf({0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0}));
    EXPECT_TRUE(id.isNull());
}

TEST(Uuid, CreatedOnesDifferAndAreNotNull)
{
    std::set<Uuid> seen;
    for (int i = 0; i < 1000; ++i)
    {
        Uuid id;
        ASSERT_EQ(zet::uuid_create(id), 0);
        EXPECT_FALSE(id.isNull());
        EXPECT_TRUE(seen.insert(id).second);
    }
}

TEST(Uuid, EveryByteIsRandom)
{
    // The probability that a random byte is equal in 200 identifiers is about 2^-1600.
    Uuid first;
    ASSERT_EQ(zet::uuid_create(first), 0);
    bool changed[16] = {};
    for (int i = 0; i < 200; ++i)
    {
        Uuid id;
        ASSERT_EQ(zet::uuid_create(id), 0);
        for (int byte = 0; byte < 16; ++byte)
            if (reinterpret_cast<const unsigned char*>(&id)[byte] !=
                reinterpret_cast<const unsigned char*>(&first)[byte])
                changed[byte] = true;
    }
    for (int byte = 0; byte < 16; ++byte)
        EXPECT_TRUE(changed[byte]) << byte;
}

TEST(Uuid, CompareOrdersByBytes)
{
    const Uuid low = uuidOf({0, 0, 0, 1, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0});
    const Uuid high = uuidOf({1, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0});
    EXPECT_LT(zet::uuid_compare(low, high), 0);
    EXPECT_GT(zet::uuid_compare(high, low), 0);
    EXPECT_EQ(zet::uuid_compare(low, low), 0);
    EXPECT_TRUE(low < high);
    EXPECT_FALSE(high < low);
}

TEST(UuidNode, ComparesByItsThreeUnits)
{
    zet::uuid_node_t a;
    zet::uuid_node_t b;
    EXPECT_EQ(a.compare(b), 0);
    EXPECT_TRUE(a == b);
    // As a number 0x0100 is greater than 0x00FF, whatever the byte order.
    a.m_Node[0] = 0x00FF;
    b.m_Node[0] = 0x0100;
    EXPECT_LT(a.compare(b), 0);
    EXPECT_GT(b.compare(a), 0);
    a.m_Node[0] = 0x0100;
    a.m_Node[2] = 1;
    EXPECT_GT(a.compare(b), 0);
    b.m_Node[1] = 1;
    EXPECT_LT(a.compare(b), 0);
}

TEST(UuidNode, TextIsItsBytesInHexadecimal)
{
    const Uuid id = uuidOf({0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0x01, 0x23, 0x45, 0xAB, 0xCD, 0xEF});
    EXPECT_TRUE(id.m_Node.convertToString() == L"012345abcdef");
    EXPECT_TRUE(zet::uuid_node_t().convertToString() == L"000000000000");
}
