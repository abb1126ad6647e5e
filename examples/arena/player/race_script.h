// The race as a player meets it: zone, game server, race, result, exit.
#pragma once

#include "host/tasks.h"

namespace arena::player
{

class Player;
class Players;

bool installRace(Players& players);
// Plays a race with up to 7 other players, and further ones while PlayerOptions::m_Races are not over. Every player has
// connections of its own; the last ones race through the tunnel of the zone. Every second race is of the combat mode.
host::Task playRace(Player& player);

} // namespace arena::player
