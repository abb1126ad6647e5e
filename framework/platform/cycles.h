// A counter of the processor that costs little to read, where there is one.
#pragma once

namespace zet::platform
{

#if defined(__x86_64__) || defined(__i386__)

inline unsigned long long readCycles()
{
    return __builtin_ia32_rdtsc();
}

// How far the counter goes in 0.1 ms or less: at least a thousand million a second on every processor in use.
inline unsigned long long getCyclesOfTenthMillisecond()
{
    return 100000;
}

#elif defined(__aarch64__) && defined(__GNUC__)

// The counter of the system's timer, which every program may read, as it may read how often it counts in a second.
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

// None, or none that every program may read: what a clock said holds for no time.
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
