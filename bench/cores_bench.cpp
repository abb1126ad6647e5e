// Two Systems on two cores and one port, compared with one System on one core: commands one way, each System on a
// thread of its own, with its share of the port and one client. Whatever both threads share would show.
#include "bench/support/loopback.h"
#include "bench/support/processes.h"
#include "bench/support/rounds.h"
#include "commands/registry.h"

#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <atomic>
#include <thread>

namespace
{

constexpr int kRounds = 11;
constexpr double kSeconds = 0.3;
constexpr int kBatch = 500;

void onEcho(CCommandSocket*, CCmdHead* command, unsigned long seen, unsigned long)
{
    *reinterpret_cast<unsigned long*>(seen) += static_cast<CCmdServerEcho*>(command)->m_Data == 7;
}

// What the threads of a round share besides the port: its number, 0 until the first one has it, and how many are ready.
struct Shared
{
    std::atomic<unsigned short> m_Port{0};
    std::atomic<int> m_Ready{0};
    std::atomic<bool> m_IsOver{false};
};

unsigned short portOf(const bench::Client& client)
{
    sockaddr_in own{};
    socklen_t size = sizeof own;
    getsockname(static_cast<int>(client.getHandle()), reinterpret_cast<sockaddr*>(&own), &size);
    return ntohs(own.sin_port);
}

bool serves(const bench::Server& server, unsigned short peer)
{
    struct Finder : CFrameworkServerSocket::ClientSockets::Walker
    {
        bool onEntry(CFrameworkClientSocket* const& socket, zet::Unknown::Handle_T<CFrameworkClientSocket>&) override
        {
            m_IsFound = m_IsFound || socket->getPeerPort() == m_Peer;
            return true;
        }
        unsigned short m_Peer = 0;
        bool m_IsFound = false;
    } finder;
    finder.m_Peer = peer;
    server.GetAllClientSocket()->foreach(finder);
    return finder.m_IsFound;
}

// One core's load, until the round is over. Returns the commands per second.
double run(int core, int cores, Shared& shared)
{
    bench::pinTo(core);
    unsigned long seen = 0;
    CCmdAnalyserSocket analyser;
    analyser.Install(command_id::CCmdServerEcho, CCmdServerEcho::CCmdServerEcho_ProcessSocket, onEcho,
                     reinterpret_cast<unsigned long>(&seen), 0);
    zet::System system;
    system.init();
    const zet::Unknown::Handle_T<bench::Server> server = new bench::Server(&analyser);
    const zet::Unknown::Handle_T<bench::Client> client = new bench::Client(&analyser);
    server->start(&system);
    client->start(&system);
    server->setSharedPort(true);
    while (core > 0 && shared.m_Port == 0)
        std::this_thread::yield();
    bench::need(server->listen(shared.m_Port, 5), "listen");
    shared.m_Port = server->getPort();
    ++shared.m_Ready;
    while (shared.m_Ready < cores)
        std::this_thread::yield();
    // The system divides the connections: this one is made anew until it is this System's.
    while (client->isInvalid() || !serves(*server, portOf(*client)))
    {
        client->close();
        bench::need(client->connect(L"127.0.0.1", server->getPort(), false), "connect");
        for (int i = 0; i < 10 && !serves(*server, portOf(*client)); ++i)
            system.tick();
    }
    ++shared.m_Ready;
    while (shared.m_Ready < 2 * cores)
        system.tick();
    seen = 0;
    CCmdServerEcho echo;
    echo.m_Data = 7;
    const auto start = std::chrono::steady_clock::now();
    while (!shared.m_IsOver)
    {
        if (client->getOutputSize() == 0)
            for (int i = 0; i < kBatch; ++i)
                bench::need(client->send(echo), "send");
        system.tick();
        system.wait();
    }
    const double seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    client->close();
    server->close();
    system.exit();
    return static_cast<double>(seen) / seconds;
}

// Commands per second of that many cores together.
double rateOf(int cores)
{
    Shared shared;
    std::vector<double> rates(static_cast<size_t>(cores));
    std::vector<std::thread> threads;
    threads.reserve(static_cast<size_t>(cores));
    for (int core = 0; core < cores; ++core)
        threads.emplace_back([&, core] { rates[static_cast<size_t>(core)] = run(core, cores, shared); });
    while (shared.m_Ready < 2 * cores)
        usleep(1000);
    usleep(static_cast<unsigned int>(kSeconds * 1e6));
    shared.m_IsOver = true;
    double sum = 0;
    for (int core = 0; core < cores; ++core)
    {
        threads[static_cast<size_t>(core)].join();
        sum += rates[static_cast<size_t>(core)];
    }
    return sum;
}

} // namespace

int main(int argc, char** argv)
{
    constexpr char kName[] = "two Systems on one port and two cores, against one";
    bench::start(argc, argv);
    if (sysconf(_SC_NPROCESSORS_ONLN) < 2)
    {
        bench::skip(kName, "the machine has one core");
        return 0;
    }
    bench::Row row{kName, "1/ms", {}, {}, {}};
    for (int round = 0; round < kRounds; ++round)
    {
        const double one = rateOf(1);
        const double two = rateOf(2);
        row.m_Own.push_back(two / 1e3);
        row.m_Floor.push_back(one / 1e3);
        row.m_Ratios.push_back(two / one);
    }
    bench::print(row);
    return 0;
}
