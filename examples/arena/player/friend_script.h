// Players among each other: friends, the world square and the wizard's wars.
#pragma once

#include "examples/arena/player/pack_client.h"

namespace arena::player
{

// Adds this player as a friend, once it is there, and writes to it.
host::Task playFriends(PackAccount& player, PackClient& packs, zet::String_T<wchar_t> friendName);
host::Task playWorldSquare(PackAccount& player, PackClient& packs);
host::Task playWizard(PackAccount& player, PackClient& packs);

} // namespace arena::player
