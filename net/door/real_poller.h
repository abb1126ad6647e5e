// The poller of the operating system. Each platform implements it in a file of its own.
#pragma once

#include "net/door/poller.h"

#include <algorithm>
#include <limits>
#include <memory>

namespace zet::inner
{

// A time limit for the calls of the operating system, rounded up so that no wait ends before its time.
inline int toMilliseconds(std::chrono::microseconds time)
{
    const auto whole = std::chrono::ceil<std::chrono::milliseconds>(time).count();
    return static_cast<int>(std::min<long long>(whole, std::numeric_limits<int>::max()));
}

// Throws std::runtime_error, or an exception derived from it, if the system has no poller left.
std::unique_ptr<Poller> makeRealPoller();

} // namespace zet::inner
