#include "dispatch/command_ids.h"

// Checks the rows of commands.def at compile time; contains no code.
namespace
{

constexpr unsigned short kIds[] = {
#define COMMAND(id, Class, Base) id,
#define SHARED(id, Class, Base) id,
#include "dispatch/commands.def"
#undef COMMAND
#undef SHARED
};
constexpr bool kShared[] = {
#define COMMAND(id, Class, Base) false,
#define SHARED(id, Class, Base) true,
#include "dispatch/commands.def"
#undef COMMAND
#undef SHARED
};
constexpr int kRows = sizeof kIds / sizeof kIds[0];

// Rows ascend; an id appears twice only if both rows are SHARED.
constexpr bool rowsAreInOrder()
{
    for (int i = 0; i < kRows; ++i)
    {
        const bool sameAsBefore = i > 0 && kIds[i] == kIds[i - 1];
        const bool sameAsNext = i + 1 < kRows && kIds[i] == kIds[i + 1];
        if ((i > 0 && kIds[i] < kIds[i - 1]) || (sameAsBefore && sameAsNext) ||
            kShared[i] != (sameAsBefore || sameAsNext))
            return false;
    }
    return true;
}
static_assert(rowsAreInOrder(),
              "dispatch/commands.def: rows ascend by id, and an id appears twice only if both rows are SHARED");

} // namespace
