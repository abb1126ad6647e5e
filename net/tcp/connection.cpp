#include "net/tcp/connection.h"

#include "framework/string_helper.h"
#include "framework/thread.h"
#include "framework/time.h"
#include "net/door/addresses.h"
#include "net/inner/end_counts.h"
#include "net/inner/end_log.h"
#include "net/inner/peer_text.h"
#include "net/tcp/inner/bounds.h"
#include "net/tcp/inner/link.h"
#include "net/tcp/inner/ready_list.h"

namespace zet
{

namespace
{

using inner::Door;
using inner::Endpoint;
using inner::Reactor;
using inner::TcpLink;
using inner::TcpLinkRef;

} // namespace

TcpConnection::~TcpConnection()
{
    TcpConnection::close();
    if (m_ReadyList)
        m_ReadyList->leave(*this);
}

bool TcpConnection::start(System* system)
{
    if (!Socket::start(system))
        return false;
    m_LooksItself = true;
    bindRunThreadId(system->getRunThreadId());
    joinReactor();
    return true;
}

bool TcpConnection::init()
{
    // The System may have gone to another thread since start().
    bindRunThreadId(getSystem()->getRunThreadId());
    return true;
}

void TcpConnection::onTick(unsigned int)
{
    // An event may release the last handle.
    const Handle_T<TcpConnection> keep = getRefCount() > 0 ? this : nullptr;
    tickConnection();
    reportEvents();
}

void TcpConnection::tickConnection()
{
    if (!m_Link)
        return;
    look();
    if (isPending(kConnected))
        finishConnect();
    if (isPending(kTimed))
        checkTimes();
    if (m_Link && (isPending(kWritable) || (isPending(kOutput) && !m_Reactor->isTicking())))
        flush();
}

void TcpConnection::reportOpenNow()
{
    const bool isNew = isPending(kEstablishedNow);
    const bool isWritable = isPending(kWritableAgain);
    clearPending(kEstablishedNow | kWritableAgain);
    const Handle_T<TcpConnection> keep = getRefCount() > 0 ? this : nullptr;
    if (isNew && m_State == kEstablished)
        callEstablished();
    if (isWritable && m_State == kEstablished)
        callWritable();
}

void TcpConnection::settleEnd(EndCause otherwise)
{
    inner::Seat* const seat = settleCause(otherwise) && m_Link ? m_Link->seat() : nullptr;
    if (seat)
        seat->countEnd(getEndCause());
}

void TcpConnection::reportEnd()
{
    settleEnd({EndCause::kSystem, 0});
    if (!takeEnd())
        return;
    // After a proxy's refusal the socket works as after a grant, but the target was not reached.
    const bool isConnect = isAttempt() || getEndCause().m_Code == EndCause::kProxy;
    if (!isEndLogged())
        inner::logEnd(isConnect ? inner::kConnectLine : inner::kEndedLine, getEndCause(),
                      inner::peerNameOf<TcpConnection>, this);
    callEnd(getEndCause());
}

void TcpConnection::setEstablished()
{
    m_State = kEstablished;
    setPending(kEstablishedNow);
    list();
}

void TcpConnection::closeFor(unsigned short reason)
{
    // Whatever was noted before, such as a proxy's answer: the host ends it.
    forgetCause();
    noteCause({EndCause::kHost, reason});
    close();
}

void TcpConnection::lookNow()
{
    if (m_Link)
        m_Reactor->pollOutsideTick();
}

void TcpConnection::listReady()
{
    m_ReadyList->add(*this);
}

void TcpConnection::hurry()
{
    list();
    if (m_Reactor)
        m_Reactor->hurry();
}

void TcpConnection::setLink(TcpLink* link)
{
    link->addRef();
    link->m_Owner = this;
    m_Link = link;
    m_Pending = 0;
    list();
    if (m_RunThreadId == 0)
        bindRunThreadId(Thread::getCurrentThreadId());
}

bool TcpConnection::attach(unsigned int handle)
{
    if (!m_Link || handle != m_Handle)
    {
        if (handle == kNoHandle || !isInvalid())
            return false;
        const auto reactor = Reactor::of(getSystem());
        if (!reactor)
            return false;
        const TcpLinkRef link(new TcpLink(*reactor, handle));
        if (link->door().unblock(handle) || !link->watch())
        {
            link->giveAway();
            return false;
        }
        link->prepare();
        m_Reactor = reactor;
        setLink(link.get());
        m_Handle = handle;
        Endpoint peer;
        if (link->door().getPeerEndpoint(handle, peer))
            takePeer(peer);
    }
    if (!m_Link->watch())
        return false;
    // A connection of connect() has begun there.
    if (m_State != kEstablished)
    {
        beginEvents();
        holdConnectTime(false);
    }
    beginBounds();
    setEstablished();
    announceOutput();
    return true;
}

bool TcpConnection::expect(const wchar_t*, TlsContext* context)
{
    // This class has no secure layer.
    return !context;
}

bool TcpConnection::take(TcpLink* link, const Endpoint& peer, const std::shared_ptr<Reactor>& reactor,
                         TlsContext* context)
{
    if (!isInvalid() || !expect(nullptr, context))
        return false;
    m_LooksItself = false;
    m_Reactor = reactor;
    setLink(link);
    m_Handle = link->getHandle();
    m_State = kEstablished;
    beginEvents();
    takePeer(peer);
    if (inner::Seat* const seat = link->seat())
        seat->noteInput();
    if (attach(m_Handle))
        return true;
    noteCause({EndCause::kThrown, 0});
    TcpConnection::close();
    return false;
}

unsigned int TcpConnection::detach()
{
    const unsigned int handle = releaseHandle();
    reportEnd();
    return handle;
}

unsigned int TcpConnection::releaseHandle()
{
    settleEnd({EndCause::kDetached, 0});
    if (m_Link)
    {
        m_Link->giveAway();
        drop();
    }
    m_State = kDown;
    return Socket::detach();
}

void TcpConnection::close()
{
    shut();
    reportEnd();
}

void TcpConnection::shut()
{
    if (m_Link)
    {
        // A peer that has closed its side may still read.
        if ((m_State == kEstablished || m_State == kClosedByPeer) && m_Link->m_Output.size() > 0)
            flush();
        if (m_State == kEstablished)
            discardInput();
        settleEnd({EndCause::kClosedHere, 0});
        drop();
    }
    settleEnd({EndCause::kClosedHere, 0});
    m_State = kDown;
    Socket::close();
}

void TcpConnection::discardInput()
{
    // Bounded: a peer that sends endlessly gets a reset. A short receive is not the last one: the system passes on more
    // once its own buffer has been read.
    unsigned char piece[16384];
    Door::Fault fault;
    for (int i = 0; i < 16; ++i)
        if (m_Link->door().receive(m_Link->getHandle(), piece, sizeof piece, fault) == 0)
            return;
}

void TcpConnection::drop()
{
    TcpLink* const link = std::exchange(m_Link, nullptr);
    link->m_Owner = nullptr;
    if (inner::Seat* const seat = link->seat())
        seat->leave(getPeer());
    link->close();
    link->m_Input.drop(&m_Reactor->pool());
    link->m_Output.drop(&m_Reactor->pool());
    if (inner::OutputQueue* const sealed = std::exchange(link->m_Sealed, nullptr))
        sealed->drop(&m_Reactor->pool());
    link->release();
    m_Pending = 0;
    // Its server has to see that the connection is down.
    if (m_ReadyList)
        hurry();
}

void TcpConnection::joinReactor()
{
    // A connecting one moves once it is established.
    if (!m_Link || m_State != kEstablished || !getSystem())
        return;
    const auto reactor = Reactor::of(getSystem());
    if (!reactor || reactor == m_Reactor)
        return;
    // Another door cannot use the handle.
    if (reactor->door() != m_Reactor->door())
        return fail(kBroken, {EndCause::kNotStarted, 0});
    const TcpLinkRef link(new TcpLink(*reactor));
    link->take(m_Link->giveAway());
    if (!link->watch())
    {
        // The old link closes the handle.
        m_Link->take(link->giveAway());
        return fail(kBroken, {EndCause::kNoHandle, 0});
    }
    link->m_Input.swap(m_Link->m_Input);
    link->m_Output.swap(m_Link->m_Output);
    link->m_Sealed = std::exchange(m_Link->m_Sealed, nullptr);
    if (inner::Seat* const seat = m_Link->seat())
        seat->moveTo(*link.get());
    // Output is announced to the new reactor below.
    clearPending(kOutput);
    const unsigned short pending = m_Pending;
    drop();
    m_Reactor = reactor;
    setLink(link.get());
    m_Pending = pending;
    announceOutput();
}

void TcpConnection::fail(ConnectionState state, EndCause cause)
{
    settleEnd(cause);
    // The peer has closed before it received everything.
    m_State = static_cast<unsigned char>(isPending(kOutputLost) ? kBroken : state);
    hurry();
}

int TcpConnection::receive(void* data, int size)
{
    if (m_State != kEstablished)
        return m_State == kConnecting ? 0 : -1;
    if (size <= 0)
        return 0;
    int got = 0;
    ConnectionState end = kBroken;
    if (isPending(kReadable))
        got = receiveNow(data, size, end);
    if (got <= 0 && isPending(kOutputLost))
        return endLost() ? -1 : 0;
    if (got < 0)
        fail(end, {EndCause::kClosedByPeer, 0});
    return got;
}

bool TcpConnection::endLost()
{
    if (!isPending(kInputOver))
    {
        setPending(kInputOver);
        // Nothing else asks for the tick that ends the connection.
        hurry();
        return false;
    }
    fail(kBroken, {EndCause::kReset, 0});
    return true;
}

void TcpConnection::noteInput()
{
    if (inner::Seat* const seat = m_Link->seat())
        seat->noteInput();
    if (m_Bounds)
        m_Bounds->m_LastInput = getTimeTick();
}

int TcpConnection::receiveNow(void* data, int size, ConnectionState& end)
{
    Door::Fault fault;
    const size_t got = m_Link->door().receive(m_Handle, data, static_cast<size_t>(size), fault);
    if ((got == 0 && !fault) || (fault && fault.m_Reason != Door::Fault::kNotNow))
    {
        end = fault ? kBroken : kClosedByPeer;
        if (fault)
            noteCause(inner::causeOf(fault));
        return -1;
    }
    // Fewer bytes than asked for are all that there were. An end after them is reported when these are read.
    if (got < static_cast<size_t>(size))
    {
        clearPending(kReadable);
        m_Link->waitForInput(!fault);
    }
    if (got > 0)
        noteInput();
    return static_cast<int>(got);
}

const NetLimits* TcpConnection::getPortLimits() const
{
    const inner::Seat* const seat = m_Link ? m_Link->seat() : nullptr;
    return seat ? &seat->limits() : nullptr;
}

void TcpConnection::takePeer(const Endpoint& peer)
{
    std::memcpy(m_PeerBytes, peer.m_Bytes, sizeof m_PeerBytes);
    m_PeerScope = peer.m_Scope;
    m_PeerPort = peer.m_Port;
}

Endpoint TcpConnection::getPeer() const
{
    return Endpoint::ofV6(m_PeerBytes, m_PeerPort, m_PeerScope);
}

unsigned int TcpConnection::getPeerAddress() const
{
    return getPeer().v4();
}

bool TcpConnection::getPeerAddressIPv6(sockaddr_in6& address) const
{
    const Endpoint peer = getPeer();
    if (peer.isV4() || peer.isAny())
        return false;
    address = inner::toIPv6(peer);
    return true;
}

String_T<wchar_t> TcpConnection::getPeerName() const
{
    const Endpoint peer = getPeer();
    return peer.isAny() && m_PeerPort == 0 ? String_T<wchar_t>() : inner::peerText(peer);
}

} // namespace zet
