#include "net/tcp/inner/crowd.h"

#include "framework/inner/moment.h"
#include "framework/log.h"
#include "framework/stopwatch.h"
#include "framework/time.h"
#include "net/inner/guard.h"
#include "net/tcp/inner/link.h"
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

Terms::~Terms()
{
    if (m_Crowd->m_Terms == this)
        m_Crowd->m_Terms = nullptr;
}

struct Crowd::Deadline
{
    unsigned int m_Moment;
    Ref<TcpLink> m_Link;
};

Crowd::Crowd() = default;

Crowd::~Crowd() = default;

TcpLink& Seat::link()
{
    return static_cast<TcpLink&>(*this);
}

void Seat::leave(const Endpoint& peer)
{
    endHandshake(false);
    const Ref<Terms> terms = std::exchange(m_Terms, {});
    terms->m_Crowd->remove(*this, peer);
}

void Seat::moveTo(TcpLink& other)
{
    crowd().replace(link(), other);
    Seat& seat = other;
    seat = *this;
    *this = Seat();
}

bool Seat::holdInput(size_t bytes)
{
    crowd().m_Input += bytes - std::exchange(m_Input, static_cast<unsigned int>(bytes));
    return crowd().isFair(bytes, crowd().m_Input, limits().m_InputSum);
}

bool Seat::holdOutput(size_t bytes)
{
    crowd().m_Output += bytes - std::exchange(m_Output, bytes);
    return crowd().isFair(bytes, crowd().m_Output, limits().m_OutputSum);
}

TcpSecureConnection* Seat::getSecuring() const
{
    return m_IsSecuring ? static_cast<TcpSecureConnection*>(link().m_Owner) : nullptr;
}

void Seat::beginHandshake(unsigned int time)
{
    m_IsSecuring = true;
    m_HandshakeBy = getTimeTick() + time;
    crowd().watch(*this);
}

bool Seat::waitForStep()
{
    if (std::exchange(m_IsWaiting, true))
        return false;
    crowd().m_Steps.emplace_back(&link());
    return true;
}

void Seat::endHandshake(bool isDone)
{
    if (!std::exchange(m_IsSecuring, false))
        return;
    AcceptCounts& counts = crowd().m_Accepts;
    ++(isDone ? counts.m_Handshakes : counts.m_HandshakesFailed);
}

void Seat::countEnd(EndCause cause)
{
    crowd().m_Ends.add(cause);
}

void Seat::countRefused()
{
    ++crowd().m_RefusedPackets;
}

void Seat::noteInput()
{
    if (limits().m_IdleTime == 0)
        return;
    m_LastInput = getTimeTick();
    if (!m_IsTimed)
        crowd().watch(*this);
}

bool Seat::getDeadline(unsigned int& moment) const
{
    if (!isIn() || !link().m_Owner)
        return false;
    const bool hasIdleTime = limits().m_IdleTime > 0;
    if (!m_IsSecuring && !hasIdleTime)
        return false;
    const unsigned int idle = m_LastInput + limits().m_IdleTime;
    moment = !hasIdleTime || (m_IsSecuring && isReached(m_HandshakeBy, idle)) ? m_HandshakeBy : idle;
    return true;
}

Seat& Crowd::seatOf(const Ref<TcpLink>& link)
{
    return *link.get();
}

bool Crowd::isLater(const Deadline& a, const Deadline& b)
{
    return static_cast<int>(a.m_Moment - b.m_Moment) > 0;
}

void Crowd::setLimits(const NetLimits& limits)
{
    m_Limits = limits;
    m_Limits.m_IdleTime = std::min(limits.m_IdleTime, kLongestTime);
    m_Terms = nullptr;
}

bool Crowd::hasSpace(const Endpoint& peer) const
{
    return hasSpaceInAll() && m_Addresses.hasSpace(peer, m_Limits);
}

bool Crowd::hasSpaceInAll() const
{
    return m_Limits.m_Connections <= 0 || m_Count < m_Limits.m_Connections;
}

void Crowd::admit(TcpLink& link, const Endpoint& peer)
{
    // Not shared_from_this(): the loader would have to look up its exception.
    const Ref<Terms> terms(m_Terms ? m_Terms : new Terms(weak_from_this().lock(), m_Limits));
    m_Addresses.add(peer);
    m_Terms = terms.get();
    ++m_Count;
    static_cast<Seat&>(link).m_Terms = terms;
}

