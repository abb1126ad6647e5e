#include "host/inner/made_packet.h"

namespace host::inner
{

namespace
{

using zet::inner::Endpoint;

constexpr unsigned int kTcp = 6;
constexpr unsigned int kUdp = 17;
constexpr unsigned int kHops = 64;

// In network order.
void put(std::string& out, uint64_t value, int size)
{
    for (int i = size - 1; i >= 0; --i)
        out += static_cast<char>(value >> 8 * i);
}

std::string_view addressOf(const Endpoint& endpoint, bool isV4)
{
    constexpr size_t kMapped = 12;
    const std::string_view whole(reinterpret_cast<const char*>(endpoint.m_Bytes), sizeof endpoint.m_Bytes);
    return isV4 ? whole.substr(kMapped) : whole;
}

uint32_t sumOf(std::string_view bytes, uint32_t sum = 0)
{
    for (size_t i = 0; i < bytes.size(); ++i)
    {
        const uint32_t byte = static_cast<unsigned char>(bytes[i]);
        sum += i % 2 == 0 ? byte << 8 : byte;
    }
    return sum;
}

uint32_t checksumOf(uint32_t sum)
{
    while (sum > 0xFFFF)
        sum = (sum & 0xFFFF) + (sum >> 16);
    return ~sum & 0xFFFF;
}

void store(std::string& bytes, size_t at, uint32_t value)
{
    bytes[at] = static_cast<char>(value >> 8);
    bytes[at + 1] = static_cast<char>(value);
}

// The transport's head and payload, with its checksum at the given place still 0.
std::string ipPacket(const Endpoint& from, const Endpoint& to, unsigned int protocol, std::string transport,
                     size_t checksumAt)
{
    const bool isV4 = from.isV4() && to.isV4();
    std::string addresses(addressOf(from, isV4));
    addresses += addressOf(to, isV4);
    uint32_t sum = sumOf(addresses) + protocol + static_cast<uint32_t>(transport.size());
    sum = checksumOf(sumOf(transport, sum));
    // Over UDP 0 means no checksum.
    store(transport, checksumAt, sum == 0 && protocol == kUdp ? 0xFFFF : sum);

    std::string packet;
    if (isV4)
    {
        constexpr size_t kHead = 20;
        constexpr size_t kChecksum = 10;
        put(packet, 0x4500, 2);
        put(packet, kHead + transport.size(), 2);
        // No identification, and not to be cut into fragments.
        put(packet, 0x4000, 4);
        put(packet, kHops, 1);
        put(packet, protocol, 1);
        put(packet, 0, 2);
        packet += addresses;
        store(packet, kChecksum, checksumOf(sumOf(packet)));
    }
    else
    {
        put(packet, 0x60000000, 4);
        put(packet, transport.size(), 2);
        put(packet, protocol, 1);
        put(packet, kHops, 1);
        packet += addresses;
    }
    return packet + transport;
}

} // namespace

std::string tcpPacket(const Endpoint& from, const Endpoint& to, const TcpPlace& place, std::string_view payload)
{
    constexpr uint64_t kHeadWords = 5;
    constexpr size_t kChecksum = 16;
    std::string segment;
    put(segment, from.m_Port, 2);
    put(segment, to.m_Port, 2);
    put(segment, place.m_Sequence, 4);
    put(segment, place.m_Acknowledged, 4);
    put(segment, kHeadWords << 12 | place.m_Flags, 2);
    put(segment, 0xFFFF, 2);
    put(segment, 0, 4);
    segment += payload;
    return ipPacket(from, to, kTcp, std::move(segment), kChecksum);
}

std::string udpPacket(const Endpoint& from, const Endpoint& to, std::string_view payload)
{
    constexpr size_t kHead = 8;
    constexpr size_t kChecksum = 6;
    std::string datagram;
    put(datagram, from.m_Port, 2);
    put(datagram, to.m_Port, 2);
    put(datagram, kHead + payload.size(), 2);
    put(datagram, 0, 2);
    datagram += payload;
    return ipPacket(from, to, kUdp, std::move(datagram), kChecksum);
}

} // namespace host::inner
