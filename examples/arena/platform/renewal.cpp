#include "examples/arena/platform/renewal.h"
#include "examples/arena/platform/catalogue.h"
#include "framework/time.h"
#include "playerdata/rule_constants.h"

#include <algorithm>
#include <iterator>

namespace arena::platform
{

namespace
{

constexpr int kSecondsOfMinute = 60;

// In seconds.
int getRefillPeriod(int vipLevel)
{
    const int periods[] = {g_EnergyFreeTime_VIP_0, g_EnergyFreeTime_VIP_1, g_EnergyFreeTime_VIP_2,
                           g_EnergyFreeTime_VIP_3, g_EnergyFreeTime_VIP_4, g_EnergyFreeTime_VIP_5};
    return periods[std::clamp(vipLevel, 0, static_cast<int>(std::size(periods)) - 1)];
}

zet::String_T<wchar_t> dayOf(const zet::String_T<wchar_t>& time)
{
    return time.getSubString(0, std::max(time.find(L' ', 0), 0));
}

} // namespace

int getMostEnergy(const CAccount& records)
{
    return records.m_GlobalData.m_VIPLevel > 0 ? g_EnergyMax_VIP_1 : g_EnergyMax_VIP_0;
}

void refillEnergy(CAccount& records)
{
    const int now = static_cast<int>(zet::time(nullptr) / kSecondsOfMinute);
    int& last = refilledOf(records);
    if (now - last < getRefillPeriod(records.m_GlobalData.m_VIPLevel) / kSecondsOfMinute)
        return;
    last = now;
    energyOf(records) = std::max(energyOf(records), getMostEnergy(records));
}

template <class Game>
void renewPlays(Game& game)
{
    if (dayOf(game.m_LastPlayTime) == dayOf(zet::Time::getCurrent().convertToString(false)))
        return;
    game.m_PlayTimes = 0;
    game.m_CDTime = 0.0f;
}

template void renewPlays(FGameTraining&);
template void renewPlays(FGameKinect&);

} // namespace arena::platform
