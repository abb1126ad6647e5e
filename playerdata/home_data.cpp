#include "playerdata/home_data.h"

#include "packaging/wire/order.h"

#include <algorithm>
#include <climits>

namespace
{

// The price of the next one after the given number on the same day.
int priceAfter(int times, int first, int second, int third)
{
    return times < 2 ? first : times < 6 ? second : third;
}

// Lives come from the wire and may have any value, so they are computed in 64 bits and saturated to int.
int clampedLives(long long lives)
{
    return static_cast<int>(std::clamp<long long>(lives, INT_MIN, INT_MAX));
}

} // namespace

WIRE_ORDER_BOTH(AccountHomeData)
{
    return FIELDS(r.m_IsHomeValid, r.m_HomeValue0, r.m_DailyValue0, r.m_HomeValue1, r.m_DailyValue1, r.m_RushLife,
                  r.m_RushUnlockTimes, r.m_JumpOffTimes, r.m_IsJumpOff, r.m_HomeDate, r.m_MaxRushLife);
}

int AccountHomeData::GetHomeRushUnlockPrice() const
{
    return priceAfter(m_RushUnlockTimes, 10, 20, 40);
}

int AccountHomeData::GetHomeJumpOffCostDiamond() const
{
    return priceAfter(m_JumpOffTimes, 50, 100, 200);
}

void AccountHomeData::CostRushLife(int lives)
{
    m_RushLife = std::max(0, clampedLives(static_cast<long long>(m_RushLife) - lives));
}

void AccountHomeData::OnGetVIP()
{
    m_MaxRushLife = kVIPRushLife;
    m_RushLife = std::min(clampedLives(static_cast<long long>(m_RushLife) + kVIPRushLife), m_MaxRushLife);
}

void AccountHomeData::OnLostVIP()
{
    m_MaxRushLife = kPlainRushLife;
    m_RushLife = std::min(m_RushLife, m_MaxRushLife);
}

void AccountHomeData::ResetHomData(int isVIP)
{
    m_DailyValue0 = 0;
    m_DailyValue1 = 0;
    m_RushUnlockTimes = 0;
    m_JumpOffTimes = 0;
    m_MaxRushLife = isVIP != 0 ? kVIPRushLife : kPlainRushLife;
    m_RushLife = m_MaxRushLife;
    m_HomeDate.clear();
}

WIRE_ORDER_CMD(MemberVisual)
{
    return FIELDS(r.m_VisualValue0, r.m_VisualValue1, r.m_VisualValue2, r.m_VisualValue3, r.m_VisualValue4,
                  r.m_VisualValue5, r.m_Props);
}

WIRE_ORDER_CMD(MemberData)
{
    return FIELDS(r.m_MemberId, r.m_MemberText0, r.m_MemberText1, r.m_MemberText2, r.m_MemberFlag, r.m_Visual,
                  r.m_MemberText3, r.m_MemberText4, r.m_MemberText5);
}

WIRE_ORDER_CMD(HomeData)
{
    return FIELDS(r.m_HomeId, r.m_HomeLevel, r.m_HomeText0, r.m_HomeValue0, r.m_HomeText1, r.m_HomeValue1,
                  r.m_HomeText2) &&
           LIST(r.m_MemberDatas);
}
