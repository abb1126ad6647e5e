// The boundary of a command: catches every exception thrown during its dispatch.
#pragma once

#include "framework/exception.h"
#include "framework/inner/guard.h"
#include "framework/log.h"
#include "framework/peer_log.h"

// Reports what was thrown, within the share of the peer whose command it was.
template <class Tell>
void reportThrown(Tell tell) noexcept
{
    zet::inner::report(
        [&]
        {
            if (!zet::PeerLog::takesLine())
                return;
            zet::inner::report(tell);
            zet::Log::whistle(false);
        });
}

// Reports the exception that is being handled. Not inline: it is rare, and would make each dispatch longer.
template <class Tell>
[[gnu::noinline, gnu::cold]] void reportCaught(Tell tell) noexcept
{
    const auto again = []
    {
        try
        {
            throw;
        }
        catch (const zet::Exception& fault)
        {
            zet::inner::report(
                [&]
                {
                    if (zet::PeerLog::takesLine())
                        fault.report();
                });
        }
    };
    zet::inner::guardCall(again, [&](const char* what) { reportThrown([&] { tell(what); }); });
}

// Returns the result of dispatch(), or false if it threw. tell(fault) logs a standard exception, tell(nullptr) anything
// else; the stream layer's exception logs itself.
template <class Dispatch, class Tell>
[[gnu::always_inline]] inline bool withinBoundary(Dispatch dispatch, Tell tell) noexcept
{
    try
    {
        return dispatch();
    }
    catch (...)
    {
        reportCaught(tell);
    }
    return false;
}
