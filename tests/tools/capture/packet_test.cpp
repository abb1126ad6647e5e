#include "tools/capture/packet.h"

#include "tests/support/captures.h"

#include <gtest/gtest.h>

#include <string>

namespace
{

namespace capture = test::capture;

using tools::Link;
using tools::Packet;
using namespace std::string_literals;

const std::string kSegment = capture::tcpPacket({}, 5, 6, capture::kAck, "hello");

void expectHello(Link link, const std::string& bytes)
{
    const Packet packet = tools::packetOf(link, bytes);
    ASSERT_EQ(packet.m_Kind, Packet::Kind::kTcp);
    EXPECT_EQ(packet.m_Payload, "hello");
    EXPECT_EQ(tools::textOf(packet.m_From), "10.0.0.1:40000");
    EXPECT_EQ(tools::textOf(packet.m_To), "10.0.0.2:7000");
    EXPECT_EQ(packet.m_Sequence, 5u);
    EXPECT_EQ(packet.m_Acknowledged, 6u);
    EXPECT_TRUE(packet.m_IsAck);
    EXPECT_FALSE(packet.m_IsSyn || packet.m_IsFin || packet.m_IsReset);
}

TEST(CapturePacket, EveryLinkLayerCarriesIp)
{
    const std::string macs(12, '\x22');
    expectHello(Link::kEthernet, macs + "\x08\x00"s + kSegment);
    expectHello(Link::kEthernet, macs + "\x81\x00\x00\x05\x08\x00"s + kSegment);
    expectHello(Link::kEthernet, macs + "\x88\xA8\x00\x05\x81\x00\x00\x06\x08\x00"s + kSegment);
    expectHello(Link::kLinuxCooked, std::string(14, '\0') + "\x08\x00"s + kSegment);
    expectHello(Link::kLinuxCooked2, "\x08\x00"s + std::string(18, '\0') + kSegment);
    expectHello(Link::kRawIp, kSegment);
    expectHello(Link::kLoopback, "\x02\x00\x00\x00"s + kSegment);
    expectHello(Link::kLoopback, "\x00\x00\x00\x02"s + kSegment);
}

TEST(CapturePacket, PaddingOfTheLinkLayerIsNotPayload)
{
    expectHello(Link::kEthernet, std::string(12, '\x22') + "\x08\x00"s + kSegment + std::string(9, '\0'));
}

TEST(CapturePacket, Ipv6ExtensionHeadersArePassed)
{
    capture::Ends ends;
    ends.m_From.assign(16, '\0');
    ends.m_From.replace(0, 4, "\x20\x01\x0d\xb8");
    ends.m_From[15] = 1;
    ends.m_To.assign(16, '\0');
    ends.m_To[15] = 1;
    const std::string tcp = capture::tcp(ends, 5, 6, capture::kAck, "hello");
    // Hop by hop of 8 bytes, destination options of 16, an authentication header of 12, a fragment header of a whole
    // packet, then TCP.
    std::string headers;
    const auto add = [&](char next, char length, size_t size)
    {
        headers += next;
        headers += length;
        headers.append(size - 2, '\0');
    };
    add(60, 0, 8);
    add(51, 1, 16);
    add(44, 1, 12);
    add(6, 0, 8);
    const std::string all = capture::ip(ends, 0, headers + tcp);
    const Packet packet = tools::packetOf(Link::kRawIp, all);
    ASSERT_EQ(packet.m_Kind, Packet::Kind::kTcp);
    EXPECT_EQ(packet.m_Payload, "hello");
    EXPECT_EQ(tools::textOf(packet.m_From), "[2001:db8::1]:40000");
    EXPECT_EQ(tools::textOf(packet.m_To), "[::1]:7000");

    headers.clear();
    add(6, 0, 8);
    headers[3] = 1;
    const std::string fragment = capture::ip(ends, 44, headers + tcp);
    EXPECT_EQ(tools::packetOf(Link::kRawIp, fragment).m_Kind, Packet::Kind::kFragment);
}

TEST(CapturePacket, FragmentsAndOtherProtocolsAreTold)
{
    std::string first = kSegment;
    first[6] = '\x20';
    EXPECT_EQ(tools::packetOf(Link::kRawIp, first).m_Kind, Packet::Kind::kFragment);
    std::string later = kSegment;
    later[7] = '\x08';
    EXPECT_EQ(tools::packetOf(Link::kRawIp, later).m_Kind, Packet::Kind::kFragment);
    EXPECT_EQ(tools::packetOf(Link::kRawIp, capture::ip({}, 1, "ping")).m_Kind, Packet::Kind::kOther);
    EXPECT_EQ(tools::packetOf(Link::kEthernet, std::string(12, '\x22') + "\x08\x06"s + std::string(28, '\0')).m_Kind,
              Packet::Kind::kOther);
    EXPECT_EQ(tools::packetOf(Link::kUnknown, kSegment).m_Kind, Packet::Kind::kOther);
}

// The captured part counts, and how much is missing.
TEST(CapturePacket, CutPacketsGiveWhatIsThere)
{
    const Packet cut = tools::packetOf(Link::kRawIp, std::string_view(kSegment).substr(0, kSegment.size() - 3));
    EXPECT_EQ(cut.m_Payload, "he");
    EXPECT_EQ(cut.m_Missing, 3u);
    for (size_t size = 0; size < kSegment.size() - 5; ++size)
        EXPECT_EQ(tools::packetOf(Link::kRawIp, std::string_view(kSegment).substr(0, size)).m_Kind, Packet::Kind::kBad)
            << size;
}

TEST(CapturePacket, DatagramsHaveTheirOwnLength)
{
    const std::string bytes = capture::ip({}, 17, capture::udp({}, "hello"));
    const Packet packet = tools::packetOf(Link::kRawIp, bytes);
    ASSERT_EQ(packet.m_Kind, Packet::Kind::kUdp);
    EXPECT_EQ(packet.m_Payload, "hello");
}

} // namespace
