// The boundary of a command: catches every exception thrown during its dispatch.
#pragma once

#include "framework/exception.h"
#include "framework/inner/report.h"
#include "framework/log.h"
#include "framework/peer_log.h"

#include <exception>

// Logs the exception, within the log share of the peer that sent the command.
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
    try
    {
        return dispatch();
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
    catch (const std::exception& fault)
    {
        reportThrown([&] { tell(fault.what()); });
    }
    catch (...)
    {
        reportThrown([&] { tell(nullptr); });
    }
    return false;
}
