#include "playerdata/account_global.h"

#include "framework/time.h"
#include "packaging/wire/order.h"
#include "playerdata/account_core.h"
#include "playerdata/text_scan.h"

#include <algorithm>
#include <limits>
#include <string_view>

namespace
{

// Seconds from now to a date; an invalid date counts as long past.
long long secondsUntil(const zet::String_T<wchar_t>& date)
{
    zet::Time time;
    time.convertFromString(date);
    return time - zet::Time::getCurrent();
}

} // namespace

WIRE_ORDER_BOTH(AccountGlobalData)
{
    return UNTESTED(r.m_GlobalText1, r.m_GlobalText0, r.m_GlobalText2, r.m_GlobalText3, r.m_GlobalText4,
                    r.m_GlobalText5, r.m_GlobalText6, r.m_GlobalText7, r.m_GlobalFlag, r.m_GlobalValue0,
                    r.m_GlobalValue1, r.m_GlobalText8, r.m_GlobalValue2, r.m_GlobalValue3, r.m_VIPLevel,
                    r.m_VIPDaysLeft, r.m_GlobalValue4, r.m_VIPExpireTime, r.m_DiamondVIPExpireTime, r.m_VIPNewFlag) &&
           LIST(r.m_LastServerList, wire::ElementsUntested);
}

void AccountGlobalData::Reset()
{
    const int value1 = m_GlobalValue1;
    *this = AccountGlobalData();
    m_GlobalValue1 = value1;
}

void AccountGlobalData::CheckVIP(AccountData& account)
{
    const long long left = secondsUntil(m_VIPExpireTime);
    if (m_VIPLevel > 0 && left > 0)
    {
        m_VIPDaysLeft = static_cast<int>(std::min<long long>(left / 86400, std::numeric_limits<int>::max()));
        account.OnGetVIP(m_VIPNewFlag);
        m_VIPNewFlag = 0;
        return;
    }
    m_VIPLevel = 0;
    m_VIPDaysLeft = 0;
    account.OnLostVIP();
}

bool AccountGlobalData::IsDiamondVIP() const
{
    return !m_DiamondVIPExpireTime.isEmpty() && secondsUntil(m_DiamondVIPExpireTime) > 0;
}

int AccountGlobalData::GetLastServerID() const
{
    return m_LastServerList.empty() ? 0 : m_LastServerList.front();
}

void AccountGlobalData::AddLastServerID(int id)
{
    if (id < 1)
        return;
    const auto known = std::find(m_LastServerList.begin(), m_LastServerList.end(), id);
    if (known != m_LastServerList.end())
        m_LastServerList.erase(known);
    m_LastServerList.insert(m_LastServerList.begin(), id);
    // At most one: a longer loaded list does not shrink to 3 at once.
    if (m_LastServerList.size() >= 4)
        m_LastServerList.pop_back();
}

zet::String_T<wchar_t> AccountGlobalData::ConvertLastServerListToString() const
{
    zet::String_T<wchar_t> text;
    for (const int id : m_LastServerList)
        text += zet::formatText(L"%d|", id);
    return text;
}

void AccountGlobalData::ConvertLastServerListFromString(const zet::String_T<wchar_t>& text)
{
    std::wstring_view left = text.view();
    std::wstring_view record;
    while (TextScanner::takeRecord(left, L'|', record))
    {
        int id = 0;
        TextScanner(record).takeInt(id);
        if (id > 0)
            m_LastServerList.push_back(id);
    }
}
