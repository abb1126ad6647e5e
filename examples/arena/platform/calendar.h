// Days, as the platform counts them: local time, without daylight saving.
#pragma once

#include "framework/string.h"

namespace arena::platform
{

// "2026-11-22", the day on which a daily state was reset.
zet::String_T<wchar_t> getToday();
// At least 1.
int getSecondsOfDayLeft();
// Days since 1970-01-01, a Thursday.
int getDay();

} // namespace arena::platform
