// The end of a service's connections, one by one, when they are answered.
#pragma once

#include "host/service.h"

#include <vector>

namespace host::inner
{

struct ServedTcp
{
    CFrameworkServerSocket* m_Server;
    std::function<bool(CFrameworkClientSocket&)> m_IsAnswered;
};

struct ServedUdp
{
    UdpServerSocket* m_Server;
    std::function<bool(UdpClientSocket&)> m_IsAnswered;
};

class Drain
{
public:
    bool isBegun() const { return m_IsBegun; }
    // Now is a time of getTimeTick().
    void begin(unsigned int now, unsigned int milliseconds);
    // The servers accept no further connection.
    void stopAccepting();
    // After a tick, outside of it: closes what is answered. True when nothing is left, or the time is over; then
    // everything is closed.
    bool step(zet::System& system, unsigned int now);

    std::vector<ServedTcp> m_Tcp;
    std::vector<ServedUdp> m_Udp;
    std::vector<const Questions*> m_Questions;
    std::vector<std::function<bool()>> m_Busy;

private:
    int countOpen() const;
    bool isWaiting() const;
    void closeAnswered();
    void closeAll();

    bool m_IsBegun = false;
    unsigned int m_End = 0;
};

} // namespace host::inner
