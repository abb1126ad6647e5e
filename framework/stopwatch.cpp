#include "framework/stopwatch.h"

#include "framework/platform/cycles.h"
#include "framework/time.h"

namespace zet
{

namespace
{

unsigned long long trustedCycles()
{
    return TestClock::isOn() ? 0 : platform::getCyclesOfTenthMillisecond();
}

} // namespace

Stopwatch::Stopwatch() : m_Trusted(trustedCycles()), m_Start(getTimeTick()), m_Cycles(platform::readCycles()) {}

unsigned int Stopwatch::getElapsed()
{
    return platform::readCycles() - m_Cycles < m_Trusted ? m_Elapsed : readClock();
}

unsigned int Stopwatch::readClock()
{
    m_Cycles = platform::readCycles();
    m_Trusted = trustedCycles();
    m_Elapsed = getTimeTick() - m_Start;
    return m_Elapsed;
}

} // namespace zet
