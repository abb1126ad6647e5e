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

// Returns the result of dispatch(), or false if it threw. tell(fault) logs a standard exception, tell(nullptr) anything
// else; the stream layer's exception logs itself.
template <class Dispatch, class Tell>
bool withinBoundary(Dispatch dispatch, Tell tell) noexcept
{
    bool result = false;
    const auto call = [&]
    {
        try
        {
            result = dispatch();
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
    zet::inner::guardCall(call, [&](const char* what) { reportThrown([&] { tell(what); }); });
    return result;
}
