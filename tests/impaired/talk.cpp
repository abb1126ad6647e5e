#include "tests/impaired/talk.h"

#include "net/tls/context.h"
#include "tests/support/udp_loopback.h"

#include <poll.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>

namespace impaired
{

namespace
{

using Clock = std::chrono::steady_clock;
using test::NoteAnalyser;
using test::NoteCommand;
using TlsHandle = zet::Unknown::Handle_T<zet::TlsContext>;

// Milliseconds for a connection to be established; the plan's own limit ends it earlier.
constexpr unsigned int kBeginTime = 60000;

double millisecondsSince(Clock::time_point begin)
{
    return std::chrono::duration<double, std::milli>(Clock::now() - begin).count();
}

bool isReadable(int handle)
{
    pollfd wait{handle, POLLIN, 0};
    return poll(&wait, 1, 0) > 0;
}

// The client's side of a plan, for any transport.
class Asker
{
public:
    explicit Asker(const Plan& plan) : m_Plan(plan) {}

    // Sends the next command, if one is due.
    bool wantsToSend() const
    {
        const int window = m_Sent < m_Plan.m_Singles ? 1 : m_Plan.m_Window;
        return m_Sent < m_Plan.m_Singles + m_Plan.m_Streamed && m_Sent - m_Echoed < window &&
               (m_Sent != m_Plan.m_Singles || m_Echoed == m_Sent);
    }
    NoteCommand next()
    {
        const bool isSingle = m_Sent < m_Plan.m_Singles;
        m_Asked = Clock::now();
        if (m_Sent == m_Plan.m_Singles)
            m_StreamBegun = m_Asked;
        return NoteCommand(m_Sent++, isSingle ? m_Plan.m_SingleBytes : m_Plan.m_StreamedBytes);
    }
    void onEcho(const NoteCommand& note)
    {
        const bool isSingle = m_Echoed < m_Plan.m_Singles;
        if (note.m_Number != m_Echoed || note.m_Ballast != (isSingle ? m_Plan.m_SingleBytes : m_Plan.m_StreamedBytes))
            m_Fault = "echo " + std::to_string(note.m_Number) + " in place of " + std::to_string(m_Echoed);
        if (m_Echoed == 0)
            m_First = millisecondsSince(m_Begun);
        else if (isSingle)
            m_Times.push_back(millisecondsSince(m_Asked));
        ++m_Echoed;
        if (isOver())
            m_StreamTime = millisecondsSince(m_StreamBegun);
    }
    bool isOver() const { return m_Echoed >= m_Plan.m_Singles + m_Plan.m_Streamed; }
    bool isEnough() const { return isOver() || !m_Fault.empty() || millisecondsSince(m_Begun) > m_Plan.m_TimeLimit; }

    // Until everything is sent and received, or a fault.
    template <class Socket>
    void run(zet::System& system, Socket& socket)
    {
        while (!isEnough())
        {
            while (m_Fault.empty() && wantsToSend())
                if (!socket.send(next()))
                    m_Fault = "the connection ended";
            system.tick();
            system.wait();
            const auto state = socket.getConnectionState();
            if (state != Socket::kConnecting && state != Socket::kEstablished && m_Fault.empty() && !isOver())
                m_Fault = "the connection ended";
        }
    }

    Outcome outcome()
    {
        Outcome outcome;
        outcome.m_Fault = m_Fault;
        outcome.m_Echoes = m_Echoed;
        if (m_Fault.empty() && !isOver())
            outcome.m_Fault = "only " + std::to_string(m_Echoed) + " echoes in time";
        outcome.m_Begin = m_First;
        std::sort(m_Times.begin(), m_Times.end());
        if (!m_Times.empty())
        {
            outcome.m_Median = m_Times[m_Times.size() / 2];
            outcome.m_High = m_Times[std::min(m_Times.size() - 1, m_Times.size() * 99 / 100)];
        }
        if (m_StreamTime > 0)
            outcome.m_Throughput = m_Plan.m_Streamed * (m_Plan.m_StreamedBytes / 1000.0) / (m_StreamTime / 1000);
        return outcome;
    }

