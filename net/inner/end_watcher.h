// Reports the ends of single connections to objects of the library, beside the override of onEnd().
#pragma once

#include "net/connection_events.h"

namespace zet::inner
{

// Connections that nothing watches pay one test of a flag at their end. THREADS: watch() and unwatch() may be called
// on any thread; onWatchedEnd() comes on the connection's thread.
class EndWatcher
{
public:
    // The connection may be any in a later call: the watch ends with the first end, and with unwatch().
    void watch(ConnectionEvents& connection);
    void unwatch(const ConnectionEvents& connection) noexcept;
    // Called by the connection at its end.
    static void report(ConnectionEvents& connection) noexcept;

protected:
    ~EndWatcher() = default;

private:
    // The connection has ended; it may be in its destructor. Must not throw.
    virtual void onWatchedEnd(const ConnectionEvents& connection, EndCause cause) noexcept = 0;
};

} // namespace zet::inner
