#include "dispatch/command_ids.h"

#include "dispatch/inner/command_row_rules.h"

// Checks the rows at compile time; contains no code.
namespace
{

constexpr CommandRow kRows[] = {
#define COMMAND(id, Class, Base) {id, false, __FILE__},
#define SHARED(id, Class, Base) {id, true, __FILE__},
#include "dispatch/commands.def"
#undef COMMAND
#undef SHARED
};

// The position of each class's row.
enum Place
{
#define COMMAND(id, Class, Base) kPlaceOf##Class,
#define SHARED(id, Class, Base) kPlaceOf##Class,
#include "dispatch/commands.def"
#undef COMMAND
#undef SHARED
};

#define COMMAND(id, Class, Base)                                                                                       \
    COMMAND_ROW_IN_ORDER(kRows, kPlaceOf##Class, Class)                                                                \
    static_assert(command_id::Class == id, "dispatch/command_ids.h has another id for " #Class " than its row");
#define SHARED(id, Class, Base) COMMAND(id, Class, Base)
#include "dispatch/commands.def"
#undef COMMAND
#undef SHARED

static_assert(HighestId(kRows) == kCommandIdLimit - 1, "kCommandIdLimit is one above the highest id of the rows");

} // namespace
