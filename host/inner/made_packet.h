// Packets for a capture file around bytes that a connection has carried: IP, and TCP or UDP.
#pragma once

#include "net/door/endpoint.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace host::inner
{

// Bytes of the largest head that a packet has before its payload.
constexpr size_t kMostPacketHead = 40 + 20;
// A datagram has at most that payload; a longer one needs several packets, which only TCP has.
constexpr size_t kMostPacketPayload = 0xFFFF - kMostPacketHead;

enum TcpFlags : unsigned char
{
    kTcpFin = 1,
    kTcpSyn = 2,
    kTcpReset = 4,
    kTcpPush = 8,
    kTcpAck = 16
};

struct TcpPlace
{
    uint32_t m_Sequence = 0;
    uint32_t m_Acknowledged = 0;
    unsigned int m_Flags = kTcpAck;
};

// IPv4 if both addresses are, else IPv6. The checksums are right.
std::string tcpPacket(const zet::inner::Endpoint& from, const zet::inner::Endpoint& to, const TcpPlace& place,
                      std::string_view payload);
std::string udpPacket(const zet::inner::Endpoint& from, const zet::inner::Endpoint& to, std::string_view payload);

} // namespace host::inner
