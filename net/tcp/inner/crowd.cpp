#include "net/tcp/inner/crowd.h"

#include "framework/inner/moment.h"
#include "framework/log.h"
#include "framework/stopwatch.h"
#include "framework/time.h"
#include "net/inner/guard.h"
#include "net/tcp/secure_connection.h"

#include <algorithm>

namespace zet::inner
{

namespace
{

// The number of deadlines of ended connections at which they may be removed in one pass.
constexpr size_t kManyStale = 1024;

// Milliseconds between two log lines on refused connections.
constexpr unsigned int kRefusedInterval = 60000;

} // namespace

Seat::Seat(std::shared_ptr<Crowd> crowd, const Endpoint& peer)
    : m_Crowd(std::move(crowd)), m_Limits(m_Crowd->limits()), m_Peer(peer)
{
}

void Seat::setOwner(TcpConnection* owner)
{
    m_Owner = owner;
    noteInput();
}

void Seat::leave()
{
    m_Owner = nullptr;
    endHandshake();
    if (std::exchange(m_IsIn, false))
        m_Crowd->remove(*this);
}

bool Seat::holdInput(size_t bytes)
{
    m_Crowd->m_Input += bytes - std::exchange(m_Input, bytes);
    return m_Crowd->isFair(bytes, m_Crowd->m_Input, m_Limits.m_InputSum);
}

bool Seat::holdOutput(size_t bytes)
{
    m_Crowd->m_Output += bytes - std::exchange(m_Output, bytes);
    return m_Crowd->isFair(bytes, m_Crowd->m_Output, m_Limits.m_OutputSum);
}

void Seat::beginHandshake(TcpSecureConnection& connection, unsigned int time)
{
    m_Securing = &connection;
    m_HandshakeBy = getTimeTick() + time;
    m_Crowd->watch(*this);
}

bool Seat::waitForStep()
{
    if (std::exchange(m_IsWaiting, true))
        return false;
    m_Crowd->m_Steps.emplace_back(this);
    return true;
}

void Seat::endHandshake()
{
    m_Securing = nullptr;
}

void Seat::countEnd(EndCause cause)
{
    m_Crowd->m_Ends.add(cause);
}

void Seat::noteInput()
{
    if (m_Limits.m_IdleTime == 0)
        return;
    m_LastInput = getTimeTick();
    if (!m_IsTimed)
        m_Crowd->watch(*this);
}

bool Seat::getDeadline(unsigned int& moment) const
{
    if (!m_Owner || !m_IsIn)
        return false;
    const bool hasIdleTime = m_Limits.m_IdleTime > 0;
    if (!m_Securing && !hasIdleTime)
        return false;
    const unsigned int idle = m_LastInput + m_Limits.m_IdleTime;
    moment = !hasIdleTime || (m_Securing && isReached(m_HandshakeBy, idle)) ? m_HandshakeBy : idle;
    return true;
}

bool Crowd::isLater(const Deadline& a, const Deadline& b)
{
    return static_cast<int>(a.m_Moment - b.m_Moment) > 0;
}

void Crowd::setLimits(const NetLimits& limits)
{
    m_Limits = limits;
    // Times are compared by their signed difference.
    m_Limits.m_IdleTime = std::min(limits.m_IdleTime, 0x7FFFFFFFu);
}

bool Crowd::hasSpace(const Endpoint& peer) const
{
    return (m_Limits.m_Connections <= 0 || m_Count < m_Limits.m_Connections) && m_Addresses.hasSpace(peer, m_Limits);
}

Ref<Seat> Crowd::admit(const Endpoint& peer)
{
    const Ref<Seat> seat(new Seat(shared_from_this(), peer));
    m_Addresses.add(peer);
    ++m_Count;
    return seat;
}

void Crowd::noteRefused()
{
    ++m_Refused;
    const unsigned int now = getTimeTick();
    if (m_HasLogged && now - m_RefusedLogged < kRefusedInterval)
        return;
    m_HasLogged = true;
    m_RefusedLogged = now;
    Log::warning(
        L"Connections closed at once, since the port has reached a limit, in all or for an address or subnet: %u",
        std::exchange(m_Refused, 0));
}

void Crowd::remove(Seat& seat)
{
    m_Input -= std::exchange(seat.m_Input, 0);
    m_Output -= std::exchange(seat.m_Output, 0);
    m_Addresses.remove(seat.m_Peer);
    --m_Count;
    if (!seat.m_IsTimed || ++m_Stale < kManyStale || m_Stale < m_Deadlines.size() / 2)
        return;
    std::erase_if(m_Deadlines, [](const Deadline& each) { return !each.m_Seat->m_IsIn; });
    std::make_heap(m_Deadlines.begin(), m_Deadlines.end(), isLater);
    m_Stale = 0;
}

bool Crowd::isFair(size_t bytes, size_t sum, size_t limit) const
{
    return limit == 0 || sum <= limit || bytes <= limit / static_cast<size_t>(std::max(m_Count, 1));
}

void Crowd::watch(Seat& seat)
{
    unsigned int moment = 0;
    if (!m_IsServed || !seat.getDeadline(moment))
        return;
    seat.m_IsTimed = true;
    m_Deadlines.push_back({moment, Ref<Seat>(&seat)});
    std::push_heap(m_Deadlines.begin(), m_Deadlines.end(), isLater);
}

void Crowd::setServed(bool isServed)
{
    m_IsServed = isServed;
    if (isServed)
        return;
    // From now on each connection runs its handshake in its own ticks.
    for (const Ref<Seat>& seat : std::exchange(m_Steps, {}))
        seat->m_IsWaiting = false;
    for (const Deadline& each : std::exchange(m_Deadlines, {}))
    {
        each.m_Seat->m_IsTimed = false;
        if (TcpSecureConnection* const connection = each.m_Seat->m_Securing)
            connection->hurry();
    }
    m_Stale = 0;
}

bool Crowd::serve()
{
    if (!m_Steps.empty())
        takeSteps();
    endLate();
    return !m_Steps.empty();
}

void Crowd::takeSteps()
{
    Stopwatch watch;
    for (int steps = 0; !m_Steps.empty(); ++steps)
    {
        if (steps > 0 && ((m_Limits.m_HandshakeSteps > 0 && steps >= m_Limits.m_HandshakeSteps) ||
                          (m_Limits.m_HandshakeTime > 0 && !watch.isBelow(m_Limits.m_HandshakeTime))))
            break;
        const Ref<Seat> seat = std::move(m_Steps.front());
        m_Steps.pop_front();
        seat->m_IsWaiting = false;
        if (TcpSecureConnection* const connection = seat->m_Securing)
            guard(L"a connection", connection, [&] { connection->stepHandshake(); });
        else
            --steps;
    }
}

void Crowd::endLate()
{
    if (m_Deadlines.empty())
        return;
    const unsigned int now = getTimeTick();
    while (!m_Deadlines.empty() && isReached(m_Deadlines.front().m_Moment, now))
    {
        std::pop_heap(m_Deadlines.begin(), m_Deadlines.end(), isLater);
        const Ref<Seat> seat = std::move(m_Deadlines.back().m_Seat);
        m_Deadlines.pop_back();
        seat->m_IsTimed = false;
        if (!seat->m_IsIn && m_Stale > 0)
            --m_Stale;
        unsigned int moment = 0;
        if (!seat->getDeadline(moment))
            continue;
        if (!isReached(moment, now))
        {
            watch(*seat.get());
            continue;
        }
        if (seat->m_Securing && isReached(seat->m_HandshakeBy, now))
        {
            guard(L"a connection", seat->m_Owner, [&] { seat->m_Securing->endLateHandshake(); });
            continue;
        }
        seat->m_Owner->fail(TcpConnection::kBroken, {EndCause::kTimedOut, EndCause::kInput});
    }
}

} // namespace zet::inner
