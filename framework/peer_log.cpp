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

struct PeerLog::Share
{
    explicit Share(Rate rate) : m_Rate(rate), m_Left(rate.m_Burst) {}

    const Rate m_Rate;
    // Lines that may be logged now.
    unsigned int m_Left;
    // When the share last grew, in ticks of getTimeTick().
    unsigned int m_Refilled = 0;
    unsigned long long m_LeftOut = 0;
    // The name of the peer, once lines were omitted.
    String_T<wchar_t> m_Name;
};

PeerLog::Scope::Scope(PeerLog& share, const void* peer, NameOf nameOf, RateOf rateOf)
    : m_Share(share), m_Peer(peer), m_NameOf(nameOf), m_RateOf(rateOf), m_Before(std::exchange(t_Scope, this))
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
    if (!m_Used)
        return;
    inner::report([this] { sayLeftOut(); });
    delete std::exchange(m_Used, nullptr);
}

void PeerLog::sayLeftOut()
{
    if (m_Used->m_LeftOut > 0)
        Log::warning(L"last line %llu times, the same or alike (%s)", std::exchange(m_Used->m_LeftOut, 0),
                     m_Used->m_Name);
}

bool PeerLog::takesLine()
{
    const Scope* const scope = t_Scope;
    return !scope || scope->m_Share.takes(*scope);
}

bool PeerLog::takes(const Scope& scope)
{
    if (!m_Used)
        m_Used = new Share(scope.m_RateOf ? scope.m_RateOf(scope.m_Peer) : Rate());
    Share& used = *m_Used;
    const unsigned int most = used.m_Rate.m_Burst;
    if (most == 0)
        return true;
    const unsigned int now = getTimeTick();
    if (used.m_Left == most)
        used.m_Refilled = now;
    const unsigned int interval = used.m_Rate.m_Interval;
    const unsigned int steps = interval > 0 ? (now - used.m_Refilled) / interval : 0;
    used.m_Left += std::min(steps, most - used.m_Left);
    used.m_Refilled += steps * interval;
    if (used.m_Left == 0)
    {
        allLeftOut.fetch_add(1, std::memory_order_relaxed);
        if (used.m_LeftOut++ == 0)
            used.m_Name = scope.m_NameOf(scope.m_Peer);
        return false;
    }
    --used.m_Left;
    sayLeftOut();
    return true;
}

unsigned long long PeerLog::getLeftOut()
{
    return allLeftOut.load(std::memory_order_relaxed);
}

} // namespace zet
