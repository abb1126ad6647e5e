// Thousands of idle connections on a server: how fast they are set up, the memory of one, and the processor time of a
// tick, compared with a tick without connections. 10,000 and 19,900 in one process, 90,000 in five.
// Usage: idle_bench [--json] [CONNECTIONS [PROCESSES]], for that many connections in all.
#include "bench/support/crowd.h"
#include "bench/support/loopback.h"
#include "bench/support/processes.h"
#include "bench/support/rounds.h"

#include <arpa/inet.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>

namespace
{

constexpr int kUsual = 10000;
constexpr int kRounds = 15;
constexpr int kTicks = 20000;
// Handles of a process besides those of its connections.
constexpr int kOthers = 60;
// The most seconds for setting up.
constexpr double kLongest = 60;
// Connections to one address of this machine: fewer than it has ports for connecting.
constexpr int kPerAddress = 10000;

// What one process measures.
struct Result
{
    int m_Count = 0;
    double m_Bytes = 0;
    double m_None[kRounds] = {};
    double m_All[kRounds] = {};
};

// Resident memory, without the pages of files: a process that was forked maps the code that it uses bit by bit.
long residentBytes()
{
    long resident = 0;
    long ofFiles = 0;
    if (std::FILE* const file = std::fopen("/proc/self/statm", "r"))
    {
        if (std::fscanf(file, "%*d %ld %ld", &resident, &ofFiles) != 2)
            resident = ofFiles = 0;
        std::fclose(file);
    }
    return (resident - ofFiles) * sysconf(_SC_PAGESIZE);
}

// Opens the given number of connections and waits to be ended.
[[noreturn]] void visit(unsigned short port, int count)
{
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    for (int i = 0; i < count; ++i)
    {
        const int handle = socket(AF_INET, SOCK_STREAM, 0);
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_port = htons(port);
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK + static_cast<unsigned int>(i / kPerAddress));
        if (handle < 0 || connect(handle, reinterpret_cast<sockaddr*>(&address), sizeof address) != 0)
        {
            std::perror("connect");
            _exit(1);
        }
    }
    pause();
    _exit(0);
}

void pass(int pipe, const Result& result)
{
    bench::need(write(pipe, &result, sizeof result) == sizeof result, "the benchmark's first process");
}

void awaitOrder(int pipe)
{
    char order;
    if (read(pipe, &order, 1) != 1)
        _exit(1);
}

void measureTicks(zet::System& system, double (&nanoseconds)[kRounds])
{
    for (double& each : nanoseconds)
        each = bench::processorSecondsOf(
                   [&]
                   {
                       for (int i = 0; i < kTicks; ++i)
                           system.tick();
                   }) /
               kTicks * 1e9;
}

// A server and, in another process, its peers. Does each step when it is asked to, and passes the result on.
[[noreturn]] void serve(int pipe, int count)
{
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    static CCmdAnalyserSocket analyser;
    zet::System system;
    system.init();
    const zet::Unknown::Handle_T<bench::Server> server = new bench::Server(&analyser);
    server->start(&system);
    // All connections come from this machine.
    zet::NetLimits limits;
    limits.m_ConnectionsPerAddress = 0;
    limits.m_ConnectionsPerSubnet = 0;
    limits.m_Connections = 0;
    server->setLimits(limits);
    bench::need(server->listen(0, 4096), "listen");
    Result result;
    measureTicks(system, result.m_None);
    pass(pipe, result);

    awaitOrder(pipe);
    const unsigned short port = server->zet::TcpServer::getPort();
    const long before = residentBytes();
    const pid_t peers = fork();
    if (peers == 0)
        visit(port, count);
    const auto start = std::chrono::steady_clock::now();
    while (server->GetClientCount() < count && waitpid(peers, nullptr, WNOHANG) == 0 &&
           std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count() < kLongest)
        for (int i = 0; i < 100 && server->GetClientCount() < count; ++i)
        {
            system.tick();
            system.wait();
        }
    for (int i = 0; i < 10; ++i)
        system.tick();
    result.m_Count = server->GetClientCount();
    result.m_Bytes = static_cast<double>(residentBytes() - before) / std::max(result.m_Count, 1);
    pass(pipe, result);

    awaitOrder(pipe);
    measureTicks(system, result.m_All);
    pass(pipe, result);

    awaitOrder(pipe);
    kill(peers, SIGKILL);
    waitpid(peers, nullptr, 0);
    _exit(0);
}

