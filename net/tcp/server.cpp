#include "net/tcp/server.h"

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

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <string>

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

EndCause TcpServer::beginListening(unsigned short port, int backlog)
{
    if (!isInvalid())
        return {EndCause::kHeld, 0};
    const auto reactor = Reactor::of(getSystem());
    if (!reactor)
        return {EndCause::kNoHandle, 0};
    Endpoint own = m_BindAddress ? *m_BindAddress : Endpoint();
    own.m_Port = port;
    Door::Fault fault;
    DoorHandle handle = inner::openPort(reactor->door(), Door::kStream, own, fault);
    if (!fault)
        fault = handle.door().listen(handle.get(), backlog);
    if (fault)
        return inner::causeOf(fault);
    auto listener = std::make_unique<TcpListener>(*this, *reactor, Door::kNoHandle);
    listener->take(handle.release());
    m_Reactor = reactor;
    return setListener(listener) ? EndCause() : EndCause{EndCause::kNoHandle, 0};
}

bool TcpServer::attach(unsigned int handle)
{
    if (handle == kNoHandle || !isInvalid())
        return false;
    const auto reactor = Reactor::of(getSystem());
    if (!reactor)
        return false;
    auto listener = std::make_unique<TcpListener>(*this, *reactor, Door::kNoHandle);
    listener->take(handle);
    m_Reactor = reactor;
    if (!reactor->door()->unblock(handle) && setListener(listener))
        return true;
    listener->giveAway();
    return false;
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
    ++m_Listening;
    m_Listener.reset();
    m_ListenPort = 0;
    m_IsReady = false;
}

void TcpServer::closePending()
{
    if (TcpLink* const link = std::exchange(m_Pending, nullptr))
        link->release();
}

void TcpServer::onTick(unsigned int)
{
    if (!m_Listener)
        return;
    look();
    acceptPending();
    if (m_Listener && m_Crowd->serve())
        hurry();
}

