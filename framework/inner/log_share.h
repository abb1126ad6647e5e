// Bounds log lines of one kind or about one peer.
#pragma once

#include "framework/export.h"
#include "framework/peer_log.h"

#include <utility>

namespace zet::inner
{

// Some lines at once, then one more per interval; the others are counted. An object belongs to one thread at a time.
class COMMONGROUND_API LogShare
{
public:
    // The lines at once, and the milliseconds of getTimeTick() until one more; 0 for never.
    constexpr explicit LogShare(unsigned int burst = PeerLog::kBurst, unsigned int interval = PeerLog::kInterval)
        : m_Burst(burst), m_Interval(interval), m_Left(burst)
    {
    }

    // Uses one line. False if none is left: then the line is counted as omitted, here and in getAllOmitted().
    bool take();
    // The lines omitted since the last call.
    unsigned long long takeOmitted() { return std::exchange(m_Omitted, 0); }
    unsigned long long getOmitted() const { return m_Omitted; }

    // Lines omitted in all shares since the start of the process. Any thread.
    static unsigned long long getAllOmitted();

private:
    const unsigned int m_Burst;
    const unsigned int m_Interval;
    // Lines that may be logged now.
    unsigned int m_Left;
    // When the share last grew, in ticks of getTimeTick().
    unsigned int m_Refilled = 0;
    unsigned long long m_Omitted = 0;
};

} // namespace zet::inner