void Crowd::noteRefused(const Endpoint& peer)
{
    ++(!hasSpaceInAll()                                  ? m_Refused.m_InAll
       : !m_Addresses.hasSpaceForAddress(peer, m_Limits) ? m_Refused.m_OfAddress
                                                         : m_Refused.m_OfSubnet);
    const unsigned int now = getTimeTick();
    if (m_HasLogged && now - m_RefusedLogged < kRefusedInterval)
        return;
    m_HasLogged = true;
    m_RefusedLogged = now;
    Log::warning(L"Connections closed at once by limits of the port: %u in all, %u of an address, %u of a subnet",
                 m_Refused.m_InAll, m_Refused.m_OfAddress, m_Refused.m_OfSubnet);
    m_Refused = {};
}

void Crowd::remove(Seat& seat, const Endpoint& peer)
{
    m_Input -= std::exchange(seat.m_Input, 0);
    m_Output -= std::exchange(seat.m_Output, 0);
    m_Addresses.remove(peer);
    --m_Count;
    if (!seat.m_IsTimed || ++m_Stale < kManyStale || m_Stale < m_Deadlines.size() / 2)
        return;
    std::erase_if(m_Deadlines, [](const Deadline& each) { return !each.m_Link->isIn(); });
    std::make_heap(m_Deadlines.begin(), m_Deadlines.end(), isLater);
    m_Stale = 0;
}

void Crowd::replace(TcpLink& link, TcpLink& by)
{
    for (Ref<TcpLink>& each : m_Steps)
        if (each.get() == &link)
            each = Ref<TcpLink>(&by);
    for (Deadline& each : m_Deadlines)
        if (each.m_Link.get() == &link)
            each.m_Link = Ref<TcpLink>(&by);
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
    m_Deadlines.push_back({moment, Ref<TcpLink>(&seat.link())});
    std::push_heap(m_Deadlines.begin(), m_Deadlines.end(), isLater);
}

void Crowd::setServed(bool isServed)
{
    m_IsServed = isServed;
    if (isServed)
        return;
    // From now on each connection runs its handshake in its own ticks.
    for (const Ref<TcpLink>& link : std::exchange(m_Steps, {}))
        seatOf(link).m_IsWaiting = false;
    for (const Deadline& each : std::exchange(m_Deadlines, {}))
    {
        Seat& seat = seatOf(each.m_Link);
        seat.m_IsTimed = false;
        if (TcpSecureConnection* const connection = seat.getSecuring())
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

unsigned int Crowd::getNextDeadline() const
{
    return m_Deadlines.front().m_Moment;
}

void Crowd::takeSteps()
{
    Stopwatch watch;
    for (int steps = 0; !m_Steps.empty(); ++steps)
    {
        if (steps > 0 && ((m_Limits.m_HandshakeSteps > 0 && steps >= m_Limits.m_HandshakeSteps) ||
                          (m_Limits.m_HandshakeTime > 0 && !watch.isBelow(m_Limits.m_HandshakeTime))))
            break;
        const Ref<TcpLink> link = std::move(m_Steps.front());
        m_Steps.pop_front();
        seatOf(link).m_IsWaiting = false;
        if (TcpSecureConnection* const connection = seatOf(link).getSecuring())
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
        const Ref<TcpLink> link = std::move(m_Deadlines.back().m_Link);
        m_Deadlines.pop_back();
        Seat& seat = seatOf(link);
        seat.m_IsTimed = false;
        if (!seat.isIn() && m_Stale > 0)
            --m_Stale;
        unsigned int moment = 0;
        if (!seat.getDeadline(moment))
            continue;
        if (!isReached(moment, now))
        {
            watch(seat);
            continue;
        }
        if (TcpSecureConnection* const connection = seat.getSecuring();
            connection && isReached(seat.m_HandshakeBy, now))
        {
            guard(L"a connection", connection, [&] { connection->endLateHandshake(); });
            continue;
        }
        link->m_Owner->fail(TcpConnection::kBroken, {EndCause::kTimedOut, EndCause::kInput});
    }
}

} // namespace zet::inner
