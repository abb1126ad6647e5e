#include "framework/packet.h"

#include "framework/memory_stream.h"
#include "tests/support/allocations.h"
#include "tests/support/packet_bytes.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <string>

namespace
{

using test::Bytes;
using test::bytesOf;
using test::DripInput;
using test::packetOf;
using test::put;

// A sink that accepts only a given number of bytes.
class NarrowOutput : public zet::Output
{
public:
    explicit NarrowOutput(size_t room) : m_Room(room) {}
    int write(const void* data, int size) override
    {
        const auto* bytes = static_cast<const unsigned char*>(data);
        const size_t count = std::min(static_cast<size_t>(size), m_Room - m_Bytes.size());
        m_Bytes.insert(m_Bytes.end(), bytes, bytes + count);
        ++m_Writes;
        return static_cast<int>(count);
    }

    size_t m_Room;
    Bytes m_Bytes;
    int m_Writes = 0;
};

Bytes drain(zet::InputStream& stream)
{
    Bytes all(static_cast<size_t>(stream.available()));
    EXPECT_EQ(stream.read(all.data(), static_cast<int>(all.size())), static_cast<int>(all.size()));
    return all;
}

TEST(PacketWriter, PutsALittleEndianLengthBeforeTheBytes)
{
    const auto in = zet::MemoryStream::createInstance();
    const auto out = zet::MemoryStream::createInstance();
    put(*in, Bytes(0x0102, 7));
    zet::PacketWriter writer;
    writer.attach(out.get());
    zet::InputStream stream(in.get());
    ASSERT_TRUE(writer.write(stream));
    EXPECT_TRUE(stream.isEmpty());
    zet::InputStream written(out.get());
    EXPECT_EQ(drain(written), packetOf(Bytes(0x0102, 7)));
}

TEST(PacketWriter, WithoutASinkFails)
{
    const auto in = zet::MemoryStream::createInstance();
    put(*in, bytesOf("x"));
    zet::PacketWriter writer;
    zet::InputStream stream(in.get());
    EXPECT_FALSE(writer.write(stream));
    unsigned char place[5] = {0, 0, 0, 0, 1};
    EXPECT_FALSE(writer.writePlaced(place, 1));
}

TEST(PacketWriter, ASinkThatTakesLessFails)
{
    for (const size_t room : {size_t(0), size_t(3), size_t(4), size_t(8)})
    {
        const auto in = zet::MemoryStream::createInstance();
        put(*in, bytesOf("hello"));
        NarrowOutput out(room);
        zet::PacketWriter writer;
        writer.attachOwner(&out);
        zet::InputStream stream(in.get());
        EXPECT_FALSE(writer.write(stream)) << room;
    }
}

TEST(PacketWriter, ASourceThatShowsNothingIsSentInPieces)
{
    DripInput in(100000);
    for (int i = 0; i < 10000; ++i)
        in.m_Bytes.push_back(static_cast<unsigned char>(i));
    NarrowOutput out(20000);
    zet::PacketWriter writer;
    writer.attachOwner(&out);
    zet::InputStream stream(&in);
    ASSERT_TRUE(writer.write(stream));
    EXPECT_EQ(out.m_Bytes, packetOf(in.m_Bytes));
}

TEST(PacketWriter, AnEmptyStreamSendsNothing)
{
    NarrowOutput out(100);
    zet::PacketWriter writer;
    writer.attachOwner(&out);
    zet::InputStream stream;
    EXPECT_TRUE(writer.write(stream));
    EXPECT_EQ(out.m_Writes, 0);
}

TEST(PacketWriter, APlacedPacketIsOneWrite)
{
    NarrowOutput out(100);
    zet::PacketWriter writer;
    writer.attachOwner(&out);
    unsigned char place[9] = {9, 9, 9, 9, 'h', 'e', 'l', 'l', 'o'};
    ASSERT_TRUE(writer.writePlaced(place, 5));
    EXPECT_EQ(out.m_Bytes, packetOf(bytesOf("hello")));
    EXPECT_EQ(out.m_Writes, 1);
}

TEST(PacketWriter, DetachGivesTheSinkBack)
{
    const auto out = zet::MemoryStream::createInstance();
    zet::PacketWriter writer;
    writer.attach(out.get());
    EXPECT_EQ(out->getRefCount(), 2);
    EXPECT_EQ(writer.detach().get(), static_cast<zet::Output*>(out.get()));
    EXPECT_EQ(out->getRefCount(), 1);
    EXPECT_TRUE(writer.detach().isNull());
}

TEST(PacketReader, WithoutASourceTheStreamStaysEmpty)
{
    zet::PacketReader reader;
    zet::InputStream stream;
    EXPECT_TRUE(reader.read(stream));
    EXPECT_TRUE(stream.isEmpty());
}

TEST(PacketReader, OneWriteIsOneRead)
{
    const auto wire = zet::MemoryStream::createInstance();
    for (const char* text : {"first", "2", "the third"})
        put(*wire, packetOf(bytesOf(text)));
    zet::PacketReader reader;
    reader.attach(wire.get());
    zet::InputStream stream;
    for (const char* text : {"first", "2", "the third"})
    {
        ASSERT_TRUE(reader.read(stream));
        EXPECT_EQ(drain(stream), bytesOf(text));
    }
    ASSERT_TRUE(reader.read(stream));
    EXPECT_TRUE(stream.isEmpty());
    EXPECT_EQ(wire->available(), 0);
}

TEST(PacketReader, ACutPacketIsNotHandedOver)
{
    const Bytes packet = packetOf(bytesOf("hello"));
    for (size_t cut = 0; cut < packet.size(); ++cut)
    {
        const auto wire = zet::MemoryStream::createInstance();
        put(*wire, Bytes(packet.begin(), packet.begin() + static_cast<std::ptrdiff_t>(cut)));
        zet::PacketReader reader;
        reader.attach(wire.get());
        zet::InputStream stream;
        ASSERT_TRUE(reader.read(stream)) << cut;
        EXPECT_TRUE(stream.isEmpty()) << cut;
        put(*wire, Bytes(packet.begin() + static_cast<std::ptrdiff_t>(cut), packet.end()));
        ASSERT_TRUE(reader.read(stream)) << cut;
        EXPECT_EQ(drain(stream), bytesOf("hello")) << cut;
    }
}

TEST(PacketReader, WhatIsLeftOfAPacketIsSkipped)
{
    const auto wire = zet::MemoryStream::createInstance();
    put(*wire, packetOf(bytesOf("half read")));
    put(*wire, packetOf(bytesOf("next")));
    zet::PacketReader reader;
    reader.attach(wire.get());
    zet::InputStream stream;
    ASSERT_TRUE(reader.read(stream));
    char four[4];
    EXPECT_EQ(stream.read(four, 4), 4);
    EXPECT_EQ(stream.skip(2), 2);
    EXPECT_EQ(stream.available(), 3);
    ASSERT_TRUE(reader.read(stream));
    EXPECT_EQ(drain(stream), bytesOf("next"));
}

TEST(PacketReader, ThePacketIsShownWithoutACopy)
{
    const auto wire = zet::MemoryStream::createInstance();
    put(*wire, packetOf(bytesOf("in place")));
    const unsigned char* const there = wire->view(12);
    zet::PacketReader reader;
    reader.attach(wire.get());
    zet::InputStream stream;
    ASSERT_TRUE(reader.read(stream));
    EXPECT_EQ(stream.view(8), there + 4);
    EXPECT_EQ(stream.view(9), nullptr);
    char text[9] = {};
    EXPECT_EQ(stream.peek(text, 100), 8);
    EXPECT_STREQ(text, "in place");
    EXPECT_EQ(stream.available(), 8);
}

TEST(PacketReader, APacketWithoutAStreamIsTheSame)
{
    const auto wire = zet::MemoryStream::createInstance();
    put(*wire, packetOf(bytesOf("first")));
    put(*wire, packetOf({}));
    put(*wire, packetOf(bytesOf("second")));
    put(*wire, packetOf(bytesOf("third")));
    const unsigned char* const there = wire->view(9);
    zet::PacketReader reader;
    reader.attach(wire.get());
    std::span<const unsigned char> packet;
    ASSERT_TRUE(reader.read(packet));
    EXPECT_EQ(packet.data(), there + 4);
    EXPECT_EQ(Bytes(packet.begin(), packet.end()), bytesOf("first"));
    zet::InputStream stream;
    ASSERT_TRUE(reader.read(stream));
    EXPECT_EQ(stream.available(), 6);
    // The packet of the stream is valid only until then.
    ASSERT_TRUE(reader.read(packet));
    EXPECT_TRUE(stream.isEmpty());
    EXPECT_EQ(Bytes(packet.begin(), packet.end()), bytesOf("third"));
    ASSERT_TRUE(reader.read(packet));
    EXPECT_TRUE(packet.empty());
}

TEST(PacketReader, APacketPutTogetherNeedsNoStream)
{
    DripInput drip(3);
    for (const char* const text : {"one", "two"})
    {
        const Bytes packet = packetOf(bytesOf(text));
        drip.m_Bytes.insert(drip.m_Bytes.end(), packet.begin(), packet.end());
    }
    zet::PacketReader reader;
    reader.attachOwner(&drip);
    std::vector<Bytes> got;
    for (int i = 0; i < 20; ++i)
    {
        std::span<const unsigned char> packet;
        ASSERT_TRUE(reader.read(packet));
        if (!packet.empty())
            got.emplace_back(packet.begin(), packet.end());
    }
    EXPECT_EQ(got, (std::vector<Bytes>{bytesOf("one"), bytesOf("two")}));
}

TEST(PacketReader, APacketOfNoBytesIsPassedOver)
{
    const auto wire = zet::MemoryStream::createInstance();
    put(*wire, packetOf({}));
    put(*wire, packetOf({}));
    put(*wire, packetOf(bytesOf("x")));
    put(*wire, packetOf({}));
    zet::PacketReader reader;
    reader.attach(wire.get());
    zet::InputStream stream;
    ASSERT_TRUE(reader.read(stream));
    EXPECT_EQ(drain(stream), bytesOf("x"));
    ASSERT_TRUE(reader.read(stream));
    EXPECT_TRUE(stream.isEmpty());
}

TEST(PacketReader, ALengthAtTheLimitIsTakenAndOneAboveBreaks)
{
    for (const bool isDrip : {false, true})
    {
        const auto wire = zet::MemoryStream::createInstance();
        DripInput drip(3);
        const Bytes good = packetOf(Bytes(10, 1));
        const Bytes bad = packetOf(Bytes(11, 1));
        put(*wire, good);
        put(*wire, bad);
        drip.m_Bytes = good;
        drip.m_Bytes.insert(drip.m_Bytes.end(), bad.begin(), bad.end());
        zet::PacketReader reader;
        reader.setLimit(10);
        reader.attachOwner(isDrip ? static_cast<zet::Input*>(&drip) : wire.get());
        zet::InputStream stream;
        ASSERT_TRUE(reader.read(stream));
        EXPECT_EQ(stream.available(), 10);
        EXPECT_FALSE(reader.read(stream));
        EXPECT_TRUE(stream.isEmpty());
        EXPECT_FALSE(reader.read(stream));
    }
}

TEST(PacketReader, ALengthWithTheTopBitBreaks)
{
    const auto wire = zet::MemoryStream::createInstance();
    put(*wire, {0xFF, 0xFF, 0xFF, 0xFF, 1, 2, 3});
    zet::PacketReader reader;
    reader.setLimit(0x7FFFFFFF);
    reader.attach(wire.get());
    zet::InputStream stream;
    EXPECT_FALSE(reader.read(stream));
}

TEST(PacketReader, ALengthAtTheDefaultLimitIsAcceptedAndOneAboveBreaks)
{
    const auto wire = zet::MemoryStream::createInstance();
    const unsigned int largest = zet::PacketReader::kDefaultLimit;
    Bytes head(4);
    std::memcpy(head.data(), &largest, 4);
    put(*wire, head);
    zet::PacketReader reader;
    reader.attach(wire.get());
    zet::InputStream stream;
    EXPECT_TRUE(reader.read(stream));
    EXPECT_TRUE(stream.isEmpty());

    const auto broken = zet::MemoryStream::createInstance();
    const unsigned int above = largest + 1;
    std::memcpy(head.data(), &above, 4);
    put(*broken, head);
    reader.attach(broken.get());
    EXPECT_FALSE(reader.read(stream));
}

TEST(PacketReader, AnAnnouncedLengthReservesNothing)
{
    DripInput drip(4);
    const unsigned int announced = 0x0FFFFFFF;
    drip.m_Bytes.resize(4);
    std::memcpy(drip.m_Bytes.data(), &announced, 4);
    drip.m_Bytes.resize(14);
    zet::PacketReader reader;
    reader.attachOwner(&drip);
    zet::InputStream stream;
    const test::AllocationCount count;
    ASSERT_TRUE(reader.read(stream));
    EXPECT_TRUE(stream.isEmpty());
    EXPECT_LT(count.bytes(), 10000);
}

TEST(PacketReader, ASourceThatDripsIsPutTogether)
{
    Bytes large(100000);
    for (size_t i = 0; i < large.size(); ++i)
        large[i] = static_cast<unsigned char>(i * 7);
    for (const int step : {1, 3, 4, 5, 1000})
    {
        DripInput drip(step);
        for (const Bytes& content : {bytesOf("one"), Bytes(), large, bytesOf("two")})
        {
            const Bytes packet = packetOf(content);
            drip.m_Bytes.insert(drip.m_Bytes.end(), packet.begin(), packet.end());
        }
        zet::PacketReader reader;
        reader.attachOwner(&drip);
        std::vector<Bytes> got;
        for (size_t i = 0; i < drip.m_Bytes.size() + 10 && got.size() < 3; ++i)
        {
            zet::InputStream stream;
            ASSERT_TRUE(reader.read(stream));
            if (!stream.isEmpty())
                got.push_back(drain(stream));
        }
        ASSERT_EQ(got.size(), 3U) << step;
        EXPECT_EQ(got[0], bytesOf("one"));
        EXPECT_EQ(got[1], large);
        EXPECT_EQ(got[2], bytesOf("two"));
    }
}

TEST(PacketReader, AttachForgetsWhatWasLeftOfTheOldSource)
{
    DripInput drip(1000);
    drip.m_Bytes = packetOf(bytesOf("never whole"));
    drip.m_Bytes.pop_back();
    zet::PacketReader reader;
    reader.attachOwner(&drip);
    zet::InputStream stream;
    ASSERT_TRUE(reader.read(stream));
    const auto wire = zet::MemoryStream::createInstance();
    put(*wire, packetOf(bytesOf("new")));
    reader.attach(wire.get());
    ASSERT_TRUE(reader.read(stream));
    EXPECT_EQ(drain(stream), bytesOf("new"));
    EXPECT_EQ(reader.detach().get(), static_cast<zet::Input*>(wire.get()));
    ASSERT_TRUE(reader.read(stream));
    EXPECT_TRUE(stream.isEmpty());
}

TEST(PacketReader, AttachHoldsASourceThatHandlesHold)
{
    zet::PacketReader reader;
    {
        const auto wire = zet::MemoryStream::createInstance();
        put(*wire, packetOf(bytesOf("still there")));
        reader.attach(wire.get());
    }
    zet::InputStream stream;
    ASSERT_TRUE(reader.read(stream));
    EXPECT_EQ(drain(stream), bytesOf("still there"));
    EXPECT_EQ(reader.detach()->getRefCount(), 1);
}

} // namespace
