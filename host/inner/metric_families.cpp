#include "host/inner/metric_families.h"

#include "net/inner/guard.h"

#include <algorithm>

namespace host::inner
{

namespace
{

bool isLetter(char unit)
{
    return (unit >= 'a' && unit <= 'z') || (unit >= 'A' && unit <= 'Z') || unit == '_';
}

bool endsWith(const std::string& name, const std::string& suffix)
{
    return name.size() >= suffix.size() && name.compare(name.size() - suffix.size(), suffix.size(), suffix) == 0;
}

bool startsWith(const std::string& name, const std::string& prefix)
{
    return name.compare(0, prefix.size(), prefix) == 0;
}

// Of a label; of a metric too, except that ':' is left to recording rules.
bool isName(const std::string& name)
{
    return !name.empty() && isLetter(name[0]) &&
           std::all_of(name.begin(), name.end(),
                       [](char unit) { return isLetter(unit) || (unit >= '0' && unit <= '9'); });
}

// Lines about refused figures.
constexpr size_t kMostRefusals = 100;

} // namespace

MetricFamilies::MetricFamilies() : m_TickLength(Metrics::getDurationBounds()), m_TickLag(Metrics::getDurationBounds())
{
}

bool MetricFamilies::refuse(const zet::String_T<wchar_t>& line)
{
    if (m_Refusals.size() < kMostRefusals && m_Refusals.emplace(line.getBuffer()).second)
        zet::Log::error(L"%s", line);
    return false;
}

bool MetricFamilies::mayMake(const std::string& name, bool isOfThisKind, bool isHistogram, const MetricLabels& labels)
{
    const zet::String_T<wchar_t> shown = zet::StringHelper::utf8ToWide(name.c_str());
    if (!isName(name) || name[0] == '_' || endsWith(name, "_total"))
        return refuse(zet::formatText(L"Metrics: %s is not a valid name", shown));
    if (startsWith(name, "commonground_") || startsWith(name, "process_"))
        return refuse(zet::formatText(L"Metrics: %s is a reserved name", shown));
    if (!isOfThisKind && (m_Counters.contains(name) || m_Gauges.contains(name) || m_Histograms.contains(name)))
        return refuse(zet::formatText(L"Metrics: %s has another kind", shown));
    std::set<std::string> labelNames;
    for (const auto& [label, value] : labels)
    {
        const zet::String_T<wchar_t> text = zet::StringHelper::utf8ToWide(label.c_str());
        if (!isName(label) || startsWith(label, "__") || (isHistogram && label == "le"))
            return refuse(zet::formatText(L"Metrics: %s has the label \"%s\", which is not valid", shown, text));
        if (!labelNames.insert(label).second)
            return refuse(zet::formatText(L"Metrics: %s has the label \"%s\" twice", shown, text));
    }
    return true;
}

void MetricFamilies::print(MetricText& text) const
{
    text.beginHistogram("commonground_tick_work_seconds", "Length of a tick.", "seconds");
    text.add({}, m_TickLength.getBounds(), m_TickLength.getCounts(), m_TickLength.getSum());
    text.beginHistogram("commonground_tick_lag_seconds", "How much later than planned a tick began.", "seconds");
    text.add({}, m_TickLag.getBounds(), m_TickLag.getCounts(), m_TickLag.getSum());
    printListeners(text);
    printInboxes(text);
    for (const auto& [name, family] : m_Counters)
    {
        text.beginCounter(name, family.m_Help);
        for (const auto& sample : family.m_Samples)
            text.add(sample.m_Labels, sample.m_Value->get());
    }
    for (const auto& [name, family] : m_Gauges)
    {
        text.beginGauge(name, family.m_Help);
        for (const auto& sample : family.m_Samples)
            text.add(sample.m_Labels, sample.m_Value->get());
    }
    for (const auto& [name, family] : m_Histograms)
    {
        text.beginHistogram(name, family.m_Help);
        for (const auto& sample : family.m_Samples)
            text.add(sample.m_Labels, sample.m_Value->getBounds(), sample.m_Value->getCounts(),
                     sample.m_Value->getSum());
    }
    for (const auto& printer : m_Printers)
    {
        // What a printer that throws has printed is left out.
        MetricText own;
        if (zet::inner::guard(L"a printer of metrics", nullptr, [&] { printer(own); }))
            text.append(own);
    }
}

void MetricFamilies::printListeners(MetricText& text) const
{
    std::vector<std::pair<std::string, ListenerFigures>> listeners;
    for (const Listener& listener : m_Listeners)
    {
        ListenerFigures figures;
        if (zet::inner::guard(L"the figures of a port", nullptr, [&] { figures = listener.second(); }))
            listeners.emplace_back(listener.first, std::move(figures));
    }
    const auto isKnown = [&](ListenerFigures::Value ListenerFigures::*value)
    {
        return std::any_of(listeners.begin(), listeners.end(),
                           [&](const auto& listener) { return (listener.second.*value).has_value(); });
    };
    const auto printValues = [&](ListenerFigures::Value ListenerFigures::*value)
    {
        for (const auto& [name, figures] : listeners)
            if (figures.*value)
                text.add({{"listener", name}}, *(figures.*value));
    };
    const auto printCounter =
        [&](const char* name, const char* help, const char* unit, ListenerFigures::Value ListenerFigures::*value)
    {
        if (!isKnown(value))
            return;
        text.beginCounter(name, help, unit);
        printValues(value);
    };
    const auto printGauge =
        [&](const char* name, const char* help, const char* unit, ListenerFigures::Value ListenerFigures::*value)
    {
        if (!isKnown(value))
            return;
        text.beginGauge(name, help, unit);
        printValues(value);
    };
    const auto printReasons = [&](const char* name, const char* help, const char* label,
                                  std::map<std::string, unsigned long long> ListenerFigures::*counts)
    {
        text.beginCounter(name, help);
        for (const auto& [listener, figures] : listeners)
            for (const auto& [reason, count] : figures.*counts)
                text.add({{"listener", listener}, {label, reason}}, count);
    };
    using F = ListenerFigures;
    printGauge("commonground_listener_connections", "Current connections of a port.", "", &F::m_Connections);
    printGauge("commonground_listener_queued_bytes", "Bytes of output that wait on the connections of a port.", "bytes",
               &F::m_QueuedBytes);
    if (std::any_of(listeners.begin(), listeners.end(),
                    [](const auto& listener) { return listener.second.m_RoundTripSeconds.has_value(); }))
    {
        text.beginGauge("commonground_listener_round_trip_seconds",
                        "Mean of the smoothed round-trip times of a port's connections.", "seconds");
        for (const auto& [name, figures] : listeners)
            if (figures.m_RoundTripSeconds)
                text.add({{"listener", name}}, *figures.m_RoundTripSeconds);
    }
    printCounter("commonground_listener_accepted", "Connections accepted by a port.", "", &F::m_Accepted);
    printReasons("commonground_listener_refused", "Connections refused by a port.", "reason", &F::m_Refused);
    printReasons("commonground_listener_ended", "Connections of a port that have ended.", "cause", &F::m_Ended);
    printCounter("commonground_listener_handshakes", "Handshakes completed on a port.", "", &F::m_Handshakes);
    printCounter("commonground_listener_handshakes_failed", "Handshakes on a port that failed or were not completed.",
                 "", &F::m_HandshakesFailed);
    printCounter("commonground_listener_received_bytes", "Bytes received on a port.", "bytes", &F::m_BytesIn);
    printCounter("commonground_listener_sent_bytes", "Bytes sent on a port.", "bytes", &F::m_BytesOut);
    printCounter("commonground_listener_received_datagrams", "Datagrams received on a port.", "", &F::m_DatagramsIn);
    printCounter("commonground_listener_sent_datagrams", "Datagrams sent on a port.", "", &F::m_DatagramsOut);
    printCounter("commonground_listener_lost_packets", "Packets sent by connections of a port and declared lost.", "",
                 &F::m_PacketsLost);
    printCounter("commonground_listener_dropped_datagrams", "Datagrams of user data from IPv6 that were dropped.", "",
                 &F::m_DatagramsDropped);
}

void MetricFamilies::printInboxes(MetricText& text) const
{
    if (m_Inboxes.empty())
        return;
    text.beginGauge("commonground_inbox_calls", "Calls that wait in an inbox.");
    for (const auto& [name, inbox] : m_Inboxes)
        text.add({{"inbox", name}}, static_cast<unsigned long long>(inbox->getSize()));
    text.beginCounter("commonground_inbox_refused", "Calls that an inbox refused since it was full.");
    for (const auto& [name, inbox] : m_Inboxes)
        text.add({{"inbox", name}}, inbox->getRefusedCount());
}

} // namespace host::inner
