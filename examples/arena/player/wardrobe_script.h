// What a player wins and buys: achievements, equipment, wearables of the avatar and goods for money.
#pragma once

#include "examples/arena/player/pack_client.h"

namespace arena::player
{

host::Task playAchievements(PackAccount& player, PackClient& packs);
host::Task playChangingRoom(PackAccount& player, PackClient& packs);
host::Task playAvatar(PackAccount& player, PackClient& packs);
host::Task playInPurchase(PackAccount& player, PackClient& packs);

} // namespace arena::player
