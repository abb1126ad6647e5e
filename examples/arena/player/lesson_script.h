// A dance lesson as its users meet it.
#pragma once

#include "host/tasks.h"

namespace arena::player
{

class Player;
class Players;

bool installLesson(Players& players);
// Takes part in one lesson, with up to 7 other players.
host::Task playLesson(Player& player);

} // namespace arena::player
