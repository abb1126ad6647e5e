// Commands over the loopback compared with a hand-written epoll loop with the same packets. Two processes, once on one
// core and once where the scheduler puts them: round trips, and one way at full speed.
#include "bench/support/loopback.h"
#include "bench/support/raw_echo.h"
#include "bench/support/rounds.h"
#include "commands/registry.h"

#include <sched.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <functional>

namespace
{

constexpr int kRounds = 7;
constexpr int kRoundTrips = 5000;
constexpr int kOneWay = 1000000;
// Commands that the sender queues before a tick sends them.
constexpr int kBatch = 2000;
// Pending bytes above which the sender waits.
constexpr size_t kQueued = 1024 * 1024;

void pinTo(int core)
{
    cpu_set_t set;
    CPU_ZERO(&set);
    CPU_SET(core, &set);
    if (sched_setaffinity(0, sizeof set, &set) != 0)
        std::perror("sched_setaffinity");
}

// Runs work in a child process; finish() waits for its end.
pid_t inChild(const std::function<void()>& work)
{
    std::fflush(stdout);
    const pid_t child = fork();
    if (child != 0)
        return child;
    work();
    std::fflush(stdout);
    _exit(0);
}

void finish(pid_t child)
{
    int status = 0;
    if (waitpid(child, &status, 0) != child || status != 0)
    {
        std::fprintf(stderr, "the other end failed\n");
        std::exit(1);
    }
}

double secondsOf(const std::function<void()>& work)
{
    const auto start = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

// In the client's process: replies received, and commands that wait for the previous reply.
unsigned long g_Back = 0;
int g_Waiting = 0;

void onBack(CCommandSocket* socket, CCmdHead* command, unsigned long, unsigned long)
{
    ++g_Back;
    if (g_Waiting > 0)
    {
        --g_Waiting;
        socket->send(*command);
    }
}

// The server side: replies to each echo, or only to each kOneWay-th.
unsigned long g_Seen = 0;

void onEcho(CCommandSocket* socket, CCmdHead* command, unsigned long every, unsigned long)
{
    if (++g_Seen % every == 0)
        socket->send(*command);
}

// Rounds of commands to a server in another process. A round sends batch commands at a time, count in all, and ends
// when the replies have arrived.
std::vector<double> runOwn(int every, int count, int batch)
{
    int ports[2];
    if (pipe(ports) != 0)
        std::exit(1);
    const pid_t child = inChild(
        [&]
        {
            CCmdAnalyserSocket analyser;
            analyser.Install(command_id::CCmdServerEcho, CCmdServerEcho::CCmdServerEcho_ProcessSocket, onEcho,
                             static_cast<unsigned long>(every), 0);
            zet::System system;
            system.init();
            const zet::Unknown::Handle_T<bench::Server> server = new bench::Server(&analyser);
            server->start(&system);
            const int port = server->listen(0, 5) ? server->zet::TcpServer::getPort() : 0;
            if (write(ports[1], &port, sizeof port) != sizeof port)
                _exit(1);
            bool hasCome = false;
            while (!hasCome || server->GetClientCount() > 0)
            {
                system.tick();
                hasCome = hasCome || server->GetClientCount() > 0;
                system.wait();
            }
            server->close();
            system.exit();
        });
    int port = 0;
    if (read(ports[0], &port, sizeof port) != sizeof port || port == 0)
        std::exit(1);
    close(ports[0]);
    close(ports[1]);

    CCmdAnalyserSocket analyser;
    analyser.Install(command_id::CCmdServerEcho, CCmdServerEcho::CCmdServerEcho_ProcessSocket, onBack, 0, 0);
    zet::System system;
    system.init();
    const zet::Unknown::Handle_T<bench::Client> client = new bench::Client(&analyser);
    client->start(&system);
    client->connect(L"127.0.0.1", static_cast<unsigned short>(port), false);
    while (client->getConnectionState() == zet::TcpConnection::kConnecting)
    {
        system.tick();
        system.wait();
    }
    CCmdServerEcho echo;
    echo.m_Data = 7;
    std::vector<double> rounds;
    for (int round = 0; round <= kRounds; ++round)
        rounds.push_back(secondsOf(
            [&]
            {
                g_Back = 0;
                const unsigned long wanted = static_cast<unsigned long>(count / every);
                // A single command is sent after the previous reply, a batch as the queue empties.
                int left = batch > 1 ? count : 1;
                g_Waiting = count - left;
                while (g_Back < wanted)
                {
                    if (client->getOutputSize() < kQueued)
                        for (int i = 0; i < batch && left > 0; ++i, --left)
                            if (!client->send(echo))
                                std::exit(1);
                    system.tick();
                    if (g_Back < wanted && (left == 0 || client->getOutputSize() >= kQueued))
                        system.wait();
                    if (client->isInvalid())
                        std::exit(1);
                }
            }));
    client->close();
    system.exit();
    finish(child);
    // The first round warms up.
    rounds.erase(rounds.begin());
    return rounds;
}

// The same packets by hand.
std::vector<double> runFloor(int every, int count, int batch)
{
    bench::RawPair pair;
    const pid_t child = inChild(
        [&]
        {
            close(pair.m_Near);
            bench::RawEnd end(pair.m_Far);
            int seen = 0;
            while (end.fill())
            {
                size_t size = 0;
                while (const unsigned char* packet = end.next(size))
                    if (++seen % every == 0)
                        end.put(packet, size);
                if (!end.flush())
                    break;
            }
        });
    close(pair.m_Far);
    pair.m_Far = -1;
    bench::RawEnd end(pair.m_Near);
    unsigned char packet[4 + 6 + 25] = {31, 0, 0, 0};
    std::vector<double> rounds;
    for (int round = 0; round <= kRounds; ++round)
        rounds.push_back(secondsOf(
            [&]
            {
                int back = 0;
                for (int sent = 0; back < count / every;)
                {
                    for (int i = 0; i < batch && sent < count; ++i, ++sent)
                        end.put(packet, sizeof packet);
                    if (!end.flush())
                        std::exit(1);
                    if (batch > 1 && sent < count)
                        continue;
                    if (!end.fill())
                        std::exit(1);
                    size_t size = 0;
                    while (end.next(size))
                        ++back;
                }
            }));
    shutdown(pair.m_Near, SHUT_RDWR);
    finish(child);
    rounds.erase(rounds.begin());
    return rounds;
}

void compare(const char* what, int every, int count, int batch)
{
    std::vector<double> own;
    std::vector<double> floor;
    std::vector<double> ratios;
    // Three turns of both, so that a drift of the machine affects both.
    for (int turn = 0; turn < 3; ++turn)
    {
        const std::vector<double> mine = runOwn(every, count, batch);
        const std::vector<double> raw = runFloor(every, count, batch);
        own.insert(own.end(), mine.begin(), mine.end());
        floor.insert(floor.end(), raw.begin(), raw.end());
        ratios.push_back(bench::median(mine) / bench::median(raw));
    }
    std::printf("%-44s %10.1f ns   floor %10.1f ns   ratio %.2f\n", what, bench::median(own) / count * 1e9,
                bench::median(floor) / count * 1e9, bench::median(ratios));
    std::fflush(stdout);
}

} // namespace

int main()
{
    const int cores = static_cast<int>(sysconf(_SC_NPROCESSORS_ONLN));
    for (const bool isPinned : {true, false})
    {
        if (!isPinned && cores < 2)
            break;
        cpu_set_t all;
        CPU_ZERO(&all);
        for (int i = 0; i < cores; ++i)
            CPU_SET(i, &all);
        if (isPinned)
            pinTo(cores - 1);
        else
            sched_setaffinity(0, sizeof all, &all);
        std::printf("%s\n", isPinned ? "both ends on one core" : "each end where the scheduler puts it");
        compare("a command there and back", 1, kRoundTrips, 1);
        compare("commands one way", kOneWay, kOneWay, kBatch);
    }
    return 0;
}
