// Commands over UDP, which this library encrypts, compared with ENet, which sends in clear: 4 KiB there and back, and
// small commands one way. Both ends on one core.
#include "bench/support/processes.h"
#include "bench/support/rounds.h"
#include "commands/registry.h"
#include "framework/system.h"
#include "packs/envelope.h"
#include "transport/udp_client_socket.h"
#include "transport/udp_server_socket.h"

#ifdef COMMONGROUND_BENCH_ENET
#include <enet/enet.h>
#endif

#include <sys/mman.h>
#include <unistd.h>

#include <atomic>
#include <csignal>
#include <new>

namespace
{

constexpr int kRounds = 5;
constexpr int kTurns = 3;
constexpr int kTrips = 300;
constexpr int kOneWay = 20000;
constexpr int kBatch = 200;
// Bytes of a large command's payload and of a small one's frame.
constexpr int kLarge = 4096;
constexpr int kSmall = 29;
// Bytes that wait above which a sender waits.
constexpr int kQueued = 64 * 1024;

struct Load
{
    int m_Every;
    int m_Count;
    int m_Batch;
    int m_Size;
};

// What both processes see.
struct Shared
{
    std::atomic<unsigned short> m_Port = 0;
};

Shared& shareNew()
{
    void* const place = mmap(nullptr, sizeof(Shared), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
    bench::need(place != MAP_FAILED, "mmap");
    return *new (place) Shared;
}

unsigned short portOf(const Shared& shared)
{
    for (int i = 0; i < 10000 && shared.m_Port == 0; ++i)
        usleep(1000);
    bench::need(shared.m_Port != 0, "the server's port");
    return shared.m_Port;
}

unsigned long g_Seen = 0;
unsigned long g_Every = 1;

void onCommand(CCmdHead* command, unsigned long socket, unsigned long)
{
    if (++g_Seen % g_Every == 0)
        reinterpret_cast<UdpClientSocket*>(socket)->send(*command);
}

// In the client's process: commands that leave when the reply to the previous one has come. The handler of the reply
// sends them, as a host's would and as in the rows over TCP: what it sends carries the acknowledgement.
int g_Waiting = 0;

void onBack(CCmdHead* command, unsigned long socket, unsigned long)
{
    ++g_Seen;
    if (g_Waiting > 0)
    {
        --g_Waiting;
        bench::need(reinterpret_cast<UdpClientSocket*>(socket)->send(*command), "send");
    }
}

void install(UdpClientSocket& socket, CmdHandler handler)
{
    CCmdAnalyser& analyser = socket.getCmdAnalyser();
    analyser.Install(command_id::CCmdServerEcho, CCmdServerEcho::CCmdServerEcho_Process, handler);
    analyser.Install(command_id::CCmdHomePackRequest, CCmdHomePackRequest::CCmdHomePackRequest_Process, handler);
}

class Host : public UdpServerSocket
{
public:
    void onAccept() override
    {
        const auto socket = UdpClientSocket::createInstance();
        install(*socket, onCommand);
        accept(socket);
    }
};

[[noreturn]] void serve(const Load& load, Shared& shared)
{
    g_Every = static_cast<unsigned long>(load.m_Every);
    zet::System system;
    system.init();
    const zet::Unknown::Handle_T<Host> host = new Host;
    host->start(&system);
    bench::need(host->listen(L"127.0.0.1", 0), "listen");
    shared.m_Port = host->getPort();
    for (;;)
    {
        system.tick();
        system.wait();
    }
}

std::vector<double> rounds(const std::function<void()>& round)
{
    round();
    std::vector<double> seconds;
    seconds.reserve(kRounds);
    for (int i = 0; i < kRounds; ++i)
        seconds.push_back(bench::secondsOf(round));
    return seconds;
}

std::vector<double> runOwn(const Load& load)
{
    Shared& shared = shareNew();
    const pid_t child = fork();
    if (child == 0)
        serve(load, shared);
    const unsigned short port = portOf(shared);
    zet::System system;
    system.init();
    const zet::Unknown::Handle_T<Host> own = new Host;
    own->start(&system);
    bench::need(own->listen(L"127.0.0.1", 0), "listen");
    const auto socket = UdpClientSocket::createInstance();
    install(*socket, onBack);
    bench::need(socket->connect(own, L"127.0.0.1", static_cast<int>(port), zet::Uuid()), "connect");
    while (socket->getConnectionState() == zet::UdpServer::UdpConnection::kConnecting)
    {
        system.tick();
        system.wait();
    }
    CCmdServerEcho small;
    CCmdHomePackRequest large;
    const std::vector<unsigned char> bytes(static_cast<size_t>(load.m_Size));
    large.m_PackData.Write(bytes.data(), load.m_Size);
    const CCmdHead& command = load.m_Size == kLarge ? static_cast<const CCmdHead&>(large) : small;
    const std::vector<double> seconds = rounds(
        [&]
        {
            g_Seen = 0;
            const int count = load.m_Batch > 1 ? load.m_Count : 1;
            g_Waiting = load.m_Count - count;
            int sent = 0;
            for (const auto wanted = static_cast<unsigned long>(load.m_Count / load.m_Every); g_Seen < wanted;)
            {
                if (static_cast<int>(socket->getOutputSize()) < kQueued)
                    for (int i = 0; i < load.m_Batch && sent < count; ++i, ++sent)
                        bench::need(socket->send(command), "send");
                system.tick();
                const bool isWaiting = sent == count || static_cast<int>(socket->getOutputSize()) >= kQueued;
                if (g_Seen < wanted && isWaiting)
                    system.wait();
                bench::need(socket->getConnectionState() == UdpClientSocket::kEstablished, "the connection over UDP");
            }
        });
    socket->close();
    own->close();
    system.exit();
    kill(child, SIGKILL);
    bench::reap(child);
    munmap(&shared, sizeof shared);
    return seconds;
}

#ifdef COMMONGROUND_BENCH_ENET

constexpr unsigned int kWait = 10;

ENetPacket* packetOf(int size)
{
    return enet_packet_create(nullptr, static_cast<size_t>(size), ENET_PACKET_FLAG_RELIABLE);
}

[[noreturn]] void serveEnet(const Load& load, Shared& shared)
{
    ENetAddress address{};
    enet_address_set_host_ip(&address, "127.0.0.1");
    ENetHost* const host = enet_host_create(&address, 1, 1, 0, 0);
    bench::need(host && enet_socket_get_address(host->socket, &address) == 0, "an ENet host");
    shared.m_Port = address.port;
    int seen = 0;
    for (ENetEvent event;;)
    {
        // The first call may wait; the others take what it brought.
        for (int more = enet_host_service(host, &event, kWait); more > 0; more = enet_host_check_events(host, &event))
        {
            if (event.type != ENET_EVENT_TYPE_RECEIVE)
                continue;
            if (++seen % load.m_Every == 0)
                enet_peer_send(event.peer, 0, packetOf(static_cast<int>(event.packet->dataLength)));
            enet_packet_destroy(event.packet);
        }
        enet_host_flush(host);
    }
}

std::vector<double> runEnet(const Load& load)
{
    bench::need(enet_initialize() == 0, "ENet");
    Shared& shared = shareNew();
    const pid_t child = fork();
    if (child == 0)
        serveEnet(load, shared);
    ENetAddress address{};
    enet_address_set_host_ip(&address, "127.0.0.1");
    address.port = portOf(shared);
    ENetHost* const host = enet_host_create(nullptr, 1, 1, 0, 0);
    ENetPeer* const peer = host ? enet_host_connect(host, &address, 1, 0) : nullptr;
    ENetEvent event;
    bench::need(peer && enet_host_service(host, &event, 5000) > 0 && event.type == ENET_EVENT_TYPE_CONNECT, "connect");
    const std::vector<double> seconds = rounds(
        [&]
        {
            int back = 0;
            for (int sent = 0; back < load.m_Count / load.m_Every;)
            {
                const bool isNext = load.m_Batch > 1 || sent == back;
                if (isNext && peer->reliableDataInTransit < kQueued)
                    for (int i = 0; i < load.m_Batch && sent < load.m_Count; ++i, ++sent)
                        bench::need(enet_peer_send(peer, 0, packetOf(load.m_Size)) == 0, "send");
                const bool isWaiting =
                    load.m_Batch == 1 || sent == load.m_Count || peer->reliableDataInTransit >= kQueued;
                for (int more = enet_host_service(host, &event, isWaiting ? kWait : 0); more > 0;
                     more = enet_host_check_events(host, &event))
                {
                    bench::need(event.type == ENET_EVENT_TYPE_RECEIVE, "the connection of ENet");
                    ++back;
                    enet_packet_destroy(event.packet);
                }
            }
        });
    enet_host_destroy(host);
    kill(child, SIGKILL);
    bench::reap(child);
    munmap(&shared, sizeof shared);
    return seconds;
}

constexpr char kMissing[] = "";

#else

std::vector<double> runEnet(const Load&)
{
    return {};
}

constexpr char kMissing[] = "ENet is not installed (libenet-dev)";

#endif

void compare(const char* name, const Load& load)
{
    if (*kMissing)
        bench::note(std::string(kMissing) + ": nothing to compare with");
    bench::Row row{name, "ns", {}, {}, {}};
    for (int turn = 0; turn < kTurns; ++turn)
    {
        const std::vector<double> own = runOwn(load);
        const std::vector<double> floor = runEnet(load);
        for (const double each : own)
            row.m_Own.push_back(each / load.m_Count * 1e9);
        for (const double each : floor)
            row.m_Floor.push_back(each / load.m_Count * 1e9);
        if (!floor.empty())
            row.m_Ratios.push_back(bench::median(own) / bench::median(floor));
    }
    bench::print(row);
}

} // namespace

int main(int argc, char** argv)
{
    bench::start(argc, argv);
    bench::pinToOne();
    compare("4 KiB there and back over UDP, against ENet", {1, kTrips, 1, kLarge});
    compare("small commands one way over UDP, against ENet", {kOneWay, kOneWay, kBatch, kSmall});
    return 0;
}
