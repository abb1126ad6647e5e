// The ids of the commands in commands/zone_combat.h.
#pragma once

#define COMMAND_ROWS "dispatch/ids/zone_combat.def"
#include "dispatch/id_constants.def"
