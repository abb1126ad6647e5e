#include "host/metrics.h"

#include "dispatch/analyser.h"
#include "dispatch/analyser_socket.h"
#include "framework/log.h"
#include "framework/peer_log.h"
#include "framework/platform/platform.h"
#include "framework/string_helper.h"
#include "framework/time.h"
#include "host/inner/command_metrics.h"
#include "host/inner/metric_families.h"
#include "net/inner/guard.h"
#include "runtime/openmetrics.h"
#include "runtime/system_cmd_info.h"
#include "transport/framework_server_socket.h"
#include "transport/udp_server_socket.h"

namespace host
{

namespace
{

constexpr char kEnd[] = "# EOF\n";

class QueueWalk final : public CFrameworkServerSocket::ClientSockets::Walker
{
public:
    bool onEntry(CFrameworkClientSocket* const& key, zet::Unknown::Handle_T<CFrameworkClientSocket>&) override
    {
        m_Bytes += key->getOutputSize();
        return true;
    }

    unsigned long long m_Bytes = 0;
};

class UdpWalk final : public UdpServerSocket::ClientSockets::Walker
{
public:
    bool onEntry(zet::UdpServer::UdpConnection* const& key,
                 zet::Unknown::Handle_T<zet::UdpServer::UdpConnection>&) override
    {
        m_Bytes += key->getOutputSize();
        const unsigned long long time = key->getRoundTripTime();
        m_Microseconds += time;
        m_Timed += time > 0;
        return true;
    }

