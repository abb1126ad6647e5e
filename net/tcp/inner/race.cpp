#include "net/tcp/inner/race.h"

#include "framework/inner/moment.h"
#include "framework/time.h"
#include "net/tcp/inner/link.h"

#include <algorithm>
#include <new>

namespace zet::inner
{

struct TcpRace::Attempt final : Watched
{
    Attempt(TcpLink& link, Reactor& reactor, const Endpoint& peer)
        : Watched(reactor, Door::kNoHandle), m_Link(link), m_Peer(peer)
    {
    }

    bool begin(Door::Fault& fault)
    {
        take(door().open(Door::kStream, Door::familyOf(m_Peer), fault));
        if (fault)
            return false;
        door().setOption(getHandle(), Door::kNoDelay, 1);
        // Watch it after connect(): before it, the system reports the socket as broken.
        fault = door().connect(getHandle(), m_Peer);
        return !fault && startWatch(kReadyInput | kReadyOutput);
    }
    void onReady(unsigned char ready) override
    {
        if (!(ready & kReadyOutput))
            return;
        m_IsAnswered = true;
        m_Link.reportAttempt();
    }

    TcpLink& m_Link;
    const Endpoint m_Peer;
    bool m_IsAnswered = false;
};

TcpRace::TcpRace(TcpLink& link, Reactor& reactor, unsigned short port) : m_Link(link), m_Reactor(reactor), m_Port(port)
{
}

TcpRace::~TcpRace() = default;

bool TcpRace::lookUp(const char* name)
{
    try
    {
        m_Name = name;
    }
    catch (const std::bad_alloc&)
    {
        return false;
    }
    m_Lookup = m_Reactor.resolve(name,
                                 [this](std::vector<Endpoint>&& found)
                                 {
                                     m_Addresses = std::move(found);
                                     m_Link.reportAttempt();
                                 });
    return isLookingUp();
}

const std::vector<Endpoint>& TcpRace::takeAddresses()
{
    m_Lookup.reset();
    m_Addresses.resize(std::min(m_Addresses.size(), kMostAddresses));
    for (Endpoint& each : m_Addresses)
        each.m_Port = m_Port;
    return m_Addresses;
}

TcpRace::State TcpRace::step()
{
    const size_t before = m_Attempts.size();
    if (findWinner())
        return kWon;
    bool mayBegin = m_Attempts.size() < std::max(before, size_t{1}) || isReached(m_NextAt, getTimeTick());
    while (mayBegin && m_Next < m_Addresses.size())
        mayBegin = !begin(m_Addresses[m_Next++]);
    return m_Attempts.empty() ? kLost : kRunning;
}

bool TcpRace::findWinner()
{
    for (auto each = m_Attempts.begin(); each != m_Attempts.end();)
    {
        Attempt& attempt = **each;
        if (!attempt.m_IsAnswered)
        {
            ++each;
            continue;
        }
        m_Fault = attempt.door().endConnect(attempt.getHandle());
        if (!m_Fault)
        {
            m_Peer = attempt.m_Peer;
            std::swap(*each, m_Attempts.front());
            m_Attempts.resize(1);
            return true;
        }
        each = m_Attempts.erase(each);
    }
    return false;
}

bool TcpRace::begin(const Endpoint& peer)
{
    m_Attempts.reserve(m_Addresses.size());
    auto attempt = std::make_unique<Attempt>(m_Link, m_Reactor, peer);
    m_Peer = peer;
    if (!attempt->begin(m_Fault))
        return false;
    m_Attempts.push_back(std::move(attempt));
    m_NextAt = getTimeTick() + kNextAfter;
    return true;
}

Door::Handle TcpRace::releaseHandle()
{
    return m_Attempts.front()->giveAway();
}

} // namespace zet::inner
