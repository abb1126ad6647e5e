// The ids of the commands in commands/camera.h.
#pragma once

#define COMMAND_ROWS "dispatch/ids/camera.def"
#include "dispatch/id_constants.def"
