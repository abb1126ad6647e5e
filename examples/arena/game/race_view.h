// What the page of a game server shows of its races.
#pragma once

#include "examples/arena/game/game.h"
#include "host/service.h"

#include <string>

namespace arena::game
{

// More races are counted, and not shown.
inline constexpr int kMostShown = 16;

// The first races, as JSON: [{"id","name","state","length","pawns":[{"name","distance","place","left"}]}], in metres.
std::string describeRaces(const Server& server);

// Prints the numbers of races and of pawns with the other figures, and sends describeRaces() as the event "races".
// Before run(), until whose end the server must live.
void showRaces(host::Service& service, const Server& server);

} // namespace arena::game
