// Measures elapsed time, cheaply enough to check before every packet.
#pragma once

#include "framework/export.h"

namespace zet
{

// Measures with getTimeTick() from its construction.
class COMMONGROUND_API Stopwatch
{
public:
    // Starts now.
    Stopwatch();
    // Milliseconds, wrapping like the tick.
    unsigned int getElapsed() const;
    // getElapsed() < limit. The exact clock is read only if a coarse one, which is cheaper, does not show that the
    // limit is far. While a TestClock exists, it is always read.
    bool isBelow(unsigned int limit) const;

private:
    unsigned int m_Start;
    bool m_IsExact;
    long long m_CoarseStart;
};

} // namespace zet
