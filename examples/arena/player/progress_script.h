// Games, missions, energy and the ranking boards, on the player's own login.
#pragma once

#include "host/tasks.h"

namespace arena::player
{

class Player;
class Players;

bool installProgress(Players& players);
// May be played again: what cools down or is done already is refused then, and that is expected.
host::Task playProgress(Player& player);

} // namespace arena::player
