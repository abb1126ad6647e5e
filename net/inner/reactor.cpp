#include "net/inner/reactor.h"

#include "framework/inner/nanoseconds.h"
#include "framework/inner/report.h"
#include "framework/log.h"
#include "framework/string_helper.h"
#include "net/inner/fetch.h"
#include "net/inner/guard.h"
#include "net/quic/inner/udp_router.h"
#include "net/tcp/inner/link.h"

#include <atomic>
#include <chrono>
#include <exception>
#include <mutex>

namespace zet::inner
{

namespace
{

std::shared_ptr<Reactor> makeReactor(const std::shared_ptr<Door>& door, bool isTicked)
{
    try
    {
        return std::make_shared<Reactor>(door, isTicked);
    }
    catch (const std::exception& fault)
    {
        report([&] { Log::error(L"No reactor for sockets: %s", StringHelper::utf8ToWide(fault.what())); });
        return nullptr;
    }
}

} // namespace

// Shared by the reactor and the threads that resolve names.
struct Reactor::Mail
{
    std::mutex m_Mutex;
    // Null once the reactor is gone.
    Poller* m_Poller;
    std::atomic<bool> m_HasAnswers{false};
};

// Its owner holds it. The resolving thread shares the answer only.
struct Reactor::Question final : Lookup
{
    Found m_GiveFound;
    struct Answer
    {
        std::vector<Endpoint> m_Found;
        std::atomic<bool> m_IsThere{false};
    };
    const std::shared_ptr<Answer> m_Answer = std::make_shared<Answer>();
};

bool setDoor(System& system, const std::shared_ptr<Door>& door)
{
    return Reactor::make(system, door);
}

// Only one thread uses it, so the sockets need no locks.
Reactor::Reactor(const std::shared_ptr<Door>& door, bool isTicked)
    : m_Door(door), m_Poller(door->makePoller()), m_Mail(std::make_shared<Mail>()), m_IsTicked(isTicked)
{
    m_Mail->m_Poller = m_Poller.get();
}

Reactor::~Reactor()
{
    {
        const std::lock_guard lock(m_Mail->m_Mutex);
        m_Mail->m_Poller = nullptr;
    }
    while (TcpLink* const link = takeUnflushed())
        link->release();
}

std::shared_ptr<Reactor> Reactor::of(System* system)
{
    if (system)
    {
        if (auto present = std::dynamic_pointer_cast<Reactor>(system->getWaiter()))
            return present;
        const auto made = makeReactor(Door::getReal(), true);
        if (made)
            system->setWaiter(made);
        return made;
    }
    thread_local std::shared_ptr<Reactor> own;
    if (!own)
        own = makeReactor(Door::getReal(), false);
    return own;
}

bool Reactor::make(System& system, const std::shared_ptr<Door>& door)
{
    if (std::dynamic_pointer_cast<Reactor>(system.getWaiter()))
        return false;
    const auto made = makeReactor(door, true);
    if (made)
        system.setWaiter(made);
    return made != nullptr;
}

void Reactor::wait(unsigned int milliseconds)
{
    if (m_IsHurried || milliseconds == 0)
        return;
    // In nanoseconds.
    unsigned long long time = milliseconds * 1000000ULL;
    if (m_HurryAt != kNever)
    {
        const unsigned long long now = getNanoseconds();
        if (m_HurryAt <= now)
            return;
        time = std::min(time, m_HurryAt - now);
    }
    // Rounded up, so that no sleep ends before its time.
    m_HasLooked = m_Poller->wait(std::chrono::microseconds((time + 999) / 1000));
}

void Reactor::wake()
{
    m_Poller->wake();
}

void Reactor::poll()
{
    m_Poller->wait(std::chrono::microseconds(0));
    deliverNames();
}

void Reactor::beginTick()
{
    m_IsHurried = false;
    m_HurryAt = kNever;
    m_IsTicking = true;
    if (std::exchange(m_HasLooked, false))
        deliverNames();
    else
        poll();
}

std::shared_ptr<Lookup> Reactor::resolve(const char* name, Found found)
{
    try
    {
        const auto question = std::make_shared<Question>();
        question->m_GiveFound = std::move(found);
        // Remove the released lookups before the list grows.
        if (m_Questions.size() == m_Questions.capacity())
            std::erase_if(m_Questions, [](const auto& each) { return each.expired(); });
        m_Questions.push_back(question);
        m_Door->resolve(
            name,
            [answer = question->m_Answer, mail = m_Mail](std::vector<Endpoint> addresses)
            {
                answer->m_Found = std::move(addresses);
                answer->m_IsThere = true;
                const std::lock_guard lock(mail->m_Mutex);
                mail->m_HasAnswers = true;
                if (mail->m_Poller)
                    mail->m_Poller->wake();
            },
            question);
        return question;
    }
    catch (const std::bad_alloc&)
    {
        return nullptr;
    }
}

void Reactor::deliverNames()
{
    if (!m_Mail->m_HasAnswers.load(std::memory_order_relaxed) || !m_Mail->m_HasAnswers.exchange(false))
        return;
    for (const auto& each : m_Questions)
        if (const auto question = each.lock(); question && question->m_Answer->m_IsThere)
            if (const Found give = std::exchange(question->m_GiveFound, nullptr))
                give(std::move(question->m_Answer->m_Found));
    std::erase_if(m_Questions,
                  [](const auto& each)
                  {
                      const auto question = each.lock();
                      return !question || !question->m_GiveFound;
                  });
}

void Reactor::endTick()
{
    // Links that are added by these calls wait for the next tick.
    const TcpLink* const last = m_LastUnflushed;
    while (TcpLink* const link = takeUnflushed())
    {
        const bool isLast = link == last;
        const TcpLinkRef held = TcpLinkRef::adopt(link);
        if (TcpLink* const next = m_FirstUnflushed)
        {
            fetch<8>(next->m_Owner);
            fetch<1>(next->m_Output.front());
            fetch<3>(next->m_NextUnflushed);
        }
        // An exception of one connection ends that connection only.
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
    if (m_Routers.empty())
        return;
    std::vector<std::weak_ptr<UdpRouter>> routers;
    routers.swap(m_Routers);
    for (const auto& router : routers)
        if (const auto present = router.lock())
            guard(L"a UDP port", nullptr, [&] { present->endTick(); });
    // Keep the memory of the list.
    routers.clear();
    if (m_Routers.empty())
        m_Routers.swap(routers);
}

bool Reactor::flushLater(TcpLink& link)
{
    if (link.m_IsListed || !m_IsTicked)
        return m_IsTicked;
    m_IsHurried = m_IsHurried || !m_IsTicking;
    link.m_IsListed = true;
    link.addRef();
    (m_LastUnflushed ? m_LastUnflushed->m_NextUnflushed : m_FirstUnflushed) = &link;
    m_LastUnflushed = &link;
    return true;
}

bool Reactor::flushLater(std::weak_ptr<UdpRouter> router)
{
    if (!m_IsTicked)
        return false;
    try
    {
        m_Routers.push_back(std::move(router));
        m_IsHurried = m_IsHurried || !m_IsTicking;
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
