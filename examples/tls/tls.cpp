// Two hosts in one file, over TLS: a server with a certificate, and clients that verify it.
//
//   examples/tls/make_certificates certificates     # an authority and a certificate, by openssl
//   tls certificates
//   SSLKEYLOGFILE=keys.log tls certificates         # writes the secrets too: Wireshark decrypts a capture with them
#include "commands/registry.h"
#include "framework/log.h"
#include "framework/string_helper.h"
#include "host/tasks.h"
#include "transport/framework_server_socket.h"

#include <cstdio>

using namespace std::chrono_literals;
using Text = zet::String_T<wchar_t>;
using ContextHandle = zet::Unknown::Handle_T<zet::TlsContext>;
using ClientHandle = zet::Unknown::Handle_T<CCommandSocket>;

// The server's end of a connection.
class Connection : public CFrameworkClientSocket
{
public:
    explicit Connection(CCmdAnalyserSocket* analyser) : CFrameworkClientSocket(analyser) {}
};

class Server : public CFrameworkServerSocket
{
public:
    explicit Server(CCmdAnalyserSocket& analyser) : CFrameworkServerSocket(L"127.0.0.1", 0), m_Analyser(analyser) {}
    void onAccept() override { accept(zet::Unknown::Handle_T<Connection>(new Connection(&m_Analyser))); }

private:
    CCmdAnalyserSocket& m_Analyser;
};

// A client that connects by TLS; null if it could not begin.
static ClientHandle connect(zet::System& system, CCmdAnalyserSocket& analyser, zet::TlsContext* tls,
                            const wchar_t* name, unsigned short port)
{
    const ClientHandle client = CCommandSocket::createInstance(&analyser);
    // The certificate must contain this name. Without the call it is the name or address passed to connect().
    client->setTlsHostName(name);
    const bool begins =
        client->start(&system) && client->setTlsContext(tls) && client->connect(L"127.0.0.1", port, true);
    return begins ? client : ClientHandle();
}

int main(int argc, char** argv)
{
    zet::Log::addSink([](zet::Log::Level, const Text& line) { std::fprintf(stderr, "%ls\n", line.getBuffer()); });
    if (argc != 2)
        return 2;
    const Text folder = zet::StringHelper::utf8ToWide(argv[1]);
    // A server shows a certificate and has its key. A client has the authorities that it trusts.
    const ContextHandle serverTls(new zet::TlsContext);
    const ContextHandle clientTls(new zet::TlsContext);
    if (!serverTls->setCertificateFiles(folder + L"/server.pem", folder + L"/server.key") ||
        !clientTls->addTrustFile(folder + L"/authority.pem"))
        return 1;

    static CCmdAnalyserSocket serverAnalyser;
    static CCmdAnalyserSocket clientAnalyser;
    host::Handlers serverHandlers(serverAnalyser);
    serverHandlers.on<CCmdServerEcho>(
        [](CCommandSocket& socket, const CCmdServerEcho& echo)
        {
            CCmdServerEchoReply reply;
            reply.m_Data = echo.m_Data;
            socket.send(reply);
        });
    zet::System system;
    host::Handlers clientHandlers(clientAnalyser);
    host::Questions questions(clientHandlers, system);
    questions.expect<CCmdServerEchoReply>();

    const zet::Unknown::Handle_T<Server> server(new Server(serverAnalyser));
    if (!server->setTlsContext(serverTls) || !server->start(&system) || !server->listen(0, 10))
        return 1;
    const ClientHandle right = connect(system, clientAnalyser, clientTls, L"localhost", server->getPort());
    const ClientHandle wrong = connect(system, clientAnalyser, clientTls, L"elsewhere.example", server->getPort());
    if (!right || !wrong)
        return 1;

    // A command waits until the handshake is done. If the handshake fails, the connection ends, and the log says why.
    host::Tasks tasks(questions);
    const auto ask = [&](CCommandSocket& socket, const char* name, auto next)
    {
        const auto print = [&socket, name, next](const host::Reply<CCmdServerEchoReply>& reply)
        {
            const auto* const unanswered = std::get_if<host::Unanswered>(&reply);
            std::printf("%s: %ls, peer '%ls'\n", name, unanswered ? unanswered->getText() : L"answered",
                        socket.getVerifiedName().getBuffer());
            next();
        };
        tasks.ask<CCmdServerEchoReply>(socket, CCmdServerEcho(), 5s, print);
    };
    ask(*right, "localhost", [&] { ask(*wrong, "elsewhere.example", [&] { system.shutdown(); }); });
    return system.run() ? 0 : 1;
}
