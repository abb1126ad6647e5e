#include "examples/arena/platform/packs/serving.h"

#include "framework/time.h"

namespace arena::platform
{

constexpr int kSecondsOfDay = 24 * 60 * 60;

zet::String_T<wchar_t> getToday()
{
    const zet::String_T<wchar_t> now = zet::Time::getCurrent().convertToString(true);
    return now.getSubString(0, now.find(L' ', 0));
}

int getSecondsOfDayLeft()
{
    return kSecondsOfDay - static_cast<int>(zet::Time::getCurrent().getSeconds() % kSecondsOfDay);
}

} // namespace arena::platform
