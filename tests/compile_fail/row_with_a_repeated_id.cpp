// expect: the row of CCmdSecond has an id that another row holds too
#include "dispatch/inner/command_row_rules.h"

#ifdef COMPILE_FAIL
constexpr int kSecond = 0x1000;
#else
constexpr int kSecond = 0x1001;
#endif

constexpr CommandRow kRows[] = {
    {0x1000, false, "a.def"},
    {kSecond, false, "b.def"},
};

COMMAND_ROW_IN_ORDER(kRows, 1, CCmdSecond)
