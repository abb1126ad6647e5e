// Two hosts in one file, over UDP: a server that answers, and a client. Connections over UDP are QUIC, so commands
// arrive encrypted, in order and without loss. The ports here have no TLS context: the client does not verify who the
// server is. For that, give both ports one with setTlsContext(), as examples/tls does.
#include "commands/registry.h"
#include "framework/log.h"
#include "framework/system.h"
#include "transport/udp_client_socket.h"
#include "transport/udp_server_socket.h"

#include <cstdio>

// The first argument of a handler is the socket.
static UdpClientSocket& socketOf(unsigned long argument)
{
    return *reinterpret_cast<UdpClientSocket*>(argument);
}

// The server's end of a connection. Each socket over UDP has an analyser of its own.
class Connection : public UdpClientSocket
{
public:
    Connection() { m_CmdAnalyser.Install(command_id::CCmdServerEcho, CCmdServerEcho::CCmdServerEcho_Process, onEcho); }
    // Called when the connection has ended, but not after close() on this side.
    void onClose() override
    {
        UdpClientSocket::onClose();
        std::printf("the client has left\n");
        s_System->shutdown();
    }

    static inline zet::System* s_System = nullptr;

private:
    static void onEcho(CCmdHead* command, unsigned long socket, unsigned long)
    {
        CCmdServerEchoReply reply;
        reply.m_Data = static_cast<CCmdServerEcho*>(command)->m_Data;
        socketOf(socket).send(reply);
    }
};

class Server : public UdpServerSocket
{
public:
    void onAccept() override { accept(zet::Unknown::Handle_T<Connection>(new Connection)); }
};

class Client : public UdpClientSocket
{
public:
    Client()
    {
        m_CmdAnalyser.Install(command_id::CCmdServerEchoReply, CCmdServerEchoReply::CCmdServerEchoReply_Process,
                              onReply);
    }
    void onClose() override
    {
        UdpClientSocket::onClose();
        std::printf("the connection ended\n");
        Connection::s_System->shutdown();
    }
    void ask(unsigned long number)
    {
        CCmdServerEcho echo;
        echo.m_Data = number;
        send(echo);
    }

private:
    static void onReply(CCmdHead* command, unsigned long socket, unsigned long)
    {
        const unsigned long number = static_cast<CCmdServerEchoReply*>(command)->m_Data;
        std::printf("answered %lu\n", number);
        if (number < 3)
            static_cast<Client&>(socketOf(socket)).ask(number + 1);
        else
            socketOf(socket).close();
    }
};

int main()
{
    zet::Log::addSink([](zet::Log::Level, const zet::String_T<wchar_t>& line)
                      { std::fprintf(stderr, "%ls\n", line.getBuffer()); });
    zet::System system;
    Connection::s_System = &system;
    // A client too has a port, for any number of connections.
    const zet::Unknown::Handle_T<Server> server(new Server);
    const zet::Unknown::Handle_T<zet::UdpServer> port(new zet::UdpServer);
    const zet::Unknown::Handle_T<Client> client(new Client);
    zet::Uuid id; // the server can read it before it accepts
    zet::uuid_create(id);
    if (!server->start(&system) || !server->listen(L"127.0.0.1", 0) || !port->start(&system) || !port->listen(0) ||
        !client->connect(port.get(), L"127.0.0.1", static_cast<int>(server->GetPort()), id))
        return 1;
    client->ask(1); // waits until the connection is established
    return system.run() ? 0 : 1;
}
