// Rounds of commands between two processes, by the library and by bare loops with the same packets.
#pragma once

#include "bench/support/identity.h"

#include <vector>

namespace bench
{

struct Trip
{
    // The server replies to each m_Every-th command.
    int m_Every = 1;
    // Commands of a round, and those that are sent before the sender waits.
    int m_Count = 0;
    int m_Batch = 1;
    // Bytes that a command carries; 0 for a CCmdServerEcho, whose packet has 35.
    int m_Carried = 0;
    // Through TLS, by the library and by a bare GnuTLS loop.
    const Identity* m_Identity = nullptr;
};

// Seconds of each round.
std::vector<double> runOwn(const Trip& trip);
// The packets as they are, by bare epoll without a time limit.
std::vector<double> runBare(const Trip& trip);
// One way: each command is encoded, cut out of the stream, found by its id, decoded and handled, all by hand.
std::vector<double> runByHand(const Trip& trip);
// In a build without GnuTLS it returns nothing.
std::vector<double> runBareTls(const Trip& trip);

using Run = std::vector<double> (*)(const Trip&);
// Turns of both, so that a drift of the machine affects both; prints a row of nanoseconds per command.
void compareTrips(const char* name, const Trip& trip, Run floor);

} // namespace bench
