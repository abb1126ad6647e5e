// The ids of the commands in packs/profiling.h.
#pragma once

#define COMMAND_ROWS "dispatch/ids/profiling.def"
#include "dispatch/id_constants.def"
