// The service manager that started this process, by systemd's notification protocol.
#pragma once

#include <string>

namespace host::inner
{

// Sends states as datagrams to the socket named by NOTIFY_SOCKET; does nothing without that variable. If WATCHDOG_USEC
// and WATCHDOG_PID say that this process is watched, a report goes out each half of that time as long as ticks happen.
class Manager
{
public:
    Manager();

    void report(const std::string& state) const;
    void reportReloading() const;
    bool isWatched() const { return m_Interval > 0 && !m_Socket.empty(); }
    // In each tick, with the time of getTimeTick().
    void tick(unsigned int now);

private:
    std::string m_Socket;
    // Milliseconds; 0 for no watchdog.
    unsigned int m_Interval = 0;
    unsigned int m_Next = 0;
};

} // namespace host::inner
