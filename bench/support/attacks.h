// Attacks of hostile peers on a server, at full speed. For neighbour_bench.
#pragma once

#include <atomic>
#include <vector>

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
};

struct Attack
{
    const char* m_Name;
    // Runs until the process is ended.
    void (*m_Run)(Shared&);
    bool (*m_IsPossible)(const Shared&);
};

const std::vector<Attack>& attacks();

} // namespace bench
