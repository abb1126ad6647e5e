// The ids of the commands in commands/account_access.h.
#pragma once

#define COMMAND_ROWS "dispatch/ids/account_access.def"
#include "dispatch/id_constants.def"
