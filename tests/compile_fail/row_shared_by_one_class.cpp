// expect: the row of CCmdLeft has an id that another row holds too, or says SHARED without the other one
#include "dispatch/inner/command_row_rules.h"

#ifdef COMPILE_FAIL
constexpr bool kOtherIsShared = false;
#else
constexpr bool kOtherIsShared = true;
#endif

constexpr CommandRow kRows[] = {
    {0x1000, true, "a.def"},
    {0x1000, kOtherIsShared, "b.def"},
};

COMMAND_ROW_IN_ORDER(kRows, 0, CCmdLeft)
