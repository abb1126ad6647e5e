#include "framework/peer_log.h"

#include "framework/inner/log_share.h"
#include "framework/inner/report.h"
#include "framework/log.h"

#include <utility>

namespace zet
{

namespace
{

// Each tick of a connection changes it: in a fixed place relative to the thread it needs no call.
#if defined(__ELF__) && defined(__GNUC__)
[[gnu::tls_model("initial-exec")]]
#endif
constinit thread_local const PeerLog::Scope* t_Scope = nullptr;

} // namespace

struct PeerLog::Share
{
    explicit Share(Rate rate) : m_Lines(rate.m_Burst, rate.m_Interval), m_IsBounded(rate.m_Burst > 0) {}

    inner::LogShare m_Lines;
    const bool m_IsBounded;
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
    if (const unsigned long long omitted = m_Used->m_Lines.takeOmitted())
        Log::warning(L"last line %llu times, the same or alike (%s)", omitted, m_Used->m_Name);
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
    if (!m_Used->m_IsBounded)
        return true;
    if (!m_Used->m_Lines.take())
    {
        if (m_Used->m_Lines.getOmitted() == 1)
            m_Used->m_Name = scope.m_NameOf(scope.m_Peer);
        return false;
    }
    sayLeftOut();
    return true;
}

unsigned long long PeerLog::getLeftOut()
{
    return inner::LogShare::getAllOmitted();
}

} // namespace zet
