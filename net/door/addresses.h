// Endpoints in the operating system's own form, for the files of the door.
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

inline sockaddr_in toSystem(const Endpoint& endpoint)
{
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(endpoint.m_Port);
    address.sin_addr.s_addr = endpoint.v4();
    return address;
}

inline Endpoint fromSystem(const sockaddr_in& address)
{
    return Endpoint::ofV4(static_cast<unsigned int>(address.sin_addr.s_addr), ntohs(address.sin_port));
}

inline const sockaddr* plain(const sockaddr_in& address)
{
    return reinterpret_cast<const sockaddr*>(&address);
}

inline sockaddr* plain(sockaddr_in& address)
{
    return reinterpret_cast<sockaddr*>(&address);
}

} // namespace zet::inner
