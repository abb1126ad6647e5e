// One captured packet taken apart: link layer, VLAN tags, IP with its extension headers, TCP or UDP.
#pragma once

#include <array>
#include <compare>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace tools
{

// What a captured packet starts with.
enum class Link
{
    kEthernet,
    kLinuxCooked,  // 16 bytes, of "any" interface
    kLinuxCooked2, // 20 bytes, its newer form
    kRawIp,
    kLoopback, // four bytes with the address family, in the byte order of some machine
    kUnknown
};

struct Endpoint
{
    // An IPv4 address has its four bytes first; the rest is 0.
    std::array<unsigned char, 16> m_Address{};
    bool m_IsV6 = false;
    uint16_t m_Port = 0;

    auto operator<=>(const Endpoint&) const = default;
};

// "192.0.2.1:80", "[2001:db8::1]:80"
std::string textOf(const Endpoint& endpoint);
// The address without its port, and without brackets.
std::string addressTextOf(const Endpoint& endpoint);

struct Packet
{
    enum class Kind
    {
        kTcp,
        kUdp,
        kFragment, // of an IP packet, the first one included
        kOther,    // another protocol
        kBad       // its headers are cut or contradict themselves
    };

    Kind m_Kind = Kind::kBad;
    Endpoint m_From;
    Endpoint m_To;
    // TCP only.
    uint32_t m_Sequence = 0;
    uint32_t m_Acknowledged = 0;
    bool m_IsSyn = false;
    bool m_IsAck = false;
    bool m_IsFin = false;
    bool m_IsReset = false;
    // A part of the captured bytes, without the padding of the link layer.
    std::string_view m_Payload;
    // Bytes of the payload that were sent but not captured.
    size_t m_Missing = 0;
};

// Never reads beyond the bytes.
Packet packetOf(Link link, std::string_view bytes);

} // namespace tools
