// The ids of the commands in commands/mail.h.
#pragma once

#define COMMAND_ROWS "dispatch/ids/mail.def"
#include "dispatch/id_constants.def"
