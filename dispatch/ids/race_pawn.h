// The ids of the commands in commands/race_pawn.h.
#pragma once

#define COMMAND_ROWS "dispatch/ids/race_pawn.def"
#include "dispatch/id_constants.def"
