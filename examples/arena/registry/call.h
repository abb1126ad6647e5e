// One request to one server, for the roles that only make a request.
#pragma once

namespace arena
{

// Asks a registry for a server of a type and prints its address. Returns 0, 1 if there is none, 2 if the registry does
// not answer.
int lookUp(unsigned char type, unsigned short registryPort);

// Orders the server at the port to shut down; a registry also shuts down all of its servers. Returns 0 once the server
// has ended, 2 if it does not end.
int orderShutdown(unsigned short port);

} // namespace arena
