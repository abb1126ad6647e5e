// What a logged-in player does with its account: phone, outside account, password, switch, fetch.
#pragma once

#include "host/tasks.h"

namespace arena::player
{

class Player;
class Players;

bool installBinding(Players& players);
// Uses a connection and accounts of its own.
host::Task playBinding(Player& player);

} // namespace arena::player
