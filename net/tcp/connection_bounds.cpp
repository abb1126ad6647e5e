// The limits of a connection's own, and the rate of its input.
#include "net/tcp/connection.h"

#include "framework/inner/moment.h"
#include "framework/inner/nanoseconds.h"
#include "framework/log.h"
#include "framework/time.h"
#include "net/tcp/inner/bounds.h"
#include "net/tcp/inner/link.h"
#include "net/tcp/inner/ready_list.h"
#include "net/tcp/stream.h"

#include <algorithm>

namespace zet
{

TcpConnection::TcpConnection() = default;

bool TcpConnection::setLimits(const NetLimits& limits)
{
    if (!isInvalid())
        return false;
    bounds().m_Own = limits;
    return true;
}

inner::TcpBounds& TcpConnection::bounds()
{
    if (!m_Bounds)
        m_Bounds = std::make_unique<inner::TcpBounds>();
    return *m_Bounds;
}

const NetLimits* TcpConnection::getLimits() const
{
    if (const NetLimits* const port = getPortLimits())
        return port;
    return m_Bounds && m_Bounds->m_Own ? &*m_Bounds->m_Own : nullptr;
}

unsigned long long TcpConnection::getRefusedPackets() const
{
    return m_Bounds ? m_Bounds->m_Refused : 0;
}

void TcpConnection::beginBounds()
{
    const NetLimits* const limits = getLimits();
    if (!m_Bounds && (!limits || (limits->m_PacketsPerSecond <= 0 && limits->m_BytesPerSecond <= 0)))
        return;
    bounds().m_Rate.start(limits);
    m_Bounds->m_Refused = 0;
    m_Bounds->m_LastInput = getTimeTick();
    if (!getPortLimits() && m_Bounds->m_Own && m_Bounds->m_Own->m_IdleTime > 0)
        setPending(kTimed);
}

void TcpConnection::beginConnectTime()
{
    if (!m_Bounds || !m_Bounds->m_Own || m_Bounds->m_Own->m_ConnectTime == 0)
        return;
    m_Bounds->m_Begun = getTimeTick();
    m_Bounds->m_IsConnectHeld = false;
    setPending(kTimed);
    checkTimes();
}

void TcpConnection::holdConnectTime(bool isHeld)
{
    if (m_Bounds)
        m_Bounds->m_IsConnectHeld = isHeld;
}

void TcpConnection::watchPeer()
{
    NetLimits limits = *m_Bounds->m_Own;
    if (!m_KeepAlive)
        limits.m_Probes = 0;
    m_Link->door().watchPeer(m_Handle, limits);
}

void TcpConnection::checkTimes()
{
    if (m_State > kEstablished)
        return clearPending(kTimed);
    const NetLimits& own = *m_Bounds->m_Own;
    const unsigned int now = getTimeTick();
    const bool isConnecting = (m_State == kConnecting && !isPending(kSecuring)) || m_Bounds->m_IsConnectHeld;
    unsigned int moment = 0;
    if (isConnecting && own.m_ConnectTime > 0)
    {
        moment = m_Bounds->m_Begun + std::min(own.m_ConnectTime, inner::kLongestTime);
        if (inner::isReached(moment, now))
            return fail(kConnectFailed, {EndCause::kTimedOut, EndCause::kAnswer});
    }
    else if (own.m_IdleTime > 0)
    {
        // The handshake has a time of its own. Bytes that have not been read yet are input.
        if (m_State != kEstablished || isPending(kReadable | kSecureInput | kUnread))
            m_Bounds->m_LastInput = now;
        moment = m_Bounds->m_LastInput + std::min(own.m_IdleTime, inner::kLongestTime);
        if (inner::isReached(moment, now))
            return fail(kBroken, {EndCause::kTimedOut, EndCause::kInput});
    }
    else
        return clearPending(kTimed);
    if (System* const system = getSystem())
        system->tickBy(moment);
}

void TcpConnection::waitForRate()
{
    if (!m_Link)
        return;
    // The peer is not silent: its bytes are left unread.
    noteInput();
    if (m_ReadyList)
        m_ReadyList->addWaiting(*this);
    const unsigned int wait = m_Bounds->m_Rate.getWait();
    if (System* const system = getSystem())
        system->tickBy(getTimeTick() + wait);
    else
        m_Reactor->hurryAt(inner::getNanoseconds() + wait * 1000000ULL);
}

void TcpConnection::refusePacket(size_t size)
{
    ++m_Bounds->m_Refused;
    if (inner::Seat* const seat = m_Link ? m_Link->seat() : nullptr)
        seat->countRefused();
    if (PeerLog::takesLine())
        Log::warning(L"A packet of %u bytes is refused: %s \t(%s)", static_cast<unsigned int>(size),
                     EndCause{EndCause::kRateLimited, 0}.getText(), getPeerName());
}

PeerLog::Rate TcpConnection::logRateOf(const void* connection)
{
    const NetLimits* const limits = static_cast<const TcpConnection*>(connection)->getLimits();
    return limits ? PeerLog::Rate::of(limits->m_LogLines, limits->m_LogLinesPerSecond) : PeerLog::Rate();
}

void TcpStream::beginOwnTurn()
{
    if (getPortLimits() || !m_Bounds->m_Own)
        return;
    const int bytes = m_Bounds->m_Own->m_TurnInput;
    setTurn(bytes > 0 && getSystem() && getSystem()->getTaskCount() > 1 ? bytes : kEndlessTurn);
}

} // namespace zet
