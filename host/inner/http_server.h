// A small HTTP server on the loopback, in a System: for scrapes and probes, not for the world.
#pragma once

#include "host/inner/event_source.h"
#include "host/inner/http_request.h"
#include "net/tcp/server.h"
#include "net/tcp/stream.h"

#include <functional>
#include <vector>

namespace host::inner
{

struct HttpAnswer
{
    int m_Status = 200;
    std::string m_Type = "text/plain; charset=utf-8";
    std::string m_Body;
    // Further lines of the head, each with its CR LF.
    std::string m_Fields;
    // A GET is answered with the events instead of a body; the connection is a stream from then on.
    bool m_IsStream = false;
};

// Listens on kAddress. A connection makes one request at a time: the next one is read when the answer before has left,
// so a client that does not read holds one answer. A client has kMostTime for a request, and again to read its answer.
//
// A request whose field Host names neither this address nor this machine, nor a name that was allowed, is refused: a
// page of a foreign site, whose name the site's owner lets resolve to 127.0.0.1, must not read the answers in a browser
// on this machine.
//
// A stream gets what has changed when all that was sent before has left: a reader that is slow misses texts in between,
// and holds one round of events. One that has not taken a round after kMostTime, or that sends anything, is closed.
class COMMONGROUND_API HttpServer final : public zet::TcpServer
{
public:
    static constexpr char kAddress[] = "127.0.0.1";
    // Connections at once; a further one is closed.
    static constexpr int kMostConnections = 16;
    // Milliseconds.
    static constexpr unsigned int kMostTime = 10000;
    // Streams at once, so that scrapes and probes find a connection; a further one gets 503.
    static constexpr int kMostStreams = 8;

    using Answer = std::function<HttpAnswer(const HttpRequest&)>;

    // The events outlive the server; null for none.
    explicit HttpServer(Answer answer, EventSource* events = nullptr);
    ~HttpServer() override;

    void onTick(unsigned int tick) override;
    void onAccept() override;
    void close() override;

    // Takes requests with this name, or address, in their field Host too; letters of ASCII in either case.
    void allowHost(const std::string& name);
    int getConnectionCount() const { return static_cast<int>(m_Clients.size()); }

private:
    struct Client
    {
        zet::Unknown::Handle_T<zet::TcpStream> m_Stream;
        // The time of getTimeTick() at which it is closed.
        unsigned int m_End;
        bool m_IsAnswering = false;
        // The answer on its way is the last one.
        bool m_IsLast = false;
        bool m_IsStream = false;
        // The last round of events that it has.
        unsigned int m_Round = 0;
    };

    bool isAllowed(const HttpRequest& request) const;
    // False if the connection is over.
    bool tickClient(Client& client, unsigned int tick);
    bool tickStream(Client& client, unsigned int tick);
    int countStreams() const;
    void answer(Client& client, HttpRequest::State state, const HttpRequest& request);

    const Answer m_Answer;
    EventSource* const m_Events;
    // In lower case.
    std::vector<std::string> m_Hosts{"localhost", "[::1]", kAddress};
    std::vector<Client> m_Clients;
};

} // namespace host::inner
