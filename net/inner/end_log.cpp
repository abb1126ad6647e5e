#include "net/inner/end_log.h"

#include "framework/inner/log_share.h"
#include "framework/inner/report.h"
#include "framework/log.h"

namespace zet::inner
{

namespace
{

LogShare& shareOf(bool isOrdinary)
{
    thread_local LogShare shares[2];
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
            LogShare& share = shareOf(isOrdinary);
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
