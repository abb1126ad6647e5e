// The guard around code that a host has written, and around the work of a tick.
#pragma once

#include "framework/inner/report.h"

#include <exception>

namespace zet::inner
{

// False if the call threw. Then tell() was called with the text of a standard exception, or with null for any other; an
// exception from tell() is discarded.
template <class Call, class Tell>
bool guardCall(Call call, Tell tell) noexcept
{
    try
    {
        call();
        return true;
    }
    catch (const std::exception& fault)
    {
        report([&] { tell(fault.what()); });
    }
    catch (...)
    {
        report([&] { tell(nullptr); });
    }
    return false;
}

} // namespace zet::inner
