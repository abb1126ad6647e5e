// What the sockets of one System share: their readiness, their memory, and the end of the tick, when output leaves.
#pragma once

#include "framework/system.h"
#include "transport/net/inner/blocks.h"
#include "transport/net/inner/poller.h"

#include <asio/io_context.hpp>

#include <memory>
#include <vector>

namespace zet::inner
{

struct TcpLink;
class UdpRouter;

// The Waiter of a System with sockets. News only set flags: what is ready is done by the ticks.
class Reactor final : public System::Waiter
{
public:
    using Context = asio::io_context;

    // With isTicked, a System calls beginTick() and endTick(); without, only poll() is called.
    explicit Reactor(bool isTicked);
    ~Reactor() override;

    // The reactor of a System, put in place with its first socket; without a System the calling thread's own, which
    // the sockets themselves poll. Null where the operating system has none to give.
    static std::shared_ptr<Reactor> of(System* system);

    void wait(unsigned int milliseconds) override;
    void wake() override;
    void beginTick() override;
    void endTick() override;

    // Learns what is ready.
    void poll() { m_Poller.wait(0); }
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

    // What Asio's sockets and its resolver ask for. It watches each socket as well, and nobody asks it for news.
    Context& context() { return m_Context; }
    Poller& poller() { return m_Poller; }
    BlockPool& pool() { return m_Pool; }

private:
    TcpLink* takeUnflushed();
    void flushRouters();

    BlockPool m_Pool;
    // Linked through the links themselves, so that listing one takes no memory.
    TcpLink* m_FirstUnflushed = nullptr;
    TcpLink* m_LastUnflushed = nullptr;
    std::vector<std::weak_ptr<UdpRouter>> m_Routers;
    Context m_Context;
    Poller m_Poller;
    const bool m_IsTicked;
    bool m_IsTicking = false;
    // The last wait has told what is ready, and no tick has come since.
    bool m_HasLooked = false;
    bool m_IsHurried = false;
};

} // namespace zet::inner
