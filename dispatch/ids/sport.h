// The ids of the commands in commands/sport.h.
#pragma once

#define COMMAND_ROWS "dispatch/ids/sport.def"
#include "dispatch/id_constants.def"
