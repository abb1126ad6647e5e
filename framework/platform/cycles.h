// A processor counter that is cheap to read, if the platform has one.
#pragma once

namespace zet::platform
{

#if defined(__x86_64__) || defined(__i386__)

inline unsigned long long readCycles()
{
    return __builtin_ia32_rdtsc();
}

// Counts within at most 0.1 ms: the counter runs at 1 GHz or more on every supported processor.
inline unsigned long long getCyclesOfTenthMillisecond()
{
    return 100000;
}

#elif defined(__aarch64__) && defined(__GNUC__)

// The counter of the system timer and its frequency, which every program may read.
inline unsigned long long readCycles()
{
    unsigned long long count;
    asm volatile("mrs %0, cntvct_el0" : "=r"(count));
    return count;
}

inline unsigned long long getCyclesOfTenthMillisecond()
{
    unsigned long long perSecond;
    asm("mrs %0, cntfrq_el0" : "=r"(perSecond));
    return (perSecond & 0xFFFFFFFF) / 10000;
}

#else

// No counter that every program may read: the clock is read each time.
inline unsigned long long readCycles()
{
    return 0;
}

inline unsigned long long getCyclesOfTenthMillisecond()
{
    return 0;
}

#endif

} // namespace zet::platform
