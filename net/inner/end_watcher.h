// Reports the ends of single connections to objects of the library, beside the override of onEnd().
#pragma once

#include "net/connection_events.h"

namespace zet::inner
{

// Connections that nothing watches pay one test of a flag at their end. A watch, its end and a watched end take a lock
// of the process for a moment. THREADS: all of it belongs to the connection's thread.
class EndWatcher
{
public:
    // Until the connection ends, or unwatch(). One watcher may watch several connections.
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
