#include "net/tcp/inner/link.h"

#include "net/inner/fetch.h"
#include "net/tcp/connection.h"

#include <new>

namespace zet::inner
{

void TcpLink::waitForInput(bool isCutShort)
{
    if (isCutShort && m_HasTail)
        poller().reportInputAgain(*this);
    else
        poller().want(*this, kReadyInput);
}

void TcpLink::waitForOutput()
{
    m_IsOutputWaited = true;
    poller().want(*this, kReadyOutput);
}

bool TcpLink::connect(const Endpoint& peer, Door::Fault& fault)
{
    m_Owner->takePeer(peer);
    prepare();
    if ((fault = door().connect(getHandle(), peer)))
        return false;
    // Not earlier: the poller reports a socket that is not connecting as broken.
    m_IsConnecting = true;
    return startWatch(kReadyInput | kReadyOutput);
}

bool TcpLink::connectByName(Reactor& reactor, const char* name, unsigned short port)
{
    m_Race.reset(new (std::nothrow) TcpRace(*this, reactor, port));
    return m_Race && m_Race->lookUp(name);
}

bool TcpLink::beginNamed(Door::Fault& fault)
{
    const std::vector<Endpoint>& found = m_Race->takeAddresses();
    if (found.empty())
        return false;
    if (found.size() > 1 || !found.front().isV4())
    {
        reportAttempt();
        return true;
    }
    // The socket that has waited for the name is one of IPv4.
    const Endpoint peer = found.front();
    m_Race.reset();
    return connect(peer, fault);
}

TcpRace::State TcpLink::race(Door::Fault& fault)
{
    TcpRace::State state = TcpRace::kLost;
    try
    {
        state = m_Race->step();
        fault = m_Race->getFault();
    }
    catch (const std::bad_alloc&)
    {
        // Ends like a name whose addresses do not answer.
    }
    m_Owner->takePeer(m_Race->getPeer());
    unsigned int moment = 0;
    if (System* const system = m_Owner->getSystem(); system && m_Race->getNextAttempt(moment))
        system->tickBy(moment);
    if (state == TcpRace::kWon)
        Watched::take(m_Race->releaseHandle());
    if (state != TcpRace::kRunning)
        m_Race.reset();
    return state;
}

void TcpLink::reportAttempt()
{
    report(TcpConnection::kConnected);
}

void TcpLink::onReady(unsigned char ready)
{
    unsigned int pending = 0;
    if ((ready & kReadyOutput) && m_IsConnecting)
    {
        m_IsConnecting = false;
        pending |= TcpConnection::kConnected;
    }
    if ((ready & kReadyOutput) && m_IsOutputWaited)
    {
        m_IsOutputWaited = false;
        pending |= TcpConnection::kWritable;
    }
    if (ready & kReadyInput)
        pending |= TcpConnection::kReadable;
    if (ready & kReadyTail)
        m_HasTail = true;
    report(pending);
}

void TcpLink::loadAhead() const
{
    // The fields that report() reads and changes.
    fetch<3>(m_Owner);
}

void TcpLink::report(unsigned int pending)
{
    if (!m_Owner || pending == 0)
        return;
    m_Owner->setPending(pending);
    m_Owner->list();
}

void TcpLink::flushOwner()
{
    if (m_Owner && m_Owner->isPending(TcpConnection::kOutput))
        m_Owner->flush();
}

void TcpLink::failOwner()
{
    if (m_Owner)
        m_Owner->fail(TcpConnection::kBroken, {EndCause::kThrown, 0});
}

} // namespace zet::inner
