// Readiness by the operating system's own means. The functions are in a file per platform.
#pragma once

#include "net/door/poller.h"

#include <algorithm>
#include <limits>
#include <memory>

namespace zet::inner
{

// A time limit of the operating system's own calls: rounded up, so that what is due then is due.
inline int toMilliseconds(std::chrono::microseconds time)
{
    const auto whole = std::chrono::ceil<std::chrono::milliseconds>(time).count();
    return static_cast<int>(std::min<long long>(whole, std::numeric_limits<int>::max()));
}

// Throws std::system_error where the system has none to give.
std::unique_ptr<Poller> makeRealPoller();

} // namespace zet::inner
