#include "framework/time.h"
#include "tests/support/udp_road.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <utility>

namespace test
{

namespace
{

sockaddr_in addressOf(unsigned int address, unsigned short port)
{
    sockaddr_in made{};
    made.sin_family = AF_INET;
    made.sin_addr.s_addr = htonl(address);
    made.sin_port = htons(port);
    return made;
}

} // namespace

BareUdp::BareUdp(unsigned int address, unsigned short port) : m_Handle(::socket(AF_INET, SOCK_DGRAM, 0))
{
    sockaddr_in self = addressOf(address, port);
    socklen_t size = sizeof self;
    const int room = 4 * 1024 * 1024;
    ::setsockopt(m_Handle, SOL_SOCKET, SO_RCVBUF, &room, sizeof room);
    if (::bind(m_Handle, reinterpret_cast<sockaddr*>(&self), sizeof self) == 0 &&
        ::getsockname(m_Handle, reinterpret_cast<sockaddr*>(&self), &size) == 0)
        m_Port = ntohs(self.sin_port);
    else
        ::close(std::exchange(m_Handle, -1));
}

BareUdp::~BareUdp()
{
    if (m_Handle >= 0)
        ::close(m_Handle);
}

int BareUdp::release()
{
    return std::exchange(m_Handle, -1);
}

bool BareUdp::send(unsigned short port, const std::string& bytes)
{
    const sockaddr_in to = addressOf(0x7F000001, port);
    return ::sendto(m_Handle, bytes.data(), bytes.size(), MSG_DONTWAIT, reinterpret_cast<const sockaddr*>(&to),
                    sizeof to) == static_cast<ssize_t>(bytes.size());
}

bool BareUdp::receive(std::string& bytes, unsigned short& port)
{
    char data[65536];
    sockaddr_in from{};
    socklen_t size = sizeof from;
    const ssize_t got =
        ::recvfrom(m_Handle, data, sizeof data, MSG_DONTWAIT, reinterpret_cast<sockaddr*>(&from), &size);
    if (got < 0)
        return false;
    bytes.assign(data, static_cast<size_t>(got));
    port = ntohs(from.sin_port);
    return true;
}

void Road::plan(unsigned short to, const std::string& bytes)
{
    const unsigned int spread = m_Profile.m_Spread > 0 ? m_Random() % m_Profile.m_Spread : 0;
    m_OnTheWay.emplace(zet::getTimeTick() + m_Profile.m_Delay + spread, std::make_pair(to, bytes));
}

void Road::step()
{
    std::string bytes;
    unsigned short from = 0;
    while (m_Socket.receive(bytes, from))
    {
        const unsigned short to = from == m_Server ? m_Clients : m_Server;
        if (m_Watch)
            m_Watch(to, bytes);
        if (m_IsCut || static_cast<int>(m_Random() % 1000) < m_Profile.m_Lost)
        {
            ++m_LostCount;
            continue;
        }
        plan(to, bytes);
        if (static_cast<int>(m_Random() % 1000) < m_Profile.m_Doubled)
        {
            ++m_DoubledCount;
            plan(to, bytes);
        }
    }
    while (!m_OnTheWay.empty() && m_OnTheWay.begin()->first <= zet::getTimeTick())
    {
        const auto datagram = m_OnTheWay.begin()->second;
        m_OnTheWay.erase(m_OnTheWay.begin());
        m_Passed += m_Socket.send(datagram.first, datagram.second);
    }
}

} // namespace test
