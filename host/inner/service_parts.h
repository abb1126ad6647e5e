// What a Service consists of.
#pragma once

#include "host/inner/drain.h"
#include "host/inner/http_server.h"
#include "host/inner/manager.h"
#include "host/inner/options.h"
#include "host/inner/rendered_figures.h"
#include "host/metrics.h"

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

    bool m_IsStarted = false;

    bool isReady() const;
    // Serves /metrics, /healthz and /readyz in the System. False if the port cannot be bound.
    bool startHttp(zet::System& system);
    void stopHttp();

private:
    HttpAnswer answerHttp(const HttpRequest& request);
};

} // namespace host::inner
