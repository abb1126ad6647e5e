// What a listening port counts besides the ends of its connections.
#pragma once

namespace zet
{

// Numbers of connections that peers opened, since the construction of the server.
struct AcceptCounts
{
    // Given to an object of the host by accept().
    unsigned long long m_Accepted = 0;
    // TLS handshakes of accepted connections over TCP, or QUIC handshakes: those that were completed, and those that
    // failed or whose connection ended before.
    unsigned long long m_Handshakes = 0;
    unsigned long long m_HandshakesFailed = 0;
};

} // namespace zet
