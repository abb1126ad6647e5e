// A connection to another server that is made again when it ends.
#pragma once

#include "examples/arena/server_role.h"
#include "framework/log.h"
#include "host/tasks.h"
#include "transport/framework_client_socket.h"

#include <algorithm>
#include <functional>

namespace arena
{

// Connects at once, and after an end or a failure again: after 1 s, then after twice the time each, at most 30 s. The
// address is asked for before each attempt, so it may become known later.
class KeptLink : public CFrameworkClientSocket
{
public:
    static constexpr std::chrono::milliseconds kFirstDelay{1000};
    static constexpr std::chrono::milliseconds kLongestDelay{30000};

    // The tasks are not owned, and are destroyed before this object.
    KeptLink(CCmdAnalyserSocket& analyser, host::Tasks& tasks) : CFrameworkClientSocket(&analyser), m_Tasks(tasks) {}

    // Returns false while the address is not known.
    std::function<bool(Address&)> m_Find;
    std::function<void()> m_OnUp;
    // Called once after each m_OnUp, when the connection has ended.
    std::function<void()> m_OnDown;

    bool begin(zet::System& system)
    {
        m_System = &system;
        if (!start(m_System))
            return false;
        attempt();
        return true;
    }
    bool isUp() const { return m_IsUp; }

    void onEstablished() override
    {
        m_IsUp = true;
        m_Delay = kFirstDelay;
        m_OnUp();
    }
    void onEnd(const zet::EndCause&) override
    {
        if (std::exchange(m_IsUp, false))
            m_OnDown();
        retry();
    }

private:
    void attempt()
    {
        Address address;
        if (!m_Find(address) || !connect(address.m_Host, address.m_Port, true))
            retry();
    }
    void retry()
    {
        if (m_System->isShutdown())
            return;
        m_Tasks.after(m_Delay, [this] { attempt(); });
        m_Delay = std::min(2 * m_Delay, kLongestDelay);
    }

    host::Tasks& m_Tasks;
    zet::System* m_System = nullptr;
    std::chrono::milliseconds m_Delay = kFirstDelay;
    bool m_IsUp = false;
};

} // namespace arena
