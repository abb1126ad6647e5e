// The two processes of scripts/vanished: a server that waits for the end of its connections, and a client that only
// keeps them. vanished_peers server ADDRESS prints its ports, "established" once a peer has connected over TCP and UDP,
// and the cause of each end; its exit code is 0 if both connections ended as timed out. vanished_peers client ADDRESS
// TCP_PORT UDP_PORT connects, and runs until it is killed.
#include "framework/stopwatch.h"
#include "framework/string_helper.h"
#include "framework/uuid.h"
#include "net/limits.h"
#include "transport/framework_server_socket.h"
#include "transport/udp_client_socket.h"
#include "transport/udp_server_socket.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace
{

// Milliseconds that a peer may be silent, and after which the test has failed.
constexpr unsigned int kSilence = 2000;
constexpr unsigned int kMostTime = 30000;

// The connections of one process.
struct State
{
    void note(const char* name, const zet::EndCause& cause)
    {
        std::printf("%s: %s\n", name, zet::StringHelper::wideToUtf8(cause.getText()).getBuffer());
        std::fflush(stdout);
        ++m_Ended;
        m_TimedOut += cause.m_Code == zet::EndCause::kTimedOut;
    }

    int m_Established = 0;
    int m_Ended = 0;
    int m_TimedOut = 0;
};

class TcpPeer final : public CFrameworkClientSocket
{
public:
    explicit TcpPeer(State& state) : CFrameworkClientSocket(static_cast<CCmdAnalyserSocket*>(nullptr)), m_State(state)
    {
    }
    void onEstablished() override { ++m_State.m_Established; }
    void onEnd(const zet::EndCause& cause) override { m_State.note("tcp", cause); }

private:
    State& m_State;
};

class UdpPeer final : public UdpClientSocket
{
public:
    explicit UdpPeer(State& state) : m_State(state) {}
    void onEstablished() override { ++m_State.m_Established; }
    void onEnd(const zet::EndCause& cause) override { m_State.note("udp", cause); }

private:
    State& m_State;
};

class TcpPort final : public CFrameworkServerSocket
{
public:
    explicit TcpPort(State& state) : CFrameworkServerSocket(L"", 0), m_State(state) {}
    void onAccept() override { accept(new TcpPeer(m_State)); }

private:
    State& m_State;
};

class UdpPort final : public UdpServerSocket
{
public:
    explicit UdpPort(State& state) : m_State(state) {}
    void onAccept() override { accept(new UdpPeer(m_State)); }

private:
    State& m_State;
};

// Ticks until the condition holds; false if it does not in time.
template <class Condition>
bool run(zet::System& system, Condition condition)
{
    const zet::Stopwatch watch;
    while (!condition())
    {
        if (!watch.isBelow(kMostTime))
            return false;
        system.tick();
        system.wait();
    }
    return true;
}

int serve(const wchar_t* address)
{
    const int connections = zet::UdpServer::isAvailable() ? 2 : 1;
    State state;
    zet::System system;
    system.init();
    const zet::Unknown::Handle_T<TcpPort> tcp = new TcpPort(state);
    const zet::Unknown::Handle_T<UdpPort> udp = new UdpPort(state);
    zet::NetLimits limits;
    limits.m_ProbeAfter = 1;
    limits.m_ProbeEvery = 1;
    limits.m_Probes = 1;
    limits.m_UnacknowledgedTime = kSilence;
    tcp->setLimits(limits);
    zet::UdpServer::Settings settings;
    settings.m_IdleTimeout = kSilence;
    settings.m_KeepAlive = kSilence / 4;
    udp->setSettings(settings);
    tcp->start(&system);
    udp->start(&system);
    if (!tcp->setBindAddress(address) || !tcp->listen(0, 5) ||
        (connections > 1 && !udp->UdpServerSocket::listen(static_cast<unsigned short>(0))))
        return 1;
    std::printf("%d %d\n", tcp->zet::TcpServer::getPort(), connections > 1 ? udp->zet::UdpServer::getPort() : 0);
    std::fflush(stdout);
    const bool isUp = run(system, [&] { return state.m_Established == connections; });
    std::puts(isUp ? "established" : "no peer has connected");
    std::fflush(stdout);
    // While the peers are there, nothing ends: twice the silence.
    const zet::Stopwatch watch;
    run(system, [&] { return !isUp || state.m_Ended > 0 || !watch.isBelow(2 * kSilence); });
    std::puts(state.m_Ended == 0 ? "alive" : "ended too early");
    std::fflush(stdout);
    const bool isOver = isUp && state.m_Ended == 0 && run(system, [&] { return state.m_Ended == connections; });
    tcp->close();
    udp->close();
    system.exit();
    return isOver && state.m_TimedOut == connections ? 0 : 1;
}

int connectTo(const wchar_t* address, unsigned short tcpPort, unsigned short udpPort)
{
    State state;
    zet::System system;
    system.init();
    const zet::Unknown::Handle_T<TcpPeer> tcp = new TcpPeer(state);
    const zet::Unknown::Handle_T<UdpPort> port = new UdpPort(state);
    const zet::Unknown::Handle_T<UdpPeer> udp = new UdpPeer(state);
    zet::UdpServer::Settings settings;
    settings.m_KeepAlive = kSilence / 4;
    port->setSettings(settings);
    tcp->start(&system);
    port->start(&system);
    zet::Uuid id;
    zet::uuid_create(id);
    bool isGood = tcp->connect(address, tcpPort, true);
    if (udpPort != 0)
        isGood = isGood && port->UdpServerSocket::listen(static_cast<unsigned short>(0)) &&
                 udp->connect(port.get(), address, static_cast<int>(udpPort), id);
    if (isGood)
        run(system, [] { return false; });
    return 1;
}

} // namespace

int main(int argc, char** argv)
{
    const zet::String_T<wchar_t> address = zet::StringHelper::utf8ToWide(argc > 2 ? argv[2] : "");
    if (argc == 3 && std::strcmp(argv[1], "server") == 0)
        return serve(address);
    if (argc == 5 && std::strcmp(argv[1], "client") == 0)
        return connectTo(address, static_cast<unsigned short>(std::atoi(argv[3])),
                         static_cast<unsigned short>(std::atoi(argv[4])));
    std::fputs("usage: vanished_peers server ADDRESS | client ADDRESS TCP_PORT UDP_PORT\n", stderr);
    return 2;
}
