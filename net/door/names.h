// Host names are resolved on threads of their own: the run thread never waits for a name server.
#pragma once

#include "net/door/door.h"

namespace zet::inner
{

// Asks the operating system, and waits for it.
using AskSystem = std::vector<Endpoint> (*)(const char* name);

// Calls ask() and then answer on a background thread; "localhost" needs no lookup. A few threads of the process serve
// all requests in order and end when the queue is empty; nothing waits for them. If no thread can be started, answer is
// called at once with an empty list.
void resolveApart(const char* name, AskSystem ask, Door::Answer answer);

} // namespace zet::inner
