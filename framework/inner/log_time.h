// The time of a log line.
#pragma once

#include "framework/platform/platform.h"
#include "framework/time.h"

namespace zet::inner
{

// Milliseconds since 1970 UTC.
inline long long getLogTime()
{
    return TestClock::isOn() ? zet::time(nullptr) * 1000 : platform::getCalendarMilliseconds();
}

} // namespace zet::inner
