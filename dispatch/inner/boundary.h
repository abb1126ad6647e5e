// The boundary of a command: whatever is thrown while one is dispatched ends here.
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

// Returns what dispatch() returns, or false where it threw. Then tell(fault) has logged a standard exception and
// tell(nullptr) anything else; the stream layer's exception reports itself.
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
