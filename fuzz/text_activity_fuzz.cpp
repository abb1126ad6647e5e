// The activity string: any text loads, and the saved text loads to the same activity.
#include "playerdata/activity.h"

#include <cstdint>
#include <cstdlib>
#include <string>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::wstring units(data, data + size);
    zet::String_T<wchar_t> text(units.data(), static_cast<int>(units.size()));
    FGameActivityChristmas activity;
    activity.FromString(text);

    zet::String_T<wchar_t> saved = activity.ToString();
    FGameActivityChristmas again;
    again.FromString(saved);
    if (again.m_Points != activity.m_Points || again.m_PlayedToday != activity.m_PlayedToday ||
        again.m_MissedDays != activity.m_MissedDays)
        std::abort();
    // A day passes, whatever was loaded.
    activity.m_IsEnable = true;
    activity.DailyClear();
    if (activity.m_PlayedToday || (activity.m_Points < 0 && activity.m_MissedDays > 0))
        std::abort();
    return 0;
}
