// The effect of a hostile peer on an honest one: a client sends a small command each millisecond and waits for its
// reply while another process attacks the same System as fast as the loopback allows. Prints per attack: round trips of
// the client (median, 99th percentile), the longest tick of the server, and the bytes sent by the attacker. The attacks
// whose name begins with "limit" run against a limit that the server has set; a further line has the limit and what was
// reached. Usage: neighbour_bench [SECONDS [ATTACK]].
//
// The server has its own core. The client shares the other core with the attacker and has a higher priority there, if
// the system allows that, so that the figures show the server.
#include "bench/support/attacks.h"
#include "bench/support/identity.h"
#include "bench/support/loopback.h"
#include "bench/support/processes.h"
#include "bench/support/rounds.h"
#include "commands/registry.h"
#include "framework/log.h"
#include "net/limits.h"
#include "transport/udp_client_socket.h"
#include "transport/udp_server_socket.h"

#include <sched.h>
#include <sys/mman.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <cwchar>
#include <new>

namespace
{

using Clock = std::chrono::steady_clock;

// The data of the client's commands; the server replies to no others.
constexpr unsigned long kHonest = 0x600D;

// Of this process, for the handler of the server.
bench::Shared* s_Shared = nullptr;

class UdpHost : public UdpServerSocket
{
public:
    void onAccept() override { accept(UdpClientSocket::createInstance()); }
};

void onEcho(CCommandSocket* socket, CCmdHead* command, unsigned long, unsigned long)
{
    if (static_cast<CCmdServerEcho*>(command)->m_Data == kHonest)
        socket->send(*command);
    else
        ++s_Shared->m_Handled;
}

long long nanosecondsSince(Clock::time_point start)
{
    return std::chrono::duration_cast<std::chrono::nanoseconds>(Clock::now() - start).count();
}

[[noreturn]] void serve(bench::Shared& shared, const bench::Identity& identity, const bench::Limit* limit)
{
    s_Shared = &shared;
    if (limit)
        // The line with the number of the omitted ones comes with the next one.
        zet::Log::addSink([&shared](zet::Log::Level, const zet::String_T<wchar_t>& line)
                          { shared.m_Lines += !std::wcsstr(line.getBuffer(), L"last line "); });
    bench::pinTo(0);
    CCmdAnalyserSocket analyser;
    analyser.Install(command_id::CCmdServerEcho, CCmdServerEcho::CCmdServerEcho_ProcessSocket, onEcho, 0, 0);
    zet::System system;
    system.init();
    const zet::Unknown::Handle_T<bench::Server> plain = new bench::Server(&analyser);
    const zet::Unknown::Handle_T<bench::Server> secure = new bench::Server(&analyser);
    const zet::Unknown::Handle_T<UdpHost> udp = new UdpHost;
    zet::NetLimits limits;
    if (limit)
        limit->m_Set(limits);
    plain->setLimits(limits);
    secure->setLimits(limits);
    plain->start(&system);
    secure->start(&system);
    udp->start(&system);
    if (!plain->listen(0, 1024))
        _exit(1);
    shared.m_Port = plain->zet::TcpServer::getPort();
    if (identity.give(*secure) && secure->listen(0, 1024))
        shared.m_SecurePort = secure->zet::TcpServer::getPort();
    if (udp->zet::UdpServer::listen(0))
        shared.m_UdpPort = udp->getPort();
    shared.m_IsServing = true;
    while (!shared.m_IsOver)
    {
        const auto start = Clock::now();
        system.tick();
        const long long length = nanosecondsSince(start);
        if (length > shared.m_LongestTick)
            shared.m_LongestTick = length;
        ++shared.m_Ticks;
        shared.m_Peak =
            std::max<unsigned long long>(shared.m_Peak, static_cast<unsigned long long>(plain->GetClientCount()));
        system.wait();
    }
    // The attacker's connections close with its process.
    _exit(0);
}

struct Figures
{
    double m_Median = 0;
    double m_Late = 0;
    double m_LongestTick = 0;
    double m_Megabytes = 0;
    // Of the limit.
    double m_Reached = 0;
};

// The client: one command at a time, each a millisecond after the previous reply.
class Honest
{
public:
    explicit Honest(unsigned short port) : m_Client(new bench::Client(&m_Analyser))
    {
        m_Analyser.Install(command_id::CCmdServerEcho, CCmdServerEcho::CCmdServerEcho_ProcessSocket, onBack,
                           reinterpret_cast<unsigned long>(&m_Back), 0);
        m_System.init();
        m_Client->start(&m_System);
        m_Client->connect(L"127.0.0.1", port, false);
        while (m_Client->getConnectionState() == zet::TcpConnection::kConnecting)
        {
            m_System.tick();
            m_System.wait();
        }
    }
    ~Honest()
    {
        m_Client->close();
        m_System.exit();
    }

