// expect: the row of CCmdServerEcho says that it derives from CCmdPlatform
#include "runtime/inner/command_row.h"

#include "commands/registry.h"

#ifdef COMPILE_FAIL
COMMAND_ROW_HOLDS(CCmdServerEcho, CCmdPlatform)
#else
COMMAND_ROW_HOLDS(CCmdServerEcho, CCmdSystem)
#endif
