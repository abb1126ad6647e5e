// The boundary of a command: whatever is thrown while one is dispatched ends here.
#pragma once

#include "framework/exception.h"
#include "framework/inner/report.h"
#include "framework/log.h"

#include <exception>

// Returns what dispatch() returns, or false where it threw. Then tell(fault) has told the log of a standard exception,
// tell(nullptr) of anything else; the stream layer's exception reports itself.
template <class Dispatch, class Tell>
bool withinBoundary(Dispatch dispatch, Tell tell) noexcept
{
    try
    {
        return dispatch();
    }
    catch (const zet::Exception& fault)
    {
        zet::inner::report([&] { fault.report(); });
    }
    catch (const std::exception& fault)
    {
        zet::inner::report([&] { tell(fault.what()); });
        zet::inner::report([] { zet::Log::whistle(false); });
    }
    catch (...)
    {
        zet::inner::report([&] { tell(nullptr); });
        zet::inner::report([] { zet::Log::whistle(false); });
    }
    return false;
}
