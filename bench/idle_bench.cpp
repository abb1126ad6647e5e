// The cost of thousands of idle connections on a server: time per tick and memory per connection, compared with a tick
// without connections. Usage: idle_bench [--json] [CONNECTIONS].
#include "bench/support/crowd.h"
#include "bench/support/loopback.h"
#include "bench/support/rounds.h"

#include <arpa/inet.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstdio>
#include <cstdlib>

namespace
{

constexpr int kConnections = 10000;

long residentBytes()
{
    long pages = 0;
    if (std::FILE* const file = std::fopen("/proc/self/statm", "r"))
    {
        if (std::fscanf(file, "%*d %ld", &pages) != 1)
            pages = 0;
        std::fclose(file);
    }
    return pages * sysconf(_SC_PAGESIZE);
}

// Opens the given number of connections and waits to be ended.
[[noreturn]] void visit(unsigned short port, int count)
{
    for (int i = 0; i < count; ++i)
    {
        const int handle = socket(AF_INET, SOCK_STREAM, 0);
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_port = htons(port);
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        if (handle < 0 || connect(handle, reinterpret_cast<sockaddr*>(&address), sizeof address) != 0)
        {
            std::perror("connect");
            _exit(1);
        }
    }
    pause();
    _exit(0);
}

} // namespace

int main(int argc, char** argv)
{
    const std::vector<std::string> arguments = bench::start(argc, argv);
    const int count = arguments.empty() ? kConnections : std::atoi(arguments[0].c_str());
    bench::raiseFileLimit();

    CCmdAnalyserSocket analyser;
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
    if (count < 1 || !server->listen(0, 4096))
    {
        std::fprintf(stderr, "usage: idle_bench [--json] [CONNECTIONS]\n");
        return 1;
    }
    const std::vector<double> none = bench::measure("a tick with no connection", 1, [&] { system.tick(); });

    const unsigned short port = server->zet::TcpServer::getPort();
    const long before = residentBytes();
    const pid_t visitor = fork();
    if (visitor == 0)
        visit(port, count);
    for (int i = 0; i < 60000 && server->GetClientCount() < count; ++i)
    {
        system.tick();
        system.wait();
    }
    const int came = server->GetClientCount();
    if (came == count)
    {
        for (int i = 0; i < 10; ++i)
            system.tick();
        bench::print({"an idle connection", "bytes", {static_cast<double>(residentBytes() - before) / came}, {}, {}});
        const std::string name = "a tick over " + std::to_string(came) + " idle connections";
        const std::vector<double> all = bench::measure(name, 1, [&] { system.tick(); });
        std::vector<double> growth;
        growth.reserve(all.size());
        for (const double each : all)
            growth.push_back(each / bench::median(none));
        bench::print({name + ", against none", "ns", all, none, growth});
    }
    kill(visitor, SIGKILL);
    waitpid(visitor, nullptr, 0);
    server->close();
    system.exit();
    if (came != count)
        std::fprintf(stderr, "only %d of %d connections were opened; see ulimit -n\n", came, count);
    return came == count ? 0 : 1;
}
