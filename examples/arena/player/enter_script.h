// How a player enters the platform: the list of servers, a choice, a login by name and password.
#pragma once

#include "host/tasks.h"

namespace arena::player
{

class Player;
class Players;

// Expects CCmdFetchAccountReply too: scripts that change the record ask for it at their end.
bool installEnter(Players& players);
// Afterwards the player has the records that the platform delivered.
host::Task playEnter(Player& player);

} // namespace arena::player
