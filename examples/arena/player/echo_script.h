// Echoes, which every server answers.
#pragma once

#include "host/tasks.h"

namespace arena::player
{

class Player;
class Players;

bool installEcho(Players& players);
host::Task playEcho(Player& player);

} // namespace arena::player
