// The ids of the commands in commands/registry.h.
#pragma once

#define COMMAND_ROWS "dispatch/ids/registry.def"
#include "dispatch/id_constants.def"