    std::vector<double> trips(double seconds)
    {
        std::vector<double> took;
        CCmdServerEcho echo;
        echo.m_Data = kHonest;
        for (const auto begin = Clock::now(); nanosecondsSince(begin) < seconds * 1e9;)
        {
            usleep(1000);
            const auto start = Clock::now();
            m_Back = 0;
            if (!m_Client->send(echo))
                return {};
            while (m_Back == 0)
            {
                m_System.tick();
                if (m_Back == 0)
                    m_System.wait();
                if (m_Client->isInvalid() || nanosecondsSince(start) > 30e9)
                    return {};
            }
            took.push_back(static_cast<double>(nanosecondsSince(start)) / 1e3);
        }
        return took;
    }

private:
    static void onBack(CCommandSocket*, CCmdHead*, unsigned long count, unsigned long)
    {
        ++*reinterpret_cast<int*>(count);
    }

    int m_Back = 0;
    CCmdAnalyserSocket m_Analyser;
    zet::System m_System;
    zet::Unknown::Handle_T<bench::Client> m_Client;
};

double percentile(std::vector<double> values, double part)
{
    std::sort(values.begin(), values.end());
    return values[std::min(values.size() - 1, static_cast<size_t>(static_cast<double>(values.size()) * part))];
}

// Runs the client during an attack, or alone; false if the client or the attacker lost the server.
bool measure(bench::Shared& shared, const bench::Attack* attack, double seconds, Figures& figures)
{
    Honest honest(shared.m_Port);
    if (honest.trips(0.2).empty())
        return false;
    pid_t attacker = -1;
    shared.m_Sent = 0;
    if (attack)
    {
        std::fflush(stdout);
        attacker = fork();
        if (attacker == 0)
        {
            const sched_param usual{};
            sched_setscheduler(0, SCHED_OTHER, &usual);
            attack->m_Run(shared);
            _exit(0);
        }
        honest.trips(0.2);
    }
    shared.m_LongestTick = 0;
    shared.reset();
    const unsigned long long before = shared.m_Sent;
    const auto start = Clock::now();
    const std::vector<double> took = honest.trips(seconds);
    const double passed = static_cast<double>(nanosecondsSince(start)) / 1e9;
    const unsigned long long sent = shared.m_Sent - before;
    const long long longest = shared.m_LongestTick;
    const double reached = attack && attack->m_Limit ? attack->m_Limit->m_Reached(shared, passed) : 0;
    if (attacker > 0)
    {
        kill(attacker, SIGKILL);
        waitpid(attacker, nullptr, 0);
    }
    if (took.size() < 2)
        return false;
    figures = {percentile(took, 0.5), percentile(took, 0.99), static_cast<double>(longest) / 1e3,
               static_cast<double>(sent) / passed / 1e6, reached};
    return true;
}

} // namespace

int main(int argc, char** argv)
{
    const double seconds = argc > 1 ? std::atof(argv[1]) : 3;
    const char* const only = argc > 2 ? argv[2] : nullptr;
    if (seconds <= 0)
    {
        std::fprintf(stderr, "usage: neighbour_bench [SECONDS [ATTACK]]\n");
        return 1;
    }
    std::signal(SIGPIPE, SIG_IGN);
    void* const place = mmap(nullptr, sizeof(bench::Shared), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
    if (place == MAP_FAILED)
        return 1;
    auto& shared = *new (place) bench::Shared;
    const bench::Identity identity;
    bool isGood = true;
    std::printf("%-44s %10s %10s %12s %10s %8s\n", "attack", "p50 us", "p99 us", "longest tick", "MB/s", "p99 x");
    for (const bench::Attack& attack : bench::attacks())
    {
        if (only && !std::strstr(attack.m_Name, only))
            continue;
        // A new server for each attack, so that one attack does not affect the next.
        new (&shared) bench::Shared;
        std::fflush(stdout);
        const pid_t server = fork();
        if (server == 0)
            serve(shared, identity, attack.m_Limit);
        bench::pinTo(static_cast<int>(sysconf(_SC_NPROCESSORS_ONLN)) - 1);
        sched_param first{};
        first.sched_priority = 1;
        if (sched_setscheduler(0, SCHED_FIFO, &first) != 0)
            std::fprintf(stderr, "cannot raise the client's priority over the attacker's here\n");
        for (int i = 0; i < 5000 && !shared.m_IsServing; ++i)
            usleep(1000);
        Figures alone, beside;
        if (!attack.m_IsPossible(shared))
        {
            std::printf("%-44s not possible in this build\n", attack.m_Name);
        }
        else if (measure(shared, nullptr, seconds, alone) && measure(shared, &attack, seconds, beside))
        {
            std::printf("%-44s %10.1f %10.1f %12.1f %10s %8s\n", "alone", alone.m_Median, alone.m_Late,
                        alone.m_LongestTick, "", "");
            std::printf("%-44s %10.1f %10.1f %12.1f %10.1f %8.1f\n", attack.m_Name, beside.m_Median, beside.m_Late,
                        beside.m_LongestTick, beside.m_Megabytes, beside.m_Late / alone.m_Late);
            if (attack.m_Limit)
                std::printf("%-44s %10.2f of %.0f\n", attack.m_Limit->m_What, beside.m_Reached,
                            attack.m_Limit->m_Value);
        }
        else
        {
            std::printf("%-44s the client lost its connection or got no answer in 30 s\n", attack.m_Name);
            isGood = false;
        }
        shared.m_IsOver = true;
        kill(server, SIGTERM);
        waitpid(server, nullptr, 0);
    }
    return isGood ? 0 : 1;
}
