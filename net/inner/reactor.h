// What the sockets of one System share: readiness, memory, and the end of each tick, when output is sent.
#pragma once

#include "framework/system.h"
#include "net/door/door.h"
#include "net/inner/blocks.h"

#include <algorithm>
#include <limits>
#include <memory>
#include <vector>

namespace zet::inner
{

struct TcpLink;
class UdpRouter;

// A pending request for the addresses of a host name. Its owner holds it; a released request calls nothing.
class Lookup
{
public:
    virtual ~Lookup() = default;
};

// The Waiter of a System with sockets. Events only set flags; ticks do the work.
class COMMONGROUND_API Reactor final : public System::Waiter
{
public:
    // With isTicked a System calls beginTick() and endTick(); without it only poll() is called.
    Reactor(const std::shared_ptr<Door>& door, bool isTicked);
    ~Reactor() override;

    // The reactor of a System, created with its first socket. For null, the reactor of the calling thread, which its
    // sockets poll. Null if the operating system has no poller left.
    static std::shared_ptr<Reactor> of(System* system);
    // Implements setDoor().
    static bool make(System& system, const std::shared_ptr<Door>& door);

    void wait(unsigned int milliseconds) override;
    void wake() override;
    void beginTick() override;
    void endTick() override;

    // Asks the operating system what is ready.
    void poll();
    // For a socket that may be ticked outside the tick of its System. Within that tick the reactor has asked already.
    void pollOutsideTick()
    {
        if (!m_IsTicking)
            poll();
    }
    bool isTicking() const { return m_IsTicking; }
    // Makes the next tick start without a sleep.
    void hurry() { m_IsHurried = true; }
    // Makes the next tick start at this time of getNanoseconds() at the latest. It applies to one sleep: an object that
    // is not ticked after it does not set a time again.
    void hurryAt(unsigned long long time) { m_HurryAt = std::min(m_HurryAt, time); }
    // Flushes the link's output at the end of the tick. Outside a tick, the next one starts without a sleep. False if
    // the reactor has no System: then the connection's own tick has to flush.
    bool flushLater(TcpLink& link);
    // Calls the router's endTick() once, at the end of the tick. Outside a tick, the next tick starts without a sleep.
    // False if the reactor has no System or no memory is left.
    bool flushLater(std::weak_ptr<UdpRouter> router);
    // Cancels that call, for a router that moves to another reactor.
    void forgetLater(const UdpRouter& router);

    // Requests the addresses of a name. found is called on this thread when the reactor polls, with an empty list if
    // the name has no address; it must only set flags. Null if memory is short.
    using Found = std::function<void(std::vector<Endpoint>&& found)>;
    std::shared_ptr<Lookup> resolve(const char* name, Found found);

    const std::shared_ptr<Door>& door() const { return m_Door; }
    Poller& poller() { return *m_Poller; }
    BlockPool& pool() { return m_Pool; }

private:
    struct Mail;
    struct Question;

    static constexpr auto kNever = std::numeric_limits<unsigned long long>::max();

    TcpLink* takeUnflushed();
    void flushRouters();
    void deliverNames();

    BlockPool m_Pool;
    // A list linked through the links themselves, so that adding one takes no memory.
    TcpLink* m_FirstUnflushed = nullptr;
    TcpLink* m_LastUnflushed = nullptr;
    std::vector<std::weak_ptr<UdpRouter>> m_Routers;
    const std::shared_ptr<Door> m_Door;
    const std::unique_ptr<Poller> m_Poller;
    const std::shared_ptr<Mail> m_Mail;
    std::vector<std::weak_ptr<Question>> m_Questions;
    const bool m_IsTicked;
    bool m_IsTicking = false;
    // The last wait() has reported the pending events, and no tick has started since.
    bool m_HasLooked = false;
    bool m_IsHurried = false;
    unsigned long long m_HurryAt = kNever;
};

} // namespace zet::inner
