// A connection to a host of several addresses: the first address that answers.
#pragma once

#include "net/inner/watched.h"

#include <memory>
#include <vector>

namespace zet::inner
{

struct TcpLink;

// Looks up a name and tries its addresses in order (RFC 8305): the next one when an attempt has failed, or has not been
// answered for a while. The first attempt that is established wins and the others are closed. Timed by the ticks of its
// connection, whose link owns it.
class TcpRace
{
public:
    // Milliseconds after which the next address is tried beside those before it.
    static constexpr unsigned int kNextAfter = 250;
    // Addresses that are tried; a name may have any number.
    static constexpr size_t kMostAddresses = 16;

    enum State
    {
        kRunning,
        kWon,
        // No address has answered.
        kLost
    };

    TcpRace(TcpLink& link, Reactor& reactor, unsigned short port);
    ~TcpRace();

    // Asks for the addresses of a name, and reports to the link when they are there. False for lack of memory.
    bool lookUp(const char* name);
    bool isLookingUp() const { return m_Lookup != nullptr; }
    // Ends the lookup with the addresses that were found.
    const std::vector<Endpoint>& takeAddresses();
    // To be called when an attempt has ended, as the link reports, and with each tick.
    State step();
    // That of the winner, for the caller to own.
    Door::Handle releaseHandle();
    // That of the winner, or of the latest attempt.
    const Endpoint& getPeer() const { return m_Peer; }

private:
    struct Attempt;

    bool begin(const Endpoint& peer);
    bool findWinner();

    TcpLink& m_Link;
    Reactor& m_Reactor;
    const unsigned short m_Port;
    std::shared_ptr<Lookup> m_Lookup;
    std::vector<Endpoint> m_Addresses;
    size_t m_Next = 0;
    std::vector<std::unique_ptr<Attempt>> m_Attempts;
    Endpoint m_Peer;
    unsigned int m_NextAt = 0;
};

} // namespace zet::inner
