// The ids of the commands in commands/zone_players.h.
#pragma once

#define COMMAND_ROWS "dispatch/ids/zone_players.def"
#include "dispatch/id_constants.def"
