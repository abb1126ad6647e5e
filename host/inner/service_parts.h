// What a Service consists of.
#pragma once

#include "host/inner/drain.h"
#include "host/inner/http_server.h"
#include "host/inner/manager.h"
#include "host/inner/options.h"
#include "host/inner/rendered_figures.h"
#include "host/metrics.h"
#include "host/recording.h"

#include <string_view>

namespace host::inner
{

struct ServiceParts
{
    std::string m_About;
    Options m_Options;
    Manager m_Manager;
    Drain m_Drain;
    Metrics m_Metrics{false};
    RenderedFigures m_Figures{m_Metrics};
    Recording m_Recording;
    struct Page
    {
        std::string_view m_Path;
        std::string_view m_Type;
        std::string_view m_Text;
    };
    std::vector<Page> m_Pages;
    EventSource m_Events;
    // Null without a port.
    zet::Unknown::Handle_T<HttpServer> m_Http;

    std::vector<std::function<bool()>> m_Start;
    std::vector<std::function<bool()>> m_Reload;
    std::vector<std::function<void()>> m_OnDrain;
    std::vector<std::function<void()>> m_Stop;
    std::vector<std::function<bool()>> m_ReadyChecks;
    // Names that the HTTP server takes for its own.
    std::vector<std::string> m_HttpHosts;

    // Set by the command line.
    bool m_WantsHelp = false;
    zet::String_T<wchar_t> m_LogFolder;
    int m_DrainTime = 0;
    int m_HttpPort = Service::kNoHttp;
    // The networks of proxies; empty for none.
    zet::String_T<wchar_t> m_ProxyFrom;
    zet::String_T<wchar_t> m_RecordPath;
    int m_RecordSize = static_cast<int>(Recording::kDefaultFileSize / Recording::kMebibyte);
    int m_RecordFiles = Recording::kDefaultFiles;

    bool m_IsStarted = false;

    bool isReady() const;
    bool hasValidProxies() const;
    // Lets the server expect the headers of the proxies, if there are any.
    void expectProxy(zet::TcpServer& server) const;
    // Serves /metrics, /healthz, /readyz, the pages and the events in the System. False if the port cannot be bound.
    bool startHttp(zet::System& system);
    void stopHttp();

private:
    HttpAnswer answerHttp(const HttpRequest& request);
    // A page or the events; false for another path.
    bool answerPage(const HttpRequest& request, HttpAnswer& answer) const;
};

} // namespace host::inner
