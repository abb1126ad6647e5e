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
    // Something may follow the bytes that are there of which no event comes: the end, a fault, urgent data. Not every
    // system reports it, or needs to.
    kReadyTail = 4
};

// A socket's place in a Poller, for as long as it is watched.
class Watch
{
public:
    // Only sets flags: no socket is closed and none is added while events are reported.
    virtual void onReady(unsigned char ready) = 0;

    // The poller's notes: what is wanted, and the handle, or an index where the poller keeps the list itself.
    unsigned char m_Wanted = 0;
    int m_Place = 0;

protected:
    ~Watch() = default;
};

// Reports to each watch what its socket has become ready for. It surely reports again only after want(), which comes
// once the socket was read until nothing was left, or written until nothing more was taken; with edges it may report
// without. One thread owns it; wake() is for any.
class Poller
{
public:
    using Handle = unsigned int;

    Poller() = default;
    virtual ~Poller() = default;
    Poller(const Poller&) = delete;
    Poller& operator=(const Poller&) = delete;

    // Reports with the next wait() what the socket is ready for already. False where the system does not watch it.
    // Watch and socket stay until remove().
    virtual bool add(Handle handle, Watch& watch, unsigned char ready) = 0;
    // For watches that were added, these three.
    virtual void want(Watch& watch, unsigned char ready) = 0;
    // Reports the input that there is, and its tail, though it may have been reported before.
    virtual void reportInputAgain(Watch& watch) = 0;
    virtual void remove(Watch& watch) = 0;

    // Reports pending events at once; otherwise waits up to this time for the first ones, or slightly longer where the
    // system's own times are coarser. False if it could not look.
    virtual bool wait(std::chrono::microseconds time) = 0;
    // Ends the present or the next wait().
    virtual void wake() = 0;
};

} // namespace zet::inner
