// Endpoints in the operating system's own form.
#pragma once

#include "net/door/endpoint.h"

#ifdef _WIN32
#include <winsock2.h>
#include <ws2tcpip.h>
#else
#include <arpa/inet.h>
#include <netdb.h>
#include <netinet/in.h>
#include <sys/socket.h>
#endif

#include <cstddef>

namespace zet::inner
{

// Loads the system's library of sockets, where it has one to load.
void startSystem();

inline Endpoint fromSystem(const sockaddr_in& address)
{
    return Endpoint::ofV4(static_cast<unsigned int>(address.sin_addr.s_addr), ntohs(address.sin_port));
}

inline Endpoint fromSystem(const sockaddr_in6& address)
{
    return Endpoint::ofV6(&address.sin6_addr, ntohs(address.sin6_port),
                          static_cast<unsigned int>(address.sin6_scope_id));
}

// Of an IPv4 endpoint; 255.255.255.255, which is no machine's, for an IPv6 one.
inline sockaddr_in toIPv4(const Endpoint& endpoint)
{
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(endpoint.m_Port);
    address.sin_addr.s_addr = endpoint.isV4() ? endpoint.v4() : 0xFFFFFFFF;
    return address;
}

// An IPv4 endpoint becomes a mapped address.
inline sockaddr_in6 toIPv6(const Endpoint& endpoint)
{
    sockaddr_in6 address{};
    address.sin6_family = AF_INET6;
    address.sin6_port = htons(endpoint.m_Port);
    std::memcpy(&address.sin6_addr, endpoint.m_Bytes, sizeof endpoint.m_Bytes);
    address.sin6_scope_id = endpoint.m_Scope;
    return address;
}

// An address in memory that takes either family.
struct SystemAddress
{
    // For the system to fill; the content is undefined until then.
    SystemAddress() : m_Size(sizeof m_V6) {}
    explicit SystemAddress(const Endpoint& endpoint) { set(endpoint); }

    void set(const Endpoint& endpoint)
    {
        if (endpoint.isV4())
            m_V4 = toIPv4(endpoint);
        else
            m_V6 = toIPv6(endpoint);
        m_Size = static_cast<socklen_t>(endpoint.isV4() ? sizeof m_V4 : sizeof m_V6);
    }
    bool isKnown() const { return isKnown(&m_Plain, static_cast<size_t>(m_Size)); }
    // Of a known address.
    Endpoint endpoint() const { return m_Plain.sa_family == AF_INET6 ? fromSystem(m_V6) : fromSystem(m_V4); }

    static bool isKnown(const sockaddr* address, size_t size)
    {
        return (size >= sizeof(sockaddr_in) && address->sa_family == AF_INET) ||
               (size >= sizeof(sockaddr_in6) && address->sa_family == AF_INET6);
    }

    union
    {
        sockaddr m_Plain;
        sockaddr_in m_V4;
        sockaddr_in6 m_V6;
    };
    socklen_t m_Size;
};

} // namespace zet::inner
