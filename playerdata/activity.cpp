#include "playerdata/activity.h"

#include "framework/time.h"
#include "packaging/wire/order.h"
#include "playerdata/text_scan.h"

#include <climits>

// The base is abstract.
template <>
struct wire::SampleOf<FGameActivityBase>
{
    using Type = FGameActivityChristmas;
};

WIRE_ORDER_BOTH(FGameActivityBase)
{
    return FIELDS(r.m_ActivityType, r.m_ActivityValue, r.m_ActivityText0, r.m_StartTime, r.m_EndTime, r.m_ActivityText1,
                  r.m_ActivityFlag0, r.m_IsEnable, r.m_ActivityFlag1);
}

WIRE_ORDER_BOTH(FGameActivityChristmas)
{
    return HEAD(FGameActivityBase) && FIELDS(r.m_Points, r.m_MissedDays, r.m_PlayedToday, r.m_ActivityState);
}

bool FGameActivityChristmas::DealActivity(CCmdHead*)
{
    return false;
}

zet::String_T<wchar_t> FGameActivityChristmas::ToString()
{
    return zet::formatText(L"%d|%d|%d", m_Points, m_PlayedToday ? 1 : 0, m_MissedDays);
}

void FGameActivityChristmas::FromString(zet::String_T<wchar_t>& text)
{
    if (text.isEmpty())
        return;
    int played = 0;
    TextScanner(text.view()).takeInts(L'|', {&m_Points, &played, &m_MissedDays});
    m_PlayedToday = played != 0;
}

bool FGameActivityChristmas::CheckEnable()
{
    m_IsEnable = false;
    if (m_ActivityType <= 0)
        return false;

    const zet::Time now = zet::Time::getCurrent();
    zet::Time start;
    zet::Time end;
    start.convertFromString(m_StartTime);
    end.convertFromString(m_EndTime);
    if (now < start)
        m_ActivityState = kWaiting;
    else if (end < now)
        m_ActivityState = kOver;
    else
        m_ActivityState = kRunning;
    m_IsEnable = m_ActivityState == kRunning;
    return m_IsEnable;
}

void FGameActivityChristmas::DailyClear()
{
    if (m_IsEnable)
    {
        if (!m_PlayedToday && m_MissedDays < INT_MAX)
            ++m_MissedDays;
        if (m_MissedDays >= 1)
        {
            const int loss = m_MissedDays == 1 ? 2 : 3;
            m_Points = m_MissedDays < 3 && m_Points > loss ? m_Points - loss : 0;
        }
    }
    m_PlayedToday = false;
}
