// The ids of the commands in commands/logs.h.
#pragma once

#define COMMAND_ROWS "dispatch/ids/logs.def"
#include "dispatch/id_constants.def"
