// A socket and its watch.
#pragma once

#include "net/inner/reactor.h"

#include <utility>

namespace zet::inner
{

// The base of links, listeners and UDP ports. Ensures that the watch ends before the handle is closed or released.
class Watched : public Watch
{
public:
    // False if the system does not watch the handle.
    bool startWatch(unsigned char ready)
    {
        m_IsWatched = poller().add(m_Handle, *this, ready);
        return m_IsWatched;
    }
    bool isWatched() const { return m_IsWatched; }

    Door& door() const { return *m_Reactor.door(); }
    Door::Handle getHandle() const { return m_Handle; }
    void close()
    {
        const Door::Handle handle = giveAway();
        if (handle != Door::kNoHandle)
            door().close(handle);
    }
    // Closes the present handle and owns this one.
    void take(Door::Handle handle)
    {
        close();
        m_Handle = handle;
    }
    // Returns the handle, open; the caller owns it.
    Door::Handle giveAway()
    {
        if (std::exchange(m_IsWatched, false))
            poller().remove(*this);
        return std::exchange(m_Handle, Door::kNoHandle);
    }

protected:
    // Owns the handle from then on. The reactor lives at least as long as the handle is owned.
    Watched(Reactor& reactor, Door::Handle handle) : m_Reactor(reactor), m_Handle(handle) {}
    ~Watched() { close(); }

    Poller& poller() { return m_Reactor.poller(); }

private:
    Reactor& m_Reactor;
    Door::Handle m_Handle;
    bool m_IsWatched = false;
};

} // namespace zet::inner
