#include "examples/arena/platform/calendar.h"

#include "framework/time.h"

#include <algorithm>

namespace arena::platform
{

constexpr int kSecondsOfDay = 24 * 60 * 60;

// The start of the local day. A day has 24 hours, since the calendar knows no daylight saving.
static zet::Time getMidnight()
{
    zet::Time midnight;
    midnight.convertFromString((getToday() + L" 00:00:00").getBuffer());
    return midnight;
}

zet::String_T<wchar_t> getToday()
{
    const zet::String_T<wchar_t> now = zet::Time::getCurrent().convertToString(true);
    return now.getSubString(0, now.find(L' ', 0));
}

int getSecondsOfDayLeft()
{
    return std::clamp(kSecondsOfDay - static_cast<int>(zet::Time::getCurrent() - getMidnight()), 1, kSecondsOfDay);
}

int getDay()
{
    // Noon is in the same day of UTC if that is at most 12 hours away.
    return static_cast<int>((getMidnight() + kSecondsOfDay / 2).getSeconds() / kSecondsOfDay);
}

} // namespace arena::platform
