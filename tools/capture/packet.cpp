#include "tools/capture/packet.h"

#include <algorithm>
#include <cstdio>

namespace tools
{

namespace
{

constexpr unsigned kIpv4 = 0x0800;
constexpr unsigned kIpv6 = 0x86DD;
constexpr size_t kIpv4Head = 20;
constexpr size_t kIpv6Head = 40;
constexpr size_t kTcpHead = 20;
constexpr size_t kUdpHead = 8;
constexpr unsigned kTcp = 6;
constexpr unsigned kUdp = 17;

unsigned byteAt(std::string_view bytes, size_t at)
{
    return static_cast<unsigned char>(bytes[at]);
}

// Numbers of the network are big-endian.
unsigned wordAt(std::string_view bytes, size_t at)
{
    return byteAt(bytes, at) << 8 | byteAt(bytes, at + 1);
}

uint32_t longAt(std::string_view bytes, size_t at)
{
    return uint32_t{wordAt(bytes, at)} << 16 | wordAt(bytes, at + 2);
}

void copyAddress(Endpoint& endpoint, std::string_view bytes)
{
    endpoint.m_IsV6 = bytes.size() > 4;
    std::copy(bytes.begin(), bytes.end(), endpoint.m_Address.begin());
}

bool isVlanTag(unsigned type)
{
    return type == 0x8100 || type == 0x88A8 || type == 0x9100;
}

// Puts the payload of an IP packet into the packet; size is what its head announces, which may not all be captured.
void takeTransport(Packet& packet, unsigned protocol, std::string_view bytes, size_t size)
{
    if (protocol != kTcp && protocol != kUdp)
    {
        packet.m_Kind = Packet::Kind::kOther;
        return;
    }
    bytes = bytes.substr(0, size);
    size_t head = protocol == kTcp ? kTcpHead : kUdpHead;
    if (bytes.size() < head)
        return;
    packet.m_From.m_Port = static_cast<uint16_t>(wordAt(bytes, 0));
    packet.m_To.m_Port = static_cast<uint16_t>(wordAt(bytes, 2));
    if (protocol == kTcp)
    {
        packet.m_Sequence = longAt(bytes, 4);
        packet.m_Acknowledged = longAt(bytes, 8);
        const unsigned flags = byteAt(bytes, 13);
        packet.m_IsFin = (flags & 1) != 0;
        packet.m_IsSyn = (flags & 2) != 0;
        packet.m_IsReset = (flags & 4) != 0;
        packet.m_IsAck = (flags & 16) != 0;
        head = size_t{byteAt(bytes, 12) >> 4} * 4;
        if (head < kTcpHead || head > bytes.size())
            return;
    }
    else
    {
        // 0 where the sending system lets its network card cut the datagram.
        const size_t own = wordAt(bytes, 4);
        if ((own != 0 && own < kUdpHead) || own > size)
            return;
        size = own == 0 ? size : own;
        bytes = bytes.substr(0, size);
    }
    packet.m_Payload = bytes.substr(head);
    packet.m_Missing = size - bytes.size();
    packet.m_Kind = protocol == kTcp ? Packet::Kind::kTcp : Packet::Kind::kUdp;
}

void takeIpv4(Packet& packet, std::string_view bytes)
{
    if (bytes.size() < kIpv4Head)
        return;
    const size_t head = size_t{byteAt(bytes, 0) & 15} * 4;
    // 0 where the sending system lets its network card cut the packet.
    const size_t total = wordAt(bytes, 2) == 0 ? bytes.size() : wordAt(bytes, 2);
    if (head < kIpv4Head || head > bytes.size() || total < head)
        return;
    copyAddress(packet.m_From, bytes.substr(12, 4));
    copyAddress(packet.m_To, bytes.substr(16, 4));
    // More fragments follow, or this one is not the first.
    if ((wordAt(bytes, 6) & 0x3FFF) != 0)
        packet.m_Kind = Packet::Kind::kFragment;
    else
        takeTransport(packet, byteAt(bytes, 9), bytes.substr(head), total - head);
}

void takeIpv6(Packet& packet, std::string_view bytes)
{
    if (bytes.size() < kIpv6Head)
        return;
    copyAddress(packet.m_From, bytes.substr(8, 16));
    copyAddress(packet.m_To, bytes.substr(24, 16));
    unsigned next = byteAt(bytes, 6);
    size_t size = wordAt(bytes, 4) == 0 ? bytes.size() - kIpv6Head : wordAt(bytes, 4);
    bytes.remove_prefix(kIpv6Head);
    constexpr unsigned kHopByHop = 0;
    constexpr unsigned kRouting = 43;
    constexpr unsigned kFragment = 44;
    constexpr unsigned kAuthentication = 51;
    constexpr unsigned kDestination = 60;
    constexpr unsigned kMobility = 135;
    // Each header has at least eight bytes, so the loop ends with the bytes.
    while (next == kHopByHop || next == kRouting || next == kFragment || next == kAuthentication ||
           next == kDestination || next == kMobility)
    {
        if (bytes.size() < 8)
            return;
        // The offset and the flag for more; a fragment that is the whole packet has neither.
        if (next == kFragment && (wordAt(bytes, 2) & 0xFFF9) != 0)
        {
            packet.m_Kind = Packet::Kind::kFragment;
            return;
        }
        const size_t length = byteAt(bytes, 1);
        const size_t head = next == kFragment ? 8 : next == kAuthentication ? (length + 2) * 4 : (length + 1) * 8;
        if (head < 8 || head > bytes.size() || head > size)
            return;
        next = byteAt(bytes, 0);
        bytes.remove_prefix(head);
        size -= head;
    }
    takeTransport(packet, next, bytes, size);
}

void takeIp(Packet& packet, std::string_view bytes)
{
    const unsigned version = bytes.empty() ? 0 : byteAt(bytes, 0) >> 4;
    if (version == 4)
        takeIpv4(packet, bytes);
    else if (version == 6)
        takeIpv6(packet, bytes);
    else if (!bytes.empty())
        packet.m_Kind = Packet::Kind::kOther;
}

// What follows a link layer with the type of its content.
void takeTyped(Packet& packet, unsigned type, std::string_view bytes)
{
    while (isVlanTag(type))
    {
        if (bytes.size() < 4)
            return;
        type = wordAt(bytes, 2);
        bytes.remove_prefix(4);
    }
    if (type == kIpv4 || type == kIpv6)
        takeIp(packet, bytes);
    else
        packet.m_Kind = Packet::Kind::kOther;
}

} // namespace

Packet packetOf(Link link, std::string_view bytes)
{
    Packet packet;
    // The size of the head of the link layer, and where in it the type of its content is.
    const auto typed = [&](size_t head, size_t type)
    {
        if (bytes.size() >= head)
            takeTyped(packet, wordAt(bytes, type), bytes.substr(head));
    };
    switch (link)
    {
    case Link::kEthernet:
        typed(14, 12);
        break;
    case Link::kLinuxCooked:
        typed(16, 14);
        break;
    case Link::kLinuxCooked2:
        typed(20, 0);
        break;
    case Link::kRawIp:
        takeIp(packet, bytes);
        break;
    case Link::kLoopback:
        // The version of IP says the same as the family, whatever the byte order.
        if (bytes.size() >= 4)
            takeIp(packet, bytes.substr(4));
        break;
    case Link::kUnknown:
        packet.m_Kind = Packet::Kind::kOther;
        break;
    }
    return packet;
}

std::string addressTextOf(const Endpoint& endpoint)
{
    char text[8];
    std::string all;
    if (!endpoint.m_IsV6)
    {
        for (size_t i = 0; i < 4; ++i)
            all.append(i > 0 ? "." : "").append(std::to_string(endpoint.m_Address[i]));
        return all;
    }
    const auto group = [&](size_t i) { return endpoint.m_Address[2 * i] << 8 | endpoint.m_Address[2 * i + 1]; };
    // The first of the longest runs of at least two zero groups is left out.
    constexpr size_t kGroups = 8;
    size_t from = kGroups;
    size_t run = 1;
    for (size_t i = 0; i < kGroups; ++i)
    {
        size_t end = i;
        while (end < kGroups && group(end) == 0)
            ++end;
        if (end - i > run)
        {
            from = i;
            run = end - i;
        }
    }
    for (size_t i = 0; i < kGroups;)
    {
        if (i == from)
        {
            all += "::";
            i += run;
            continue;
        }
        if (!all.empty() && all.back() != ':')
            all += ':';
        std::snprintf(text, sizeof text, "%x", static_cast<unsigned>(group(i)));
        all += text;
        ++i;
    }
    return all;
}

std::string textOf(const Endpoint& endpoint)
{
    const std::string address = addressTextOf(endpoint);
    return (endpoint.m_IsV6 ? "[" + address + "]" : address) + ":" + std::to_string(endpoint.m_Port);
}

} // namespace tools
