#include "host/inner/command_metrics.h"

#include <map>

namespace host::inner
{

namespace
{

struct Class
{
    unsigned short m_Id;
    const char* m_Name;
};

constexpr Class kClasses[] = {
#define COMMAND(id, Class, Base) {id, #Class},
#define SHARED(id, Class, Base) {id, #Class},
#include "dispatch/commands.def"
#undef COMMAND
#undef SHARED
};

// The ids of the catalogue in ascending order, each once, with the names of its classes.
struct Named
{
    unsigned short m_Id;
    std::string m_Names;
};

const std::vector<Named>& getNamed()
{
    static const std::vector<Named> named = []
    {
        // The two classes of a shared id are never used on one connection, but both may be in one process.
        std::map<unsigned short, std::string> names;
        for (const Class& each : kClasses)
        {
            std::string& text = names[each.m_Id];
            text += text.empty() ? each.m_Name : std::string("/") + each.m_Name;
        }
        std::vector<Named> merged;
        merged.reserve(names.size() + 1);
        for (auto& [id, text] : names)
            merged.push_back({id, std::move(text)});
        merged.push_back({0xFFFF, "other"});
        return merged;
    }();
    return named;
}

constexpr double kNanosecond = 1e-9;

} // namespace

struct CommandMetrics::Row
{
    Row() : m_Seconds(Metrics::getDurationBounds()) {}

    MetricCounter m_Received;
    MetricCounter m_ReceivedBytes;
    MetricCounter m_Sent;
    MetricCounter m_SentBytes;
    MetricCounter m_Refused;
    MetricCounter m_Unknown;
    MetricCounter m_Thrown;
    MetricHistogram m_Seconds;
};

CommandMetrics::CommandMetrics() : m_Rows(std::make_unique<Row[]>(getNamed().size())) {}

CommandMetrics::~CommandMetrics() = default;

CommandMetrics::Row& CommandMetrics::rowOf(unsigned short id) const
{
    const std::vector<Named>& named = getNamed();
    const auto found = std::lower_bound(named.begin(), named.end(), id,
                                        [](const Named& each, unsigned short wanted) { return each.m_Id < wanted; });
    return m_Rows[static_cast<size_t>((found->m_Id == id ? found : named.end() - 1) - named.begin())];
}

void CommandMetrics::onReceived(unsigned short id, int size, Outcome outcome, unsigned long long nanoseconds)
{
    Row& row = rowOf(id);
    row.m_Received.add();
    row.m_ReceivedBytes.add(static_cast<unsigned long long>(size));
    if (outcome == kUnknown)
        return row.m_Unknown.add();
    if (outcome == kRefused)
        row.m_Refused.add();
    else if (outcome == kThrown)
        row.m_Thrown.add();
    row.m_Seconds.add(static_cast<double>(nanoseconds) * kNanosecond);
}

void CommandMetrics::onSent(unsigned short id, int size)
{
    Row& row = rowOf(id);
    row.m_Sent.add();
    row.m_SentBytes.add(static_cast<unsigned long long>(size));
}

void CommandMetrics::print(MetricText& text) const
{
    const std::vector<Named>& named = getNamed();
    const auto printCounter = [&](const char* name, const char* help, const char* unit, MetricCounter Row::*counter)
    {
        text.beginCounter(name, help, unit);
        for (size_t i = 0; i < named.size(); ++i)
            if (const unsigned long long value = (m_Rows[i].*counter).get(); value > 0)
                text.add({{"command", named[i].m_Names}}, value);
    };
    printCounter("commonground_commands_received", "Commands received.", "", &Row::m_Received);
    printCounter("commonground_commands_received_bytes", "Bytes of payload of the commands received.", "bytes",
                 &Row::m_ReceivedBytes);
    printCounter("commonground_commands_sent", "Commands sent.", "", &Row::m_Sent);
    printCounter("commonground_commands_sent_bytes", "Bytes of payload of the commands sent.", "bytes",
                 &Row::m_SentBytes);
    printCounter("commonground_commands_refused", "Commands received that did not fit their class.", "",
                 &Row::m_Refused);
    printCounter("commonground_commands_unknown", "Commands received for which no handler was installed.", "",
                 &Row::m_Unknown);
    printCounter("commonground_commands_thrown", "Commands received whose handler threw an exception.", "",
                 &Row::m_Thrown);
    text.beginHistogram("commonground_command_handling_seconds", "Time to read a command and handle it.", "seconds");
    for (size_t i = 0; i < named.size(); ++i)
    {
        const auto counts = m_Rows[i].m_Seconds.getCounts();
        if (std::any_of(counts.begin(), counts.end(), [](unsigned long long count) { return count > 0; }))
            text.add({{"command", named[i].m_Names}}, m_Rows[i].m_Seconds.getBounds(), counts,
                     m_Rows[i].m_Seconds.getSum());
    }
}

} // namespace host::inner
