// The match: the best family event, stamps and lotteries, teams, the sports meet, and the combat and BS4 seasons.
#pragma once

#include "examples/arena/player/pack_client.h"

namespace arena::player
{

host::Task playBestFamily(PackAccount& player, PackClient& packs);
// Earns points, for which the stamps are.
host::Task playTeams(PackAccount& player, PackClient& packs);
host::Task playStamps(PackAccount& player, PackClient& packs);
host::Task playMeet(PackAccount& player, PackClient& packs);
host::Task playSeasons(PackAccount& player, PackClient& packs);

} // namespace arena::player
