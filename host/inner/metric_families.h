// The figures of a Metrics by their names.
#pragma once

#include "framework/log.h"
#include "framework/string_helper.h"
#include "framework/time.h"
#include "host/metrics.h"

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

    // Returns the figure of this name with these labels. The first call makes it from the arguments.
    template <class Kind, class... Arguments>
    Kind& get(Families<Kind>& families, const std::string& name, const std::string& help, const MetricLabels& labels,
              const Arguments&... arguments);

    void print(MetricText& text) const;

    Families<MetricCounter> m_Counters;
    Families<MetricGauge> m_Gauges;
    Families<MetricHistogram> m_Histograms;
    std::vector<std::function<void(MetricText&)>> m_Printers;
    std::vector<Listener> m_Listeners;
    const SystemCmdInfo* m_Info = nullptr;
    MetricHistogram m_TickLength;
    MetricHistogram m_TickLag;
    const long long m_StartTime = zet::time(nullptr);

private:
    bool isFree(const std::string& name, bool isOfThisKind) const;
    static bool isName(const std::string& name);
    void printListeners(MetricText& text) const;
};

template <class Kind, class... Arguments>
Kind& MetricFamilies::get(Families<Kind>& families, const std::string& name, const std::string& help,
                          const MetricLabels& labels, const Arguments&... arguments)
{
    const bool isGood = isFree(name, families.contains(name));
    // A refused figure is kept under a name that is not printed.
    MetricFamily<Kind>& family = families[isGood ? name : std::string()];
    if (family.m_Help.empty())
        family.m_Help = help;
    for (auto& sample : family.m_Samples)
        if (isGood && sample.m_Labels == labels)
            return *sample.m_Value;
    family.m_Samples.push_back({labels, std::make_unique<Kind>(arguments...)});
    return *family.m_Samples.back().m_Value;
}

} // namespace host::inner
