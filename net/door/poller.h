// Readiness of sockets.
#pragma once

#include <chrono>

namespace zet::inner
{

// What a socket has become ready for.
enum Ready : unsigned char
{
    kReadyInput = 1,
    kReadyOutput = 2,
    // After the present bytes something may follow that has no event of its own: the end of the stream, a fault or
    // urgent data. Not every system reports or needs this.
    kReadyTail = 4
};

// The entry of a socket in a Poller, for as long as the socket is watched.
class Watch
{
public:
    // An override only sets flags: it closes no socket and adds none.
    virtual void onReady(unsigned char ready) = 0;
    // Loads what onReady() changes into the processor's cache: of many sockets, it is mostly not there. A poller may
    // call it for several ready sockets before it reports the first.
    virtual void loadAhead() const {}

    // Used by the poller: the wanted flags, and the handle, or an index if the poller keeps a list of its own.
    unsigned char m_Wanted = 0;
    int m_Place = 0;

protected:
    ~Watch() = default;
};

// Reports to each watch what its socket has become ready for. After a report the next one is certain only after want(),
// which is called once a read finds nothing left or a write finds no more space; an edge-triggered poller may report
// without it. One thread owns the poller; any thread may call wake().
class Poller
{
public:
    using Handle = unsigned int;

    Poller() = default;
    virtual ~Poller() = default;
    Poller(const Poller&) = delete;
    Poller& operator=(const Poller&) = delete;

    // Adds a socket. The next wait() reports what the socket is already ready for. False if the system cannot watch it.
    // The watch and the socket must exist until remove().
    virtual bool add(Handle handle, Watch& watch, unsigned char ready) = 0;
    // REQUIRES, for these three: the watch was added.
    virtual void want(Watch& watch, unsigned char ready) = 0;
    // Reports pending input and its tail with the next wait(), even if they were reported before.
    virtual void reportInputAgain(Watch& watch) = 0;
    virtual void remove(Watch& watch) = 0;

    // Reports pending events at once. Without any it waits up to this time for the first ones, or slightly longer if
    // the timers of the system are coarser. False if the call of the system failed.
    virtual bool wait(std::chrono::microseconds time) = 0;
    // Ends the present or the next wait().
    virtual void wake() = 0;
};

} // namespace zet::inner
