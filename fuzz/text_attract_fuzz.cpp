// The attract data string: any text loads in its three calls, gives only valid attractions, and the saved text loads to
// the same attractions.
#include "fuzz/support/require.h"
#include "playerdata/travel_data.h"

#include <cstdint>
#include <string>

namespace
{

void load(AccountTravelData& travel, const zet::String_T<wchar_t>& text)
{
    travel.SetAnalyVersion(text);
    travel.LoadAttractDataFromString(travel.getStringFromAnalyVersion(text));
}

using fuzz::require;

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    // One unit per byte: the grammar has no others, and the values above ASCII represent all of them.
    const std::wstring units(data, data + size);
    AccountTravelData travel;
    load(travel, zet::String_T<wchar_t>(units.data(), static_cast<int>(units.size())));
    require(travel.m_AnalyVersion == 0 || travel.m_AttractMap.empty());
    for (const auto& [id, attract] : travel.m_AttractMap)
        require(attract.IsValid() && attract.m_AttractId == id);

    const zet::String_T<wchar_t> saved = travel.SaveStringFromAttractData();
    AccountTravelData again;
    load(again, saved);
    require(again.m_AttractMap.size() == travel.m_AttractMap.size());
    require(again.SaveStringFromAttractData() == saved);
    return 0;
}
