// Commands from captured packets that are in order, moved, repeated, lost, cut.
#include "tools/capture/capture_decoder.h"

#include "tests/support/captures.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <random>
#include <set>
#include <string>
#include <vector>

namespace
{

namespace capture = test::capture;

using Json = nlohmann::ordered_json;
using test::capture::Conversation;

struct Decoded
{
    explicit Decoded(const std::vector<std::string>& packets, const tools::CaptureDecoder::Limits& limits = {})
    {
        tools::CaptureDecoder decoder([this](std::string_view line, bool) { m_Lines.push_back(Json::parse(line)); },
                                      [this](const tools::Notice& notice) { m_Notices.push_back(notice); }, limits);
        int64_t time = 0;
        for (const std::string& packet : packets)
        {
            decoder.add({time += 1000, tools::Link::kRawIp, packet});
            m_MostHeld = std::max(m_MostHeld, decoder.held());
            m_MostConnections = std::max(m_MostConnections, decoder.connections());
        }
        decoder.finish();
        m_Totals = decoder.totals();
    }

    // The numbers of the commands in one direction.
    std::vector<int> numbers(const char* direction) const
    {
        std::vector<int> all;
        for (const Json& line : m_Lines)
            if (line["direction"] == direction)
                all.push_back(line["fields"]["m_ServerType"]);
        return all;
    }
    bool says(const std::string& what) const
    {
        return std::any_of(m_Notices.begin(), m_Notices.end(),
                           [&](const tools::Notice& notice) { return notice.m_What.find(what) != std::string::npos; });
    }

