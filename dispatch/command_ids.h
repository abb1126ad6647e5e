// The id of every command, as a constant with the class's own name, and the size of the id space.
#pragma once

namespace command_id
{

#define COMMAND(id, Class, Base) inline constexpr unsigned short Class = id;
#define SHARED(id, Class, Base) inline constexpr unsigned short Class = id;
#include "dispatch/commands.def"
#undef COMMAND
#undef SHARED

} // namespace command_id

// Ids run from 0 to one below this; the analysers hold one entry for each.
inline constexpr int kCommandIdLimit = 0x4019;
