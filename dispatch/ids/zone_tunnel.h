// The ids of the commands in commands/zone_tunnel.h.
#pragma once

#define COMMAND_ROWS "dispatch/ids/zone_tunnel.def"
#include "dispatch/id_constants.def"
