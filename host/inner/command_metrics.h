// The figures of each command class.
#pragma once

#include "dispatch/command_observer.h"
#include "host/metrics.h"

namespace host::inner
{

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

    Row& rowOf(unsigned short id) const;

    std::unique_ptr<Row[]> m_Rows;
};

} // namespace host::inner
