#include "framework/peer_log.h"

#include "framework/inner/report.h"
#include "framework/log.h"
#include "framework/time.h"

#include <algorithm>
#include <atomic>
#include <utility>

namespace zet
{

namespace
{

std::atomic<unsigned long long> allLeftOut{0};

// Each tick of a connection changes it: in a fixed place relative to the thread it needs no call.
#if defined(__ELF__) && defined(__GNUC__)
[[gnu::tls_model("initial-exec")]]
#endif
constinit thread_local const PeerLog::Scope* t_Scope = nullptr;

} // namespace

PeerLog::Scope::Scope(PeerLog& share, const void* peer, NameOf nameOf)
    : m_Share(share), m_Peer(peer), m_NameOf(nameOf), m_Before(std::exchange(t_Scope, this))
{
}

PeerLog::Scope::~Scope()
{
    t_Scope = m_Before;
}

PeerLog::~PeerLog()
{
    finish();
}

void PeerLog::finish() noexcept
{
    inner::report([this] { sayLeftOut(); });
    m_LeftOut = 0;
    m_Room = kBurst;
    m_Name.clear();
}

void PeerLog::sayLeftOut()
{
    if (m_LeftOut > 0)
        Log::warning(L"last line %llu times, the same or alike (%s)", std::exchange(m_LeftOut, 0), m_Name);
}

bool PeerLog::takesLine()
{
    const Scope* const scope = t_Scope;
    return !scope || scope->m_Share.takes(*scope);
}

bool PeerLog::takes(const Scope& scope)
{
    const unsigned int now = getTimeTick();
    if (m_Room == kBurst)
        m_Refilled = now;
    const unsigned int steps = (now - m_Refilled) / kInterval;
    m_Room = std::min(kBurst, m_Room + std::min(steps, kBurst));
    m_Refilled += steps * kInterval;
    if (m_Room == 0)
    {
        allLeftOut.fetch_add(1, std::memory_order_relaxed);
        if (m_LeftOut++ == 0)
            m_Name = scope.m_NameOf(scope.m_Peer);
        return false;
    }
    --m_Room;
    sayLeftOut();
    return true;
}

unsigned long long PeerLog::getLeftOut()
{
    return allLeftOut.load(std::memory_order_relaxed);
}

} // namespace zet
