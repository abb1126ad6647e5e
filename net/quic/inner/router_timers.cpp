#include "net/quic/inner/router.h"

namespace zet::inner
{

void QuicRouter::schedule(QuicLink& link)
{
    if (!m_Server)
        return;
    const QuicTime expiry = link.getExpiry();
    if (expiry == kNever)
    {
        removeTimer(link);
        return;
    }
    const size_t place = link.m_TimerPlace < m_Timers.size() ? link.m_TimerPlace : m_Timers.size();
    if (place == m_Timers.size())
        m_Timers.push_back(&link);
    link.m_Expiry = expiry;
    link.m_TimerPlace = place;
    sift(place);
}

void QuicRouter::removeTimer(QuicLink& link)
{
    const size_t place = std::exchange(link.m_TimerPlace, std::numeric_limits<size_t>::max());
    if (place >= m_Timers.size())
        return;
    QuicLink* const last = m_Timers.back();
    m_Timers.pop_back();
    if (last == &link)
        return;
    put(place, last);
    sift(place);
}

void QuicRouter::put(size_t place, QuicLink* link)
{
    m_Timers[place] = link;
    link->m_TimerPlace = place;
}

void QuicRouter::sift(size_t place)
{
    QuicLink* const link = m_Timers[place];
    for (; place > 0 && link->m_Expiry < m_Timers[(place - 1) / 2]->m_Expiry; place = (place - 1) / 2)
        put(place, m_Timers[(place - 1) / 2]);
    for (size_t child = 2 * place + 1; child < m_Timers.size(); child = 2 * place + 1)
    {
        if (child + 1 < m_Timers.size() && m_Timers[child + 1]->m_Expiry < m_Timers[child]->m_Expiry)
            ++child;
        if (m_Timers[child]->m_Expiry >= link->m_Expiry)
            break;
        put(place, m_Timers[child]);
        place = child;
    }
    put(place, link);
}

void QuicRouter::runTimers()
{
    const QuicTime time = now();
    m_TimersRun = time;
    // A timer that is due again at once waits for the next tick.
    for (size_t most = m_Timers.size(); most > 0 && m_Server && !m_Timers.empty(); --most)
    {
        QuicLink& link = *m_Timers.front();
        if (link.m_Expiry > time)
            return;
        if (link.isForgettable(time))
        {
            forget(link);
            continue;
        }
        removeTimer(link);
        link.onExpiry();
    }
}

void QuicRouter::hurryForTimers()
{
    // A timer that was due when the timers ran waits for the next tick. The timers of a blocked port set no time: they
    // cannot send, and the sleep ends when the port has space for output.
    if (m_Timers.empty() || m_Port->isBlocked())
        return;
    const QuicTime expiry = m_Timers.front()->m_Expiry;
    if (expiry > m_TimersRun)
        m_Reactor->hurryAt(m_LastTime + (expiry > m_Now ? expiry - m_Now : 0));
}

} // namespace zet::inner
