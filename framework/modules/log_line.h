// The form of a log line: local time, level, text.
#pragma once

#include "framework/format.h"
#include "framework/log.h"
#include "framework/platform/platform.h"
#include "framework/string.h"

namespace zet
{

// Whether a unit could end a line or control a terminal. Tabs are allowed, since texts of the library contain them.
inline bool isLogControl(wchar_t unit)
{
    return (unit < L' ' && unit != L'\t') || (unit >= 0x7F && unit <= 0x9F) || unit == 0x2028 || unit == 0x2029;
}

// Escapes control characters, as "\n" or "\x1B", since a text may contain a peer's bytes. One line end at the end of
// the text is kept.
inline String_T<wchar_t> showLogControls(const wchar_t* text, int length)
{
    String_T<wchar_t> shown;
    int begin = 0;
    for (int i = 0; i < length; ++i)
    {
        if (!isLogControl(text[i]) || (text[i] == L'\n' && i == length - 1))
            continue;
        shown += String_T<wchar_t>(text + begin, i - begin);
        begin = i + 1;
        if (text[i] == L'\n')
            shown += L"\\n";
        else if (text[i] == L'\r')
            shown += L"\\r";
        else
            shown += formatText(text[i] > 0xFF ? L"\\u%04X" : L"\\x%02X", static_cast<unsigned int>(text[i]));
    }
    return shown += String_T<wchar_t>(text + begin, length - begin);
}

// "2013-12-09 15:18:50.042 [W] text" and a line end.
inline String_T<wchar_t> formatLogLine(const platform::LocalTime& time, int level, const wchar_t* line, int length)
{
    const wchar_t letter = level == Log::kError ? L'E' : level == Log::kWarning ? L'W' : L'M';
    return formatText(L"%04d-%02d-%02d %02d:%02d:%02d.%03d [%c] %s\n", time.m_Year, time.m_Month, time.m_Day,
                      time.m_Hour, time.m_Minute, time.m_Second, time.m_Milliseconds, letter,
                      showLogControls(line, length));
}

inline String_T<wchar_t> formatLogLine(long long time, int level, const wchar_t* line, int length)
{
    return formatLogLine(platform::getLocalTime(time), level, line, length);
}

} // namespace zet
