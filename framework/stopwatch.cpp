#include "framework/stopwatch.h"

#include "framework/inner/fast_paths.h"
#include "framework/platform/platform.h"
#include "framework/time.h"

namespace zet
{

Stopwatch::Stopwatch()
    : m_Start(getTimeTick()), m_IsExact(!inner::kHasFastPaths || TestClock::isOn()),
      m_CoarseStart(platform::getCoarseNanoseconds())
{
}

unsigned int Stopwatch::getElapsed() const
{
    return getTimeTick() - m_Start;
}

bool Stopwatch::isBelow(unsigned int limit) const
{
    // The coarse clock is behind: at the start it may have been right, now it may be late.
    constexpr long long kPerMillisecond = 1000000;
    if (!m_IsExact && platform::getCoarseNanoseconds() - m_CoarseStart <
                          (static_cast<long long>(limit) - platform::kCoarseLag) * kPerMillisecond)
        return true;
    return getElapsed() < limit;
}

} // namespace zet
