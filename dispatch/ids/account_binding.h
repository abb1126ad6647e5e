// The ids of the commands in commands/account_binding.h.
#pragma once

#define COMMAND_ROWS "dispatch/ids/account_binding.def"
#include "dispatch/id_constants.def"
