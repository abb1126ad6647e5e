// The ids of the commands in commands/billing.h.
#pragma once

#define COMMAND_ROWS "dispatch/ids/billing.def"
#include "dispatch/id_constants.def"
