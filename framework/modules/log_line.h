// How a line stands in the logs: its time on the wall clock, its level, its text.
#pragma once

#include "framework/format.h"
#include "framework/log.h"
#include "framework/platform/platform.h"
#include "framework/string.h"

namespace zet
{

// "2013-12-09 15:18:50.042 [W] text" and a line end.
inline String_T<wchar_t> formatLogLine(const platform::LocalTime& time, int level, const wchar_t* line)
{
    const wchar_t letter = level == Log::kError ? L'E' : level == Log::kWarning ? L'W' : L'M';
    return formatText(L"%04d-%02d-%02d %02d:%02d:%02d.%03d [%c] %s\n", time.m_Year, time.m_Month, time.m_Day,
                      time.m_Hour, time.m_Minute, time.m_Second, time.m_Milliseconds, letter, line);
}

inline String_T<wchar_t> formatLogLine(long long time, int level, const wchar_t* line)
{
    return formatLogLine(platform::getLocalTime(time), level, line);
}

} // namespace zet
