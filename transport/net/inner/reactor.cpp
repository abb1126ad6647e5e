#include "transport/net/inner/reactor.h"

#include "framework/inner/report.h"
#include "framework/log.h"
#include "framework/string_helper.h"
#include "transport/net/inner/guard.h"
#include "transport/net/inner/tcp_link.h"
#include "transport/net/inner/udp_router.h"

#include <exception>

namespace zet::inner
{

namespace
{

std::shared_ptr<Reactor> makeReactor(bool isTicked)
{
    try
    {
        return std::make_shared<Reactor>(isTicked);
    }
    catch (const std::exception& fault)
    {
        report([&] { Log::error(L"No reactor for sockets: %s", StringHelper::utf8ToWide(fault.what())); });
        return nullptr;
    }
}

} // namespace

// Only one thread uses it, so the sockets need no locks.
Reactor::Reactor(bool isTicked) : m_Context(ASIO_CONCURRENCY_HINT_UNSAFE), m_IsTicked(isTicked) {}

Reactor::~Reactor()
{
    while (TcpLink* const link = takeUnflushed())
        link->release();
}

std::shared_ptr<Reactor> Reactor::of(System* system)
{
    if (system)
    {
        if (auto present = std::dynamic_pointer_cast<Reactor>(system->getWaiter()))
            return present;
        const auto made = makeReactor(true);
        if (made)
            system->setWaiter(made);
        return made;
    }
    thread_local std::shared_ptr<Reactor> own;
    if (!own)
        own = makeReactor(false);
    return own;
}

void Reactor::wait(unsigned int milliseconds)
{
    if (m_IsHurried || milliseconds == 0)
        return;
    m_HasLooked = m_Poller.wait(milliseconds);
}

void Reactor::wake()
{
    m_Poller.wake();
}

void Reactor::beginTick()
{
    m_IsHurried = false;
    m_IsTicking = true;
    if (!std::exchange(m_HasLooked, false))
        poll();
}

void Reactor::endTick()
{
    // Those that are listed meanwhile wait for the next tick.
    const TcpLink* const last = m_LastUnflushed;
    while (TcpLink* const link = takeUnflushed())
    {
        const bool isLast = link == last;
        const TcpLinkRef held = TcpLinkRef::adopt(link);
        // What one connection throws at the end of a tick is its own loss.
        if (!guard(L"a connection", link->m_Owner, [&] { link->flushOwner(); }))
            link->failOwner();
        if (isLast)
            break;
    }
    guard(L"the end of a tick", nullptr, [this] { flushRouters(); });
    m_IsTicking = false;
}

TcpLink* Reactor::takeUnflushed()
{
    TcpLink* const link = m_FirstUnflushed;
    if (!link)
        return nullptr;
    m_FirstUnflushed = std::exchange(link->m_NextUnflushed, nullptr);
    if (!m_FirstUnflushed)
        m_LastUnflushed = nullptr;
    link->m_IsListed = false;
    return link;
}

void Reactor::flushRouters()
{
    std::vector<std::weak_ptr<UdpRouter>> routers;
    routers.swap(m_Routers);
    for (const auto& router : routers)
        if (const auto present = router.lock())
            guard(L"a UDP port", nullptr, [&] { present->endTick(); });
    // The room for them stays.
    routers.clear();
    if (m_Routers.empty())
        m_Routers.swap(routers);
}

void Reactor::flushLater(TcpLink& link)
{
    if (link.m_IsListed || !m_IsTicked)
        return;
    link.m_IsListed = true;
    link.addRef();
    (m_LastUnflushed ? m_LastUnflushed->m_NextUnflushed : m_FirstUnflushed) = &link;
    m_LastUnflushed = &link;
}

bool Reactor::flushLater(std::weak_ptr<UdpRouter> router)
{
    if (!m_IsTicked)
        return false;
    try
    {
        m_Routers.push_back(std::move(router));
        return true;
    }
    catch (const std::bad_alloc&)
    {
        return false;
    }
}

void Reactor::forgetLater(const UdpRouter& router)
{
    std::erase_if(m_Routers, [&](const auto& each) { return each.lock().get() == &router; });
}

} // namespace zet::inner
