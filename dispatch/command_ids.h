// The id of every command, as a constant named like the class, and the size of the id space.
#pragma once

namespace command_id
{

#define COMMAND(id, Class, Base) inline constexpr unsigned short Class = id;
#define SHARED(id, Class, Base) inline constexpr unsigned short Class = id;
#include "dispatch/commands.def"
#undef COMMAND
#undef SHARED

} // namespace command_id

// Ids are below this limit; the analysers have one entry per id.
inline constexpr int kCommandIdLimit = 0x4019;
