#include "framework/stopwatch.h"

#include "framework/platform/cycles.h"
#include "framework/time.h"

namespace zet
{

Stopwatch::Stopwatch() : m_Start(getTimeTick()), m_Cycles(platform::readCycles()) {}

unsigned int Stopwatch::getElapsed()
{
    const unsigned long long cycles = platform::readCycles();
    if (platform::kHasCycles && cycles - m_Cycles < platform::kCyclesOfTenthMillisecond && !TestClock::isOn())
        return m_Elapsed;
    m_Cycles = cycles;
    m_Elapsed = getTimeTick() - m_Start;
    return m_Elapsed;
}

} // namespace zet
