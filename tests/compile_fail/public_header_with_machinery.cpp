// expect: incomplete type|undefined type|does not name a type|has not been declared
#include "commands/registry.h"

// A host sees only the forward declaration.
#ifdef COMPILE_FAIL
int smallest()
{
    return CCmdServerEcho::Wire().smallest;
}
#endif
