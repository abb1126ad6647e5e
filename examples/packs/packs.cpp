// Two hosts in one file that exchange messages of the home feature. Each is sent in an envelope: a command that carries
// a number for the message, and its bytes.
#include "commands/registry.h"
#include "framework/log.h"
#include "framework/system.h"
#include "host/pack_router.h"
#include "host/tasks.h"
#include "packs/home.h"
#include "transport/framework_server_socket.h"

#include <cstdio>

using namespace std::chrono_literals;
using Home = host::PackRouter<CCmdHomePackRequest, CCmdHomePackReply>;

// Client and server agree on the numbers of the messages; the library defines none.
constexpr int kLoadRequest = 1;
constexpr int kLoadReply = 2;

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

int main()
{
    zet::Log::addSink([](zet::Log::Level, const zet::String_T<wchar_t>& line)
                      { std::fprintf(stderr, "%ls\n", line.getBuffer()); });
    zet::System system;
    static CCmdAnalyserSocket serverAnalyser;
    static CCmdAnalyserSocket clientAnalyser;
    host::Handlers serverHandlers(serverAnalyser);
    host::Handlers clientHandlers(clientAnalyser);

    // The server handles the request and sends the reply; the reply takes client, account and index from the request's
    // envelope.
    Home serverHome;
    serverHome.number<HomePack_LoadData_Reply>(kLoadReply);
    serverHome.on<HomePack_LoadData_Request>(
        kLoadRequest,
        [&](CCommandSocket& socket, const HomePack_LoadData_Request& request, const CCmdHomePackRequest& envelope)
        {
            std::printf("the server loads the home of %ls\n", request.m_Account.m_AccountName.getBuffer());
            HomePack_LoadData_Reply reply;
            reply.m_HomeData.ResetHomData(0);
            serverHome.reply(socket, envelope, reply);
        });
    // The client sends the request and handles the reply.
    Home clientHome;
    clientHome.number<HomePack_LoadData_Request>(kLoadRequest);
    clientHome.on<HomePack_LoadData_Reply>(
        kLoadReply,
        [&](CCommandSocket&, const HomePack_LoadData_Reply& reply, const CCmdHomePackReply& envelope)
        {
            std::printf("%ls has %d lives\n", envelope.m_AccountName.getBuffer(), reply.m_HomeData.GetTotalRushLife());
            system.shutdown();
        });
    // If a number is wrong, install() is false and the log says why.
    if (!serverHome.install(serverHandlers) || !clientHome.install(clientHandlers))
        return 1;
    std::printf("%ls\n", clientHome.toJson().getBuffer());

    const zet::Unknown::Handle_T<Server> server(new Server(serverAnalyser));
    const auto client = CCommandSocket::createInstance(&clientAnalyser);
    if (!server->start(&system) || !server->listen(0, 10) || !client->start(&system) ||
        !client->connect(L"127.0.0.1", server->getPort(), true))
        return 1;
    HomePack_LoadData_Request request;
    request.m_Account.m_AccountName = L"Ann";
    const auto fill = [](CCmdHomePackRequest& envelope) { envelope.m_AccountName = L"Ann"; };
    if (!clientHome.send(*client, request, fill))
        return 1;
    // A reply in an envelope is no answer of a question, so the time limit is the host's.
    host::Questions questions(clientHandlers, system);
    host::Tasks tasks(questions);
    bool isLate = false;
    tasks.after(5s,
                [&]
                {
                    isLate = true;
                    system.shutdown();
                });
    return system.run() && !isLate ? 0 : 1;
}
