// The ids of the commands in commands/device.h.
#pragma once

#define COMMAND_ROWS "dispatch/ids/device.def"
#include "dispatch/id_constants.def"
