// Two Systems on two cores, compared with one on one core: commands one way, each System with a server and a client of
// its own on a thread of its own. Whatever both threads share would show.
#include "bench/support/loopback.h"
#include "bench/support/processes.h"
#include "bench/support/rounds.h"
#include "commands/registry.h"

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

// One core's load, until it is told to end. Returns the commands per second of its processor's time.
double run(int core, const std::atomic<bool>& isOver)
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
    bench::need(server->listen(0, 5), "listen");
    client->connect(L"127.0.0.1", server->zet::TcpServer::getPort(), false);
    while (server->GetClientCount() == 0 || client->getConnectionState() == zet::TcpConnection::kConnecting)
    {
        system.wait();
        system.tick();
    }
    CCmdServerEcho echo;
    echo.m_Data = 7;
    const auto start = std::chrono::steady_clock::now();
    while (!isOver)
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
    std::atomic<bool> isOver = false;
    std::vector<double> rates(static_cast<size_t>(cores));
    std::vector<std::thread> threads;
    threads.reserve(static_cast<size_t>(cores));
    for (int core = 0; core < cores; ++core)
        threads.emplace_back([&, core] { rates[static_cast<size_t>(core)] = run(core, isOver); });
    usleep(static_cast<unsigned int>(kSeconds * 1e6));
    isOver = true;
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
    constexpr char kName[] = "two Systems on two cores against one";
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
