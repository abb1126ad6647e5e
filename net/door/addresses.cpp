#include "net/door/addresses.h"

#include "net/door/door.h"

#include <cstdio>

namespace zet::inner
{

bool Door::parse(const char* text, unsigned short port, Endpoint& endpoint)
{
    in_addr v4;
    if (::inet_pton(AF_INET, text, &v4) == 1)
    {
        endpoint = Endpoint::ofV4(static_cast<unsigned int>(v4.s_addr), port);
        return true;
    }
    const size_t length = std::strlen(text);
    const bool isBracketed = length > 2 && text[0] == '[' && text[length - 1] == ']';
    // The longest address and the longest name of an interface.
    char bare[80];
    if (length >= sizeof bare)
        return false;
    std::snprintf(bare, sizeof bare, "%.*s", static_cast<int>(isBracketed ? length - 2 : length),
                  isBracketed ? text + 1 : text);
    in6_addr v6;
    if (::inet_pton(AF_INET6, bare, &v6) == 1)
    {
        endpoint = Endpoint::ofV6(&v6, port, 0);
        return true;
    }
    if (!std::strchr(bare, '%') || !std::strchr(bare, ':'))
        return false;
    // The system alone knows the names of its interfaces.
    startSystem();
    addrinfo wanted{};
    wanted.ai_family = AF_INET6;
    wanted.ai_socktype = SOCK_STREAM;
    wanted.ai_flags = AI_NUMERICHOST;
    addrinfo* found = nullptr;
    if (::getaddrinfo(bare, nullptr, &wanted, &found) != 0)
        return false;
    endpoint = fromSystem(*reinterpret_cast<const sockaddr_in6*>(found->ai_addr));
    endpoint.m_Port = port;
    ::freeaddrinfo(found);
    return true;
}

std::string Door::print(const Endpoint& endpoint)
{
    char text[INET6_ADDRSTRLEN + 16] = {};
    if (endpoint.isV4())
    {
        ::inet_ntop(AF_INET, endpoint.m_Bytes + 12, text, sizeof text);
        return text;
    }
    ::inet_ntop(AF_INET6, endpoint.m_Bytes, text, sizeof text);
    if (endpoint.m_Scope == 0)
        return text;
    return std::string(text) + '%' + std::to_string(endpoint.m_Scope);
}

hostent* Door::getHostByName(const char* name)
{
    startSystem();
    return ::gethostbyname(name);
}

unsigned int Door::getAddress(const char* text)
{
    return static_cast<unsigned int>(::inet_addr(text));
}

} // namespace zet::inner