class Processes
{
public:
    Processes(int connections, int processes) : m_Results(static_cast<size_t>(processes))
    {
        for (int i = 0; i < processes; ++i)
        {
            int ends[2];
            bench::need(socketpair(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0, ends) == 0, "socketpair");
            const pid_t child = fork();
            if (child == 0)
            {
                close(ends[0]);
                serve(ends[1], connections / processes + (i < connections % processes ? 1 : 0));
            }
            close(ends[1]);
            m_Pipes.push_back(ends[0]);
            m_Children.push_back(child);
        }
        gather();
    }
    ~Processes()
    {
        order();
        for (const int pipe : m_Pipes)
            close(pipe);
        for (const pid_t child : m_Children)
            waitpid(child, nullptr, 0);
    }
    Processes(const Processes&) = delete;
    Processes& operator=(const Processes&) = delete;

    // Starts the next step in all processes at once, and returns when all have done it.
    void step()
    {
        order();
        gather();
    }

    std::vector<Result> m_Results;

private:
    void order()
    {
        for (const int pipe : m_Pipes)
            bench::need(write(pipe, "", 1) == 1, "a process of the benchmark");
    }
    void gather()
    {
        for (size_t i = 0; i < m_Pipes.size(); ++i)
            bench::need(read(m_Pipes[i], &m_Results[i], sizeof m_Results[i]) == sizeof m_Results[i],
                        "a process of the benchmark");
    }

    std::vector<int> m_Pipes;
    std::vector<pid_t> m_Children;
};

// False if not all connections were opened.
bool run(int connections, int processes)
{
    const std::string count = std::to_string(connections);
    const std::string where = processes > 1 ? " in " + std::to_string(processes) + " processes" : "";
    const std::string name = "a tick over " + count + " idle connections" + where;
    rlimit handles{};
    getrlimit(RLIMIT_NOFILE, &handles);
    const int each = (connections + processes - 1) / processes;
    if (handles.rlim_cur < static_cast<rlim_t>(each) + kOthers)
    {
        bench::skip(name, "a process may have " + std::to_string(handles.rlim_cur) + " handles, and " +
                              std::to_string(each + kOthers) + " are needed; see ulimit -n");
        return true;
    }
    Processes all(connections, processes);
    const double seconds = bench::secondsOf([&] { all.step(); });
    int opened = 0;
    for (const Result& result : all.m_Results)
        opened += result.m_Count;
    if (opened != connections)
    {
        std::fprintf(stderr, "only %d of %d connections were opened\n", opened, connections);
        return false;
    }
    all.step();
    bench::Row memory{
        "an idle connection" + (connections == kUsual ? "" : " of " + count + where), "bytes", {}, {}, {}};
    bench::Row tick{name, "ns", {}, {}, {}};
    bench::Row growth{name + ", against none", "ns", {}, {}, {}};
    for (const Result& result : all.m_Results)
    {
        const double none = bench::median({result.m_None, result.m_None + kRounds});
        memory.m_Own.push_back(result.m_Bytes);
        tick.m_Own.insert(tick.m_Own.end(), result.m_All, result.m_All + kRounds);
        growth.m_Floor.insert(growth.m_Floor.end(), result.m_None, result.m_None + kRounds);
        for (const double own : result.m_All)
            growth.m_Ratios.push_back(own / none);
    }
    growth.m_Own = tick.m_Own;
    bench::print({count + " connections set up" + where, "1/s", {connections / seconds}, {}, {}});
    bench::print(memory);
    bench::print(tick);
    bench::print(growth);
    return true;
}

} // namespace

int main(int argc, char** argv)
{
    const std::vector<std::string> arguments = bench::start(argc, argv);
    bench::raiseFileLimit();
    if (arguments.empty())
        return run(kUsual, 1) && run(19900, 1) && run(90000, 5) ? 0 : 1;
    const int connections = std::atoi(arguments[0].c_str());
    const int processes = arguments.size() > 1 ? std::atoi(arguments[1].c_str()) : 1;
    if (connections < 1 || processes < 1 || processes > connections || arguments.size() > 2)
    {
        std::fprintf(stderr, "usage: idle_bench [--json] [CONNECTIONS [PROCESSES]]\n");
        return 1;
    }
    return run(connections, processes) ? 0 : 1;
}
