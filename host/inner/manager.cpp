#include "host/inner/manager.h"

#include "framework/inner/moment.h"
#include "framework/platform/platform.h"
#include "framework/time.h"
#include "net/door/notify_socket.h"

#include <algorithm>
#include <cstdlib>

namespace host::inner
{

namespace
{

const char* variable(const char* name)
{
    const char* const text = std::getenv(name);
    return text ? text : "";
}

} // namespace

Manager::Manager() : m_Socket(variable("NOTIFY_SOCKET"))
{
    const std::string process = variable("WATCHDOG_PID");
    if (process.empty() || process == std::to_string(zet::platform::getProcessId()))
    {
        const unsigned long long microseconds = std::strtoull(variable("WATCHDOG_USEC"), nullptr, 10);
        constexpr unsigned long long kMost = 24ULL * 60 * 60 * 1000;
        m_Interval = static_cast<unsigned int>(std::min(microseconds / 2000, kMost));
    }
    m_Next = zet::getTimeTick();
}

void Manager::report(const std::string& state) const
{
    if (!m_Socket.empty())
        zet::inner::sendToNamedSocket(m_Socket, state);
}

void Manager::reportReloading() const
{
    // The manager compares the time with that of its request.
    report("RELOADING=1\nMONOTONIC_USEC=" + std::to_string(zet::platform::getMonotonicNanoseconds() / 1000));
}

void Manager::tick(unsigned int now)
{
    if (!isWatched() || !zet::inner::isReached(m_Next, now))
        return;
    m_Next = now + m_Interval;
    report("WATCHDOG=1");
}

} // namespace host::inner
