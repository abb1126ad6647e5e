#include "net/inner/proxy_header.h"

#include <algorithm>
#include <iterator>

namespace zet::inner
{

namespace
{

constexpr unsigned char kSignature[] = {0x0D, 0x0A, 0x0D, 0x0A, 0x00, 0x0D, 0x0A, 0x51, 0x55, 0x49, 0x54, 0x0A};

// Version in the upper half of its byte, command in the lower one.
constexpr size_t kCommandAt = 12;
constexpr unsigned char kLocal = 0x20;
constexpr unsigned char kProxied = 0x21;

// Family in the upper half of its byte, transport in the lower one: 1 for streams, 2 for datagrams.
constexpr size_t kFamilyAt = 13;
constexpr unsigned char kUnspecified = 0x00;
constexpr unsigned char kIPv4Family = 0x10;
constexpr unsigned char kIPv6Family = 0x20;
constexpr unsigned char kUnixFamily = 0x30;

constexpr size_t kLengthAt = 14;

// Source and destination address, then their ports.
constexpr size_t kIPv4Size = 12;
constexpr size_t kIPv4PortAt = 8;
constexpr size_t kIPv6Size = 36;
constexpr size_t kIPv6PortAt = 32;
// Two paths.
constexpr size_t kUnixSize = 216;

unsigned int readBigEndian(const unsigned char* data)
{
    return static_cast<unsigned int>(data[0]) << 8 | data[1];
}

bool isFamily(unsigned char byte)
{
    const unsigned char family = byte & 0xF0;
    const int transport = byte & 0x0F;
    return byte == kUnspecified || ((family == kIPv4Family || family == kIPv6Family || family == kUnixFamily) &&
                                    (transport == 1 || transport == 2));
}

size_t addressSizeOf(unsigned char byte)
{
    switch (byte & 0xF0)
    {
    case kIPv4Family:
        return kIPv4Size;
    case kIPv6Family:
        return kIPv6Size;
    case kUnixFamily:
        return kUnixSize;
    default:
        return 0;
    }
}

} // namespace

ProxyHeader::State ProxyHeader::read(const unsigned char* data, size_t size)
{
    if (!std::equal(data, data + std::min(size, std::size(kSignature)), kSignature))
        return kMalformed;
    if (size > kCommandAt && data[kCommandAt] != kLocal && data[kCommandAt] != kProxied)
        return kMalformed;
    // The rest of a local header is skipped, its family too.
    const bool isProxied = size > kCommandAt && data[kCommandAt] == kProxied;
    if (isProxied && size > kFamilyAt && !isFamily(data[kFamilyAt]))
        return kMalformed;
    if (size < kHeadSize)
        return kCut;
    const size_t body = readBigEndian(data + kLengthAt);
    if (body > kMostBody || (isProxied && body < addressSizeOf(data[kFamilyAt])))
        return kMalformed;
    m_Size = kHeadSize + body;
    if (size < m_Size)
        return kCut;
    const unsigned char family = data[kFamilyAt] & 0xF0;
    m_HasPeer = isProxied && (family == kIPv4Family || family == kIPv6Family);
    if (m_HasPeer)
        readPeer(data + kHeadSize, family == kIPv4Family);
    return kWhole;
}

void ProxyHeader::readPeer(const unsigned char* body, bool isV4)
{
    if (!isV4)
    {
        m_Peer = Endpoint::ofV6(body, static_cast<unsigned short>(readBigEndian(body + kIPv6PortAt)), 0);
        return;
    }
    unsigned int address = 0;
    std::memcpy(&address, body, sizeof address);
    m_Peer = Endpoint::ofV4(address, static_cast<unsigned short>(readBigEndian(body + kIPv4PortAt)));
}

} // namespace zet::inner
