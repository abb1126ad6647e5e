// The ids of the commands in commands/server_status.h.
#pragma once

#define COMMAND_ROWS "dispatch/ids/server_status.def"
#include "dispatch/id_constants.def"
