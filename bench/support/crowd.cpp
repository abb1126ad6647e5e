#include "bench/support/crowd.h"

#include "bench/support/floor_codec.h"
#include "bench/support/processes.h"
#include "dispatch/command_ids.h"

#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/epoll.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <vector>

namespace bench
{

namespace
{

// Connections that wait to be accepted.
constexpr int kBacklog = 4096;
// A RawServer's connections.
constexpr int kMost = 20000;

sockaddr_in loopback(unsigned short port)
{
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(port);
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    return address;
}

int connectTo(unsigned short port)
{
    const int handle = ::socket(AF_INET, SOCK_STREAM, 0);
    const sockaddr_in address = loopback(port);
    if (handle >= 0 && ::connect(handle, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0)
    {
        const int on = 1;
        setsockopt(handle, IPPROTO_TCP, TCP_NODELAY, &on, sizeof on);
        return handle;
    }
    close(handle);
    return -1;
}

} // namespace

void raiseFileLimit()
{
    rlimit handles{};
    getrlimit(RLIMIT_NOFILE, &handles);
    handles.rlim_cur = handles.rlim_max;
    setrlimit(RLIMIT_NOFILE, &handles);
}

const unsigned char* Crowd::packet()
{
    static constexpr auto kBytes = []
    {
        std::array<unsigned char, kPacket> bytes{};
        bytes[0] = kPacket - 4;
        bytes[4] = command_id::CCmdServerEcho & 0xFF;
        bytes[5] = command_id::CCmdServerEcho >> 8;
        bytes[6] = (kPacket - 10) << 2;
        // The version of the head, and the data.
        bytes[11] = 2;
        bytes[kPacket - 1] = 7;
        return bytes;
    }();
    return kBytes.data();
}

Crowd::Crowd()
{
    int ends[2];
    need(socketpair(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0, ends) == 0, "socketpair");
    m_Process = fork();
    if (m_Process == 0)
    {
        close(ends[0]);
        obey(ends[1]);
    }
    close(ends[1]);
    m_Orders = ends[0];
}

Crowd::~Crowd()
{
    close(m_Orders);
    waitpid(m_Process, nullptr, 0);
}

int Crowd::ask(const Order& order)
{
    int answer = 0;
    need(write(m_Orders, &order, sizeof order) == sizeof order &&
             read(m_Orders, &answer, sizeof answer) == sizeof answer,
         "the process of the peers");
    return answer;
}

int Crowd::connect(unsigned short port, int count)
{
    return ask({'c', port, count});
}

void Crowd::send(int first, int step)
{
    ask({'s', first, step});
}

void Crowd::drain()
{
    ask({'d', 0, 0});
}

void Crowd::closeAll()
{
    ask({'x', 0, 0});
}

void Crowd::obey(int orders)
{
    std::vector<int> handles;
    Order order{};
    while (read(orders, &order, sizeof order) == sizeof order)
    {
        if (order.m_What == 'c')
            for (int i = 0; i < order.m_Second; ++i)
            {
                const int handle = connectTo(static_cast<unsigned short>(order.m_First));
                if (handle < 0)
                    break;
                handles.push_back(handle);
            }
        else if (order.m_What == 's')
            for (size_t i = static_cast<size_t>(order.m_First); i < handles.size();
                 i += static_cast<size_t>(order.m_Second))
                need(::send(handles[i], packet(), kPacket, MSG_NOSIGNAL) == kPacket, "send");
        else if (order.m_What == 'd')
            for (const int handle : handles)
                for (char bytes[4096]; recv(handle, bytes, sizeof bytes, MSG_DONTWAIT) > 0;)
                {
                }
        else
        {
            // Without the minute that the closing side waits: the ports are needed again.
            const linger none{1, 0};
            for (const int handle : handles)
            {
                setsockopt(handle, SOL_SOCKET, SO_LINGER, &none, sizeof none);
                close(handle);
            }
            handles.clear();
        }
        const int answer = static_cast<int>(handles.size());
        if (write(orders, &answer, sizeof answer) != sizeof answer)
            break;
    }
    _exit(0);
}

RawServer::RawServer()
    : m_Listener(socket(AF_INET, SOCK_STREAM | SOCK_NONBLOCK, 0)), m_Epoll(epoll_create1(0)), m_Handles(new int[kMost])
{
    sockaddr_in address = loopback(0);
    socklen_t length = sizeof address;
    epoll_event event{};
    event.events = EPOLLIN;
    event.data.fd = m_Listener;
    need(bind(m_Listener, reinterpret_cast<sockaddr*>(&address), length) == 0 && listen(m_Listener, kBacklog) == 0 &&
             getsockname(m_Listener, reinterpret_cast<sockaddr*>(&address), &length) == 0 &&
             epoll_ctl(m_Epoll, EPOLL_CTL_ADD, m_Listener, &event) == 0,
         "listen");
    m_Port = ntohs(address.sin_port);
}

RawServer::~RawServer()
{
    closeAll();
    close(m_Listener);
    close(m_Epoll);
    delete[] m_Handles;
}

void RawServer::accept(int count)
{
    while (m_Count < count)
    {
        epoll_event event;
        need(epoll_wait(m_Epoll, &event, 1, -1) == 1, "epoll_wait");
        for (int handle; (handle = accept4(m_Listener, nullptr, nullptr, SOCK_NONBLOCK | SOCK_CLOEXEC)) >= 0;)
        {
            const int on = 1;
            epoll_event readable{};
            readable.events = EPOLLIN | EPOLLET;
            readable.data.fd = handle;
            need(setsockopt(handle, IPPROTO_TCP, TCP_NODELAY, &on, sizeof on) == 0 &&
                     epoll_ctl(m_Epoll, EPOLL_CTL_ADD, handle, &readable) == 0 && m_Count < kMost,
                 "accept");
            m_Handles[m_Count++] = handle;
        }
    }
}

void RawServer::closeAll()
{
    while (m_Count > 0)
        close(m_Handles[--m_Count]);
}

void RawServer::sendToAll(const void* packet, int size)
{
    for (int i = 0; i < m_Count; ++i)
        need(send(m_Handles[i], packet, static_cast<size_t>(size), MSG_NOSIGNAL) == size, "send");
}

unsigned long RawServer::handle(int count)
{
    unsigned long sum = 0;
    epoll_event events[256];
    unsigned char bytes[4096];
    while (count > 0)
    {
        const int ready = epoll_wait(m_Epoll, events, 256, -1);
        for (int i = 0; i < ready; ++i)
        {
            const ssize_t got = recv(events[i].data.fd, bytes, sizeof bytes, 0);
            need(got > 0, "recv");
            for (ssize_t at = 0; at + Crowd::kPacket <= got; at += 4 + bytes[at])
            {
                FloorReader in(bytes + at + 10, Crowd::kPacket - 10);
                const bool isVersion = in.u16() == 2;
                in.u16();
                unsigned char address[16];
                in.bytes(address, sizeof address);
                std::wstring name;
                in.text(name);
                sum += isVersion ? in.u32() : 0;
                --count;
            }
        }
    }
    return sum;
}

} // namespace bench
