// The ids of the commands in commands/lesson.h.
#pragma once

#define COMMAND_ROWS "dispatch/ids/lesson.def"
#include "dispatch/id_constants.def"
