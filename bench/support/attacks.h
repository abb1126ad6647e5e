// Attacks of hostile peers on a server, at full speed. For neighbour_bench.
#pragma once

#include <atomic>
#include <vector>

namespace zet
{
struct NetLimits;
}

namespace bench
{

// Memory shared by the processes of the benchmark.
struct Shared
{
    std::atomic<unsigned short> m_Port = 0;
    // 0 if the library was built without TLS, or without connections over UDP.
    std::atomic<unsigned short> m_SecurePort = 0;
    std::atomic<unsigned short> m_UdpPort = 0;
    std::atomic<bool> m_IsServing = false;
    std::atomic<bool> m_IsOver = false;
    // Nanoseconds.
    std::atomic<long long> m_LongestTick = 0;
    // Bytes sent by the attacker.
    std::atomic<unsigned long long> m_Sent = 0;
    // What the caps of the server are compared with, since the last reset(): ticks, the attacker's commands that were
    // handled, log lines, the most connections at once, and, counted by the attacker, answers and the longest life of a
    // silent connection in milliseconds.
    std::atomic<unsigned long long> m_Ticks = 0;
    std::atomic<unsigned long long> m_Handled = 0;
    std::atomic<unsigned long long> m_Lines = 0;
    std::atomic<unsigned long long> m_Peak = 0;
    std::atomic<unsigned long long> m_Answers = 0;
    std::atomic<unsigned long long> m_LongestLife = 0;

    void reset() { m_Ticks = m_Handled = m_Lines = m_Peak = m_Answers = m_LongestLife = 0; }
};

// A limit of the server that an attack runs against.
struct Limit
{
    // What is counted, and its number.
    const char* m_What;
    double m_Value;
    void (*m_Set)(zet::NetLimits&);
    // The number that was reached within the seconds.
    double (*m_Reached)(const Shared&, double seconds);
};

struct Attack
{
    const char* m_Name;
    // Runs until the process is ended.
    void (*m_Run)(Shared&);
    bool (*m_IsPossible)(const Shared&);
    // Null for the defaults.
    const Limit* m_Limit = nullptr;
};

const std::vector<Attack>& attacks();

} // namespace bench
