// A service with log, command line and figures: it answers echoes over TCP until it gets SIGTERM.
//
//   service --port 8000 --http-port 9100 &
//   curl http://127.0.0.1:9100/metrics
//   kill -TERM %1
#include "host/service.h"
#include "commands/registry.h"
#include "framework/log.h"
#include "host/handlers.h"
#include "host/metrics.h"
#include "transport/framework_server_socket.h"

// The server's end of a connection; the port accepts it.
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

int main(int count, char** words)
{
    host::Service service(L"service", "Answers echoes.");
    unsigned short port = 8000;
    zet::String_T<wchar_t> rejected;
    service.option("--port", port, "the port to listen on");
    service.option("--rejected", rejected, "a file of addresses that may not connect");

    static CCmdAnalyserSocket analyser;
    host::Metrics& metrics = service.getMetrics();
    host::MetricCounter& odd = metrics.counter("example_odd_echoes", "Echoes with an odd number.");
    host::Handlers handlers(analyser);
    handlers.on<CCmdServerEcho>(
        [&](CCommandSocket& socket, const CCmdServerEcho& echo)
        {
            odd.add(echo.m_Data % 2);
            CCmdServerEchoReply reply;
            reply.m_Data = echo.m_Data;
            socket.send(reply);
        });

    const zet::Unknown::Handle_T<Server> server(new Server(analyser));
    service.onStart(
        [&]
        {
            metrics.watch(analyser);
            metrics.watch("echoes", *server);
            if (!rejected.isEmpty())
                server->AddRejectAddressFrom(rejected);
            if (!server->start(&service.getSystem()) || !server->listen(port, 0))
                return false;
            zet::Log::message(L"Listening on port %d", static_cast<int>(server->zet::TcpServer::getPort()));
            return true;
        });
    // When the service is to end, its connections are closed as soon as they are answered.
    service.serve(*server);
    return service.run(count, words);
}
