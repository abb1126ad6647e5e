// The ids of the commands in commands/server_choice.h.
#pragma once

#define COMMAND_ROWS "dispatch/ids/server_choice.def"
#include "dispatch/id_constants.def"
