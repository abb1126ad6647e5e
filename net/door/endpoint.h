// An address of the network and a port, of either family.
#pragma once

#include <cstring>

namespace zet::inner
{

struct Endpoint
{
    // IPv6 in network order. An IPv4 address is the last four bytes, after ten bytes of 0 and two of 0xFF (a mapped
    // address), also where the system reports it on a socket of both families.
    unsigned char m_Bytes[16] = {};
    // In the byte order of this machine.
    unsigned short m_Port = 0;
    // The interface of a link-local IPv6 address; 0 for any other.
    unsigned int m_Scope = 0;

    // An IPv4 address is given and returned as it lies in memory, in network order.
    static Endpoint ofV4(unsigned int address, unsigned short port)
    {
        Endpoint made;
        made.m_Bytes[10] = made.m_Bytes[11] = 0xFF;
        std::memcpy(made.m_Bytes + 12, &address, sizeof address);
        made.m_Port = port;
        return made;
    }
    // 16 bytes in network order; the scope counts for a link-local address only.
    static Endpoint ofV6(const void* address, unsigned short port, unsigned int scope)
    {
        Endpoint made;
        std::memcpy(made.m_Bytes, address, sizeof made.m_Bytes);
        made.m_Port = port;
        made.m_Scope = made.isLinkLocal() ? scope : 0;
        return made;
    }
    bool isV4() const
    {
        constexpr unsigned char kHead[12] = {0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0xFF, 0xFF};
        return std::memcmp(m_Bytes, kHead, sizeof kHead) == 0;
    }
    // 0 for an IPv6 address.
    unsigned int v4() const
    {
        unsigned int address = 0;
        if (isV4())
            std::memcpy(&address, m_Bytes + 12, sizeof address);
        return address;
    }
    // fe80::/10
    bool isLinkLocal() const { return m_Bytes[0] == 0xFE && (m_Bytes[1] & 0xC0) == 0x80; }
    // 0.0.0.0 or ::, which stand for no address, or for all of this machine.
    bool isAny() const
    {
        constexpr unsigned char kZeros[16] = {};
        return isV4() ? v4() == 0 : std::memcmp(m_Bytes, kZeros, sizeof kZeros) == 0;
    }

    friend bool operator==(const Endpoint& a, const Endpoint& b) = default;
};

} // namespace zet::inner
