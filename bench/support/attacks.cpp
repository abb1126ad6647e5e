#include "bench/support/attacks.h"

#include "commands/registry.h"
#include "framework/system.h"
#include "net/limits.h"
#include "net/tcp/stream.h"
#include "net/tls/context.h"
#include "packaging/cmd_packager.h"

#ifdef COMMONGROUND_BENCH_TLS
#include <gnutls/gnutls.h>
#endif

#include <fcntl.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cstdio>
#include <cstring>
#include <random>

namespace bench
{

namespace
{

sockaddr_in loopback(unsigned short port)
{
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(port);
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    return address;
}

int connectTo(unsigned short port)
{
    const int handle = socket(AF_INET, SOCK_STREAM, 0);
    const sockaddr_in address = loopback(port);
    if (handle >= 0 && connect(handle, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0)
        return handle;
    close(handle);
    return -1;
}

// Sends the piece repeatedly; reconnects if the server closes the connection.
void flood(Shared& shared, unsigned short port, const std::string& piece)
{
    std::string bytes;
    while (bytes.size() < 256 * 1024)
        bytes += piece;
    for (int handle = -1;;)
    {
        if (handle < 0)
            handle = connectTo(port);
        // The next call continues a partly sent piece, so that packets stay whole.
        size_t sent = 0;
        while (handle >= 0 && sent < bytes.size())
        {
            const ssize_t count = send(handle, bytes.data() + sent, bytes.size() - sent, MSG_NOSIGNAL);
            if (count <= 0)
            {
                close(handle);
                handle = -1;
                break;
            }
            sent += static_cast<size_t>(count);
            shared.m_Sent += static_cast<unsigned long long>(count);
        }
    }
}

std::string packetOf(const std::string& frame)
{
    std::string packet;
    for (int i = 0; i < 4; ++i)
        packet += static_cast<char>(frame.size() >> 8 * i);
    return packet + frame;
}

void sendEmptyPackets(Shared& shared)
{
    flood(shared, shared.m_Port, std::string(4, 0));
}

template <class Command>
std::string packetOfCommand()
{
    CCmdPackager packager;
    Command().Write(&packager);
    int size = 0;
    const unsigned char* const frame = packager.FrameInPlace(size);
    return packetOf(std::string(reinterpret_cast<const char*>(frame), static_cast<size_t>(size)));
}

void sendTinyCommands(Shared& shared)
{
    flood(shared, shared.m_Port, packetOfCommand<CCmdServerEcho>());
}

void sendMalformedFrames(Shared& shared)
{
    flood(shared, shared.m_Port, packetOf(std::string(1, '\xFF')));
}

// The server has no handler for these.
void sendUnknownCommands(Shared& shared)
{
    flood(shared, shared.m_Port, packetOfCommand<CCmdServerHello>());
}

// Connections that send only the first message of a handshake.
void sendHellos(Shared& shared)
{
    // The client hello of this library, recorded by a port that only listens.
    std::string hello;
    {
        const int listener = socket(AF_INET, SOCK_STREAM, 0);
        sockaddr_in address = loopback(0);
        socklen_t length = sizeof address;
        if (bind(listener, reinterpret_cast<sockaddr*>(&address), sizeof address) != 0)
            std::perror("bind");
        listen(listener, 1);
        getsockname(listener, reinterpret_cast<sockaddr*>(&address), &length);
        zet::System system;
        system.init();
        const zet::Unknown::Handle_T<zet::TlsContext> context = new zet::TlsContext;
        context->addSystemTrust();
        const zet::Unknown::Handle_T<zet::TcpStream> stream = new zet::TcpStream;
        stream->start(&system);
        stream->setTlsContext(context);
        stream->connect(L"127.0.0.1", ntohs(address.sin_port), false);
        const int handle = accept(listener, nullptr, nullptr);
        for (int i = 0; i < 100; ++i)
        {
            system.tick();
            char bytes[4096];
            const ssize_t count = recv(handle, bytes, sizeof bytes, MSG_DONTWAIT);
            if (count > 0)
                hello.append(bytes, static_cast<size_t>(count));
        }
        stream->close();
        system.exit();
        close(handle);
        close(listener);
    }
    std::vector<int> handles(512, -1);
    for (size_t i = 0; !hello.empty(); i = (i + 1) % handles.size())
    {
        if (handles[i] >= 0)
        {
            char answer;
            shared.m_Answers += recv(handles[i], &answer, 1, MSG_DONTWAIT) == 1;
            // Reset instead of an orderly close, which would leave ports in TIME_WAIT.
            const linger hard{1, 0};
            setsockopt(handles[i], SOL_SOCKET, SO_LINGER, &hard, sizeof hard);
            close(handles[i]);
        }
        handles[i] = connectTo(shared.m_SecurePort);
        if (handles[i] >= 0 && send(handles[i], hello.data(), hello.size(), MSG_NOSIGNAL) > 0)
            shared.m_Sent += hello.size();
    }
}

#ifdef COMMONGROUND_BENCH_TLS
// An empty packet in every four records, many records per send.
void sendTinyRecords(Shared& shared)
{
    for (;;)
    {
        const int handle = connectTo(shared.m_SecurePort);
        gnutls_session_t session = nullptr;
        gnutls_certificate_credentials_t credentials = nullptr;
        gnutls_certificate_allocate_credentials(&credentials);
        gnutls_init(&session, GNUTLS_CLIENT);
        gnutls_set_default_priority(session);
        gnutls_credentials_set(session, GNUTLS_CRD_CERTIFICATE, credentials);
        gnutls_transport_set_int(session, handle);
        int result = GNUTLS_E_AGAIN;
        while (result < 0 && gnutls_error_is_fatal(result) == 0)
            result = gnutls_handshake(session);
        while (result >= 0)
        {
            std::string sealed;
            gnutls_transport_set_ptr(session, &sealed);
            gnutls_transport_set_push_function(session,
                                               [](gnutls_transport_ptr_t place, const void* data, size_t size)
                                               {
                                                   static_cast<std::string*>(place)->append(
                                                       static_cast<const char*>(data), size);
                                                   return static_cast<ssize_t>(size);
                                               });
            const char zero = 0;
            while (sealed.size() < 64 * 1024 && gnutls_record_send(session, &zero, 1) == 1)
                continue;
            if (send(handle, sealed.data(), sealed.size(), MSG_NOSIGNAL) != static_cast<ssize_t>(sealed.size()))
                break;
            shared.m_Sent += sealed.size();
        }
        gnutls_deinit(session);
        gnutls_certificate_free_credentials(credentials);
        close(handle);
    }
}
#else
void sendTinyRecords(Shared&) {}
#endif

void floodDatagrams(Shared& shared, const std::vector<std::string>& packets)
{
    const int handle = socket(AF_INET, SOCK_DGRAM, 0);
    const sockaddr_in address = loopback(shared.m_UdpPort);
    for (size_t i = 0;; i = (i + 1) % packets.size())
        if (sendto(handle, packets[i].data(), packets[i].size(), 0, reinterpret_cast<const sockaddr*>(&address),
                   sizeof address) > 0)
            shared.m_Sent += packets[i].size();
}

// Packets with long headers, as far as they can be built without keys.
std::vector<std::string> longPackets(const char (&version)[5])
{
    std::mt19937 random{7};
    std::vector<std::string> packets(64);
    for (std::string& packet : packets)
    {
        packet = std::string("\xC3") + std::string(version, 4) + '\x10';
        while (packet.size() < 1200)
            packet += static_cast<char>(random());
        // An id of 8 bytes, no token, and the length of the rest.
        packet[22] = '\x08';
        packet[31] = 0;
        packet[32] = static_cast<char>(0x40 | (1200 - 34) >> 8);
        packet[33] = static_cast<char>(1200 - 34);
    }
    return packets;
}

void sendFirstPackets(Shared& shared)
{
    floodDatagrams(shared, longPackets("\0\0\0\1"));
}

void sendUnknownVersions(Shared& shared)
{
    floodDatagrams(shared, longPackets("\x0A\x0A\x0A\x0A"));
}

void sendUserData(Shared& shared)
{
    floodDatagrams(shared, {std::string(64, 'x')});
}

// Connections from an address of their own, which the server closes beyond its limit.
void openConnections(Shared& shared)
{
    std::vector<int> handles(400, -1);
    for (size_t i = 0;; i = (i + 1) % handles.size())
    {
        char byte;
        const bool isOver = handles[i] < 0 || recv(handles[i], &byte, 1, MSG_DONTWAIT) == 0;
        if (!isOver && errno == EAGAIN)
            continue;
        close(handles[i]);
        handles[i] = socket(AF_INET, SOCK_STREAM, 0);
        sockaddr_in own = loopback(0);
        own.sin_addr.s_addr = htonl(INADDR_LOOPBACK + 1);
        const sockaddr_in address = loopback(shared.m_Port);
        if (bind(handles[i], reinterpret_cast<const sockaddr*>(&own), sizeof own) != 0 ||
            connect(handles[i], reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0)
        {
            close(handles[i]);
            handles[i] = -1;
        }
    }
}

// Silent connections, each opened anew when the server has ended it.
void stayIdle(Shared& shared)
{
    using Clock = std::chrono::steady_clock;
    struct Idle
    {
        int m_Handle = -1;
        Clock::time_point m_Since;
    };
    std::vector<Idle> all(300);
    for (;;)
    {
        for (Idle& each : all)
        {
            char byte;
            if (each.m_Handle >= 0 && recv(each.m_Handle, &byte, 1, MSG_DONTWAIT) < 0 && errno == EAGAIN)
                continue;
            if (each.m_Handle >= 0)
            {
                const auto life = std::chrono::duration_cast<std::chrono::milliseconds>(Clock::now() - each.m_Since);
                shared.m_LongestLife =
                    std::max<unsigned long long>(shared.m_LongestLife, static_cast<unsigned long long>(life.count()));
                ++shared.m_Answers;
                close(each.m_Handle);
            }
            each = {connectTo(shared.m_Port), Clock::now()};
        }
        usleep(1000);
    }
}

bool isAlways(const Shared&)
{
    return true;
}

double perSecond(unsigned long long count, double seconds)
{
    return static_cast<double>(count) / seconds;
}

const size_t kEchoSize = packetOfCommand<CCmdServerEcho>().size();

const Limit kConnectionsLimit{"connections of an address", 50,
                              [](zet::NetLimits& limits) { limits.m_ConnectionsPerAddress = 50; },
                              // One is the client's.
                              [](const Shared& shared, double) { return static_cast<double>(shared.m_Peak) - 1; }};
const Limit kPacketsLimit{"commands per second", 2000,
                          [](zet::NetLimits& limits)
                          {
                              limits.m_PacketsPerSecond = 2000;
                              limits.m_PacketBurst = 200;
                          },
                          [](const Shared& shared, double seconds) { return perSecond(shared.m_Handled, seconds); }};
const Limit kBytesLimit{"bytes per second", 100000,
                        [](zet::NetLimits& limits)
                        {
                            limits.m_BytesPerSecond = 100000;
                            limits.m_ByteBurst = 10000;
                        },
                        [](const Shared& shared, double seconds)
                        { return perSecond(shared.m_Handled * kEchoSize, seconds); }};
const Limit kRefusingLimit{"commands per second, others refused", 2000,
                           [](zet::NetLimits& limits)
                           {
                               limits.m_PacketsPerSecond = 2000;
                               limits.m_PacketBurst = 200;
                               limits.m_OverRate = zet::NetLimits::kRefuse;
                           },
                           [](const Shared& shared, double seconds) { return perSecond(shared.m_Handled, seconds); }};
const Limit kLinesLimit{"log lines per second", 2,
                        [](zet::NetLimits& limits)
                        {
                            limits.m_LogLines = 2;
                            limits.m_LogLinesPerSecond = 2;
                        },
                        [](const Shared& shared, double seconds) { return perSecond(shared.m_Lines, seconds); }};
const Limit kIdleLimit{"ms of silence", 500, [](zet::NetLimits& limits) { limits.m_IdleTime = 500; },
                       [](const Shared& shared, double) { return static_cast<double>(shared.m_LongestLife); }};
const Limit kStepsLimit{
    "answered hellos per tick, mean", 1, [](zet::NetLimits& limits) { limits.m_HandshakeSteps = 1; },
    [](const Shared& shared, double) {
        return static_cast<double>(shared.m_Answers) /
               static_cast<double>(std::max<unsigned long long>(shared.m_Ticks, 1));
    }};

} // namespace

const std::vector<Attack>& attacks()
{
    static const std::vector<Attack> all = {
        {"empty packets", sendEmptyPackets, [](const Shared&) { return true; }},
        {"tiny commands", sendTinyCommands, [](const Shared&) { return true; }},
        {"unknown commands", sendUnknownCommands, [](const Shared&) { return true; }},
        {"malformed frames", sendMalformedFrames, [](const Shared&) { return true; }},
        {"TLS hellos", sendHellos, [](const Shared& shared) { return shared.m_SecurePort != 0; }},
        {"TLS records of one byte", sendTinyRecords, [](const Shared& shared) { return shared.m_SecurePort != 0; }},
        {"UDP first packets", sendFirstPackets, [](const Shared& shared) { return shared.m_UdpPort != 0; }},
        {"UDP unknown versions", sendUnknownVersions, [](const Shared& shared) { return shared.m_UdpPort != 0; }},
        {"UDP user data", sendUserData, [](const Shared& shared) { return shared.m_UdpPort != 0; }},
        {"limit: connections", openConnections, isAlways, &kConnectionsLimit},
        {"limit: packet rate, delayed", sendTinyCommands, isAlways, &kPacketsLimit},
        {"limit: packet rate, refused", sendTinyCommands, isAlways, &kRefusingLimit},
        {"limit: byte rate, delayed", sendTinyCommands, isAlways, &kBytesLimit},
        {"limit: log lines", sendMalformedFrames, isAlways, &kLinesLimit},
        {"limit: idle time", stayIdle, isAlways, &kIdleLimit},
        {"limit: handshake steps", sendHellos, [](const Shared& shared) { return shared.m_SecurePort != 0; },
         &kStepsLimit},
    };
    return all;
}

} // namespace bench
