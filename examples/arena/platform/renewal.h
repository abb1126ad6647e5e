// What comes back to a player with time: the energy, and plays of games that cool down.
#pragma once

#include "playerdata/account.h"

namespace arena::platform
{

// The energy up to which it refills, by the VIP state. A player may have more.
int getMostEnergy(const CAccount& records);
// Refills the energy if the period of the player's VIP level is over since the last time, which the records have.
void refillEnergy(CAccount& records);

// The plays of a game count for one local day; what cooled down before it is ready.
template <class Game>
void renewPlays(Game& game);

} // namespace arena::platform
