#include "net/inner/end_log.h"

#include "framework/inner/report.h"
#include "framework/log.h"
#include "framework/peer_log.h"
#include "framework/time.h"

#include <algorithm>
#include <utility>

namespace zet::inner
{

namespace
{

class Share
{
public:
    // Uses one line; false if the share is used up, and the line is counted.
    bool take()
    {
        const unsigned int now = getTimeTick();
        if (m_Left == PeerLog::kBurst)
            m_Refilled = now;
        const unsigned int steps = (now - m_Refilled) / PeerLog::kInterval;
        m_Left = std::min(PeerLog::kBurst, m_Left + std::min(steps, PeerLog::kBurst));
        m_Refilled += steps * PeerLog::kInterval;
        if (m_Left == 0)
        {
            ++m_Omitted;
            return false;
        }
        --m_Left;
        return true;
    }
    unsigned long long takeOmitted() { return std::exchange(m_Omitted, 0); }

private:
    unsigned int m_Left = PeerLog::kBurst;
    unsigned int m_Refilled = 0;
    unsigned long long m_Omitted = 0;
};

Share& shareOf(bool isOrdinary)
{
    thread_local Share shares[2];
    return shares[isOrdinary ? 1 : 0];
}

template <class ReasonOf>
void logLine(const wchar_t* pattern, bool isOrdinary, ReasonOf reasonOf, PeerTextOf peer, const void* object) noexcept
{
    report(
        [&]
        {
            const Log::Level level = isOrdinary ? Log::kMessage : Log::kWarning;
            if (!Log::isWanted(level))
                return;
            Share& share = shareOf(isOrdinary);
            if (!share.take())
                return;
            String_T<wchar_t> line = formatText(pattern, peer(object), reasonOf());
            if (const unsigned long long omitted = share.takeOmitted())
                line += formatText(L" (%llu lines like this one were omitted before it)", omitted);
            Log::write(level, line);
        });
}

} // namespace

void logEnd(const wchar_t* pattern, EndCause cause, PeerTextOf peer, const void* object) noexcept
{
    logLine(
        pattern, cause.isOrdinary(), [&] { return cause.getText(); }, peer, object);
}

void logFault(const wchar_t* pattern, const String_T<wchar_t>& reason, PeerTextOf peer, const void* object) noexcept
{
    logLine(
        pattern, false, [&] { return reason; }, peer, object);
}

void logFailure(const wchar_t* what, const String_T<wchar_t>& where, EndCause cause) noexcept
{
    if (cause)
        report([&] { Log::error(L"%s %s failed: %s", what, where, cause.getText()); });
}

} // namespace zet::inner
