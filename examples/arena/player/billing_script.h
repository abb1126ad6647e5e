// Purchases and currencies, on the player's own login.
#pragma once

#include "host/tasks.h"

namespace arena::player
{

class Player;
class Players;

// What an order needs, for the scripts that buy: the first call installs it.
bool installOrders(Players& players);
bool installBilling(Players& players);
// An order that is refused, one that is paid and repeated, one at a wrong price; codes and cards.
host::Task playBilling(Player& player);

} // namespace arena::player
