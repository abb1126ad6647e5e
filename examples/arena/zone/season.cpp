#include "examples/arena/zone/season.h"

#include "examples/arena/protocol/race_numbers.h"

#include <algorithm>

namespace arena::zone
{

Season::Entry& Season::getEntry(const zet::String_T<wchar_t>& name)
{
    Entry& entry = m_Entries[name];
    entry.m_Season.m_Text1 = name;
    return entry;
}

AccountBS4Data& Season::getRecord(const zet::String_T<wchar_t>& name)
{
    return getEntry(name).m_Season;
}

AccountCombatData& Season::getCombat(const zet::String_T<wchar_t>& name)
{
    return getEntry(name).m_Combat;
}

void Season::addRace(const zet::String_T<wchar_t>& name, int place, int pawns, bool isCombat)
{
    Entry& entry = getEntry(name);
    AccountBS4Data& season = entry.m_Season;
    ++season.m_Value1;
    season.m_Value2 += race::pointsOf(place);
    if (place != race::kNoPlace && (season.m_Value3 == race::kNoPlace || place < season.m_Value3))
        season.m_Value3 = place;
    if (isCombat)
    {
        // Who did not finish is behind all others.
        const int rank = place == race::kNoPlace ? pawns : place;
        entry.m_Combat.m_CombatRating += race::kRatingStep * (pawns + 1 - 2 * rank);
    }
}

void Season::fillBoard(const zet::String_T<wchar_t>& name, BS4RankData_Pack_Reply& board) const
{
    struct Line
    {
        const zet::String_T<wchar_t>* m_Name;
        int m_Value;
    };
    const auto fill = [&](auto valueOf, CombatRankData* table)
    {
        std::vector<Line> lines;
        for (const auto& [each, entry] : m_Entries)
            lines.push_back({&each, valueOf(entry)});
        std::stable_sort(lines.begin(), lines.end(),
                         [](const Line& a, const Line& b) { return a.m_Value > b.m_Value; });
        for (size_t i = 0; i < lines.size(); ++i)
        {
            CombatRankData line;
            line.m_Name = *lines[i].m_Name;
            line.m_Value1 = lines[i].m_Value;
            line.m_Value2 = static_cast<int>(i) + 1;
            if (i < static_cast<size_t>(BS4RankData_Pack_Reply::kRows))
                table[i] = line;
            if (table == board.m_CombatRankDatas1 && line.m_Name == name)
                board.m_Self = line;
        }
    };
    fill([](const Entry& entry) { return entry.m_Season.m_Value2; }, board.m_CombatRankDatas1);
    fill([](const Entry& entry) { return entry.m_Combat.m_CombatRating; }, board.m_CombatRankDatas2);
    board.m_Value1 = static_cast<int>(m_Entries.size());
}

} // namespace arena::zone
