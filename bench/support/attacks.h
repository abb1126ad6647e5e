// What hostile peers do to a server, each as fast as it can. For the benchmark of neighbours.
#pragma once

#include "net/tcp/server.h"

#include <atomic>
#include <string>
#include <vector>

namespace bench
{

// What the processes of the benchmark share.
struct Shared
{
    std::atomic<unsigned short> m_Port = 0;
    // 0 where the library was built without TLS, or without connections over UDP.
    std::atomic<unsigned short> m_SecurePort = 0;
    std::atomic<unsigned short> m_UdpPort = 0;
    std::atomic<bool> m_IsServing = false;
    std::atomic<bool> m_IsOver = false;
    // Nanoseconds.
    std::atomic<long long> m_LongestTick = 0;
    // Bytes that the attacker has sent.
    std::atomic<unsigned long long> m_Sent = 0;
};

// A certificate for 127.0.0.1 of the benchmark's own making.
class Identity
{
public:
    Identity();
    // False in a library without TLS.
    bool give(zet::TcpServer& server) const;

private:
    std::string m_Chain;
    std::string m_Key;
};

struct Attack
{
    const char* m_Name;
    // Goes on until the process is ended.
    void (*m_Run)(Shared&);
    bool (*m_IsPossible)(const Shared&);
};

const std::vector<Attack>& attacks();

} // namespace bench
