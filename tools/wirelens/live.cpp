#include "tools/wirelens/live.h"

#include "dispatch/analyser_socket.h"
#include "framework/string_helper.h"
#include "tools/frame_reader.h"
#include "tools/object_json.h"
#include "tools/wirelens/options.h"
#include "transport/command_socket.h"
#include "transport/udp_client_socket.h"

#include <CLI/App.hpp>
#include <CLI/Config.hpp>
#include <CLI/Formatter.hpp>

#include <csignal>
#include <iostream>
#include <utility>

namespace wirelens
{

namespace
{

using ContextHandle = zet::Unknown::Handle_T<zet::TlsContext>;

zet::String_T<wchar_t> wide(const std::string& text)
{
    return zet::StringHelper::utf8ToWide(text.c_str());
}

// Nothing but the events; every command goes to the fallback of an analyser without handlers.
class TcpSocket final : public CCommandSocket
{
public:
    explicit TcpSocket(Link::Events events) : CCommandSocket(analyser()), m_Events(std::move(events)) {}

    void onEstablished() override { m_Events.m_Established(); }
    void onEnd(const zet::EndCause&) override { m_Events.m_Ended(); }

private:
    static CCmdAnalyserSocket* analyser()
    {
        static CCmdAnalyserSocket one([](CCommandSocket* socket, CCmdPackager* command, unsigned long, unsigned long)
                                      { static_cast<TcpSocket*>(socket)->m_Events.m_Command(*command); });
        return &one;
    }

    Link::Events m_Events;
};

class TcpLink final : public Link
{
public:
    explicit TcpLink(zet::Unknown::Handle_T<TcpSocket> socket) : m_Socket(std::move(socket)) {}
    ~TcpLink() override { m_Socket->stop(); }

    bool send(const CCmdPackager& command) override { return m_Socket->send(command); }
    bool isFull() const override { return m_Socket->isOutputHigh(); }
    size_t getOutputSize() const override { return m_Socket->getOutputSize(); }
    void close() override { m_Socket->close(); }

private:
    zet::Unknown::Handle_T<TcpSocket> m_Socket;
};

class UdpSocket final : public UdpClientSocket
{
public:
    explicit UdpSocket(Link::Events events) : m_Events(std::move(events))
    {
        m_CmdAnalyser = CCmdAnalyser([](CCmdPackager* command, unsigned long, unsigned long)
                                     { s_Ticking->m_Events.m_Command(*command); });
    }

    void onTick(unsigned int tick) override
    {
        s_Ticking = this;
        UdpClientSocket::onTick(tick);
    }
    void onEstablished() override { m_Events.m_Established(); }
    void onEnd(const zet::EndCause&) override { m_Events.m_Ended(); }

private:
    // The socket whose commands are handled. Not the handler's argument, which cannot hold a pointer on every system.
    static inline thread_local UdpSocket* s_Ticking = nullptr;

    Link::Events m_Events;
};

class UdpLink final : public Link
{
public:
    UdpLink(zet::Unknown::Handle_T<zet::UdpServer> port, zet::Unknown::Handle_T<UdpSocket> socket)
        : m_Port(std::move(port)), m_Socket(std::move(socket))
    {
    }
    ~UdpLink() override
    {
        m_Socket->close();
        m_Port->stop();
    }

