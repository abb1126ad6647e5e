// expect: CCmdOfNobody
#include "runtime/inner/command_row.h"

#include "commands/registry.h"

COMMAND_ROW_HOLDS(CCmdServerEcho, CCmdSystem)
#ifdef COMPILE_FAIL
COMMAND_ROW_HOLDS(CCmdOfNobody, CCmdSystem)
#endif
