// Connects to a host with several addresses: the first attempt that is established is used.
#pragma once

#include "net/inner/watched.h"

#include <memory>
#include <string>
#include <vector>

namespace zet::inner
{

struct TcpLink;

// Looks up a name and tries its addresses in order (RFC 8305): the next one when an attempt has failed or has not been
// answered for a while. The first attempt that is established wins and the others are closed. The link of the
// connection owns it, and the ticks of the connection measure its times.
class TcpRace
{
public:
    // Milliseconds after which the next address is tried while earlier attempts continue.
    static constexpr unsigned int kNextAfter = 250;
    // The maximum number of addresses tried; a name may have more.
    static constexpr size_t kMostAddresses = 16;

    enum State
    {
        kRunning,
        kWon,
        // No attempt was established.
        kLost
    };

    TcpRace(TcpLink& link, Reactor& reactor, unsigned short port);
    ~TcpRace();

    // Requests the addresses of a name, and reports to the link when they are known. False for lack of memory.
    bool lookUp(const char* name);
    bool isLookingUp() const { return m_Lookup != nullptr; }
    // Whether the lookup has found an address; the name and the port that were asked for.
    bool hasFound() const { return !m_Addresses.empty(); }
    const char* getName() const { return m_Name.c_str(); }
    unsigned short getPort() const { return m_Port; }
    // Ends the lookup with the addresses that were found.
    const std::vector<Endpoint>& takeAddresses();
    // Call it when the link reports that an attempt has ended, and with each tick.
    State step();
    // The handle of the winner, which the caller owns from then on.
    Door::Handle releaseHandle();
    // The time at which the next address is tried; false if all are.
    bool getNextAttempt(unsigned int& moment) const
    {
        moment = m_NextAt;
        return m_Next < m_Addresses.size();
    }
    // The address of the winner, or of the latest attempt.
    const Endpoint& getPeer() const { return m_Peer; }
    // Of the latest attempt that failed.
    const Door::Fault& getFault() const { return m_Fault; }

private:
    struct Attempt;

    bool begin(const Endpoint& peer);
    bool findWinner();

    TcpLink& m_Link;
    Reactor& m_Reactor;
    const unsigned short m_Port;
    std::string m_Name;
    std::shared_ptr<Lookup> m_Lookup;
    Door::Fault m_Fault;
    std::vector<Endpoint> m_Addresses;
    size_t m_Next = 0;
    std::vector<std::unique_ptr<Attempt>> m_Attempts;
    Endpoint m_Peer;
    unsigned int m_NextAt = 0;
};

} // namespace zet::inner
