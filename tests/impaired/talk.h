// What is said over a road: commands and their echoes.
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

// Fixed counts. First one command at a time, each sent when the echo of the last has come; then all the others at once,
// as many on their way as m_Window.
struct Plan
{
    int m_Singles;
    int m_Streamed;
    int m_Window = 32;
    int m_SingleBytes = 64;
    int m_StreamedBytes = 1000;
    // For all of it, in milliseconds.
    int m_TimeLimit;
};

struct Outcome
{
    // Empty where every command arrived once and in order on both sides.
    std::string m_Fault;
    int m_Echoes = 0;
    // From connect() to the first echo.
    double m_Begin = 0;
    // Of the single ones, in milliseconds there and back.
    double m_Median = 0;
    double m_High = 0;
    // Of the streamed ones, kilobytes a second each way.
    double m_Throughput = 0;
};

// What both sides hold for TLS and UDP.
struct Secrets
{
    test::Certificate m_Certificate;
    std::string m_Authority;
};

bool isThere(Transport transport);
const char* nameOf(Transport transport);

// Serves one client and gives back what comes, until the handle is closed by its other end. Writes the port to ready.
// Returns whether all that came was in order.
bool serve(Transport transport, const Secrets& secrets, int ready, int stop);
Outcome ask(Transport transport, const Secrets& secrets, const std::string& address, unsigned short port,
            const Plan& plan);

} // namespace impaired
