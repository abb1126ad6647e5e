// The ids of the commands in packs/envelope.h.
#pragma once

#define COMMAND_ROWS "dispatch/ids/envelope.def"
#include "dispatch/id_constants.def"
