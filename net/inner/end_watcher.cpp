#include "net/inner/end_watcher.h"

#include <map>
#include <mutex>

namespace zet::inner
{

namespace
{

struct Watches
{
    std::mutex m_Mutex;
    std::multimap<const ConnectionEvents*, EndWatcher*> m_Watchers;
};

// Never destroyed: a connection may end while the process ends.
Watches& getWatches()
{
    static Watches* const watches = new Watches;
    return *watches;
}

} // namespace

void EndWatcher::watch(ConnectionEvents& connection)
{
    Watches& all = getWatches();
    const std::lock_guard lock(all.m_Mutex);
    all.m_Watchers.emplace(&connection, this);
    connection.m_Flags |= ConnectionEvents::kWatched;
}

void EndWatcher::unwatch(const ConnectionEvents& connection) noexcept
{
    Watches& all = getWatches();
    const std::lock_guard lock(all.m_Mutex);
    const auto range = all.m_Watchers.equal_range(&connection);
    for (auto each = range.first; each != range.second; ++each)
        if (each->second == this)
        {
            all.m_Watchers.erase(each);
            return;
        }
}

void EndWatcher::report(ConnectionEvents& connection) noexcept
{
    connection.m_Flags = static_cast<unsigned char>(connection.m_Flags & ~ConnectionEvents::kWatched);
    const EndCause cause{connection.m_Code, connection.m_Detail};
    Watches& all = getWatches();
    for (;;)
    {
        EndWatcher* watcher = nullptr;
        {
            const std::lock_guard lock(all.m_Mutex);
            const auto found = all.m_Watchers.find(&connection);
            if (found == all.m_Watchers.end())
                return;
            watcher = found->second;
            all.m_Watchers.erase(found);
        }
        watcher->onWatchedEnd(connection, cause);
    }
}

} // namespace zet::inner
