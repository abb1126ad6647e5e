// The ids of the commands in commands/race.h.
#pragma once

#define COMMAND_ROWS "dispatch/ids/race.def"
#include "dispatch/id_constants.def"
