// The features whose messages travel in pack envelopes, each played by new accounts.
#pragma once

#include "host/tasks.h"

namespace arena::player
{

class Player;
class Players;

bool installPacks(Players& players);
// One account buys diamonds and plays all features; what is done once, such as joining a team, is done, and then
// refused. Another one is its friend. The first player of a process plays the tool of the operator, too, if it knows
// the operator. At last the first account logs in anew, and its records have to be those that it had.
host::Task playPacks(Player& player);

} // namespace arena::player
