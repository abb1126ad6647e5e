// The ids of the commands in commands/system_info.h.
#pragma once

#define COMMAND_ROWS "dispatch/ids/system_info.def"
#include "dispatch/id_constants.def"