void TcpServer::acceptPending()
{
    // Before a clock is read: mostly no connection is pending.
    if (!m_Pending && !m_IsReady)
        return;
    if (m_IsResting && !inner::isReached(m_RestUntil, getTimeTick()))
        return;
    Stopwatch watch;
    for (int i = 0; i < kAcceptsPerTick && watch.isBelow(kAcceptTime); ++i)
    {
        if (!m_Listener || (!m_Pending && !m_IsReady))
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

void TcpServer::hurry()
{
    if (m_Reactor)
        m_Reactor->hurry();
}

void TcpServer::look()
{
    if (m_Reactor)
        m_Reactor->pollOutsideTick();
}

TcpServer::Pending TcpServer::takePending()
{
    Endpoint peer;
    Door::Fault fault;
    const TcpLinkRef link(new TcpLink(*m_Reactor, m_Reactor->door()->accept(m_Handle, peer, fault)));
    if (fault.m_Reason == Door::Fault::kNotNow)
    {
        m_IsReady = false;
        m_Listener->waitForPeer();
        return kNone;
    }
    if (fault.m_Reason == Door::Fault::kExhausted)
    {
        noteFault(inner::causeOf(fault));
        // Pending connections wait in the system's queue.
        if (!std::exchange(m_IsResting, true))
            Log::warning(L"Pausing accept for %u ms: %s", kRestTime, StringHelper::utf8ToWide(fault.getText().c_str()));
        m_RestUntil = getTimeTick() + kRestTime;
        return kNone;
    }
    // The peer has ended its connection before it was accepted.
    if (fault)
    {
        noteFault(inner::causeOf(fault));
        return kRefused;
    }
    m_IsResting = false;
    link->m_Peer = peer;
    if (!m_Crowd->hasSpace(peer))
    {
        noteFault({EndCause::kTooMany, 0});
        m_Crowd->noteRefused();
        return kRefused;
    }
    const unsigned int listening = m_Listening;
    // The host may have closed the server, or listen anew by now.
    if (!isPermitted(peer))
    {
        noteFault({EndCause::kFiltered, 0});
        inner::logEnd(
            inner::kRefusedLine, m_Fault,
            [](const void* refused) { return inner::peerText(*static_cast<const Endpoint*>(refused)); }, &peer);
        return kRefused;
    }
    if (m_Listening != listening)
        return kRefused;
    link->m_Seat = m_Crowd->admit(peer);
    link->door().watchPeer(link->getHandle(), m_Crowd->limits());
    m_Pending = link.get();
    m_Pending->addRef();
    return kWaiting;
}

bool TcpServer::isPermitted(const Endpoint& peer)
{
    bool result = false;
    if (peer.isV4())
        inner::guard(L"permission()", nullptr, [&] { result = permission(inner::toIPv4(peer)); });
    else
        inner::guard(L"permissionIPv6()", nullptr, [&] { result = permissionIPv6(inner::toIPv6(peer)); });
    return result;
}

bool TcpServer::accept(TcpConnection* connection)
{
    if (!m_Listener || !connection || !connection->isInvalid() || (!m_Pending && takePending() != kWaiting))
        return false;
    const TcpLinkRef link = TcpLinkRef::adopt(std::exchange(m_Pending, nullptr));
    if (connection->take(link.get(), m_Reactor, m_TlsContext))
        return true;
    link->m_Owner = nullptr;
    const EndCause cause = connection->getEndCause();
    return noteFault(cause ? cause : EndCause{EndCause::kTlsContext, 0});
}

bool TcpServer::permission(const sockaddr_in& address)
{
    const Endpoint peer = inner::fromSystem(address);
    return !contains(m_Rejected, peer) || contains(m_Permitted, peer);
}

bool TcpServerIPv6::permissionIPv6(const sockaddr_in6& address)
{
    return static_cast<TcpServer&>(*this).isPermittedIPv6(inner::fromSystem(address));
}

bool TcpServer::isPermittedIPv6(const Endpoint& peer)
{
    if (contains(m_Permitted, peer))
        return true;
    return !contains(m_Rejected, peer) && permission(inner::toIPv4(Endpoint::ofV4(0, peer.m_Port)));
}

void TcpServer::onAccept() {}

bool TcpServer::contains(const Rules& rules, const Endpoint& address)
{
    const auto matches = [&](const Rule& rule)
    {
        // ::/0 contains the mapped addresses too, but is a rule of IPv6.
        if (rule.m_IsV4 != address.isV4())
            return false;
        for (size_t i = 0; i < sizeof rule.m_Mask; ++i)
            if ((address.m_Bytes[i] ^ rule.m_Address[i]) & rule.m_Mask[i])
                return false;
        return true;
    };
    return std::any_of(rules.begin(), rules.end(), matches);
}

// Of four bytes each.
TcpServer::Rule TcpServer::ruleOf(const void* address, const void* mask)
{
    Rule rule;
    std::memcpy(rule.m_Address, Endpoint::ofV4(0, 0).m_Bytes, sizeof rule.m_Address);
    std::memcpy(rule.m_Address + 12, address, 4);
    std::memset(rule.m_Mask, 0xFF, sizeof rule.m_Mask);
    std::memcpy(rule.m_Mask + 12, mask, 4);
    rule.m_IsV4 = true;
    return rule;
}

void TcpServer::addRejectAddress(in_addr address, in_addr mask)
{
    m_Rejected.push_back(ruleOf(&address.s_addr, &mask.s_addr));
}

void TcpServer::addPermissionAddress(in_addr address, in_addr mask)
{
    m_Permitted.push_back(ruleOf(&address.s_addr, &mask.s_addr));
}

void TcpServer::addRejectAddress(const unsigned char (&address)[4], const unsigned char (&mask)[4])
{
    m_Rejected.push_back(ruleOf(address, mask));
}

void TcpServer::addPermissionAddress(const unsigned char (&address)[4], const unsigned char (&mask)[4])
{
    m_Permitted.push_back(ruleOf(address, mask));
}

bool TcpServer::addRejectAddress(const in6_addr& address, int bits)
{
    return addSubnet(m_Rejected, Endpoint::ofV6(&address, 0, 0), bits);
}

bool TcpServer::addPermissionAddress(const in6_addr& address, int bits)
{
    return addSubnet(m_Permitted, Endpoint::ofV6(&address, 0, 0), bits);
}

bool TcpServer::addRejectSubnet(const wchar_t* subnet)
{
    return addSubnet(m_Rejected, subnet);
}

bool TcpServer::addPermissionSubnet(const wchar_t* subnet)
{
    return addSubnet(m_Permitted, subnet);
}

bool TcpServer::addSubnet(Rules& rules, const Endpoint& network, int bits)
{
    if (bits < 0 || bits > 128)
        return false;
    Rule rule;
    for (int i = 0; i < 16; ++i)
    {
        rule.m_Address[i] = network.m_Bytes[i];
        rule.m_Mask[i] = static_cast<unsigned char>(0xFF00 >> std::clamp(bits - 8 * i, 0, 8));
    }
    rule.m_IsV4 = network.isV4() && bits >= 96;
    rules.push_back(rule);
    return true;
}

bool TcpServer::addSubnet(Rules& rules, const wchar_t* text)
{
    const auto whole = StringHelper::wideToUtf8(text ? text : L"");
    std::string address = whole.getBuffer();
    int bits = -1;
    if (const size_t slash = address.find('/'); slash != std::string::npos)
    {
        const char* const digits = address.c_str() + slash + 1;
        if (std::strlen(digits) == 0 || std::strlen(digits) > 3 || digits[std::strspn(digits, "0123456789")] != 0)
            return false;
        bits = std::atoi(digits);
        address.resize(slash);
    }
    Endpoint network;
    if (!Door::parse(address.c_str(), 0, network))
        return false;
    const int most = network.isV4() ? 32 : 128;
    if (bits > most)
        return false;
    return addSubnet(rules, network, 128 - most + (bits < 0 ? most : bits));
}

} // namespace zet
