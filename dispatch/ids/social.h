// The ids of the commands in packs/social.h.
#pragma once

#define COMMAND_ROWS "dispatch/ids/social.def"
#include "dispatch/id_constants.def"
