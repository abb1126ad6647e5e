// Accepting: which pending connections become connections of the host.
#include "net/tcp/server.h"

#include "framework/inner/fast_paths.h"
#include "framework/log.h"
#include "framework/string_helper.h"
#include "framework/time.h"
#include "net/door/addresses.h"
#include "net/inner/end_counts.h"
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
using inner::TcpLink;
using inner::TcpLinkRef;

String_T<wchar_t> textOf(const void* endpoint)
{
    return inner::peerText(*static_cast<const Endpoint*>(endpoint));
}

} // namespace

TcpServer::Pending TcpServer::takePending()
{
    if (m_Proxied && m_Proxied->hasKnown())
    {
        inner::Proxied::Known known = m_Proxied->take();
        return admit(known.m_Handle, known.m_Peer, known.m_IsPrepared);
    }
    Endpoint peer;
    Door::Fault fault;
    DoorHandle handle(m_Reactor->door(), m_Reactor->door()->accept(m_Handle, peer, fault));
    if (fault.m_Reason == Door::Fault::kNotNow)
    {
        m_IsReady = false;
        m_HasEarlier = false;
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
    const bool isPrepared = inner::kHasFastPaths && m_IsInherited && !m_HasEarlier;
    if (!m_Proxied)
        return admit(handle, peer, isPrepared);
    awaitProxyHeader(handle, peer, isPrepared);
    return kRefused;
}

TcpServer::Pending TcpServer::admit(DoorHandle& handle, const Endpoint& peer, bool isPrepared)
{
    if (!m_Crowd->hasSpace(peer))
    {
        noteFault({EndCause::kTooMany, 0});
        m_Crowd->noteRefused(peer);
        return kRefused;
    }
    const unsigned int listening = m_Listening;
    // The host may have closed the server, or listen anew by now.
    if (!isPermitted(peer))
    {
        refuse(peer, {EndCause::kFiltered, 0});
        return kRefused;
    }
    if (m_Listening != listening)
        return kRefused;
    const TcpLinkRef link(new TcpLink(*m_Reactor));
    link->take(handle.release());
    m_Crowd->admit(*link.get(), peer);
    if (!isPrepared)
    {
        link->prepare();
        link->door().watchPeer(link->getHandle(), m_Crowd->limits());
    }
    m_Listener->m_PendingPeer = peer;
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

void TcpServer::refuse(const Endpoint& peer, EndCause cause, const wchar_t* reason)
{
    noteFault(cause);
    if (reason)
        inner::logFault(inner::kRefusedLine, reason, textOf, &peer);
    else
        inner::logEnd(inner::kRefusedLine, cause, textOf, &peer);
}

bool TcpServer::expectProxyHeader(const wchar_t* networks)
{
    if (!networks)
    {
        m_Proxied.reset();
        return true;
    }
    AddressFilter trusted;
    if (!trusted.addSubnets(AddressFilter::kPermitted, networks))
        return false;
    m_Proxied = std::make_unique<inner::Proxied>(std::move(trusted));
    return true;
}

void TcpServer::awaitProxyHeader(DoorHandle& handle, const Endpoint& proxy, bool isPrepared)
{
    if (!m_Proxied->trusted().contains(AddressFilter::kPermitted, proxy))
        return refuse(proxy, {EndCause::kFiltered, 0}, L"not a trusted proxy");
    const NetLimits& limits = m_Crowd->limits();
    if (limits.m_ProxyHeaders > 0 && m_Proxied->getCount() >= limits.m_ProxyHeaders)
        return refuse(proxy, {EndCause::kTooMany, 0});
    if (!m_Proxied->await(*m_Reactor, handle, proxy, isPrepared))
        refuse(proxy, {EndCause::kNoHandle, 0});
}

void TcpServer::readProxyHeaders()
{
    for (const inner::Proxied::Refused& each : m_Proxied->read(m_Crowd->limits()))
        refuse(each.m_Proxy, each.m_Cause, each.m_Reason);
}

} // namespace zet
