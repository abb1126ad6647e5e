// Letters, messages, log records and maintenance, on the player's own login.
#pragma once

#include "host/tasks.h"

namespace arena::player
{

class Player;
class Players;

bool installMail(Players& players);
// The player writes to itself.
host::Task playMail(Player& player);

} // namespace arena::player
