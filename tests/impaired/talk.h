// The traffic over a link: commands and their echoes.
#pragma once

#include "tests/support/tls_certificates.h"

#include <string>
#include <vector>

namespace impaired
{

enum class Transport
{
    kTcp,
    kTls,
    kUdp
};

// Fixed counts. First one command at a time, each sent after the echo of the last; then the others as a stream, at most
// m_Window in flight.
struct Plan
{
    int m_Singles;
    int m_Streamed;
    int m_Window = 32;
    int m_SingleBytes = 64;
    int m_StreamedBytes = 1000;
    // The time limit for everything, in milliseconds.
    int m_TimeLimit;
};

struct Outcome
{
    // Empty if every command arrived once and in order on both sides.
    std::string m_Fault;
    int m_Echoes = 0;
    // From connect() to the first echo.
    double m_Begin = 0;
    // Round trips of the single commands, in milliseconds.
    double m_Median = 0;
    double m_High = 0;
    // Throughput of the streamed commands, kilobytes per second each way.
    double m_Throughput = 0;
};

// Used by both sides for TLS and UDP.
struct Secrets
{
    test::Certificate m_Certificate;
    std::string m_Authority;
};

bool isThere(Transport transport);
const char* nameOf(Transport transport);

// Serves one client and echoes its commands, until the other end of the handle is closed. Writes the port to ready.
// Returns whether all commands arrived in order.
bool serve(Transport transport, const Secrets& secrets, int ready, int stop);
Outcome ask(Transport transport, const Secrets& secrets, const std::string& address, unsigned short port,
            const Plan& plan);

} // namespace impaired
