// The ids of the commands in commands/payment.h.
#pragma once

#define COMMAND_ROWS "dispatch/ids/payment.def"
#include "dispatch/id_constants.def"
