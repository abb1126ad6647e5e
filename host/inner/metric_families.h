// The figures of a Metrics by their names.
#pragma once

#include "framework/log.h"
#include "framework/string_helper.h"
#include "framework/time.h"
#include "host/inbox.h"
#include "host/metrics.h"

#include <algorithm>
#include <set>
#include <type_traits>

namespace host::inner
{

template <class Kind>
struct MetricFamily
{
    struct Sample
    {
        MetricLabels m_Labels;
        std::unique_ptr<Kind> m_Value;
    };

    std::string m_Help;
    std::vector<Sample> m_Samples;
};

struct MetricFamilies
{
    template <class Kind>
    using Families = std::map<std::string, MetricFamily<Kind>>;
    using Listener = std::pair<std::string, std::function<ListenerFigures()>>;

    MetricFamilies();

    // Returns the figure of this name with these labels. The first call makes it from the arguments. A name or labels
    // that the host may not use are logged, and the result is the figure for all of them.
    template <class Kind, class... Arguments>
    Kind& get(Families<Kind>& families, Kind& refused, const std::string& name, const std::string& help,
              const MetricLabels& labels, const Arguments&... arguments);

    void print(MetricText& text) const;

    Families<MetricCounter> m_Counters;
    Families<MetricGauge> m_Gauges;
    Families<MetricHistogram> m_Histograms;
    // Are not printed.
    MetricCounter m_RefusedCounter;
    MetricGauge m_RefusedGauge;
    MetricHistogram m_RefusedHistogram{{}};
    std::vector<std::function<void(MetricText&)>> m_Printers;
    std::vector<Listener> m_Listeners;
    std::vector<std::pair<std::string, const Inbox*>> m_Inboxes;
    const SystemCmdInfo* m_Info = nullptr;
    MetricHistogram m_TickLength;
    MetricHistogram m_TickLag;
    const long long m_StartTime = zet::time(nullptr);

private:
    // Whether a host may make this figure, which does not exist yet; otherwise the log says why.
    bool mayMake(const std::string& name, bool isOfThisKind, bool isHistogram, const MetricLabels& labels);
    // False. A line is logged once, and only the first lines of all: the names may come from peers.
    bool refuse(const zet::String_T<wchar_t>& line);
    void printListeners(MetricText& text) const;
    void printInboxes(MetricText& text) const;

    std::set<std::wstring> m_Refusals;
};

template <class Kind, class... Arguments>
Kind& MetricFamilies::get(Families<Kind>& families, Kind& refused, const std::string& name, const std::string& help,
                          const MetricLabels& labels, const Arguments&... arguments)
{
    const auto known = families.find(name);
    if (known != families.end())
        for (auto& sample : known->second.m_Samples)
            if (sample.m_Labels.size() == labels.size() &&
                std::is_permutation(labels.begin(), labels.end(), sample.m_Labels.begin()))
                return *sample.m_Value;
    if (!mayMake(name, known != families.end(), std::is_same_v<Kind, MetricHistogram>, labels))
        return refused;
    MetricFamily<Kind>& family = families[name];
    if (family.m_Samples.empty())
        family.m_Help = help;
    family.m_Samples.push_back({labels, std::make_unique<Kind>(arguments...)});
    return *family.m_Samples.back().m_Value;
}

} // namespace host::inner
