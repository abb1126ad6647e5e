// Packets that an owner finds in the bytes of its source, without read().
#include "framework/memory_stream.h"
#include "framework/packet.h"
#include "tests/support/packet_bytes.h"

#include <gtest/gtest.h>

#include <cstring>

namespace
{

using test::Bytes;
using test::bytesOf;
using test::DripInput;
using test::packetOf;
using test::put;

TEST(PacketReader, FindsAWholePacketInTheBytesOfItsSource)
{
    const auto wire = zet::MemoryStream::createInstance();
    zet::PacketReader reader;
    reader.attach(wire.get());
    reader.setLimit(5);
    Bytes bytes = packetOf(bytesOf("hello"));
    for (int size = 0; size < 9; ++size)
        EXPECT_TRUE(reader.findWhole(wire.get(), bytes.data(), size).empty()) << size;
    bytes.push_back(1);
    for (int size = 9; size <= 10; ++size)
    {
        const auto packet = reader.findWhole(wire.get(), bytes.data(), size);
        EXPECT_EQ(packet.data(), bytes.data() + 4);
        EXPECT_EQ(packet.size(), 5U);
    }
    // read() has something else to do in these cases.
    EXPECT_TRUE(reader.findWhole(nullptr, bytes.data(), 9).empty());
    reader.setLimit(4);
    EXPECT_TRUE(reader.findWhole(wire.get(), bytes.data(), 9).empty());
    reader.setLimit(zet::PacketReader::kLargestLimit);
    for (const unsigned int length : {0U, 0x80000000U, 0xFFFFFFFFU})
    {
        std::memcpy(bytes.data(), &length, 4);
        EXPECT_TRUE(reader.findWhole(wire.get(), bytes.data(), 10).empty()) << length;
    }
}

TEST(PacketReader, FindsNothingWithinAPacketThatReadHasPassed)
{
    const auto wire = zet::MemoryStream::createInstance();
    put(*wire, packetOf(bytesOf("one")));
    put(*wire, packetOf(bytesOf("two")));
    put(*wire, packetOf(bytesOf("three")));
    zet::PacketReader reader;
    reader.attach(wire.get());
    std::span<const unsigned char> packet;
    ASSERT_TRUE(reader.read(packet));
    ASSERT_EQ(packet.size(), 3U);
    EXPECT_TRUE(reader.findWhole(wire.get(), wire->view(7), wire->available()).empty());
    reader.finish();
    EXPECT_EQ(wire->available(), 7 + 9);
    packet = reader.findWhole(wire.get(), wire->view(7), wire->available());
    EXPECT_EQ(Bytes(packet.begin(), packet.end()), bytesOf("two"));
    wire->skip(7);
    ASSERT_TRUE(reader.read(packet));
    EXPECT_EQ(Bytes(packet.begin(), packet.end()), bytesOf("three"));
}

TEST(PacketReader, FindsNothingWithinAPacketThatItCollects)
{
    DripInput drip(3);
    drip.m_Bytes = packetOf(bytesOf("hello"));
    const Bytes other = packetOf(bytesOf("other"));
    zet::PacketReader reader;
    reader.attachOwner(&drip);
    std::span<const unsigned char> packet;
    while (packet.empty())
    {
        ASSERT_TRUE(reader.read(packet));
        EXPECT_TRUE(reader.findWhole(&drip, other.data(), static_cast<int>(other.size())).empty());
    }
    EXPECT_EQ(Bytes(packet.begin(), packet.end()), bytesOf("hello"));
    reader.finish();
    EXPECT_FALSE(reader.findWhole(&drip, other.data(), static_cast<int>(other.size())).empty());
}

} // namespace
