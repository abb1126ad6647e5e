// A service that tests start as a process and send signals to. It answers echoes at once; those of 1,000 and above it
// holds until the drain begins, and then answers one per tick; those of 2,000 and above it never answers.
#include "commands/registry.h"
#include "framework/log.h"
#include "host/handlers.h"
#include "host/metrics.h"
#include "host/service.h"
#include "transport/framework_server_socket.h"

#include <deque>
#include <map>
#include <utility>

namespace
{

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

// The commands that wait for their answers, oldest first.
class Holder : public zet::System::Task
{
public:
    void hold(CCommandSocket& socket, unsigned long data)
    {
        m_Held.emplace_back(&socket, data);
        ++m_Open[&socket];
        zet::Log::message(L"held %d", static_cast<int>(m_Held.size()));
    }
    bool isAnswered(const CCommandSocket& socket) const { return !m_Open.contains(&socket); }
    void onTick(unsigned int) override
    {
        if (!m_IsFreed || m_Held.empty() || m_Held.front().second >= 2000)
            return;
        const auto [socket, data] = m_Held.front();
        m_Held.pop_front();
        CCmdServerEchoReply reply;
        reply.m_Data = data;
        socket->send(reply);
        if (--m_Open[socket] == 0)
            m_Open.erase(socket);
    }

    bool m_IsFreed = false;

private:
    std::deque<std::pair<CCommandSocket*, unsigned long>> m_Held;
    std::map<const CCommandSocket*, int> m_Open;
};

} // namespace

int main(int count, char** words)
{
    host::Service service(L"under_test", "Answers echoes.");
    bool failsAtStart = false;
    bool failsToReload = false;
    service.option("--fail-at-start", failsAtStart, "end with 1");
    service.option("--fail-to-reload", failsToReload, "answer a request to reload with false");

    static CCmdAnalyserSocket analyser;
    host::Handlers handlers(analyser);
    Holder holder;
    handlers.on<CCmdServerEcho>(
        [&](CCommandSocket& socket, const CCmdServerEcho& echo)
        {
            if (echo.m_Data >= 1000)
                return holder.hold(socket, echo.m_Data);
            CCmdServerEchoReply reply;
            reply.m_Data = echo.m_Data;
            socket.send(reply);
        });
    const zet::Unknown::Handle_T<Server> server(new Server(analyser));
    service.serve(*server, [&](CFrameworkClientSocket& socket) { return holder.isAnswered(socket); });
    service.onStart(
        [&]
        {
            if (failsAtStart || !server->start(&service.getSystem()) || !server->listen(0, 0) ||
                !holder.start(&service.getSystem()))
                return false;
            service.getMetrics().watch(analyser);
            service.getMetrics().watch("echo", *server);
            zet::Log::message(L"port %d.", static_cast<int>(server->zet::TcpServer::getPort()));
            return true;
        });
    service.onReload([&] { return !failsToReload; });
    service.onDrain([&] { holder.m_IsFreed = true; });
    service.onStop([&] { holder.stop(); });
    return service.run(count, words);
}
