#include "net/tcp/server.h"

#include "framework/inner/fast_paths.h"
#include "framework/inner/moment.h"
#include "framework/log.h"
#include "framework/stopwatch.h"
#include "framework/string_helper.h"
#include "framework/time.h"
#include "net/door/addresses.h"
#include "net/inner/end_log.h"
#include "net/inner/guard.h"
#include "net/inner/peer_text.h"
#include "net/tcp/inner/link.h"
#include "net/tcp/inner/listener.h"
#include "net/tcp/inner/proxied.h"

namespace zet
{

namespace
{

using inner::Door;
using inner::DoorHandle;
using inner::Endpoint;
using inner::Reactor;
using inner::TcpLink;
using inner::TcpLinkRef;
using inner::TcpListener;

const unsigned char (&bytesOf(const in_addr& address))[4]
{
    return reinterpret_cast<const unsigned char(&)[4]>(address);
}

} // namespace

TcpServer::TcpServer() : m_Crowd(std::make_shared<inner::Crowd>()) {}

TcpServer::~TcpServer()
{
    TcpServer::close();
}

bool TcpServer::start(System* system)
{
    if (!Socket::start(system))
        return false;
    joinReactor();
    m_Crowd->setServed(m_Listener != nullptr);
    return true;
}

void TcpServer::stop()
{
    m_Crowd->setServed(false);
    Socket::stop();
}

bool TcpServer::listen(unsigned short port, int backlog)
{
    const EndCause cause = beginListening(port, backlog);
    if (!cause)
        return true;
    noteFault(cause);
    inner::countEnd(cause);
    Endpoint own = m_BindAddress ? *m_BindAddress : Endpoint();
    own.m_Port = port;
    inner::logFailure(L"Listen on", inner::peerText(own), cause);
    return false;
}

bool TcpServer::noteFault(EndCause cause)
{
    m_Fault = cause;
    m_Crowd->ends().add(cause);
    return false;
}

unsigned long long TcpServer::getEndCount(EndCause::Code code) const
{
    return m_Crowd->ends().get(code);
}

const AcceptCounts& TcpServer::getAcceptCounts() const
{
    return m_Crowd->accepts();
}

unsigned long long TcpServer::getRefusedPackets() const
{
    return m_Crowd->getRefusedPackets();
}

EndCause TcpServer::beginListening(unsigned short port, int backlog)
{
    if (!isInvalid())
        return {EndCause::kHeld, 0};
    const auto reactor = Reactor::of(getSystem());
    if (!reactor)
        return {EndCause::kNoHandle, 0};
    if (m_IsPortShared && !inner::canSharePort(*reactor->door(), port))
        return {EndCause::kUnavailable, 0};
    Endpoint own = m_BindAddress ? *m_BindAddress : Endpoint();
    own.m_Port = port;
    Door::Fault fault;
    DoorHandle handle = inner::openPort(reactor->door(), Door::kStream, own, fault, m_IsPortShared);
    if (fault)
        return inner::causeOf(fault);
    // Before the first connection arrives.
    m_IsInherited = handle.door().prepareListener(handle.get(), m_Crowd->limits());
    m_HasEarlier = false;
    if ((fault = handle.door().listen(handle.get(), backlog)))
        return inner::causeOf(fault);
    auto listener = std::make_unique<TcpListener>(*this, *reactor, Door::kNoHandle);
    listener->take(handle.release());
    m_Reactor = reactor;
    return setListener(listener) ? EndCause() : EndCause{EndCause::kNoHandle, 0};
}

bool TcpServer::attach(unsigned int handle)
{
    if (handle == kNoHandle || !isInvalid())
        return noteFault({handle == kNoHandle ? EndCause::kSystem : EndCause::kHeld, 0});
    const auto reactor = Reactor::of(getSystem());
    if (!reactor)
        return noteFault({EndCause::kNoHandle, 0});
    auto listener = std::make_unique<TcpListener>(*this, *reactor, Door::kNoHandle);
    listener->take(handle);
    m_Reactor = reactor;
    const Door::Fault fault = reactor->door()->unblock(handle);
    if (!fault && setListener(listener))
    {
        prepareListener();
        return true;
    }
    listener->giveAway();
    return noteFault(fault ? inner::causeOf(fault) : EndCause{EndCause::kSystem, 0});
}

bool TcpServer::setListener(std::unique_ptr<TcpListener>& listener)
{
    if (!listener->watch())
        return false;
    Endpoint own;
    m_Handle = listener->getHandle();
    m_Reactor->door()->getOwnEndpoint(m_Handle, own);
    m_ListenPort = own.m_Port;
    m_IsReady = false;
    m_IsResting = false;
    m_Listener = std::move(listener);
    m_Crowd->setServed(true);
    return true;
}

bool TcpServer::setBindAddress(const wchar_t* address)
{
    if (!address || !*address)
    {
        m_BindAddress.reset();
        return true;
    }
    Endpoint parsed;
    if (!Door::parse(StringHelper::wideToUtf8(address), 0, parsed))
        return false;
    m_BindAddress = std::make_unique<Endpoint>(parsed);
    return true;
}

void TcpServer::setLimits(const NetLimits& limits)
{
    m_Crowd->setLimits(limits);
    if (m_Listener)
        prepareListener();
}

void TcpServer::prepareListener()
{
    m_IsInherited = m_Reactor->door()->prepareListener(m_Handle, m_Crowd->limits());
    m_HasEarlier = true;
}

const NetLimits& TcpServer::getLimits() const
{
    return m_Crowd->limits();
}

void TcpServer::joinReactor()
{
    if (!m_Listener)
        return;
    const auto reactor = Reactor::of(getSystem());
    if (!reactor || reactor == m_Reactor)
        return;
    // Another door cannot use the handle.
    const bool isSameDoor = reactor->door() == m_Reactor->door();
    auto listener = std::make_unique<TcpListener>(*this, *reactor, Door::kNoHandle);
    if (isSameDoor)
        listener->take(m_Listener->giveAway());
    drop();
    m_Reactor = reactor;
    if (isSameDoor && setListener(listener))
        return;
    m_Crowd->setServed(false);
    Socket::close();
}

bool TcpServer::setTlsContext(TlsContext* context)
{
    if (context && !context->servesServer())
        return false;
    m_TlsContext = context;
    return true;
}

unsigned int TcpServer::detach()
{
    if (m_Listener)
    {
        m_Listener->giveAway();
        drop();
        m_Crowd->setServed(false);
    }
    return Socket::detach();
}

void TcpServer::close()
{
    if (m_Listener)
    {
        drop();
        m_Crowd->setServed(false);
    }
    Socket::close();
}

void TcpServer::drop()
{
    closePending();
    if (m_Proxied)
        m_Proxied->clear();
    ++m_Listening;
    m_Listener.reset();
    m_ListenPort = 0;
    m_IsReady = false;
}

void TcpServer::closePending()
{
    if (TcpLink* const link = std::exchange(m_Pending, nullptr))
    {
        link->leave(m_Listener->m_PendingPeer);
        link->release();
    }
}

void TcpServer::onTick(unsigned int)
{
    if (!m_Listener)
        return;
    look();
    if (m_Proxied)
        readProxyHeaders();
    acceptPending();
    if (m_Listener && m_Crowd->serve())
        hurry();
    if (m_IsResting || m_Crowd->hasDeadlines() || m_Proxied)
        setNextTick();
}

// Without an event: accepting goes on after a pause, and deadlines pass.
void TcpServer::setNextTick()
{
    System* const system = getSystem();
    if (!system || !m_Listener)
        return;
    if (m_IsResting && mayAccept())
        system->tickBy(m_RestUntil);
    unsigned int moment = 0;
    if (m_Proxied && m_Proxied->getDeadline(m_Crowd->limits(), moment))
        system->tickBy(moment);
    if (m_Crowd->hasDeadlines())
        system->tickBy(m_Crowd->getNextDeadline());
}

void TcpServer::acceptPending()
{
    // Before a clock is read: mostly no connection is pending.
    if (!m_Pending && !m_IsReady && !m_Proxied)
        return;
    if (m_IsResting && !inner::isReached(m_RestUntil, getTimeTick()))
        return;
    Stopwatch watch;
    for (int i = 0; i < kAcceptsPerTick && watch.isBelow(kAcceptTime); ++i)
    {
        if (!m_Listener || (!m_Pending && !mayAccept()))
            return;
        const Pending next = m_Pending ? kWaiting : takePending();
        if (next == kNone)
            return;
        if (next == kRefused)
            continue;
        // If it throws, this connection is closed, and the next one has its turn.
        if (!inner::guard(L"onAccept()", nullptr, [this] { onAccept(); }))
            closePending();
        if (m_Pending)
            return;
    }
    // More may be pending, and no event reports them.
    hurry();
}

bool TcpServer::mayAccept() const
{
    return m_IsReady || (m_Proxied && m_Proxied->hasKnown());
}

void TcpServer::hurry()
{
    if (m_Reactor)
        m_Reactor->hurry();
}

void TcpServer::flushOutsideTick()
{
    if (m_Reactor && !m_Reactor->isTicking())
        m_Reactor->endTick();
}

void TcpServer::look()
{
    if (m_Reactor)
        m_Reactor->pollOutsideTick();
}

bool TcpServer::accept(TcpConnection* connection)
{
    if (!m_Listener || !connection || !connection->isInvalid() || (!m_Pending && takePending() != kWaiting))
        return false;
    const TcpLinkRef link = TcpLinkRef::adopt(std::exchange(m_Pending, nullptr));
    const Endpoint peer = m_Listener->m_PendingPeer;
    // Also if it throws before the connection owns the link.
    struct Leaving
    {
        ~Leaving()
        {
            if (!m_Link.m_Owner && m_Link.isIn())
                m_Link.leave(m_Peer);
        }
        TcpLink& m_Link;
        const Endpoint& m_Peer;
    } leaving{*link.get(), peer};
    // Its onEnd() may release the last handle.
    const Handle_T<TcpConnection> keep = connection->getRefCount() > 0 ? connection : nullptr;
    if (!connection->take(link.get(), peer, m_Reactor, m_TlsContext))
    {
        link->m_Owner = nullptr;
        // Its end is counted, if it has begun.
        m_Fault = connection->getEndCause();
        if (!m_Fault)
            noteFault({EndCause::kTlsContext, 0});
        return false;
    }
    ++m_Crowd->accepts().m_Accepted;
    setNextTick();
    return true;
}

bool TcpServer::permission(const sockaddr_in& address)
{
    const Endpoint peer = inner::fromSystem(address);
    return !m_Filter.contains(AddressFilter::kRejected, peer) || m_Filter.contains(AddressFilter::kPermitted, peer);
}

bool TcpServerIPv6::permissionIPv6(const sockaddr_in6& address)
{
    return static_cast<TcpServer&>(*this).isPermittedIPv6(inner::fromSystem(address));
}

bool TcpServer::isPermittedIPv6(const Endpoint& peer)
{
    if (m_Filter.contains(AddressFilter::kPermitted, peer))
        return true;
    return !m_Filter.contains(AddressFilter::kRejected, peer) &&
           permission(inner::toIPv4(Endpoint::ofV4(0, peer.m_Port)));
}

void TcpServer::onAccept() {}

void TcpServer::addRejectAddress(in_addr address, in_addr mask)
{
    m_Filter.add(AddressFilter::kRejected, bytesOf(address), bytesOf(mask));
}

void TcpServer::addPermissionAddress(in_addr address, in_addr mask)
{
    m_Filter.add(AddressFilter::kPermitted, bytesOf(address), bytesOf(mask));
}

void TcpServer::addRejectAddress(const unsigned char (&address)[4], const unsigned char (&mask)[4])
{
    m_Filter.add(AddressFilter::kRejected, address, mask);
}

void TcpServer::addPermissionAddress(const unsigned char (&address)[4], const unsigned char (&mask)[4])
{
    m_Filter.add(AddressFilter::kPermitted, address, mask);
}

bool TcpServer::addRejectAddress(const in6_addr& address, int bits)
{
    return m_Filter.add(AddressFilter::kRejected, address, bits);
}

bool TcpServer::addPermissionAddress(const in6_addr& address, int bits)
{
    return m_Filter.add(AddressFilter::kPermitted, address, bits);
}

bool TcpServer::addRejectSubnet(const wchar_t* subnet)
{
    return m_Filter.add(AddressFilter::kRejected, subnet);
}

bool TcpServer::addPermissionSubnet(const wchar_t* subnet)
{
    return m_Filter.add(AddressFilter::kPermitted, subnet);
}

} // namespace zet
