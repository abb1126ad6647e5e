// How long something has taken, at a price that allows to ask before every packet.
#pragma once

#include "framework/platform/export.h"

namespace zet
{

// Measures with getTimeTick() from its construction on. Where the processor's counter says that less than 0.1 ms has
// passed since the clock was read, the clock is not read again; a TestClock that was on then is always read.
class COMMONGROUND_API Stopwatch
{
public:
    Stopwatch();
    // Milliseconds, wrapping as the tick does.
    unsigned int getElapsed();

private:
    unsigned int readClock();

    // Cycles for which what the clock said holds.
    unsigned long long m_Trusted;
    unsigned int m_Start;
    unsigned int m_Elapsed = 0;
    unsigned long long m_Cycles;
};

} // namespace zet
