// Limits of a listening TCP or UDP port against peers that it does not know, and of a connection's own.
#pragma once

#include <cstddef>

namespace zet
{

// The defaults suit a server on the open internet. 0 or less removes a limit, unless the field says otherwise. Set the
// limits before listening; TcpServer::setLimits() and UdpServer::setLimits() say what a later change affects. A UDP
// port uses the numbers of connections and the limits of handshake steps only.
//
// TcpConnection::setLimits() and NetSession::setLimits() give a connection limits of its own before its connect(). Such
// a connection uses m_ConnectTime, m_HandshakeLimit, m_TurnInput, the probes, m_UnacknowledgedTime, m_IdleTime, the
// rates and the log lines.
struct NetLimits
{
    // Connections that the port has accepted or that wait to be accepted, including those in their handshake. Over TCP
    // one more is closed at once, before memory is allocated for it, and logged at most once a minute; over UDP it is
    // refused. An idle connection needs about 700 bytes over TCP, 40 KiB with TLS, 90 KiB over UDP; over TCP also one
    // handle of the process.
    int m_Connections = 20000;
    // The part of m_Connections from one IPv4 address, or from one IPv6 network of 64 bits. A household, a school or
    // the phones of a cell tower share an IPv4 address. Set this and the next limit to 0 if peers connect through a
    // proxy that hides their addresses.
    int m_ConnectionsPerAddress = 1000;
    // The part of m_Connections from addresses with the same first three bytes; for IPv6, with the same first 48 bits.
    int m_ConnectionsPerSubnet = 5000;

    // Bytes of the largest packet that a peer may send before one of its commands or messages has been handled: a
    // registration or a login is far below. Afterwards the host's own limit for packets applies. Over TCP.
    int m_FirstInput = 1024 * 1024;
    // Bytes of memory for received, unhandled input and bytes queued for sending, of all connections of the port. While
    // the sum is above its limit, a connection that holds more than its equal share of the limit is ended (input), or
    // cannot send (output); the other connections are not affected. Over TCP.
    std::size_t m_InputSum = 512u * 1024 * 1024;
    std::size_t m_OutputSum = 512u * 1024 * 1024;

    // Handshake steps per tick, each up to a few milliseconds of computation, and the milliseconds after which a tick
    // starts no further step. Over UDP a step is the first packet of a new peer, and UdpServer::kAdmissionsPerTick
    // applies, too. The remaining steps keep their order; the next tick follows at once. Each tick takes at least one.
    int m_HandshakeSteps = 1;
    unsigned int m_HandshakeTime = 20;

    // Bytes that a connection receives per tick while its System has other work: a peer that sends without pause lets
    // the others have their turn. Over TCP.
    int m_TurnInput = 8 * 1024;
    // Milliseconds per tick for the connections of the port together. Connections that had no turn are first in the
    // next tick. Over TCP.
    unsigned int m_TurnTime = 1000;

    // Detection of a vanished peer over TCP: seconds of silence before the operating system probes it, seconds between
    // probes, and the unanswered probes after which the connection ends as broken. 0 in any of the three turns probes
    // off. Windows chooses the number of probes itself.
    int m_ProbeAfter = 30;
    int m_ProbeEvery = 10;
    int m_Probes = 3;
    // Milliseconds that sent bytes may remain unacknowledged, or that the peer may accept no more bytes, before the
    // connection ends. 0 for the operating system's own time, which is many minutes. Over TCP, only on systems with
    // such an option (Linux).
    unsigned int m_UnacknowledgedTime = 60000;
    // Milliseconds without a byte from the peer after which the connection ends as broken; 0, the default, for no end;
    // at most 2,147,483,647. For protocols whose peers send keep-alives. Checked while the port listens. Over TCP.
    unsigned int m_IdleTime = 0;

    // Milliseconds from connect() until the peer, or the last proxy before it, has accepted the connection; the
    // resolving of a name and the handshake with a SOCKS5 proxy are a part of it, TLS is not. 0, the default, for the
    // operating system's own time, and none for a proxy's replies; at most 2,147,483,647. Not used by a port. Over TCP.
    unsigned int m_ConnectTime = 0;
    // Milliseconds of a TLS handshake in all; 0, the default, for TlsContext::getHandshakeTime(), ten seconds unless
    // set; at most 2,147,483,647. Over TCP.
    unsigned int m_HandshakeLimit = 0;

    // With TcpServer::expectProxyHeader(): connections whose peer is not known yet, besides those of m_Connections; one
    // more is closed at once. Milliseconds from accepting a connection until its header is complete; at most
    // 2,147,483,647. Over TCP.
    int m_ProxyHeaders = 1000;
    unsigned int m_ProxyHeaderTime = 5000;

    // Packets, which are commands or messages, and bytes of packets with their length words that a peer may send per
    // second on average; 0, the default, for no limit. The bursts are what a peer that was silent may send at once; 0
    // for the number of one second. A packet longer than the burst is taken all the same, and its bytes count for the
    // time after it. A tick that was late finds the packets of its whole delay: with kRefuse and kClose a burst should
    // cover the longest delay of the host. Empty packets count. Over TCP.
    int m_PacketsPerSecond = 0;
    int m_PacketBurst = 0;
    int m_BytesPerSecond = 0;
    int m_ByteBurst = 0;
    enum OverRate : unsigned char
    {
        // The connection is not read until its peer may send again. Nothing is lost: the peer's output waits.
        kDelay,
        // Each packet above the rate is dropped, counted by getRefusedPackets() and logged within the peer's share.
        kRefuse,
        // The connection ends with EndCause::kRateLimited.
        kClose
    };
    OverRate m_OverRate = kDelay;

    // Lines about a peer's bytes, such as malformed frames, that each connection may log at once, and afterwards per
    // second, at most 1,000; the omitted ones are counted. 0 or less lines at once removes the limit; 0 or less per
    // second allows the first lines only. Over TCP.
    int m_LogLines = 32;
    int m_LogLinesPerSecond = 4;
};

} // namespace zet
