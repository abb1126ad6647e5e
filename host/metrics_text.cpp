#include "host/metrics.h"

#include <algorithm>
#include <charconv>
#include <cmath>

namespace host
{

namespace
{

std::string textOf(double value)
{
    if (std::isnan(value))
        return "NaN";
    if (std::isinf(value))
        return value > 0 ? "+Inf" : "-Inf";
    char text[32];
    const auto result = std::to_chars(text, text + sizeof text, value);
    return {text, result.ptr};
}

// The bounds of buckets are always written as floating-point numbers.
std::string textOfBound(double value)
{
    const std::string text = textOf(value);
    return text.find_first_of(".eI") == std::string::npos ? text + ".0" : text;
}

// isLabel: in a label's value a quotation mark is escaped, too.
std::string escaped(const std::string& text, bool isLabel)
{
    std::string result;
    for (const char unit : text)
    {
        if (unit == '\\' || (isLabel && unit == '"'))
            result += '\\';
        if (unit == '\n')
            result += "\\n";
        else
            result += unit;
    }
    return result;
}

} // namespace

void MetricGauge::add(double value)
{
    double before = m_Value.load(std::memory_order_relaxed);
    while (!m_Value.compare_exchange_weak(before, before + value, std::memory_order_relaxed))
        continue;
}

MetricHistogram::MetricHistogram(std::vector<double> bounds)
    : m_Bounds(std::move(bounds)), m_Counts(std::make_unique<std::atomic<unsigned long long>[]>(m_Bounds.size() + 1))
{
}

void MetricHistogram::add(double value)
{
    // A value that is not a number is above all bounds.
    size_t bucket = 0;
    while (bucket < m_Bounds.size() && !(value <= m_Bounds[bucket]))
        ++bucket;
    m_Counts[bucket].fetch_add(1, std::memory_order_relaxed);
    m_Sum.add(value);
}

std::vector<unsigned long long> MetricHistogram::getCounts() const
{
    std::vector<unsigned long long> counts(m_Bounds.size() + 1);
    for (size_t i = 0; i < counts.size(); ++i)
        counts[i] = m_Counts[i].load(std::memory_order_relaxed);
    return counts;
}

void MetricText::begin(const char* type, const std::string& name, const std::string& help, const char* unit)
{
    m_Name = name;
    m_Text += "# TYPE " + name + ' ' + type + '\n';
    if (*unit)
        m_Text += "# UNIT " + name + ' ' + unit + '\n';
    m_Text += "# HELP " + name + ' ' + escaped(help, false) + '\n';
}

void MetricText::beginCounter(const std::string& name, const std::string& help, const char* unit)
{
    begin("counter", name, help, unit);
    m_IsCounter = true;
}

void MetricText::beginGauge(const std::string& name, const std::string& help, const char* unit)
{
    begin("gauge", name, help, unit);
    m_IsCounter = false;
}

void MetricText::beginHistogram(const std::string& name, const std::string& help, const char* unit)
{
    begin("histogram", name, help, unit);
    m_IsCounter = false;
}

void MetricText::addSample(const std::string& suffix, const MetricLabels& labels, const std::string& value)
{
    m_Text += m_Name + suffix;
    char separator = '{';
    for (const auto& [label, text] : labels)
    {
        m_Text += separator + label + "=\"" + escaped(text, true) + '"';
        separator = ',';
    }
    m_Text += (labels.empty() ? " " : "} ") + value + '\n';
}

void MetricText::add(const MetricLabels& labels, unsigned long long value)
{
    addSample(m_IsCounter ? "_total" : "", labels, std::to_string(value));
}

void MetricText::add(const MetricLabels& labels, double value)
{
    addSample(m_IsCounter ? "_total" : "", labels, textOf(value));
}

void MetricText::add(const MetricLabels& labels, const std::vector<double>& bounds,
                     const std::vector<unsigned long long>& counts, double sum)
{
    unsigned long long total = 0;
    MetricLabels own = labels;
    own.emplace_back("le", "");
    for (size_t i = 0; i < counts.size(); ++i)
    {
        total += counts[i];
        own.back().second = i < bounds.size() ? textOfBound(bounds[i]) : "+Inf";
        addSample("_bucket", own, std::to_string(total));
    }
    addSample("_count", labels, std::to_string(total));
    addSample("_sum", labels, textOf(sum));
}

} // namespace host
