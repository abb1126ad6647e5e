// The ids of the commands in commands/progress.h.
#pragma once

#define COMMAND_ROWS "dispatch/ids/progress.def"
#include "dispatch/id_constants.def"
