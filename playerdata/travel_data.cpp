#include "playerdata/travel_data.h"

#include "packaging/wire/order.h"
#include "playerdata/text_scan.h"

#include <string_view>

namespace
{

// The only version of the attract data string that has records.
constexpr int kRecordVersion = 0;
constexpr wchar_t kHeaderEnd = L'|';
constexpr wchar_t kRecordEnd = L';';

// The first valid attraction of that id in key order, or null.
template <class Map>
auto findValid(Map& map, int attractId) -> decltype(&map.begin()->second)
{
    for (auto& [key, attract] : map)
        if (attract.IsValid() && attract.m_AttractId == attractId)
            return &attract;
    return nullptr;
}

} // namespace

WIRE_ORDER_BOTH(FAttractData)
{
    return FIELDS(r.m_AttractId, r.m_IsUnlocked, r.m_TaskLevel);
}

WIRE_ORDER_BOTH(AccountTravelData)
{
    return FIELDS(r.m_IsReaded, r.m_IsValid, r.m_CurVehicle, r.m_AnalyVersion) &&
           LIST(r.m_AttractMap, wire::KeyedBy(&FAttractData::m_AttractId));
}

int AccountTravelData::getIsUnlockedValue(int attractId) const
{
    const FAttractData* attract = findValid(m_AttractMap, attractId);
    return attract ? attract->m_IsUnlocked : 0;
}

int AccountTravelData::getTaskLevelValue(int attractId) const
{
    const FAttractData* attract = findValid(m_AttractMap, attractId);
    return attract ? attract->m_TaskLevel : 0;
}

// By value, as the interface has it. NOLINTNEXTLINE(performance-unnecessary-value-param)
void AccountTravelData::SetAddNewAttractData(FAttractData attract)
{
    if (attract.IsValid() && !findValid(m_AttractMap, attract.m_AttractId))
        m_AttractMap[attract.m_AttractId] = attract;
}

void AccountTravelData::SetAttractToUnlock(int attractId)
{
    if (FAttractData* attract = findValid(m_AttractMap, attractId))
        attract->m_IsUnlocked = 1;
}

void AccountTravelData::SetAnalyVersion(const zet::String_T<wchar_t>& text)
{
    if (text.isEmpty())
        return;
    std::wstring_view left = text.view();
    std::wstring_view header;
    if (TextScanner::takeRecord(left, kHeaderEnd, header))
        TextScanner(header).takeInt(m_AnalyVersion);
    else
        m_AnalyVersion = 0;
}

zet::String_T<wchar_t> AccountTravelData::getStringFromAnalyVersion(const zet::String_T<wchar_t>& text) const
{
    // Without a header the search returns -1, and the whole text is used.
    return text.getSubString(text.find(kHeaderEnd, 0) + 1, text.getLength());
}

void AccountTravelData::LoadAttractDataFromString(const zet::String_T<wchar_t>& text)
{
    if (m_AnalyVersion != kRecordVersion)
        return;
    std::wstring_view left = text.view();
    std::wstring_view record;
    while (TextScanner::takeRecord(left, kRecordEnd, record))
    {
        FAttractData attract;
        TextScanner(record).takeInts(L'-', {&attract.m_AttractId, &attract.m_IsUnlocked, &attract.m_TaskLevel});
        if (attract.IsValid())
            m_AttractMap[attract.m_AttractId] = attract;
    }
}

zet::String_T<wchar_t> AccountTravelData::SaveStringFromAttractData() const
{
    zet::String_T<wchar_t> text;
    if (m_AttractMap.empty() || m_AnalyVersion != kRecordVersion)
        return text;
    text = zet::formatText(L"%d|", m_AnalyVersion);
    for (const auto& [key, attract] : m_AttractMap)
        if (attract.IsValid())
            text += zet::formatText(L"%d-%d-%d;", attract.m_AttractId, attract.m_IsUnlocked, attract.m_TaskLevel);
    return text;
}
