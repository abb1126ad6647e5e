// A phone and the game that it drives, with the camera's frames.
#pragma once

#include "host/tasks.h"

namespace arena::player
{

class Player;
class Players;

bool installDevice(Players& players);
// Plays both, and checks what each of them receives.
host::Task playDevice(Player& player);

} // namespace arena::player
