#include "bench/support/trips.h"

#include "bench/support/floor_codec.h"
#include "bench/support/loopback.h"
#include "bench/support/processes.h"
#include "bench/support/raw_echo.h"
#include "bench/support/rounds.h"
#include "commands/registry.h"
#include "commands/zone_tunnel.h"

#include <sys/socket.h>
#include <unistd.h>

#include <array>
#include <cstring>
#include <memory>

namespace bench
{

namespace
{

constexpr int kRounds = 5;
constexpr int kTurns = 5;
// Pending bytes above which the sender waits.
constexpr size_t kQueued = 1024 * 1024;

// Bytes before a carried text: packet length, frame head, family head, size word; and its empty text after it.
constexpr int kAround = 4 + 6 + 21 + 4 + 1;
constexpr int kEchoPacket = 4 + 6 + 25;

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

unsigned long g_Seen = 0;

void onCommand(CCommandSocket* socket, CCmdHead* command, unsigned long every, unsigned long)
{
    if (++g_Seen % every == 0)
        socket->send(*command);
}

void install(CCmdAnalyserSocket& analyser, SocketCmdHandler handler, int every)
{
    const auto first = static_cast<unsigned long>(every);
    analyser.Install(command_id::CCmdServerEcho, CCmdServerEcho::CCmdServerEcho_ProcessSocket, handler, first, 0);
    analyser.Install(command_id::CCmdGZ_clientToServer, CCmdGZ_clientToServer::CCmdGZ_clientToServer_ProcessSocket,
                     handler, first, 0);
}

bool serve(const Trip& trip, int ports)
{
    CCmdAnalyserSocket analyser;
    install(analyser, onCommand, trip.m_Every);
    zet::System system;
    system.init();
    const zet::Unknown::Handle_T<Server> server = new Server(&analyser);
    server->start(&system);
    const bool isReady = (!trip.m_Identity || trip.m_Identity->give(*server)) && server->listen(0, 5);
    const int port = isReady ? server->zet::TcpServer::getPort() : 0;
    if (write(ports, &port, sizeof port) != sizeof port)
        return false;
    for (bool hasCome = false; !hasCome || server->GetClientCount() > 0;)
    {
        system.tick();
        hasCome = hasCome || server->GetClientCount() > 0;
        system.wait();
    }
    server->close();
    system.exit();
    return true;
}

std::unique_ptr<CCmdHead> commandOf(const Trip& trip)
{
    if (trip.m_Carried == 0)
    {
        auto echo = std::make_unique<CCmdServerEcho>();
        echo->m_Data = 7;
        return echo;
    }
    auto tunnel = std::make_unique<CCmdGZ_clientToServer>();
    tunnel->m_Data1.setBufferSize(trip.m_Carried);
    return tunnel;
}

std::vector<double> rounds(const std::function<void()>& round)
{
    // The first one warms up.
    round();
    std::vector<double> seconds;
    seconds.reserve(kRounds);
    for (int i = 0; i < kRounds; ++i)
        seconds.push_back(secondsOf(round));
    return seconds;
}

// A loop of both ends by hand: what the child does with each packet, and what a round of this process is.
template <class Far, class Near>
std::vector<double> runRaw(Far far, Near near)
{
    RawPair pair;
    const pid_t child = inChild(
        [&]
        {
            close(pair.m_Near);
            RawEnd end(pair.m_Far);
            while (end.fill())
            {
                size_t size = 0;
                while (const unsigned char* packet = end.next(size))
                    far(end, packet, size);
                if (!end.flush())
                    break;
            }
            return true;
        });
    close(pair.m_Far);
    pair.m_Far = -1;
    RawEnd end(pair.m_Near);
    const std::vector<double> seconds = rounds([&] { near(end); });
    shutdown(pair.m_Near, SHUT_RDWR);
    finish(child);
    return seconds;
}

// Sends a round of packets, each put by the given function, and waits for the replies.
template <class Put>
void sendRound(RawEnd& end, const Trip& trip, Put put)
{
    int back = 0;
    for (int sent = 0; back < trip.m_Count / trip.m_Every;)
    {
        for (int i = 0; i < trip.m_Batch && sent < trip.m_Count; ++i, ++sent)
            put();
        need(end.flush(), "send");
        if (trip.m_Batch > 1 && sent < trip.m_Count)
            continue;
        need(end.fill(), "recv");
        size_t size = 0;
        while (end.next(size))
            ++back;
    }
}

// An echo as a program without this library would hold it.
struct Echo
{
    unsigned m_Index = 0;
    unsigned char m_Address[16] = {};
    std::wstring m_Name;
    uint32_t m_Data = 0;
};

size_t encode(std::vector<unsigned char>& space, const Echo& echo)
{
    static constexpr unsigned char kHead[] = {
        31, 0, 0, 0, command_id::CCmdServerEcho & 0xFF, command_id::CCmdServerEcho >> 8, 25 << 2, 0, 0, 0};
    FloorWriter out(space);
    out.bytes(kHead, sizeof kHead);
    out.u16(2);
    out.u16(echo.m_Index);
    out.bytes(echo.m_Address, sizeof echo.m_Address);
    out.text(echo.m_Name);
    out.u32(echo.m_Data);
    return out.size();
}

struct Handled
{
    unsigned long m_Count = 0;
    unsigned long m_Sum = 0;
};

void handleEcho(const unsigned char* payload, size_t size, Handled& handled)
{
    FloorReader in(payload, size);
    Echo echo;
    const bool isVersion = in.u16() == 2;
    echo.m_Index = in.u16();
    in.bytes(echo.m_Address, sizeof echo.m_Address);
    in.text(echo.m_Name);
    echo.m_Data = in.u32();
    keep(echo);
    if (isVersion && in.good())
    {
        ++handled.m_Count;
        handled.m_Sum += echo.m_Data;
    }
}

using RawHandler = void (*)(const unsigned char*, size_t, Handled&);

} // namespace

std::vector<double> runOwn(const Trip& trip)
{
    int ports[2];
    need(pipe(ports) == 0, "pipe");
    const pid_t child = inChild([&] { return serve(trip, ports[1]); });
    int port = 0;
    need(read(ports[0], &port, sizeof port) == sizeof port && port != 0, "the server's port");
    close(ports[0]);
    close(ports[1]);

    CCmdAnalyserSocket analyser;
    install(analyser, onBack, 0);
    zet::System system;
    system.init();
    const zet::Unknown::Handle_T<Client> client = new Client(&analyser);
    client->start(&system);
    need(!trip.m_Identity || trip.m_Identity->trust(*client), "a TLS context");
    client->connect(L"127.0.0.1", static_cast<unsigned short>(port), false);
    while (client->getConnectionState() == zet::TcpConnection::kConnecting)
    {
        system.tick();
        system.wait();
    }
    const std::unique_ptr<CCmdHead> command = commandOf(trip);
    const std::vector<double> seconds = rounds(
        [&]
        {
            g_Back = 0;
            const auto wanted = static_cast<unsigned long>(trip.m_Count / trip.m_Every);
            // A single command is sent after the previous reply, a batch as the queue empties.
            int left = trip.m_Batch > 1 ? trip.m_Count : 1;
            g_Waiting = trip.m_Count - left;
            while (g_Back < wanted)
            {
                if (client->getOutputSize() < kQueued)
                    for (int i = 0; i < trip.m_Batch && left > 0; ++i, --left)
                        need(client->send(*command), "send");
                system.tick();
                if (g_Back < wanted && (left == 0 || client->getOutputSize() >= kQueued))
                    system.wait();
                need(!client->isInvalid(), "the connection");
            }
        });
    client->close();
    system.exit();
    finish(child);
    return seconds;
}

std::vector<double> runBare(const Trip& trip)
{
    const int size = trip.m_Carried == 0 ? kEchoPacket : kAround + trip.m_Carried;
    std::vector<unsigned char> packet(static_cast<size_t>(size));
    for (int i = 0; i < 4; ++i)
        packet[static_cast<size_t>(i)] = static_cast<unsigned char>((size - 4) >> 8 * i);
    int seen = 0;
    return runRaw(
        [&](RawEnd& end, const unsigned char* bytes, size_t length)
        {
            if (++seen % trip.m_Every == 0)
                end.put(bytes, length);
        },
        [&](RawEnd& end) { sendRound(end, trip, [&] { end.put(packet.data(), packet.size()); }); });
}

std::vector<double> runByHand(const Trip& trip)
{
    constexpr size_t kIds = 0x10000;
    constexpr size_t kHead = 4 + 6;
    std::vector<RawHandler> handlers(kIds, nullptr);
    handlers[command_id::CCmdServerEcho] = handleEcho;
    Handled handled;
    std::vector<unsigned char> space(256);
    Echo echo;
    return runRaw(
        [&](RawEnd& end, const unsigned char* packet, size_t size)
        {
            if (size < kHead)
                return;
            const size_t id = packet[4] | static_cast<size_t>(packet[5]) << 8;
            if (handlers[id])
                handlers[id](packet + kHead, size - kHead, handled);
            if (handled.m_Count % static_cast<unsigned long>(trip.m_Every) == 0)
                end.put(packet, size);
        },
        [&](RawEnd& end)
        {
            sendRound(end, trip,
                      [&]
                      {
                          ++echo.m_Data;
                          end.put(space.data(), encode(space, echo));
                      });
        });
}

void compareTrips(const char* name, const Trip& trip, Run floor)
{
    Row row{name, "ns", {}, {}, {}};
    for (int turn = 0; turn < kTurns; ++turn)
    {
        const std::vector<double> own = runOwn(trip);
        const std::vector<double> bare = floor(trip);
        if (bare.empty())
            return skip(name, "nothing to compare with in this build");
        for (size_t i = 0; i < own.size(); ++i)
        {
            row.m_Own.push_back(own[i] / trip.m_Count * 1e9);
            row.m_Floor.push_back(bare[i] / trip.m_Count * 1e9);
        }
        row.m_Ratios.push_back(median(own) / median(bare));
    }
    print(row);
}

} // namespace bench