    std::vector<Json> m_Lines;
    std::vector<tools::Notice> m_Notices;
    tools::CaptureTotals m_Totals;
    size_t m_MostHeld = 0;
    size_t m_MostConnections = 0;
};

std::vector<int> range(int first, int count)
{
    std::vector<int> all;
    for (int i = 0; i < count; ++i)
        all.push_back(first + i);
    return all;
}

// 20 commands of 15 bytes to the server, in segments of 40 bytes, and 10 back.
Conversation conversation()
{
    Conversation all;
    all.open();
    all.send(true, capture::commands(0, 20), 40);
    all.send(false, capture::commands(50, 10), 40);
    all.close();
    return all;
}

TEST(CaptureDecoder, ALineIsThatOfDecodeWithTimeConnectionAndDirection)
{
    const Decoded decoded(conversation().m_Packets);
    ASSERT_EQ(decoded.m_Lines.size(), 30u);
    std::string frame;
    tools::FrameDecoder plain(tools::Framing::kPackets, [&](std::string_view line, bool) { frame = line; });
    plain.add(capture::command(0));
    Json expected = {{"time", "1970-01-01T00:00:00.004000Z"},
                     {"connection", "10.0.0.1:40000-10.0.0.2:7000"},
                     {"direction", "to_server"}};
    expected.update(Json::parse(frame));
    EXPECT_EQ(decoded.m_Lines[0].dump(), expected.dump());
    EXPECT_EQ(decoded.m_Lines[1]["offset"], 4 + 15);
    EXPECT_EQ(decoded.numbers("to_server"), range(0, 20));
    EXPECT_EQ(decoded.numbers("to_client"), range(50, 10));
    EXPECT_TRUE(decoded.m_Notices.empty());
    EXPECT_EQ(decoded.m_Totals.m_SkippedBytes + decoded.m_Totals.m_LostBytes, 0u);
}

TEST(CaptureDecoder, SegmentsInAnyOrderGiveTheSameCommands)
{
    std::mt19937 random(3);
    for (int round = 0; round < 50; ++round)
    {
        Conversation all;
        all.open();
        all.send(true, capture::commands(0, 20), 7 + static_cast<size_t>(round));
        // All but the acknowledgement at the end.
        std::shuffle(all.m_Packets.begin() + 3, all.m_Packets.end() - 1, random);
        const Decoded decoded(all.m_Packets);
        EXPECT_EQ(decoded.numbers("to_server"), range(0, 20)) << round;
        EXPECT_TRUE(decoded.m_Notices.empty()) << round << decoded.m_Notices[0].m_What;
    }
}

TEST(CaptureDecoder, RepeatedAndOverlappingSegmentsGiveACommandOnce)
{
    Conversation all;
    all.open();
    const std::string bytes = capture::commands(0, 4);
    std::vector<std::string> packets = all.m_Packets;
    const auto segment = [&](uint32_t at, size_t size)
    { packets.push_back(capture::tcpPacket({}, 1001 + at, 0xFFFFFF01, capture::kAck, bytes.substr(at, size))); };
    segment(0, 20);
    segment(0, 20);
    segment(10, 25);
    segment(40, 20);
    segment(38, 12);
    segment(5, 55);
    segment(0, 60);
    const Decoded decoded(packets);
    EXPECT_EQ(decoded.numbers("to_server"), range(0, 4));
    EXPECT_TRUE(decoded.m_Notices.empty());
}

// Whole commands of the segments that are left; nothing else may appear.
TEST(CaptureDecoder, EachPacketLostInTurnCostsOnlyTheCommandsInIt)
{
    const std::vector<std::string> packets = conversation().m_Packets;
    for (size_t lost = 0; lost < packets.size(); ++lost)
    {
        std::vector<std::string> left = packets;
        left.erase(left.begin() + static_cast<std::ptrdiff_t>(lost));
        const Decoded decoded(left);
        // A segment of 40 bytes touches at most 4 commands of 15 bytes.
        const size_t there = decoded.m_Lines.size();
        const tools::Packet packet = tools::packetOf(tools::Link::kRawIp, packets[lost]);
        EXPECT_GE(there, packet.m_Payload.empty() ? 30u : 26u) << lost;
        EXPECT_LE(there, packet.m_Payload.empty() ? 30u : 28u) << lost;
        EXPECT_EQ(decoded.m_Totals.m_LostBytes, packet.m_Payload.size()) << lost;
        EXPECT_EQ(decoded.says("gap of " + std::to_string(packet.m_Payload.size()) + " bytes"),
                  !packet.m_Payload.empty())
            << lost;
        std::set<int> seen;
        for (const Json& line : decoded.m_Lines)
        {
            EXPECT_FALSE(line.contains("error"));
            const int number = line["fields"]["m_ServerType"];
            EXPECT_TRUE(seen.insert(number).second) << number;
            EXPECT_TRUE(number < 20 || (number >= 50 && number < 60)) << number;
        }
    }
}

TEST(CaptureDecoder, EachPacketDoubledOrSwappedInTurnCostsNothing)
{
    const std::vector<std::string> packets = conversation().m_Packets;
    for (size_t i = 0; i + 1 < packets.size(); ++i)
    {
        std::vector<std::string> twice = packets;
        twice.insert(twice.begin() + static_cast<std::ptrdiff_t>(i), packets[i]);
        std::vector<std::string> swapped = packets;
        std::swap(swapped[i], swapped[i + 1]);
        for (const auto& damaged : {twice, swapped})
        {
            const Decoded decoded(damaged);
            EXPECT_EQ(decoded.numbers("to_server"), range(0, 20)) << i;
            EXPECT_EQ(decoded.numbers("to_client"), range(50, 10)) << i;
        }
    }
}

TEST(CaptureDecoder, APacketCutShortIsAGap)
{
    std::vector<std::string> packets = conversation().m_Packets;
    packets[5].resize(packets[5].size() - 10);
    const Decoded decoded(packets);
    EXPECT_EQ(decoded.m_Totals.m_LostBytes, 10u);
    EXPECT_GE(decoded.m_Lines.size(), 28u);
    EXPECT_LT(decoded.m_Lines.size(), 30u);
}

TEST(CaptureDecoder, AStartInTheMiddleFindsTheNextPacketAndSaysSo)
{
    const std::vector<std::string> packets = conversation().m_Packets;
    // From the second data segment on: byte 40, ten bytes into the third command.
    const Decoded decoded(std::vector<std::string>(packets.begin() + 4, packets.end()));
    EXPECT_EQ(decoded.numbers("to_server"), range(3, 17));
    EXPECT_EQ(decoded.numbers("to_client"), range(50, 10));
    EXPECT_TRUE(decoded.says("middle of the connection, resynchronised after 5 bytes"));
    EXPECT_EQ(decoded.m_Totals.m_SkippedBytes, 5u);
    EXPECT_EQ(decoded.m_Lines[0]["connection"], "10.0.0.1:40000-10.0.0.2:7000");
}

// The bytes in the packet could be taken for one of their own.
TEST(CaptureDecoder, AGapWithinOnePacketDoesNotExposeItsContent)
{
    Conversation all;
    all.open();
    const std::string inner = capture::commands(30, 10);
    std::string frame("\x00\x10\x00\x00\x00\x00", 6);
    const size_t size = inner.size() * 4;
    frame[2] = static_cast<char>(size & 0xFF);
    frame[3] = static_cast<char>(size >> 8);
    all.send(true, capture::command(1) + capture::packetOf(frame + inner) + capture::command(2), 50);
    all.m_Packets.erase(all.m_Packets.begin() + 4);
    const Decoded decoded(all.m_Packets);
    EXPECT_EQ(decoded.numbers("to_server"), (std::vector<int>{1, 2}));
    EXPECT_TRUE(decoded.says("gap of 50 bytes in a packet of 160 bytes"));
}

TEST(CaptureDecoder, OtherTrafficIsSkippedAndSaid)
{
    Conversation all;
    all.open();
    all.send(true, std::string("GET / HTTP/1.1\r\n\r\n") + capture::commands(0, 3), 1000);
    const Decoded decoded(all.m_Packets);
    EXPECT_EQ(decoded.numbers("to_server"), range(0, 3));
    EXPECT_TRUE(decoded.says("bytes that are not a packet, resynchronised after 18 bytes"));
    EXPECT_EQ(decoded.m_Totals.m_SkippedBytes, 18u);
}

TEST(CaptureDecoder, PortsThatAreUsedAgainAreAnotherConnection)
{
    Conversation first(1000, 5000);
    first.open();
    first.send(true, capture::commands(0, 2) + capture::command(2).substr(0, 6));
    Conversation second(3000, 9000);
    second.open();
    second.send(true, capture::commands(10, 2));
    second.close();
    std::vector<std::string> packets = first.m_Packets;
    packets.insert(packets.end(), second.m_Packets.begin(), second.m_Packets.end());
    const Decoded decoded(packets);
    EXPECT_EQ(decoded.numbers("to_server"), (std::vector<int>{0, 1, 10, 11}));
    EXPECT_TRUE(decoded.says("the end within a packet, of which 6 bytes are there"));
}

TEST(CaptureDecoder, AResetEndsBothDirections)
{
    Conversation all;
    all.open();
    all.send(true, capture::command(0) + capture::command(1).substr(0, 5));
    all.m_Packets.push_back(capture::tcpPacket(capture::Ends().reversed(), 0xFFFFFF01, 0, capture::kReset));
    all.m_Packets.push_back(capture::tcpPacket({}, 1021, 0, capture::kAck, capture::command(9)));
    const Decoded decoded(all.m_Packets);
    EXPECT_EQ(decoded.numbers("to_server"), range(0, 1));
    EXPECT_TRUE(decoded.says("the end within a packet"));
}

TEST(CaptureDecoder, BytesAfterALostSegmentAreHeldWithinABoundThenGiven)
{
    size_t lines = 0;
    std::string what;
    tools::CaptureDecoder decoder([&](std::string_view, bool) { ++lines; },
                                  [&](const tools::Notice& notice) { what += notice.m_What; });
    Conversation all;
    all.open();
    for (const std::string& packet : all.m_Packets)
        decoder.add({0, tools::Link::kRawIp, packet});
    // More than the bound.
    const std::string ten = capture::commands(0, 10);
    uint32_t sequence = 1001 + 15;
    for (int i = 0; i < 8000; ++i, sequence += 150)
    {
        decoder.add({0, tools::Link::kRawIp, capture::tcpPacket({}, sequence, 0, capture::kAck, ten)});
        ASSERT_LE(decoder.held(), tools::TcpDirection::kMostAhead);
    }
    EXPECT_EQ(lines, 80'000u);
    EXPECT_EQ(what, "a gap of 15 bytes, resynchronised after 0 bytes");
}

// A live capture shows what follows a lost segment soon after the receiver has acknowledged it.
TEST(CaptureDecoder, AnAcknowledgedHoleIsGivenUpAfterSomeSegments)
{
    Conversation all;
    all.open();
    std::vector<std::string> packets = all.m_Packets;
    size_t lines = 0;
    tools::CaptureDecoder decoder([&](std::string_view, bool) { ++lines; }, [](const tools::Notice&) {});
    for (const std::string& packet : packets)
        decoder.add({0, tools::Link::kRawIp, packet});
    for (uint32_t i = 1; i < 2 * tools::TcpDirection::kPatience; ++i)
    {
        decoder.add(
            {0, tools::Link::kRawIp, capture::tcpPacket({}, 1001 + 15 * i, 0, capture::kAck, capture::command(1))});
        if (i == 5)
            decoder.add({0, tools::Link::kRawIp,
                         capture::tcpPacket(capture::Ends().reversed(), 0xFFFFFF01, 1001 + 15 * 6, capture::kAck)});
    }
    EXPECT_GT(lines, 0u);
}

TEST(CaptureDecoder, TheOldestIdleConnectionIsGivenUpAndSaidSo)
{
    std::vector<std::string> packets;
    for (uint16_t port = 0; port < 20; ++port)
    {
        capture::Ends ends;
        ends.m_FromPort = static_cast<uint16_t>(50000 + port);
        packets.push_back(capture::tcpPacket(ends, 1, 0, capture::kSyn));
        packets.push_back(capture::tcpPacket(ends, 2, 0, capture::kAck, capture::command(port)));
    }
    tools::CaptureDecoder::Limits limits;
    limits.m_Connections = 4;
    const Decoded decoded(packets, limits);
    EXPECT_EQ(decoded.m_MostConnections, 4u);
    EXPECT_EQ(decoded.m_Totals.m_GivenUp, 16u);
    EXPECT_TRUE(decoded.says("idle for the longest time is given up"));
    EXPECT_EQ(decoded.numbers("to_server"), range(0, 20));
}

TEST(CaptureDecoder, HeldBytesOfAllConnectionsHaveABound)
{
    std::vector<std::string> packets;
    for (uint16_t port = 0; port < 50; ++port)
    {
        capture::Ends ends;
        ends.m_FromPort = static_cast<uint16_t>(50000 + port);
        packets.push_back(capture::tcpPacket(ends, 1, 0, capture::kSyn));
        packets.push_back(capture::tcpPacket(ends, 100, 0, capture::kAck, std::string(10'000, 'x')));
    }
    tools::CaptureDecoder::Limits limits;
    limits.m_HeldBytes = 100'000;
    const Decoded decoded(packets, limits);
    EXPECT_LE(decoded.m_MostHeld, 100'000u);
    EXPECT_GT(decoded.m_Totals.m_GivenUp, 30u);
}

TEST(CaptureDecoder, ADatagramThatIsOneFrameIsACommand)
{
    const std::string frame("\x00\x10\x14\x00\x02\x00\x07\x09", 8);
    const Decoded decoded(
        {capture::ip({}, 17, capture::udp({}, frame)), capture::ip({}, 17, capture::udp({}, frame + "x")),
         capture::ip(capture::Ends().reversed(), 17, capture::udp(capture::Ends().reversed(), frame))});
    ASSERT_EQ(decoded.m_Lines.size(), 2u);
    EXPECT_EQ(decoded.m_Lines[0]["class"], "CCmdHostnameRequest");
    EXPECT_EQ(decoded.m_Lines[0]["direction"], "to_server");
    EXPECT_EQ(decoded.m_Lines[1]["direction"], "to_client");
    EXPECT_EQ(decoded.m_Lines[1]["connection"], decoded.m_Lines[0]["connection"]);
    EXPECT_FALSE(decoded.m_Lines[0].contains("offset"));
    EXPECT_EQ(decoded.m_Totals.m_OtherDatagrams, 1u);
}

TEST(CaptureDecoder, FragmentsAreSkippedAndSaid)
{
    std::string fragment = capture::tcpPacket({}, 1, 1, capture::kAck, capture::command(1));
    fragment[6] = '\x20';
    const Decoded decoded({fragment});
    EXPECT_TRUE(decoded.m_Lines.empty());
    EXPECT_EQ(decoded.m_Totals.m_Fragments, 1u);
    EXPECT_TRUE(decoded.says("fragment"));
}

TEST(CaptureDecoder, ARefusedCommandIsAnErrorAndTheNextOneFollows)
{
    Conversation all;
    all.open();
    const std::string refused = capture::packetOf(std::string("\x00\x10\x04\x00\x00\x00\x00", 7));
    all.send(true, capture::command(1) + refused + capture::command(2));
    const Decoded decoded(all.m_Packets);
    ASSERT_EQ(decoded.m_Lines.size(), 3u);
    EXPECT_EQ(decoded.m_Lines[1]["error"], "refused by Read");
    EXPECT_EQ(decoded.m_Lines[2]["fields"]["m_ServerType"], 2);
}

} // namespace
