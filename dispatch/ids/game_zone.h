// The ids of the commands in commands/game_zone.h.
#pragma once

#define COMMAND_ROWS "dispatch/ids/game_zone.def"
#include "dispatch/id_constants.def"
