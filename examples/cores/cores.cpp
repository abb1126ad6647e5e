// A server on two cores: two Systems, each on a thread of its own, listen on one port, and the operating system divides
// the connections between them. A notice reaches the peers of both: each System sends it on its own connections.
#include "commands/registry.h"
#include "host/handlers.h"
#include "host/inbox.h"
#include "transport/framework_server_socket.h"
#include "transport/send_to_all.h"

#include <cstdio>
#include <cstdlib>
#include <thread>

struct Connection : CFrameworkClientSocket
{
    explicit Connection(CCmdAnalyserSocket* analyser) : CFrameworkClientSocket(analyser) {}
};

struct Server : CFrameworkServerSocket
{
    explicit Server(CCmdAnalyserSocket& analyser) : CFrameworkServerSocket(L"127.0.0.1", 0), m_Analyser(analyser) {}
    void onAccept() override { accept(zet::Unknown::Handle_T<Connection>(new Connection(&m_Analyser))); }

    CCmdAnalyserSocket& m_Analyser;
};

// A System with its share of the connections, which no other thread touches.
struct Core
{
    zet::System m_System;
    zet::Unknown::Handle_T<host::Inbox> m_Inbox = new host::Inbox;
    zet::Unknown::Handle_T<Server> m_Server;
    std::thread m_Thread;
};

int main()
{
    static CCmdAnalyserSocket serverAnalyser;
    static CCmdAnalyserSocket clientAnalyser;
    Core cores[2];
    // Called on the thread of the System that has the connection. A peer that sends 0 gets its answer, and any other
    // number is a notice to all peers. Other Systems are given its value, never a socket.
    host::Handlers serverHandlers(serverAnalyser);
    serverHandlers.on<CCmdServerEcho>(
        [&](CCommandSocket& socket, const CCmdServerEcho& echo)
        {
            CCmdServerEchoReply reply;
            reply.m_Data = echo.m_Data;
            if (echo.m_Data == 0)
                socket.send(reply);
            else
                for (Core& core : cores)
                    core.m_Inbox->post([&core, reply] { SendToAll(*core.m_Server->GetAllClientSocket(), reply); });
        });
    for (Core& core : cores)
    {
        core.m_Server = new Server(serverAnalyser);
        core.m_Server->setSharedPort(true);
        // A System without work makes no system calls.
        core.m_System.setTickInterval(zet::System::kLongestInterval);
        if (!core.m_Inbox->start(&core.m_System) || !core.m_Server->start(&core.m_System) ||
            !core.m_Server->listen(cores[0].m_Server->getPort(), 100))
            return 1;
    }
    for (Core& core : cores)
        core.m_Thread = std::thread([&core] { core.m_System.run(); });

    // Eight peers, in a System of their own. Once all are answered, the first one sends a notice.
    zet::System system;
    std::vector<zet::Unknown::Handle_T<CCommandSocket>> peers;
    size_t answers = 0;
    size_t notices = 0;
    CCmdServerEcho echo;
    host::Handlers clientHandlers(clientAnalyser);
    clientHandlers.on<CCmdServerEchoReply>(
        [&](CCommandSocket&, const CCmdServerEchoReply& reply)
        {
            ++(reply.m_Data == 0 ? answers : notices);
            echo.m_Data = 7;
            if (reply.m_Data == 0 && answers == peers.size())
                peers[0]->send(echo);
            if (notices == peers.size())
                system.shutdown();
        });
    for (int i = 0; i < 8; ++i)
        peers.push_back(CCommandSocket::createInstance(&clientAnalyser));
    for (const auto& peer : peers)
        if (!peer->start(&system) || !peer->connect(L"127.0.0.1", cores[0].m_Server->getPort(), true) ||
            !peer->send(echo))
            std::abort();
    system.run();
    std::printf("%zu peers, %zu notices\n", peers.size(), notices);
    for (Core& core : cores)
    {
        core.m_System.shutdown();
        core.m_Thread.join();
    }
    return 0;
}