    bool send(const CCmdPackager& command) override
    {
        return m_Socket->getConnectionState() <= zet::UdpServer::UdpConnection::kEstablished && m_Socket->send(command);
    }
    bool isFull() const override { return m_Socket->isOutputHigh(); }
    size_t getOutputSize() const override { return m_Socket->getOutputSize(); }
    void close() override { m_Socket->close(); }

private:
    zet::Unknown::Handle_T<zet::UdpServer> m_Port;
    zet::Unknown::Handle_T<UdpSocket> m_Socket;
};

// Null with a log line if a file is not valid.
ContextHandle clientContext(const Transport& transport)
{
    ContextHandle context(new zet::TlsContext);
    bool isGood = !transport.m_Trust.empty() || context->addSystemTrust();
    for (const std::string& file : transport.m_Trust)
        isGood = isGood && context->addTrustFile(wide(file).getBuffer());
    for (const std::string& file : transport.m_Revocations)
        isGood = isGood && context->addRevocationFile(wide(file).getBuffer());
    if (!transport.m_Certificate.empty())
        isGood = isGood && context->setCertificateFiles(wide(transport.m_Certificate).getBuffer(),
                                                        wide(transport.m_Key).getBuffer());
    return isGood ? context : ContextHandle();
}

std::unique_ptr<Link> connectTcp(zet::System& system, const tools::HostPort& target, const Transport& transport,
                                 zet::TlsContext* context, Link::Events events)
{
    const zet::Unknown::Handle_T<TcpSocket> socket(new TcpSocket(std::move(events)));
    if (!transport.m_ServerName.empty())
        socket->setTlsHostName(wide(transport.m_ServerName).getBuffer());
    if (!socket->start(&system) || (context && !socket->setTlsContext(context)) ||
        !socket->connect(wide(target.m_Host).getBuffer(), target.m_Port, true))
        return nullptr;
    return std::make_unique<TcpLink>(socket);
}

std::unique_ptr<Link> connectUdp(zet::System& system, const tools::HostPort& target, zet::TlsContext* context,
                                 Link::Events events)
{
    const zet::Unknown::Handle_T<zet::UdpServer> port(new zet::UdpServer);
    const zet::Unknown::Handle_T<UdpSocket> socket(new UdpSocket(std::move(events)));
    if (context)
        port->setTlsContext(context);
    zet::Uuid id;
    zet::uuid_create(id);
    if (!port->start(&system) || !port->listen(0) ||
        !socket->connect(port.get(), wide(target.m_Host).getBuffer(), static_cast<int>(target.m_Port), id))
        return nullptr;
    return std::make_unique<UdpLink>(port, socket);
}

volatile std::sig_atomic_t s_IsInterrupted = 0;

} // namespace

void addTransport(CLI::App& command, Transport& transport)
{
    CLI::Option* const udp = command.add_flag("--udp", transport.m_Udp, "by UDP instead of TCP, always encrypted");
    CLI::Option* const tls =
        command.add_flag("--tls", transport.m_Tls, "by TLS; with --udp the server's certificate is verified then");
    const auto add = [&](const char* name, const char* type, const char* description, auto& value)
    { return command.add_option(name, value, description)->type_name(type)->needs(tls)->allow_extra_args(false); };
    add("--trust", "FILE", "certificates of the authorities to trust (PEM) instead of the system's", transport.m_Trust);
    add("--revocations", "FILE", "lists of revoked certificates of those authorities (PEM)", transport.m_Revocations);
    add("--server-name", "NAME", "the name that the certificate must contain instead of the host's",
        transport.m_ServerName)
        ->excludes(udp);
    CLI::Option* const certificate = add(
        "--certificate", "FILE", "this side's certificate (PEM), if the server asks for it", transport.m_Certificate);
    CLI::Option* const key = add("--key", "FILE", "its private key (PEM)", transport.m_Key);
    certificate->needs(key);
    key->needs(certificate);
}

void addHostPort(CLI::App& command, const std::string& name, const std::string& hostOfPort, tools::HostPort& target)
{
    command
        .add_option_function<std::string>(
            name,
            [name, hostOfPort, &target](const std::string& text)
            {
                const auto parsed = tools::HostPort::parse(text, hostOfPort);
                if (!parsed)
                    throw CLI::ValidationError(name, text + " is not an address and a port, such as 127.0.0.1:7000");
                target = *parsed;
            })
        ->required();
}

std::unique_ptr<Link> Link::connect(zet::System& system, const tools::HostPort& target, const Transport& transport,
                                    Events events)
{
    ContextHandle context;
    if (transport.m_Tls)
    {
        context = clientContext(transport);
        if (!context)
            return nullptr;
    }
    return transport.m_Udp ? connectUdp(system, target, context.get(), std::move(events))
                           : connectTcp(system, target, transport, context.get(), std::move(events));
}

ContextHandle serverContext(const std::string& certificate, const std::string& key)
{
    ContextHandle context(new zet::TlsContext);
    return context->setCertificateFiles(wide(certificate).getBuffer(), wide(key).getBuffer()) ? context
                                                                                              : ContextHandle();
}

int runLoop(zet::System& system, const std::function<std::optional<int>()>& step)
{
    if (!system.init())
        return 1;
    for (;;)
    {
        system.tick();
        if (const std::optional<int> code = step())
        {
            system.exit();
            return *code;
        }
        system.wait();
    }
}

void catchInterrupts()
{
    const auto note = [](int) { s_IsInterrupted = 1; };
    std::signal(SIGINT, note);
    std::signal(SIGTERM, note);
}

bool isInterrupted()
{
    return s_IsInterrupted != 0;
}

void printCommand(std::string_view members, const CCmdPackager& command)
{
    tools::JsonText line;
    line.put('{');
    line.put(members);
    tools::addCommand(line, command, true);
    line.put('}');
    std::cout << line.view() << std::endl;
}

std::string narrowed(const zet::String_T<wchar_t>& text)
{
    return tools::utf8Of(text.getBuffer());
}

} // namespace wirelens
