#include "framework/stopwatch.h"

#include "framework/inner/fast_paths.h"
#include "framework/platform/platform.h"
#include "framework/time.h"

namespace zet
{

Stopwatch::Stopwatch()
    : m_Start(getTimeTick()), m_CoarseStart(platform::getCoarseMilliseconds()),
      m_IsExact(!inner::kHasFastPaths || TestClock::isOn())
{
}

unsigned int Stopwatch::getElapsed() const
{
    return getTimeTick() - m_Start;
}

bool Stopwatch::isBelow(unsigned int limit) const
{
    // The coarse clock is behind: at the start it may have been right, now it may be late.
    if (!m_IsExact && platform::getCoarseMilliseconds() - m_CoarseStart + platform::kCoarseLag < limit)
        return true;
    return getElapsed() < limit;
}

} // namespace zet
