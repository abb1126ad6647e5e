// The ids of the commands in commands/game_centre.h.
#pragma once

#define COMMAND_ROWS "dispatch/ids/game_centre.def"
#include "dispatch/id_constants.def"
