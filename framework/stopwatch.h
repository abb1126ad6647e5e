// Measures elapsed time, cheaply enough to check before every packet.
#pragma once

#include "framework/platform/export.h"

namespace zet
{

// Measures with getTimeTick() from its construction. If the processor's counter shows that less than 0.1 ms has passed
// since the clock was read, the clock is not read again; a TestClock that was active then is always read.
class COMMONGROUND_API Stopwatch
{
public:
    Stopwatch();
    // Milliseconds, wrapping like the tick.
    unsigned int getElapsed();

private:
    unsigned int readClock();

    // Cycles for which the last clock value is valid.
    unsigned long long m_Trusted;
    unsigned int m_Start;
    unsigned int m_Elapsed = 0;
    unsigned long long m_Cycles;
};

} // namespace zet
