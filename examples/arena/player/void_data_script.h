// The small account requests in void-data envelopes, each with a refusal where it has one.
#pragma once

#include "host/tasks.h"

namespace arena::player
{

class Player;
class Players;

bool installVoidData(Players& players);
// Uses a connection with handlers of its own, and a new account each time.
host::Task playVoidData(Player& player);

} // namespace arena::player
