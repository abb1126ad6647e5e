#include "bench/support/raw_echo.h"

#include <arpa/inet.h>
#include <netinet/tcp.h>
#include <sys/epoll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace bench
{

namespace
{

constexpr size_t kRoom = 256 * 1024;

void need(bool good, const char* what)
{
    if (good)
        return;
    std::perror(what);
    std::exit(1);
}

} // namespace

RawPair::RawPair()
{
    const int listener = socket(AF_INET, SOCK_STREAM, 0);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t length = sizeof address;
    need(listener >= 0 && bind(listener, reinterpret_cast<sockaddr*>(&address), length) == 0 &&
             listen(listener, 1) == 0 && getsockname(listener, reinterpret_cast<sockaddr*>(&address), &length) == 0,
         "listen");
    m_Near = socket(AF_INET, SOCK_STREAM, 0);
    need(connect(m_Near, reinterpret_cast<sockaddr*>(&address), length) == 0, "connect");
    m_Far = accept(listener, nullptr, nullptr);
    need(m_Far >= 0, "accept");
    close(listener);
    const int on = 1;
    setsockopt(m_Near, IPPROTO_TCP, TCP_NODELAY, &on, sizeof on);
    setsockopt(m_Far, IPPROTO_TCP, TCP_NODELAY, &on, sizeof on);
}

RawPair::~RawPair()
{
    close(m_Near);
    close(m_Far);
}

RawEnd::RawEnd(int socket) : m_Socket(socket), m_Epoll(epoll_create1(0)), m_In(kRoom)
{
    epoll_event event{};
    event.events = EPOLLIN;
    need(epoll_ctl(m_Epoll, EPOLL_CTL_ADD, socket, &event) == 0, "epoll_ctl");
    m_Out.reserve(kRoom);
}

RawEnd::~RawEnd()
{
    close(m_Epoll);
}

bool RawEnd::fill()
{
    epoll_event event;
    need(epoll_wait(m_Epoll, &event, 1, -1) == 1, "epoll_wait");
    std::memmove(m_In.data(), m_In.data() + m_Begin, m_End - m_Begin);
    m_End -= m_Begin;
    m_Begin = 0;
    const ssize_t got = recv(m_Socket, m_In.data() + m_End, m_In.size() - m_End, 0);
    if (got <= 0)
        return false;
    m_End += static_cast<size_t>(got);
    return true;
}

const unsigned char* RawEnd::next(size_t& size)
{
    const unsigned char* const at = m_In.data() + m_Begin;
    const size_t there = m_End - m_Begin;
    if (there < 4)
        return nullptr;
    size = 4 + (at[0] | static_cast<size_t>(at[1]) << 8 | static_cast<size_t>(at[2]) << 16 |
                static_cast<size_t>(at[3]) << 24);
    if (there < size)
        return nullptr;
    m_Begin += size;
    return at;
}

void RawEnd::put(const void* data, size_t size)
{
    const auto* const bytes = static_cast<const unsigned char*>(data);
    m_Out.insert(m_Out.end(), bytes, bytes + size);
}

bool RawEnd::flush()
{
    for (size_t sent = 0; sent < m_Out.size();)
    {
        const ssize_t part = send(m_Socket, m_Out.data() + sent, m_Out.size() - sent, MSG_NOSIGNAL);
        if (part <= 0)
            return false;
        sent += static_cast<size_t>(part);
    }
    m_Out.clear();
    return true;
}

} // namespace bench
