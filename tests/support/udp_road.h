// Bare UDP sockets for tests: a sender of any bytes, and an impaired link between two ports.
#pragma once

#include <functional>
#include <map>
#include <random>
#include <string>
#include <vector>

namespace test
{

// A non-blocking socket on an address of the loopback.
class BareUdp
{
public:
    // An address such as 0x7F000001; port 0 means any free port.
    explicit BareUdp(unsigned int address = 0x7F000001, unsigned short port = 0);
    ~BareUdp();
    BareUdp(const BareUdp&) = delete;
    BareUdp& operator=(const BareUdp&) = delete;

    bool isOpen() const { return m_Handle >= 0; }
    unsigned short getPort() const { return m_Port; }
    bool send(unsigned short port, const std::string& bytes);
    // Receives the next datagram and its source port; false if there is none.
    bool receive(std::string& bytes, unsigned short& port);
    // The handle, which the caller must close.
    int release();

private:
    int m_Handle;
    unsigned short m_Port = 0;
};

// How many datagrams of a thousand are lost or duplicated; each has its own random delay, so they may be reordered.
struct RoadProfile
{
    int m_Lost = 0;
    int m_Doubled = 0;
    unsigned int m_Delay = 0;
    unsigned int m_Spread = 0;
};

// Relays between a server's port and clients that connect to the relay instead of the server. Uses the test clock.
class Road
{
public:
    Road(unsigned short server, unsigned short clients, const RoadProfile& profile, unsigned int seed)
        : m_Server(server), m_Clients(clients), m_Profile(profile), m_Random(seed)
    {
    }

    unsigned short getPort() const { return m_Socket.getPort(); }
    // Receives datagrams and passes on those that are due.
    void step();

    // Called for each datagram with its destination port.
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
