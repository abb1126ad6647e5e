// A player's logins: the choice of a server, all variants with a refusal, tickets, logout, the kick by a second login.
#pragma once

#include "host/tasks.h"

namespace arena::player
{

class Player;
class Players;

bool installLogin(Players& players);
// Uses connections and accounts of its own, so the player's own login stays.
host::Task playLogin(Player& player);

} // namespace arena::player
