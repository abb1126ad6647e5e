// Bare UDP sockets for tests: a sender of any bytes, and a bad road between two ports.
#pragma once

#include <functional>
#include <map>
#include <random>
#include <string>
#include <vector>

namespace test
{

// A socket on an address of the loopback, which never waits.
class BareUdp
{
public:
    // An address such as 0x7F000001; port 0 takes a free one.
    explicit BareUdp(unsigned int address = 0x7F000001, unsigned short port = 0);
    ~BareUdp();
    BareUdp(const BareUdp&) = delete;
    BareUdp& operator=(const BareUdp&) = delete;

    bool isOpen() const { return m_Handle >= 0; }
    unsigned short getPort() const { return m_Port; }
    bool send(unsigned short port, const std::string& bytes);
    // The next datagram and the port that it came from; false when there is none.
    bool receive(std::string& bytes, unsigned short& port);
    // The bare handle, which the caller closes.
    int release();

private:
    int m_Handle;
    unsigned short m_Port = 0;
};

// Of a thousand datagrams, so many are lost or come twice; each is late by a time drawn anew, so they overtake one
// another.
struct RoadProfile
{
    int m_Lost = 0;
    int m_Doubled = 0;
    unsigned int m_Delay = 0;
    unsigned int m_Spread = 0;
};

// Stands between a server's port and the port of those that connect to the road in the server's place. By the test
// clock.
class Road
{
public:
    Road(unsigned short server, unsigned short clients, const RoadProfile& profile, unsigned int seed)
        : m_Server(server), m_Clients(clients), m_Profile(profile), m_Random(seed)
    {
    }

    unsigned short getPort() const { return m_Socket.getPort(); }
    // Takes what has come and passes on what is due.
    void step();

    // Sees each datagram that comes, and the port that it is for.
    std::function<void(unsigned short to, const std::string& bytes)> m_Watch;
    // Nothing passes while it is set.
    bool m_IsCut = false;
    int m_Passed = 0;
    int m_LostCount = 0;
    int m_DoubledCount = 0;

private:
    void plan(unsigned short to, const std::string& bytes);

    BareUdp m_Socket;
    unsigned short m_Server;
    unsigned short m_Clients;
    RoadProfile m_Profile;
    std::mt19937 m_Random;
    std::multimap<unsigned int, std::pair<unsigned short, std::string>> m_OnTheWay;
};

} // namespace test
