// expect: the row of CCmdSecond has a lower id than the row before it
#include "dispatch/inner/command_row_rules.h"

#ifdef COMPILE_FAIL
constexpr int kSecond = 0x1000;
#else
constexpr int kSecond = 0x1002;
#endif

constexpr CommandRow kRows[] = {
    {0x1001, false, "a.def"},
    {kSecond, false, "a.def"},
    // Another family starts anew.
    {0x0fff, false, "b.def"},
};

COMMAND_ROW_IN_ORDER(kRows, 1, CCmdSecond)
COMMAND_ROW_IN_ORDER(kRows, 2, CCmdOfAnotherFamily)
