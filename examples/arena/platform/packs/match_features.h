// The families that travel in the envelopes of the match, each in a file. They share one router, so each adds its
// handlers to it.
#pragma once

#include "examples/arena/platform/packs/serving.h"
#include "examples/arena/platform/platform.h"
#include "examples/arena/protocol/pack_numbers.h"

namespace arena::platform
{

// The best family event and what belongs to it: tasks, brain games, tools, gifts.
void addBestFamily(MatchPacks& packs);
// Stamps, bets, praises and the lotteries. Returns what it keeps in memory.
std::shared_ptr<void> addStamps(MatchPacks& packs);
// The teams.
std::shared_ptr<void> addTeams(MatchPacks& packs);
// The sports meet and its shop.
std::shared_ptr<void> addMeet(MatchPacks& packs);
// The combat season and the BS4 season.
std::shared_ptr<void> addSeasons(MatchPacks& packs);

} // namespace arena::platform
