// A sport session as players and their platform meet it.
#pragma once

#include "host/tasks.h"

namespace arena::player
{

class Player;
class Players;

bool installSport(Players& players);
// Plays one session of an automatic match and one in a room of the platform, with up to 7 other players. The first
// player opens the room, as its platform does.
host::Task playSport(Player& player);

} // namespace arena::player
