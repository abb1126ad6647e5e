// The zone's season: what each player has won in it, and the board.
#pragma once

#include "playerdata/account_other.h"
#include "playerdata/combat_rank.h"

#include <map>
#include <vector>

namespace arena::zone
{

// Kept in memory, as long as the zone runs.
class Season
{
public:
    // The record of a player; that of a new player is made.
    AccountBS4Data& getRecord(const zet::String_T<wchar_t>& name);
    AccountCombatData& getCombat(const zet::String_T<wchar_t>& name);

    // One race: the place, or race::kNoPlace, among this number of pawns.
    void addRace(const zet::String_T<wchar_t>& name, int place, int pawns, bool isCombat);
    // Fills both tables: by points, and by combat rating; and the lines of this player, with the rank in m_Value2.
    void fillBoard(const zet::String_T<wchar_t>& name, BS4RankData_Pack_Reply& board) const;

private:
    struct Entry
    {
        AccountBS4Data m_Season;
        AccountCombatData m_Combat;
    };

    Entry& getEntry(const zet::String_T<wchar_t>& name);

    std::map<zet::String_T<wchar_t>, Entry> m_Entries;
};

} // namespace arena::zone
