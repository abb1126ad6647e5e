// The figures of each command class.
#pragma once

#include "dispatch/command_observer.h"
#include "host/metrics.h"

namespace host::inner
{

// The bounds of the buckets for durations, in nanoseconds.
inline constexpr unsigned long long kDurationBounds[] = {10000,    25000,    100000,    250000,    1000000,   2500000,
                                                         10000000, 25000000, 100000000, 250000000, 1000000000};

// One row per id of the catalogue and one for all other ids, so that a peer cannot make rows. Counting allocates
// nothing.
class CommandMetrics final : public CommandObserver
{
public:
    CommandMetrics();
    ~CommandMetrics() override;

    void onReceived(unsigned short id, int size, Outcome outcome, unsigned long long nanoseconds) override;
    void onSent(unsigned short id, int size) override;

    // The rows with at least one command.
    void print(MetricText& text) const;

private:
    struct Row;

    std::unique_ptr<Row[]> m_Rows;
};

} // namespace host::inner
