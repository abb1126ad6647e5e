// What the sockets of one System share: their readiness, their memory, and the end of the tick, when output leaves.
#pragma once

#include "framework/system.h"
#include "net/door/door.h"
#include "net/inner/blocks.h"

#include <memory>
#include <vector>

namespace zet::inner
{

struct TcpLink;
class UdpRouter;

// The answer to a question for the addresses of a host name. Whoever asked holds it; let go of, it is never given.
class Lookup
{
public:
    virtual ~Lookup() = default;
};

// The Waiter of a System with sockets. Events only set flags: what is ready is done by the ticks.
class Reactor final : public System::Waiter
{
public:
    // With isTicked, a System calls beginTick() and endTick(); without, only poll() is called.
    Reactor(const std::shared_ptr<Door>& door, bool isTicked);
    ~Reactor() override;

    // The reactor of a System, put in place with its first socket; without a System the calling thread's own, which
    // the sockets themselves poll. Null where the operating system has none to give.
    static std::shared_ptr<Reactor> of(System* system);
    // What setDoor() does.
    static bool make(System& system, const std::shared_ptr<Door>& door);

    void wait(unsigned int milliseconds) override;
    void wake() override;
    void beginTick() override;
    void endTick() override;

    // Learns what is ready.
    void poll();
    // For a socket that may be ticked outside its System's tick, where nobody has looked yet.
    void pollOutsideTick()
    {
        if (!m_IsTicking)
            poll();
    }
    bool isTicking() const { return m_IsTicking; }
    // Something is left for the next tick, which is to come at once.
    void hurry() { m_IsHurried = true; }
    // Flushes the link's output at the end of the tick. Without a System its own tick does it.
    void flushLater(TcpLink& link);
    // Calls the router's endTick() once, at the end of the tick. True where that will come by itself.
    bool flushLater(std::weak_ptr<UdpRouter> router);
    // Takes that back: the router goes to another reactor.
    void forgetLater(const UdpRouter& router);

    // Asks for the addresses of a name. The answer, empty where there are none, comes on this thread when the reactor
    // looks for events, and only sets flags. Null for lack of memory.
    using Found = std::function<void(std::vector<Endpoint>&& found)>;
    std::shared_ptr<Lookup> resolve(const char* name, Found found);

    const std::shared_ptr<Door>& door() const { return m_Door; }
    Poller& poller() { return *m_Poller; }
    BlockPool& pool() { return m_Pool; }

private:
    struct Mail;
    struct Question;

    TcpLink* takeUnflushed();
    void flushRouters();
    void deliverNames();

    BlockPool m_Pool;
    // Linked through the links themselves, so that listing one takes no memory.
    TcpLink* m_FirstUnflushed = nullptr;
    TcpLink* m_LastUnflushed = nullptr;
    std::vector<std::weak_ptr<UdpRouter>> m_Routers;
    const std::shared_ptr<Door> m_Door;
    const std::unique_ptr<Poller> m_Poller;
    const std::shared_ptr<Mail> m_Mail;
    std::vector<std::weak_ptr<Question>> m_Questions;
    const bool m_IsTicked;
    bool m_IsTicking = false;
    // The last wait has reported what is ready, and no tick has come since.
    bool m_HasLooked = false;
    bool m_IsHurried = false;
};

} // namespace zet::inner
