// A counter of the processor that costs little to read, where there is one.
#pragma once

namespace zet::platform
{

#if defined(__x86_64__) || defined(__i386__)

// At least a thousand million a second on every processor in use; so many pass in 0.1 ms or less.
constexpr unsigned long long kCyclesOfTenthMillisecond = 100000;

inline unsigned long long readCycles()
{
    return __builtin_ia32_rdtsc();
}

#else

// None: what a clock said holds for no time.
constexpr unsigned long long kCyclesOfTenthMillisecond = 0;

inline unsigned long long readCycles()
{
    return 0;
}

#endif

} // namespace zet::platform
