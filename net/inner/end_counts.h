// Counts of causes, and the causes of the operating system's faults.
#pragma once

#include "net/door/door.h"
#include "net/end_cause.h"

#include <atomic>

namespace zet::inner
{

// THREADS: any.
class EndCounts
{
public:
    void add(EndCause cause)
    {
        if (cause.m_Code < EndCause::kCodes)
            m_Counts[cause.m_Code].fetch_add(1, std::memory_order_relaxed);
    }
    unsigned long long get(EndCause::Code code) const
    {
        return code < EndCause::kCodes ? m_Counts[code].load(std::memory_order_relaxed) : 0;
    }

private:
    std::atomic<unsigned long long> m_Counts[EndCause::kCodes] = {};
};

// Adds to the counts of the process.
void countEnd(EndCause cause);

// kNone for no fault.
EndCause causeOf(const Door::Fault& fault);
// The same for a fault of connect().
EndCause connectCauseOf(const Door::Fault& fault);

} // namespace zet::inner
