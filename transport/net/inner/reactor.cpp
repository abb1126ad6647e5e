#include "transport/net/inner/reactor.h"

#include "framework/log.h"
#include "framework/string_helper.h"
#include "transport/net/inner/tcp_link.h"
#include "transport/net/inner/udp_router.h"

#include <asio/post.hpp>
#include <asio/system_error.hpp>

#include <chrono>

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
        Log::error(L"No reactor for sockets: %s", StringHelper::utf8ToWide(fault.what()));
        return nullptr;
    }
}

} // namespace

// Only one thread runs it, so the descriptors need no locks; wake() comes from others through the queue, which has one.
Reactor::Reactor(bool isTicked)
    : m_Context(ASIO_CONCURRENCY_HINT_UNSAFE_IO), m_Guard(m_Context.get_executor()), m_IsTicked(isTicked)
{
}

Reactor::~Reactor()
{
    for (TcpLink* link : m_Unflushed)
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
    m_Context.run_one_for(std::chrono::milliseconds(milliseconds));
}

void Reactor::wake()
{
    if (!m_IsWoken.exchange(true))
        asio::post(m_Context, [this] { m_IsWoken = false; });
}

void Reactor::poll()
{
    for (int i = 0; i < kHandlersPerPoll && m_Context.poll_one() > 0; ++i)
        continue;
}

void Reactor::beginTick()
{
    m_IsHurried = false;
    m_IsTicking = true;
    poll();
}

void Reactor::endTick()
{
    m_Flushing.swap(m_Unflushed);
    for (TcpLink* link : m_Flushing)
    {
        link->m_IsListed = false;
        link->flushOwner();
        link->release();
    }
    m_Flushing.clear();
    std::vector<std::weak_ptr<UdpRouter>> routers;
    routers.swap(m_Routers);
    for (const auto& router : routers)
        if (const auto present = router.lock())
            present->endTick();
    m_IsTicking = false;
}

void Reactor::flushLater(TcpLink& link)
{
    if (link.m_IsListed || !m_IsTicked)
        return;
    link.m_IsListed = true;
    link.addRef();
    m_Unflushed.push_back(&link);
}

bool Reactor::flushLater(std::weak_ptr<UdpRouter> router)
{
    if (m_IsTicked)
        m_Routers.push_back(std::move(router));
    return m_IsTicked;
}

} // namespace zet::inner
