#include "net/tcp/server.h"

#include "framework/log.h"
#include "framework/stopwatch.h"
#include "framework/string_helper.h"
#include "framework/time.h"
#include "net/door/addresses.h"
#include "net/inner/guard.h"
#include "net/tcp/inner/link.h"
#include "net/tcp/inner/listener.h"

#include <algorithm>

namespace zet
{

namespace
{

using inner::Door;
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
    if (!isInvalid())
        return false;
    const auto reactor = Reactor::of(getSystem());
    if (!reactor)
        return false;
    Door& door = *reactor->door();
    Door::Fault fault;
    auto listener = std::make_unique<TcpListener>(*this, *reactor, door.open(Door::kStream, fault));
    if (fault)
        return false;
    const Door::Handle handle = listener->getHandle();
    door.setOption(handle, Door::kRebind, 1);
    if (door.bind(handle, Endpoint::ofV4(m_BindAddress, port)) || door.listen(handle, backlog))
        return false;
    m_Reactor = reactor;
    return setListener(listener);
}

bool TcpServer::attach(unsigned int handle)
{
    if (handle == kNoHandle || !isInvalid())
        return false;
    const auto reactor = Reactor::of(getSystem());
    if (!reactor)
        return false;
    auto listener = std::make_unique<TcpListener>(*this, *reactor, handle);
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
        m_BindAddress = 0;
        return true;
    }
    Endpoint parsed;
    if (!Door::parse(StringHelper::wideToUtf8(address), 0, parsed))
        return false;
    m_BindAddress = parsed.v4();
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
    // A handle is of no use to another door.
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
    dismiss();
    ++m_Listening;
    m_Listener.reset();
    m_ListenPort = 0;
    m_IsReady = false;
}

void TcpServer::dismiss()
{
    if (TcpLink* const link = std::exchange(m_Visitor, nullptr))
        link->release();
}

void TcpServer::onTick(unsigned int)
{
    if (!m_Listener)
        return;
    look();
    acceptVisitors();
    if (m_Listener && m_Crowd->serve())
        hurry();
}

void TcpServer::acceptVisitors()
{
    if (m_IsResting && static_cast<int>(getTimeTick() - m_RestUntil) < 0)
        return;
    Stopwatch watch;
    for (int i = 0; i < kAcceptsPerTick && watch.getElapsed() < kAcceptTime; ++i)
    {
        if (!m_Listener || (!m_Visitor && !m_IsReady))
            return;
        const Visit come = m_Visitor ? kCome : visit();
        if (come == kNobody)
            return;
        if (come == kRefused)
            continue;
        // Where it throws, the visitor is turned away, and those behind it have their turn.
        if (!inner::guard(L"onAccept()", nullptr, [this] { onAccept(); }))
            dismiss();
        if (m_Visitor)
            return;
    }
    // There may be more, and nothing else says so.
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

TcpServer::Visit TcpServer::visit()
{
    Endpoint peer;
    Door::Fault fault;
    const TcpLinkRef link(new TcpLink(*m_Reactor, m_Reactor->door()->accept(m_Handle, peer, fault)));
    if (fault.m_Reason == Door::Fault::kNotNow)
    {
        m_IsReady = false;
        m_Listener->waitForVisitor();
        return kNobody;
    }
    if (fault.m_Reason == Door::Fault::kExhausted)
    {
        // Pending connections wait in the system's queue.
        if (!std::exchange(m_IsResting, true))
            Log::warning(L"Accepting rests: %s", StringHelper::utf8ToWide(fault.getText().c_str()));
        m_RestUntil = getTimeTick() + kRestTime;
        return kNobody;
    }
    // Who is gone again before being accepted is one visitor less.
    if (fault)
        return kRefused;
    m_IsResting = false;
    link->m_Peer = peer;
    const sockaddr_in address = inner::toSystem(peer);
    if (!m_Crowd->hasRoom(peer))
    {
        m_Crowd->noteTurnedAway();
        return kRefused;
    }
    const unsigned int listening = m_Listening;
    bool isPermitted = false;
    inner::guard(L"permission()", nullptr, [&] { isPermitted = permission(address); });
    // The host may have closed the server, or listen anew by now.
    if (!isPermitted || m_Listening != listening)
        return kRefused;
    link->m_Seat = m_Crowd->admit(peer);
    link->door().watchPeer(link->getHandle(), m_Crowd->limits());
    m_Visitor = link.get();
    m_Visitor->addRef();
    return kCome;
}

bool TcpServer::accept(TcpConnection* connection)
{
    if (!m_Listener || !connection || !connection->isInvalid() || (!m_Visitor && visit() != kCome))
        return false;
    const TcpLinkRef link = TcpLinkRef::adopt(std::exchange(m_Visitor, nullptr));
    if (connection->take(link.get(), m_Reactor, m_TlsContext))
        return true;
    link->m_Owner = nullptr;
    return false;
}

bool TcpServer::holds(const std::vector<Rule>& rules, unsigned int address)
{
    return std::any_of(rules.begin(), rules.end(),
                       [=](const Rule& rule) { return (address & rule.m_Mask) == (rule.m_Address & rule.m_Mask); });
}

bool TcpServer::permission(const sockaddr_in& address)
{
    const unsigned int peer = static_cast<unsigned int>(address.sin_addr.s_addr);
    return !holds(m_Rejected, peer) || holds(m_Permitted, peer);
}

void TcpServer::onAccept() {}

void TcpServer::addRejectAddress(in_addr address, in_addr mask)
{
    m_Rejected.push_back({static_cast<unsigned int>(address.s_addr), static_cast<unsigned int>(mask.s_addr)});
}

void TcpServer::addPermissionAddress(in_addr address, in_addr mask)
{
    m_Permitted.push_back({static_cast<unsigned int>(address.s_addr), static_cast<unsigned int>(mask.s_addr)});
}

void TcpServer::addRejectAddress(const unsigned char (&address)[4], const unsigned char (&mask)[4])
{
    m_Rejected.push_back(ruleOf(address, mask));
}

void TcpServer::addPermissionAddress(const unsigned char (&address)[4], const unsigned char (&mask)[4])
{
    m_Permitted.push_back(ruleOf(address, mask));
}

TcpServer::Rule TcpServer::ruleOf(const unsigned char* address, const unsigned char* mask)
{
    Rule rule;
    std::memcpy(&rule.m_Address, address, sizeof rule.m_Address);
    std::memcpy(&rule.m_Mask, mask, sizeof rule.m_Mask);
    return rule;
}

} // namespace zet
