// One question to one server, for the roles that ask and end.
#pragma once

namespace arena
{

// Asks a registry for a server of a type and says where it is. Returns 0, 1 where there is none, 2 where the registry
// does not answer.
int lookUp(unsigned char type, unsigned short registryPort);

// Orders the server at the port to shut down: a registry takes all of its servers along. Returns 0 once the server has
// ended, 2 where it does not.
int orderShutdown(unsigned short port);

} // namespace arena
