#include "host/inner/command_metrics.h"

#include "dispatch/command_id_limit.h"

#include <algorithm>
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

// The rows: one for each id of the catalogue, and one for all other ids.
class Rows
{
public:
    static const Rows& get()
    {
        static const Rows rows;
        return rows;
    }
    size_t count() const { return m_Names.size(); }
    const std::string& nameOf(size_t row) const { return m_Names[row]; }
    size_t rowOf(unsigned short id) const { return id < kCommandIdLimit ? m_Rows[id] : m_Names.size() - 1; }

private:
    Rows()
    {
        // The two classes of a shared id are never used on one connection, but both may be in one process.
        std::map<unsigned short, std::string> names;
        for (const Class& each : kClasses)
        {
            std::string& text = names[each.m_Id];
            text += text.empty() ? each.m_Name : std::string("/") + each.m_Name;
        }
        std::fill(std::begin(m_Rows), std::end(m_Rows), static_cast<unsigned short>(names.size()));
        for (auto& [id, text] : names)
        {
            m_Rows[id] = static_cast<unsigned short>(m_Names.size());
            m_Names.push_back(std::move(text));
        }
        m_Names.emplace_back("other");
    }

    std::vector<std::string> m_Names;
    // By id: a search would take longer than all that is counted.
    unsigned short m_Rows[kCommandIdLimit];
};

constexpr double kNanosecond = 1e-9;

} // namespace

// The number of commands received is that of the unknown ones and of those in the buckets.
struct CommandMetrics::Row
{
    MetricCounter m_ReceivedBytes;
    MetricCounter m_Sent;
    MetricCounter m_SentBytes;
    MetricCounter m_Refused;
    MetricCounter m_Unknown;
    MetricCounter m_Thrown;
    MetricCounter m_Nanoseconds;
    MetricCounter m_Buckets[std::size(kDurationBounds) + 1];

    std::vector<unsigned long long> getCounts() const
    {
        std::vector<unsigned long long> counts;
        for (const MetricCounter& each : m_Buckets)
            counts.push_back(each.get());
        return counts;
    }
};

CommandMetrics::CommandMetrics() : m_Rows(std::make_unique<Row[]>(Rows::get().count())) {}

CommandMetrics::~CommandMetrics() = default;

void CommandMetrics::onReceived(unsigned short id, int size, Outcome outcome, unsigned long long nanoseconds)
{
    Row& row = m_Rows[Rows::get().rowOf(id)];
    row.m_ReceivedBytes.add(static_cast<unsigned long long>(size));
    if (outcome == kUnknown)
        return row.m_Unknown.add();
    if (outcome == kRefused)
        row.m_Refused.add();
    else if (outcome == kThrown)
        row.m_Thrown.add();
    // Most commands take the first bucket.
    size_t bucket = 0;
    while (bucket < std::size(kDurationBounds) && nanoseconds > kDurationBounds[bucket])
        ++bucket;
    row.m_Buckets[bucket].add();
    row.m_Nanoseconds.add(nanoseconds);
}

void CommandMetrics::onSent(unsigned short id, int size)
{
    Row& row = m_Rows[Rows::get().rowOf(id)];
    row.m_Sent.add();
    row.m_SentBytes.add(static_cast<unsigned long long>(size));
}

void CommandMetrics::print(MetricText& text) const
{
    const Rows& rows = Rows::get();
    const auto printValues = [&](const char* name, const char* help, const char* unit, auto valueOf)
    {
        text.beginCounter(name, help, unit);
        for (size_t i = 0; i < rows.count(); ++i)
            if (const unsigned long long value = valueOf(m_Rows[i]); value > 0)
                text.add({{"command", rows.nameOf(i)}}, value);
    };
    const auto printCounter = [&](const char* name, const char* help, const char* unit, MetricCounter Row::*counter)
    { printValues(name, help, unit, [counter](const Row& row) { return (row.*counter).get(); }); };
    printValues("commonground_commands_received", "Commands received.", "",
                [](const Row& row)
                {
                    unsigned long long sum = row.m_Unknown.get();
                    for (const MetricCounter& each : row.m_Buckets)
                        sum += each.get();
                    return sum;
                });
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
    for (size_t i = 0; i < rows.count(); ++i)
    {
        const auto counts = m_Rows[i].getCounts();
        if (std::any_of(counts.begin(), counts.end(), [](unsigned long long count) { return count > 0; }))
            text.add({{"command", rows.nameOf(i)}}, Metrics::getDurationBounds(), counts,
                     static_cast<double>(m_Rows[i].m_Nanoseconds.get()) * kNanosecond);
    }
}

} // namespace host::inner
