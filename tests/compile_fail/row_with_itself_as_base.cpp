// expect: the row of CCmdServerEcho says that it derives from CCmdServerEcho
#include "runtime/inner/command_row.h"

#include "commands/registry.h"

#ifdef COMPILE_FAIL
COMMAND_ROW_HOLDS(CCmdServerEcho, CCmdServerEcho)
#else
COMMAND_ROW_HOLDS(CCmdServerEcho, CCmdSystem)
#endif
