// What a listening port, of TCP or of UDP, takes from peers that it does not know.
#pragma once

#include <cstddef>

namespace zet
{

// The defaults suit a server on the open internet. Zero takes a bound away, but where a field says otherwise. A host
// sets what differs before it listens; established connections keep what they were accepted with.
struct NetLimits
{
    // Connecting and established connections of the port. One more is closed at once, before any memory is kept for it,
    // and the log is told, once a minute at most. Each takes a handle of the process and, idle, about 1 KiB over TCP,
    // about 40 KiB with TLS and about 90 KiB over UDP.
    int m_Connections = 20000;
    // Of these, from one IPv4 address: a household, a school or the phones of one cell tower share one. A port behind
    // a proxy that hides the addresses of its peers takes this bound and the next one away.
    int m_ConnectionsPerAddress = 1000;
    // Of these, from addresses with the same first three bytes.
    int m_ConnectionsPerSubnet = 5000;

    // Bytes that one packet of a peer may have, and that are held for it, until a handler has taken its first command:
    // a registration or a login is far below. Then the limit that the host sets for packets counts.
    int m_FirstInput = 1024 * 1024;
    // Bytes of all connections of the port that have come and were not handled yet, and bytes that wait to be sent.
    // Once a sum is reached, a connection that grows beyond its equal part of it is ended; the others go on.
    std::size_t m_InputSum = 512u * 1024 * 1024;
    std::size_t m_OutputSum = 512u * 1024 * 1024;

    // Steps of handshakes that one tick takes, each up to a few milliseconds of arithmetic, and the milliseconds after
    // which a tick begins no further step. Over UDP a step is the first packet of a new peer. What is left waits in
    // order for the next tick, which follows at once. At least one step is taken in each tick.
    int m_HandshakeSteps = 1;
    unsigned int m_HandshakeTime = 20;

    // Bytes that a connection receives in one tick where the port has others, too: a peer that sends without end hands
    // the turn on behind them. Over TCP.
    int m_TurnInput = 8 * 1024;
    // Milliseconds that the connections of the port take of one tick together. Those that had no turn come first in the
    // next one. Over TCP.
    unsigned int m_TurnTime = 1000;

    // How a peer that vanished is noticed over TCP: seconds of silence until the operating system probes it, seconds
    // between probes, and probes without an answer that end the connection; 0 for no probes.
    int m_ProbeAfter = 30;
    int m_ProbeEvery = 10;
    int m_Probes = 3;
    // Milliseconds that sent bytes may stay without an acknowledgement, or without room at the peer, where the
    // operating system has such an option; 0 for the system's own time, which is many minutes.
    unsigned int m_UnacknowledgedTime = 60000;
    // Milliseconds without a byte from the peer after which the connection is ended; 0, the default, for no end. For
    // protocols whose peers keep themselves alive. Runs while the port listens. Over TCP.
    unsigned int m_IdleTime = 0;
};

} // namespace zet