    unsigned long long m_Bytes = 0;
    unsigned long long m_Microseconds = 0;
    int m_Timed = 0;
};

// Changes the names of counters and omits what the older format does not have.
std::string toPlain(const std::string& text)
{
    std::string plain;
    std::string counter;
    for (size_t at = 0, end; at < text.size(); at = end + 1)
    {
        end = text.find('\n', at);
        std::string line = text.substr(at, end - at + 1);
        if (line.compare(0, 7, "# UNIT ") == 0 || line == kEnd)
            continue;
        if (line.compare(0, 7, "# TYPE ") == 0)
        {
            const size_t space = line.find(' ', 7);
            counter = line.compare(space, std::string::npos, " counter\n") == 0 ? line.substr(7, space - 7) : "";
        }
        if (line[0] == '#' && !counter.empty())
            line.insert(7 + counter.size(), "_total");
        plain += line;
    }
    return plain;
}

zet::String_T<char> toText(const std::string& text)
{
    return {text.data(), static_cast<int>(text.size())};
}

// What TCP and UDP ports both know. A port counts what it refused with the ends of its connections.
template <class Server>
void addCounts(ListenerFigures& figures, const Server& server, bool hasHandshakes)
{
    const zet::AcceptCounts& accepts = server.getAcceptCounts();
    figures.m_Accepted = accepts.m_Accepted;
    if (hasHandshakes)
    {
        figures.m_Handshakes = accepts.m_Handshakes;
        figures.m_HandshakesFailed = accepts.m_HandshakesFailed;
    }
    for (int i = zet::EndCause::kNone + 1; i < zet::EndCause::kCodes; ++i)
    {
        const auto code = static_cast<zet::EndCause::Code>(i);
        const unsigned long long count = server.getEndCount(code);
        if (count == 0)
            continue;
        if (code == zet::EndCause::kFiltered)
            figures.m_Refused["filter"] = count;
        else if (code == zet::EndCause::kTooMany)
            figures.m_Refused["cap"] = count;
        else
            figures.m_Ended[zet::EndCause::getLabel(code)] = count;
    }
}

} // namespace

Metrics::Metrics(bool isOn) : m_IsOn(isOn), m_Families(std::make_unique<inner::MetricFamilies>()) {}

Metrics::~Metrics() = default;

const std::vector<double>& Metrics::getDurationBounds()
{
    static const std::vector<double> bounds = []
    {
        std::vector<double> seconds;
        for (const unsigned long long nanoseconds : inner::kDurationBounds)
            seconds.push_back(static_cast<double>(nanoseconds) / 1e9);
        return seconds;
    }();
    return bounds;
}

MetricCounter& Metrics::counter(const std::string& name, const std::string& help, const MetricLabels& labels)
{
    return m_Families->get(m_Families->m_Counters, m_Families->m_RefusedCounter, name, help, labels);
}

MetricGauge& Metrics::gauge(const std::string& name, const std::string& help, const MetricLabels& labels)
{
    return m_Families->get(m_Families->m_Gauges, m_Families->m_RefusedGauge, name, help, labels);
}

MetricHistogram& Metrics::histogram(const std::string& name, const std::string& help, const std::vector<double>& bounds,
                                    const MetricLabels& labels)
{
    const auto family = m_Families->m_Histograms.find(name);
    const bool isFirst = family == m_Families->m_Histograms.end();
    return m_Families->get(m_Families->m_Histograms, m_Families->m_RefusedHistogram, name, help, labels,
                           isFirst ? bounds : family->second.m_Samples.front().m_Value->getBounds());
}

void Metrics::addPrinter(std::function<void(MetricText&)> print)
{
    m_Families->m_Printers.push_back(std::move(print));
}

template <class Analyser>
void Metrics::observe(Analyser& analyser)
{
    if (!m_IsOn)
        return;
    if (!m_Commands)
        m_Commands = std::make_shared<inner::CommandMetrics>();
    analyser.SetObserver(m_Commands);
}

void Metrics::watch(CCmdAnalyserSocket& analyser)
{
    observe(analyser);
}

void Metrics::watch(CCmdAnalyser& analyser)
{
    observe(analyser);
}

void Metrics::watch(const std::string& name, const Inbox& inbox)
{
    m_Families->m_Inboxes.emplace_back(name, &inbox);
}

void Metrics::watch(const std::string& name, CFrameworkServerSocket& server)
{
    watch(name,
          [&server]
          {
              ListenerFigures figures;
              figures.m_Connections = static_cast<unsigned long long>(server.GetClientCount());
              QueueWalk walk;
              server.GetAllClientSocket()->foreach(walk);
              figures.m_QueuedBytes = walk.m_Bytes;
              const zet::AcceptCounts& accepts = server.getAcceptCounts();
              addCounts(figures, server,
                        server.getTlsContext() || accepts.m_Handshakes > 0 || accepts.m_HandshakesFailed > 0);
              return figures;
          });
}

void Metrics::watch(const std::string& name, UdpServerSocket& server)
{
    watch(name,
          [&server]
          {
              ListenerFigures figures;
              figures.m_Connections = static_cast<unsigned long long>(server.GetClientCount());
              UdpWalk walk;
              server.GetAllClientSocket()->foreach(walk);
              figures.m_QueuedBytes = walk.m_Bytes;
              addCounts(figures, server, true);
              if (walk.m_Timed > 0)
                  figures.m_RoundTripSeconds = static_cast<double>(walk.m_Microseconds) / walk.m_Timed / 1e6;
              const zet::UdpServer::Traffic traffic = server.getTraffic();
              figures.m_BytesIn = traffic.m_BytesIn;
              figures.m_BytesOut = traffic.m_BytesOut;
              figures.m_DatagramsIn = traffic.m_DatagramsIn;
              figures.m_DatagramsOut = traffic.m_DatagramsOut;
              figures.m_DatagramsDropped = traffic.m_DatagramsDropped;
              figures.m_PacketsLost = server.getLostPackets();
              return figures;
          });
}

void Metrics::watch(const std::string& name, std::function<ListenerFigures()> figures)
{
    m_Families->m_Listeners.emplace_back(name, std::move(figures));
}

void Metrics::watch(const SystemCmdInfo& info)
{
    m_Families->m_Info = &info;
}

void Metrics::addTick(double length, double lag)
{
    m_Families->m_TickLength.add(length);
    m_Families->m_TickLag.add(lag);
}

zet::String_T<char> Metrics::getText() const
{
    std::string required;
    if (m_Families->m_Info)
    {
        required = convertToOpenMetrics(*m_Families->m_Info).getBuffer();
        required.resize(required.size() - sizeof kEnd + 1);
    }
    MetricText text;
    if (required.empty())
    {
        // Otherwise they are among the required ones.
        text.beginCounter("commonground_log_lines_left_out",
                          "Log lines about the bytes of peers that were beyond their shares of the log.");
        text.add({}, zet::PeerLog::getLeftOut());
        text.beginCounter("commonground_log_lines_lost", "Log lines that log modules could not write.");
        text.add({}, zet::Log::getLostLines());
    }
    text.beginGauge("process_resident_memory_bytes", "Working set of the process.", "bytes");
    text.add({}, zet::platform::getWorkingSetSize());
    text.beginCounter("process_cpu_seconds", "Processor time of the process.", "seconds");
    text.add({}, static_cast<double>(zet::platform::getProcessorMilliseconds()) / 1000);
    text.beginGauge("process_start_time_seconds", "Start of the figures, in seconds since 1970 UTC.", "seconds");
    text.add({}, static_cast<unsigned long long>(m_Families->m_StartTime));
    if (m_Commands)
        m_Commands->print(text);
    m_Families->print(text);
    return toText(required + text.get() + kEnd);
}

zet::String_T<char> Metrics::getPlainText() const
{
    return toText(toPlain(getText().getBuffer()));
}

} // namespace host
