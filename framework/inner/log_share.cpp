#include "framework/inner/log_share.h"

#include "framework/time.h"

#include <algorithm>
#include <atomic>

namespace zet::inner
{

namespace
{

std::atomic<unsigned long long> allOmitted{0};

} // namespace

bool LogShare::take()
{
    const unsigned int now = getTimeTick();
    if (m_Left == m_Burst)
        m_Refilled = now;
    const unsigned int steps = m_Interval > 0 ? (now - m_Refilled) / m_Interval : 0;
    m_Left += std::min(steps, m_Burst - m_Left);
    m_Refilled += steps * m_Interval;
    if (m_Left == 0)
    {
        ++m_Omitted;
        allOmitted.fetch_add(1, std::memory_order_relaxed);
        return false;
    }
    --m_Left;
    return true;
}

unsigned long long LogShare::getAllOmitted()
{
    return allOmitted.load(std::memory_order_relaxed);
}

} // namespace zet::inner
