#include "host/inner/http_server.h"

#include "framework/inner/moment.h"
#include "framework/string_helper.h"
#include "framework/time.h"
#include "net/inner/guard.h"

#include <algorithm>

namespace host::inner
{

namespace
{

const char* reasonOf(int status)
{
    switch (status)
    {
    case 200:
        return "OK";
    case 400:
        return "Bad Request";
    case 404:
        return "Not Found";
    case 405:
        return "Method Not Allowed";
    case 421:
        return "Misdirected Request";
    case 431:
        return "Request Header Fields Too Large";
    case 503:
        return "Service Unavailable";
    default:
        return "Internal Server Error";
    }
}

// A scrape every few seconds would fill the log.
class UnloggedStream final : public zet::TcpStream
{
public:
    // Of the connection that it has now.
    void leaveOutOfLog() { setEndLogged(); }
};

} // namespace

HttpServer::HttpServer(Answer answer, EventSource* events) : m_Answer(std::move(answer)), m_Events(events)
{
    setBindAddress(zet::StringHelper::utf8ToWide(kAddress));
    zet::NetLimits limits;
    limits.m_Connections = kMostConnections;
    setLimits(limits);
}

HttpServer::~HttpServer()
{
    HttpServer::close();
}

void HttpServer::close()
{
    for (const Client& client : m_Clients)
        client.m_Stream->close();
    m_Clients.clear();
    zet::TcpServer::close();
}

void HttpServer::onAccept()
{
    const zet::Unknown::Handle_T<UnloggedStream> stream(new UnloggedStream);
    if (!accept(stream))
        return;
    stream->leaveOutOfLog();
    m_Clients.push_back({zet::Unknown::Handle_T<zet::TcpStream>(stream), zet::getTimeTick() + kMostTime});
}

void HttpServer::onTick(unsigned int tick)
{
    look();
    for (size_t i = 0; i < m_Clients.size();)
    {
        bool isOver = true;
        zet::inner::guard(L"HTTP", m_Clients[i].m_Stream, [&] { isOver = !tickClient(m_Clients[i], tick); });
        if (!isOver)
        {
            ++i;
            continue;
        }
        m_Clients[i].m_Stream->close();
        m_Clients.erase(m_Clients.begin() + static_cast<std::ptrdiff_t>(i));
    }
    zet::TcpServer::onTick(tick);
    // Their times pass also with a longer interval between ticks.
    if (!m_Clients.empty() && getSystem())
        getSystem()->tickBy(tick + zet::System::kTickInterval);
}

bool HttpServer::tickClient(Client& client, unsigned int tick)
{
    zet::TcpStream& stream = *client.m_Stream;
    stream.onTick(tick);
    const auto isOpen = [&]
    {
        const auto state = stream.getConnectionState();
        return state == zet::TcpConnection::kEstablished || state == zet::TcpConnection::kClosedByPeer;
    };
    if (!isOpen() || (zet::inner::isReached(client.m_End, tick) && (!client.m_IsStream || stream.getOutputSize() > 0)))
        return false;
    if (client.m_IsStream)
        return tickStream(client, tick);
    if (client.m_IsAnswering)
    {
        if (stream.getOutputSize() > 0)
            return true;
        if (client.m_IsLast)
            return false;
        client.m_IsAnswering = false;
        client.m_End = tick + kMostTime;
    }
    // Receives, as far as there are bytes.
    stream.view(static_cast<int>(HttpRequest::kMostHead));
    const int size = stream.available();
    const unsigned char* const input = size > 0 ? stream.view(size) : nullptr;
    HttpRequest request;
    size_t used = 0;
    const HttpRequest::State state =
        input ? readRequest({reinterpret_cast<const char*>(input), static_cast<size_t>(size)}, request, used)
              : HttpRequest::kCut;
    if (state == HttpRequest::kCut)
        return stream.getConnectionState() == zet::TcpConnection::kEstablished;
    stream.skip(static_cast<int>(used));
    answer(client, state, request);
    client.m_End = tick + kMostTime;
    // After the end of the peer's output, close() sends what is queued.
    if (stream.getConnectionState() != zet::TcpConnection::kEstablished)
        return false;
    // The next request may be in the buffer, where no event reports it. It waits for the next interval: clients that
    // send many at once do not keep the System from its sleep.
    return true;
}

bool HttpServer::tickStream(Client& client, unsigned int tick)
{
    zet::TcpStream& stream = *client.m_Stream;
    stream.view(1);
    if (stream.available() > 0 || stream.getConnectionState() != zet::TcpConnection::kEstablished)
        return false;
    if (stream.getOutputSize() > 0)
        return true;
    m_Events->update(tick);
    std::string text = m_Events->takeChanges(client.m_Round);
    // A comment, which finds a peer that is gone.
    if (text.empty() && zet::inner::isReached(client.m_End, tick))
        text = ":\n\n";
    if (text.empty())
        return true;
    client.m_End = tick + kMostTime;
    return stream.send(text.data(), static_cast<int>(text.size())) == static_cast<int>(text.size());
}

int HttpServer::countStreams() const
{
    return static_cast<int>(
        std::count_if(m_Clients.begin(), m_Clients.end(), [](const Client& each) { return each.m_IsStream; }));
}

void HttpServer::allowHost(const std::string& name)
{
    m_Hosts.push_back(name);
    for (char& unit : m_Hosts.back())
        if (unit >= 'A' && unit <= 'Z')
            unit = static_cast<char>(unit - 'A' + 'a');
}

bool HttpServer::isAllowed(const HttpRequest& request) const
{
    // A client of HTTP/1.0 without the field is no browser.
    return !request.m_HasHost || std::find(m_Hosts.begin(), m_Hosts.end(), hostOf(request.m_Host)) != m_Hosts.end();
}

void HttpServer::answer(Client& client, HttpRequest::State state, const HttpRequest& request)
{
    if (state == HttpRequest::kWhole && !isAllowed(request))
        state = HttpRequest::kOtherHost;
    HttpAnswer made;
    if (state == HttpRequest::kWhole)
    {
        made.m_Status = 500;
        zet::inner::guard(L"an answer over HTTP", client.m_Stream, [&] { made = m_Answer(request); });
    }
    else
    {
        made.m_Status = state;
        made.m_Body = std::string(reasonOf(state)) + '\n';
    }
    bool isStream = made.m_IsStream && m_Events;
    if (isStream && countStreams() >= kMostStreams)
    {
        made = HttpAnswer();
        made.m_Status = 503;
        made.m_Body = "too many streams\n";
        isStream = false;
    }
    client.m_IsAnswering = true;
    client.m_IsLast = isStream || state != HttpRequest::kWhole || !request.m_KeepsAlive;
    std::string text = "HTTP/1.1 " + std::to_string(made.m_Status) + ' ' + reasonOf(made.m_Status) +
                       "\r\nContent-Type: " + made.m_Type;
    if (!isStream)
        text += "\r\nContent-Length: " + std::to_string(made.m_Body.size());
    text += std::string("\r\nX-Content-Type-Options: nosniff\r\nConnection: ") +
            (client.m_IsLast ? "close" : "keep-alive") + "\r\n" + made.m_Fields;
    if (made.m_Status == HttpRequest::kOtherMethod)
        text += "Allow: GET, HEAD\r\n";
    text += "\r\n";
    if (!request.m_IsHead && !isStream)
        text += made.m_Body;
    client.m_Stream->send(text.data(), static_cast<int>(text.size()));
    if (!isStream || request.m_IsHead)
        return;
    if (countStreams() == 0)
        m_Events->restart();
    client.m_IsStream = true;
}

} // namespace host::inner
