// The ids of the commands in commands/rank.h.
#pragma once

#define COMMAND_ROWS "dispatch/ids/rank.def"
#include "dispatch/id_constants.def"
