#include "net/tcp/connection.h"

#include "framework/string_helper.h"
#include "framework/thread.h"
#include "net/door/addresses.h"
#include "net/inner/peer_text.h"
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
    if (!m_Link)
        return;
    look();
    if (isPending(kConnected))
        finishConnect();
    if (m_Link && (isPending(kWritable) || (isPending(kOutput) && !m_Reactor->isTicking())))
        flush();
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
    m_State = kEstablished;
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
    takePeer(peer);
    if (inner::Seat* const seat = link->seat())
        seat->noteInput();
    if (attach(m_Handle))
        return true;
    TcpConnection::close();
    return false;
}

unsigned int TcpConnection::detach()
{
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
    if (m_Link)
    {
        // A peer that has closed its side may still read.
        if ((m_State == kEstablished || m_State == kClosedByPeer) && m_Link->m_Output.size() > 0)
            flush();
        if (m_State == kEstablished)
            discardInput();
        drop();
    }
    m_State = kDown;
    Socket::close();
}

void TcpConnection::discardInput()
{
    // Bounded: a peer that sends endlessly gets a reset.
    unsigned char piece[16384];
    Door::Fault fault;
    for (int i = 0; i < 16; ++i)
        if (m_Link->door().receive(m_Link->getHandle(), piece, sizeof piece, fault) < sizeof piece)
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
        return fail(kBroken);
    const TcpLinkRef link(new TcpLink(*reactor));
    link->take(m_Link->giveAway());
    if (!link->watch())
    {
        // The old link closes the handle.
        m_Link->take(link->giveAway());
        return fail(kBroken);
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

bool TcpConnection::connect(const wchar_t* ip, unsigned short port, bool keepAlive)
{
    if (!isInvalid())
        return false;
    m_State = kConnectFailed;
    m_KeepAlive = keepAlive;
    String_T<wchar_t> host = ip ? ip : L"";
    const auto name = StringHelper::wideToUtf8(host);
    Endpoint peer;
    const bool isName = !Door::parse(name, port, peer);
    if (!isName && !peer.isV4())
        host = inner::hostText(peer);
    if (!expect(host, nullptr))
        return false;
    const auto reactor = Reactor::of(getSystem());
    if (!reactor || host.isEmpty())
        return false;
    Door::Fault fault;
    const Door::Family family = isName ? Door::kIPv4 : Door::familyOf(peer);
    const TcpLinkRef link(new TcpLink(*reactor, reactor->door()->open(Door::kStream, family, fault)));
    if (fault)
        return false;
    m_Reactor = reactor;
    setLink(link.get());
    m_Handle = link->getHandle();
    m_State = kConnecting;
    if (isName)
    {
        if (port != 0 && link->connectByName(*reactor, name, port))
            return true;
    }
    else if (beginConnect(link->connect(peer)))
    {
        return true;
    }
    if (m_Link)
        drop();
    m_Handle = kNoHandle;
    m_State = kConnectFailed;
    return false;
}

bool TcpConnection::beginConnect(bool hasBegun)
{
    if (!hasBegun)
        return false;
    // A peer on this machine has answered by now. This tick does not see what else is reported, so the next one comes
    // at once.
    m_Reactor->poll();
    m_Reactor->hurry();
    return !isPending(kConnected) || finishConnect();
}

bool TcpConnection::finishConnect()
{
    clearPending(kConnected);
    if (m_Link->isNamed())
    {
        if (beginConnect(m_Link->beginNamed()))
            return true;
        fail(kConnectFailed);
        return false;
    }
    if (m_Link->isRacing())
    {
        const inner::TcpRace::State state = m_Link->race();
        m_Handle = m_Link->getHandle();
        if (state == inner::TcpRace::kRunning)
        {
            // The next tick may try the next address.
            setPending(kConnected);
            return true;
        }
        if (state == inner::TcpRace::kLost)
        {
            fail(kConnectFailed);
            return false;
        }
    }
    else if (!m_Link->isConnected())
    {
        fail(kConnectFailed);
        return false;
    }
    if (m_KeepAlive)
        m_Link->door().setOption(m_Handle, Door::kKeepAlive, 1);
    m_State = kEstablished;
    joinReactor();
    if (m_State == kEstablished && attach(m_Handle))
        return true;
    fail(kConnectFailed);
    return false;
}

void TcpConnection::fail(ConnectionState state)
{
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
        fail(end);
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
    fail(kBroken);
    return true;
}

int TcpConnection::receiveNow(void* data, int size, ConnectionState& end)
{
    Door::Fault fault;
    const size_t got = m_Link->door().receive(m_Handle, data, static_cast<size_t>(size), fault);
    if ((got == 0 && !fault) || (fault && fault.m_Reason != Door::Fault::kNotNow))
    {
        end = fault ? kBroken : kClosedByPeer;
        return -1;
    }
    // Fewer bytes than asked for are all that there were. An end after them is reported when these are read.
    if (got < static_cast<size_t>(size))
    {
        clearPending(kReadable);
        m_Link->waitForInput(!fault);
    }
    if (inner::Seat* const seat = got > 0 ? m_Link->seat() : nullptr)
        seat->noteInput();
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
