// A server with many connections: accepting them, one command to each of 1,000, and commands from one in a hundred of
// 10,000. The server's time and system calls, compared with bare loops; both ends on one core.
#include "bench/support/call_count.h"
#include "bench/support/crowd.h"
#include "bench/support/loopback.h"
#include "bench/support/processes.h"
#include "bench/support/rounds.h"
#include "commands/registry.h"
#include "transport/send_to_all.h"

#include <memory>

namespace
{

constexpr int kRounds = 15;
constexpr int kBroadcast = 1000;
constexpr int kAccepted = 1000;
constexpr int kMany = 10000;
constexpr int kActive = 100;
// System calls are counted over that many connections.
constexpr int kCounted = 200;

unsigned long g_Seen = 0;

void onEcho(CCommandSocket*, CCmdHead* command, unsigned long, unsigned long)
{
    g_Seen += static_cast<CCmdServerEcho*>(command)->m_Data == 7;
}

// The library's server.
class Own
{
public:
    Own() : m_Server(new bench::Server(&m_Analyser))
    {
        m_Analyser.Install(command_id::CCmdServerEcho, CCmdServerEcho::CCmdServerEcho_ProcessSocket, onEcho, 0, 0);
        m_System.init();
        m_Server->start(&m_System);
        // All connections come from this machine.
        zet::NetLimits limits;
        limits.m_ConnectionsPerAddress = 0;
        limits.m_ConnectionsPerSubnet = 0;
        limits.m_Connections = 0;
        m_Server->setLimits(limits);
        bench::need(m_Server->listen(0, 4096), "listen");
    }
    ~Own()
    {
        m_Server->close();
        m_System.exit();
    }

    unsigned short port() const { return m_Server->zet::TcpServer::getPort(); }
    int count() const { return m_Server->GetClientCount(); }
    // Until there are that many connections.
    void turnUntil(int wanted)
    {
        while (count() != wanted)
            turn();
    }
    void sendToAll(const CCmdHead& command)
    {
        bench::need(SendToAll(*m_Server->GetAllClientSocket(), command) == count(), "send to all");
        m_System.tick();
    }
    void handle(unsigned long wanted)
    {
        g_Seen = 0;
        while (g_Seen < wanted)
            turn();
    }

private:
    void turn()
    {
        m_System.wait();
        m_System.tick();
    }

    CCmdAnalyserSocket m_Analyser;
    zet::System m_System;
    zet::Unknown::Handle_T<bench::Server> m_Server;
};

// Opens connections to a server in pieces that its backlog takes.
template <class Accept>
void fill(bench::Crowd& crowd, unsigned short port, int count, Accept accept)
{
    for (int there = 0; there < count;)
    {
        const int wanted = std::min(count, there + 1000);
        const int got = crowd.connect(port, wanted - there);
        bench::need(got == wanted, "connect; see ulimit -n");
        there = got;
        accept(there);
    }
}

void addRound(bench::Row& row, double own, double floor, int calls)
{
    row.m_Own.push_back(own / calls * 1e9);
    row.m_Floor.push_back(floor / calls * 1e9);
    row.m_Ratios.push_back(own / floor);
}

void benchAccept(bench::Crowd& crowd, bench::Crowd& other)
{
    bench::Row row{"accepting a connection, the server's time", "ns", {}, {}, {}};
    Own own;
    bench::RawServer raw;
    for (int round = 0; round < kRounds; ++round)
    {
        bench::need(crowd.connect(own.port(), kAccepted) == kAccepted, "connect");
        const double mine = bench::processorSecondsOf([&] { own.turnUntil(kAccepted); });
        crowd.closeAll();
        own.turnUntil(0);
        bench::need(other.connect(raw.port(), kAccepted) == kAccepted, "connect");
        const double bare = bench::processorSecondsOf([&] { raw.accept(kAccepted); });
        other.closeAll();
        raw.closeAll();
        if (round > 0)
            addRound(row, mine, bare, kAccepted);
    }
    bench::print(row);
}

void countAccept()
{
    constexpr char kName[] = "accepting a connection, system calls";
    const auto count = [](auto make)
    {
        decltype(make()) server;
        bench::Crowd crowd;
        return bench::countCalls(
            [&]
            {
                server = make();
                bench::need(crowd.connect(server->port(), kCounted) == kCounted, "connect");
            },
            [&]
            {
                if constexpr (std::is_same_v<decltype(server), std::unique_ptr<Own>>)
                    server->turnUntil(kCounted);
                else
                    server->accept(kCounted);
            });
    };
    const long own = count([] { return std::make_unique<Own>(); });
    const long raw = count([] { return std::make_unique<bench::RawServer>(); });
    if (own < 0 || raw < 0)
        return bench::skip(kName, "this process must not trace its children");
    const double ownEach = static_cast<double>(own) / kCounted;
    const double rawEach = static_cast<double>(raw) / kCounted;
    bench::print({kName, "calls", {ownEach}, {rawEach}, {ownEach / rawEach}});
}

void benchBroadcast(bench::Crowd& crowd, bench::Crowd& other)
{
    bench::Row row{"one command to 1,000 connections, each", "ns", {}, {}, {}};
    Own own;
    bench::RawServer raw;
    fill(crowd, own.port(), kBroadcast, [&](int count) { own.turnUntil(count); });
    fill(other, raw.port(), kBroadcast, [&](int count) { raw.accept(count); });
    CCmdServerEcho echo;
    echo.m_Data = 7;
    for (int round = 0; round < kRounds; ++round)
    {
        const double mine = bench::processorSecondsOf([&] { own.sendToAll(echo); });
        crowd.drain();
        const double bare =
            bench::processorSecondsOf([&] { raw.sendToAll(bench::Crowd::packet(), bench::Crowd::kPacket); });
        other.drain();
        if (round > 0)
            addRound(row, mine, bare, kBroadcast);
    }
    bench::print(row);
    crowd.closeAll();
    own.turnUntil(0);
    other.closeAll();
}

void benchActive(bench::Crowd& crowd, bench::Crowd& other)
{
    bench::Row row{"100 of 10,000 connections active, a command", "ns", {}, {}, {}};
    Own own;
    bench::RawServer raw;
    const int count = kMany;
    fill(crowd, own.port(), count, [&](int there) { own.turnUntil(there); });
    std::vector<double> mine;
    constexpr int kStep = kMany / kActive;
    for (int round = 0; round < kRounds; ++round)
    {
        crowd.send(round % kStep, kStep);
        mine.push_back(bench::processorSecondsOf([&] { own.handle(kActive); }));
    }
    crowd.closeAll();
    own.turnUntil(0);
    fill(other, raw.port(), count, [&](int there) { raw.accept(there); });
    for (int round = 0; round < kRounds; ++round)
    {
        other.send(round % kStep, kStep);
        const double bare = bench::processorSecondsOf([&] { raw.handle(kActive); });
        if (round > 0)
            addRound(row, mine[static_cast<size_t>(round)], bare, kActive);
    }
    other.closeAll();
    bench::print(row);
}

} // namespace

int main(int argc, char** argv)
{
    bench::start(argc, argv);
    bench::raiseFileLimit();
    bench::pinToOne();
    bench::Crowd crowd;
    bench::Crowd other;
    benchAccept(crowd, other);
    countAccept();
    benchBroadcast(crowd, other);
    benchActive(crowd, other);
    return 0;
}
