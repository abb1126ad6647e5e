// A socket and its watch.
#pragma once

#include "net/inner/reactor.h"

namespace zet::inner
{

// The base of links, listeners and UDP ports. Ensures that the watch ends before the handle is closed or released.
class Watched : public Watch
{
public:
    // False if the system does not watch the handle.
    bool startWatch(unsigned char ready)
    {
        m_IsWatched = m_Poller.add(m_Handle.get(), *this, ready);
        return m_IsWatched;
    }
    bool isWatched() const { return m_IsWatched; }

    Door& door() const { return m_Handle.door(); }
    Door::Handle getHandle() const { return m_Handle.get(); }
    void close()
    {
        unwatch();
        m_Handle.close();
    }
    // Closes the present handle and owns this one.
    void take(Door::Handle handle)
    {
        close();
        m_Handle.set(handle);
    }
    // Returns the handle, open; the caller owns it.
    Door::Handle giveAway()
    {
        unwatch();
        return m_Handle.release();
    }

protected:
    // Owns the handle from then on.
    Watched(Reactor& reactor, Door::Handle handle) : m_Poller(reactor.poller()), m_Handle(reactor.door(), handle) {}
    ~Watched() { unwatch(); }

    Poller& poller() { return m_Poller; }

private:
    void unwatch()
    {
        if (m_IsWatched)
            m_Poller.remove(*this);
        m_IsWatched = false;
    }

    Poller& m_Poller;
    DoorHandle m_Handle;
    bool m_IsWatched = false;
};

} // namespace zet::inner
