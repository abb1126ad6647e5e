// Two hosts in one file, over TCP: a server that answers, and a client that asks by coroutines.
#include "commands/registry.h"
#include "framework/system.h"
#include "host/tasks.h"
#include "transport/framework_server_socket.h"

#include <cstdio>

using namespace std::chrono_literals;

// The server's end of a connection; the server's end of the port accepts it.
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

static const wchar_t* textOf(const host::Reply<CCmdServerEchoReply>& reply)
{
    const auto* const unanswered = std::get_if<host::Unanswered>(&reply);
    return unanswered ? unanswered->getText() : L"answered";
}

// The client: each co_await lets the System go on with its ticks until there is a reply.
static host::Task talk(CCommandSocket& socket, zet::System& system)
{
    CCmdServerEcho echo;
    for (echo.m_Data = 1; echo.m_Data <= 3; ++echo.m_Data)
    {
        const auto reply = co_await host::ask<CCmdServerEchoReply>(socket, echo, 5s);
        if (const auto* const answer = std::get_if<CCmdServerEchoReply>(&reply))
            std::printf("asked %lu, answered %lu\n", echo.m_Data, answer->m_Data);
        co_await host::sleep(20ms);
    }
    // The server does not answer 0.
    echo.m_Data = 0;
    std::printf("asked 0: %ls\n", textOf(co_await host::ask<CCmdServerEchoReply>(socket, echo, 50ms)));
    // And it ends the connection at 99.
    echo.m_Data = 99;
    std::printf("asked 99: %ls\n", textOf(co_await host::ask<CCmdServerEchoReply>(socket, echo, 5s)));
    system.shutdown();
}

int main()
{
    // The log has no sink, so the library's warnings and errors go to the standard error stream.
    // At start: the handlers of both sides. Analysers are large.
    static CCmdAnalyserSocket serverAnalyser;
    static CCmdAnalyserSocket clientAnalyser;
    host::Handlers serverHandlers(serverAnalyser);
    serverHandlers.on<CCmdServerEcho>(
        [](CCommandSocket& socket, const CCmdServerEcho& echo)
        {
            CCmdServerEchoReply reply;
            reply.m_Data = echo.m_Data;
            if (echo.m_Data == 99)
                socket.close();
            else if (echo.m_Data != 0)
                socket.send(reply);
        });

    zet::System system;
    host::Handlers clientHandlers(clientAnalyser);
    host::Questions questions(clientHandlers, system);
    questions.expect<CCmdServerEchoReply>();

    const zet::Unknown::Handle_T<Server> server(new Server(serverAnalyser));
    const auto client = CCommandSocket::createInstance(&clientAnalyser);
    if (!server->start(&system) || !server->listen(0, 10) || !client->start(&system) ||
        !client->connect(L"127.0.0.1", server->getPort(), true))
        return 1;
    host::Tasks tasks(questions);
    tasks.start(talk(*client, system));
    return system.run() ? 0 : 1;
}