    std::string m_Fault;

private:
    const Plan& m_Plan;
    int m_Sent = 0;
    int m_Echoed = 0;
    const Clock::time_point m_Begun = Clock::now();
    Clock::time_point m_Asked;
    Clock::time_point m_StreamBegun;
    double m_First = 0;
    double m_StreamTime = 0;
    std::vector<double> m_Times;
};

// The server's side.
class Echoer
{
public:
    template <class Socket>
    void onCommand(Socket& socket, const NoteCommand& note)
    {
        m_IsInOrder = m_IsInOrder && note.m_Number == m_Expected++;
        socket.send(note);
    }
    bool run(zet::System& system, unsigned short port, int ready, int stop)
    {
        if (write(ready, &port, sizeof port) != sizeof port)
            return false;
        while (!isReadable(stop))
        {
            system.tick();
            system.wait();
        }
        return m_IsInOrder;
    }

private:
    int m_Expected = 0;
    bool m_IsInOrder = true;
};

TlsHandle serverContext(const Secrets& secrets)
{
    const TlsHandle context = new zet::TlsContext;
    context->setCertificate(secrets.m_Certificate.m_Chain.c_str(), secrets.m_Certificate.m_Key.c_str());
    context->setHandshakeTime(kBeginTime);
    return context;
}

TlsHandle clientContext(const Secrets& secrets)
{
    const TlsHandle context = new zet::TlsContext;
    context->addTrust(secrets.m_Authority.c_str());
    context->setHandshakeTime(kBeginTime);
    return context;
}

bool serveTcp(TlsHandle context, int ready, int stop)
{
    Echoer echoer;
    NoteAnalyser analyser([&](CCommandSocket* socket, const NoteCommand& note) { echoer.onCommand(*socket, note); });
    zet::System system;
    system.init();
    const zet::Unknown::Handle_T<test::Server> server = new test::Server(analyser);
    server->start(&system);
    const bool isServed = (!context || server->setTlsContext(context)) && server->listen(0, 5) &&
                          echoer.run(system, server->getPort(), ready, stop);
    server->close();
    system.exit();
    return isServed;
}

Outcome askTcp(TlsHandle context, const std::string& address, unsigned short port, const Plan& plan)
{
    Asker asker(plan);
    NoteAnalyser analyser([&](CCommandSocket*, const NoteCommand& note) { asker.onEcho(note); });
    zet::System system;
    system.init();
    const test::ClientHandle client = new test::Client(analyser);
    client->start(&system);
    if (!client->setTlsContext(context) ||
        !client->connect(std::wstring(address.begin(), address.end()).c_str(), port, false))
        asker.m_Fault = "no connection";
    asker.run(system, *client);
    client->close();
    system.exit();
    return asker.outcome();
}

zet::Unknown::Handle_T<test::NoteUdpServer> makeUdpPort(zet::System& system, const TlsHandle& context)
{
    const zet::Unknown::Handle_T<test::NoteUdpServer> port = new test::NoteUdpServer;
    zet::UdpServer::Settings settings;
    settings.m_ConnectTimeout = kBeginTime;
    port->setSettings(settings);
    port->setTlsContext(context);
    port->start(&system);
    return port;
}

bool serveUdp(const Secrets& secrets, int ready, int stop)
{
    zet::System system;
    system.init();
    const auto server = makeUdpPort(system, serverContext(secrets));
    Echoer echoer;
    server->m_Handler = [&](test::NoteSocket& socket, const NoteCommand& note) { echoer.onCommand(socket, note); };
    const bool isServed =
        server->listen(L"", 0) && echoer.run(system, static_cast<unsigned short>(server->GetPort()), ready, stop);
    server->close();
    system.exit();
    return isServed;
}

Outcome askUdp(const Secrets& secrets, const std::string& address, unsigned short port, const Plan& plan)
{
    Asker asker(plan);
    zet::System system;
    system.init();
    const auto own = makeUdpPort(system, clientContext(secrets));
    const test::NoteSocketHandle client = new test::NoteSocket;
    client->m_Handler = [&](test::NoteSocket&, const NoteCommand& note) { asker.onEcho(note); };
    if (!own->listen(L"", 0) ||
        !client->connect(own, std::wstring(address.begin(), address.end()).c_str(), port, zet::Uuid()))
        asker.m_Fault = "no connection";
    asker.run(system, *client);
    client->close();
    own->close();
    system.exit();
    return asker.outcome();
}

} // namespace

bool isThere(Transport transport)
{
    return transport == Transport::kTcp ||
           (transport == Transport::kTls ? zet::TlsContext::isAvailable() : zet::UdpServer::isAvailable());
}

const char* nameOf(Transport transport)
{
    return transport == Transport::kTcp ? "TCP" : transport == Transport::kTls ? "TLS" : "UDP";
}

bool serve(Transport transport, const Secrets& secrets, int ready, int stop)
{
    if (transport == Transport::kUdp)
        return serveUdp(secrets, ready, stop);
    return serveTcp(transport == Transport::kTls ? serverContext(secrets) : nullptr, ready, stop);
}

Outcome ask(Transport transport, const Secrets& secrets, const std::string& address, unsigned short port,
            const Plan& plan)
{
    if (transport == Transport::kUdp)
        return askUdp(secrets, address, port, plan);
    return askTcp(transport == Transport::kTls ? clientContext(secrets) : nullptr, address, port, plan);
}

} // namespace impaired
