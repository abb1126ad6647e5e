#include "net/tcp/inner/proxied.h"

#include "framework/inner/make_room.h"
#include "framework/inner/moment.h"
#include "framework/time.h"
#include "net/inner/end_counts.h"

#include <algorithm>

namespace zet::inner
{

struct Proxied::Waiting final : Watched
{
    Waiting(Proxied& owner, Reactor& reactor, const Endpoint& proxy, bool isPrepared)
        : Watched(reactor, Door::kNoHandle), m_Owner(owner), m_Reactor(reactor), m_Proxy(proxy),
          m_IsPrepared(isPrepared), m_Begun(getTimeTick())
    {
    }

    void onReady(unsigned char ready) override
    {
        m_HasTail = m_HasTail || (ready & kReadyTail);
        // There is space for each connection.
        if (!std::exchange(m_IsReadable, true))
            m_Owner.m_Readable.push_back(m_Place);
    }
    // The socket has been found empty.
    void waitForInput(bool isCutShort)
    {
        if (isCutShort && m_HasTail)
            poller().reportInputAgain(*this);
        else
            poller().want(*this, kReadyInput);
    }

    void unwatch() { Watched::take(giveAway()); }

    Proxied& m_Owner;
    Reactor& m_Reactor;
    Place m_Place;
    const Endpoint m_Proxy;
    const bool m_IsPrepared;
    bool m_IsReadable = false;
    bool m_HasTail = false;
    const unsigned int m_Begun;
    ProxyHeader m_Header;
    size_t m_Size = 0;
    unsigned char m_Bytes[ProxyHeader::kMostSize];
};

Proxied::Proxied(AddressFilter trusted) : m_Trusted(std::move(trusted)) {}

Proxied::~Proxied() = default;

bool Proxied::await(Reactor& reactor, DoorHandle& handle, const Endpoint& proxy, bool isPrepared)
{
    makeRoom(m_Readable, m_Waiting.size() + 1);
    makeRoom(m_Refused, m_Waiting.size() + 1);
    m_Waiting.emplace_back(*this, reactor, proxy, isPrepared);
    Waiting& added = m_Waiting.back();
    added.m_Place = std::prev(m_Waiting.end());
    added.take(handle.release());
    if (added.startWatch(kReadyInput))
        return true;
    handle.set(added.giveAway());
    m_Waiting.pop_back();
    return false;
}

const std::vector<Proxied::Refused>& Proxied::read(const NetLimits& limits)
{
    m_Refused.clear();
    for (const Place place : m_Readable)
        readOne(place);
    m_Readable.clear();
    unsigned int moment = 0;
    if (!getDeadline(limits, moment))
        return m_Refused;
    const unsigned int now = getTimeTick();
    while (getDeadline(limits, moment) && isReached(moment, now))
        refuse(m_Waiting.begin(), {EndCause::kTimedOut, EndCause::kHandshake}, L"no PROXY header in time");
    return m_Refused;
}

void Proxied::readOne(Place place)
{
    Waiting& waiting = *place;
    waiting.m_IsReadable = false;
    for (;;)
    {
        const size_t wanted = waiting.m_Header.getSize() - waiting.m_Size;
        Door::Fault fault;
        const size_t got = waiting.door().receive(waiting.getHandle(), waiting.m_Bytes + waiting.m_Size, wanted, fault);
        if (fault && fault.m_Reason != Door::Fault::kNotNow)
            return refuse(place, causeOf(fault), nullptr);
        if (got == 0 && !fault)
            return refuse(place, {EndCause::kClosedByPeer, 0}, nullptr);
        waiting.m_Size += got;
        const ProxyHeader::State state = waiting.m_Header.read(waiting.m_Bytes, waiting.m_Size);
        if (state == ProxyHeader::kMalformed)
            return refuse(place, {EndCause::kMalformed, 0}, L"malformed PROXY header");
        if (state == ProxyHeader::kWhole)
            break;
        if (got < wanted)
            return waiting.waitForInput(!fault);
    }
    waiting.unwatch();
    m_Known.splice(m_Known.end(), m_Waiting, place);
}

void Proxied::refuse(Place place, EndCause cause, const wchar_t* reason)
{
    // There is space for each connection.
    m_Refused.push_back({place->m_Proxy, cause, reason});
    m_Waiting.erase(place);
}

Proxied::Known Proxied::take()
{
    Waiting& first = m_Known.front();
    Known known{DoorHandle(first.m_Reactor.door(), first.giveAway()),
                first.m_Header.hasPeer() ? first.m_Header.getPeer() : first.m_Proxy, first.m_IsPrepared};
    m_Known.pop_front();
    return known;
}

bool Proxied::getDeadline(const NetLimits& limits, unsigned int& moment) const
{
    if (m_Waiting.empty() || limits.m_ProxyHeaderTime == 0)
        return false;
    moment = m_Waiting.front().m_Begun + std::min(limits.m_ProxyHeaderTime, kLongestTime);
    return true;
}

void Proxied::clear()
{
    m_Readable.clear();
    m_Waiting.clear();
    m_Known.clear();
}

} // namespace zet::inner
