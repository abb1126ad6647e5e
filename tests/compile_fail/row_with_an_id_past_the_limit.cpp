// expect: the row of CCmdLast has an id that is not below kCommandIdLimit
#include "dispatch/inner/command_row_rules.h"

#ifdef COMPILE_FAIL
constexpr int kLast = kCommandIdLimit;
#else
constexpr int kLast = kCommandIdLimit - 1;
#endif

constexpr CommandRow kRows[] = {{kLast, false, "a.def"}};

COMMAND_ROW_IN_ORDER(kRows, 0, CCmdLast)
