#include "host/inner/service_parts.h"

#include "framework/log.h"
#include "framework/string_helper.h"
#include "net/inner/guard.h"

#include <algorithm>

namespace host::inner
{

namespace
{

constexpr int kMostPort = 65535;

// A page loads and asks from this server alone, runs no script of its own text, and is in no frame of another one.
constexpr char kPageFields[] =
    "Content-Security-Policy: default-src 'none'; script-src 'self'; style-src 'self'; connect-src 'self'; "
    "img-src 'self' data:; base-uri 'none'; form-action 'none'; frame-ancestors 'none'\r\n"
    "Cross-Origin-Resource-Policy: same-origin\r\nReferrer-Policy: no-referrer\r\nCache-Control: no-cache\r\n";
constexpr char kEventFields[] = "Cross-Origin-Resource-Policy: same-origin\r\nCache-Control: no-store\r\n";

} // namespace

bool ServiceParts::isReady() const
{
    return m_IsStarted && !m_Drain.isBegun() &&
           std::all_of(m_ReadyChecks.begin(), m_ReadyChecks.end(),
                       [](const auto& check)
                       {
                           bool isGood = false;
                           zet::inner::guard(L"addReadyCheck()", nullptr, [&] { isGood = check(); });
                           return isGood;
                       });
}

bool ServiceParts::hasValidProxies() const
{
    zet::AddressFilter networks;
    return networks.addSubnets(zet::AddressFilter::kPermitted, m_ProxyFrom);
}

void ServiceParts::expectProxy(zet::TcpServer& server) const
{
    if (!m_ProxyFrom.isEmpty())
        server.expectProxyHeader(m_ProxyFrom);
}

bool ServiceParts::startHttp(zet::System& system)
{
    if (m_HttpPort == Service::kNoHttp)
        return true;
    const auto server = zet::Unknown::Handle_T<HttpServer>(
        new HttpServer([this](const HttpRequest& request) { return answerHttp(request); }, &m_Events));
    for (const std::string& name : m_HttpHosts)
        server->allowHost(name);
    const auto address = zet::StringHelper::utf8ToWide(HttpServer::kAddress);
    if (m_HttpPort < 0 || m_HttpPort > kMostPort || !server->start(&system) ||
        !server->listen(static_cast<unsigned short>(m_HttpPort), 0))
    {
        zet::Log::error(L"HTTP cannot listen on %s:%d", address, m_HttpPort);
        return false;
    }
    m_Http = server;
    zet::Log::message(L"HTTP on %s:%d", address, static_cast<int>(server->getPort()));
    return true;
}

void ServiceParts::stopHttp()
{
    if (!m_Http)
        return;
    m_Http->close();
    m_Http->stop();
    m_Http.clear();
}

HttpAnswer ServiceParts::answerHttp(const HttpRequest& request)
{
    HttpAnswer answer;
    if (request.m_Path == "/metrics" && request.m_WantsPlainText)
    {
        answer.m_Type = "text/plain; version=0.0.4; charset=utf-8";
        answer.m_Body = m_Figures.getPlainText();
    }
    else if (request.m_Path == "/metrics")
    {
        answer.m_Type = "application/openmetrics-text; version=1.0.0; charset=utf-8";
        answer.m_Body = m_Figures.getText();
    }
    else if (request.m_Path == "/healthz")
        answer.m_Body = "ok\n";
    else if (request.m_Path == "/readyz")
    {
        answer.m_Status = isReady() ? 200 : 503;
        answer.m_Body = m_Drain.isBegun() ? "draining\n" : answer.m_Status == 200 ? "ready\n" : "not ready\n";
    }
    else if (!answerPage(request, answer))
    {
        answer.m_Status = 404;
        answer.m_Body = "not found\n";
    }
    return answer;
}

bool ServiceParts::answerPage(const HttpRequest& request, HttpAnswer& answer) const
{
    if (request.m_Path == "/events" && !m_Events.isEmpty())
    {
        answer.m_Type = "text/event-stream";
        answer.m_Fields = kEventFields;
        answer.m_IsStream = true;
        return true;
    }
    const auto page =
        std::find_if(m_Pages.begin(), m_Pages.end(), [&](const Page& each) { return request.m_Path == each.m_Path; });
    if (page == m_Pages.end())
        return false;
    answer.m_Type = page->m_Type;
    answer.m_Fields = kPageFields;
    answer.m_Body = page->m_Text;
    return true;
}

} // namespace host::inner
