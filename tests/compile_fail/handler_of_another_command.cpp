// expect: the handler of on<Command>\(\) takes \(CCommandSocket&, Command&\)
#include "commands/registry.h"
#include "host/handlers.h"

bool installHandler(host::Handlers& handlers)
{
#ifdef COMPILE_FAIL
    return handlers.on<CCmdServerEcho>([](CCommandSocket&, CCmdServerRegister&) {});
#else
    return handlers.on<CCmdServerEcho>([](CCommandSocket&, CCmdServerEcho&) {});
#endif
}
