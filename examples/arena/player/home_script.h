// A player's day at home and on its travels.
#pragma once

#include "examples/arena/player/pack_client.h"

namespace arena::player
{

// Before the login: every request is refused.
host::Task playUnknown(PackAccount& player, PackClient& packs);
host::Task playHome(PackAccount& player, PackClient& packs);
host::Task playTravel(PackAccount& player, PackClient& packs);

} // namespace arena::player
