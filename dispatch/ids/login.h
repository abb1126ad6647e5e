// The ids of the commands in commands/login.h.
#pragma once

#define COMMAND_ROWS "dispatch/ids/login.def"
#include "dispatch/id_constants.def"
