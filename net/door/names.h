// Host names are resolved on threads of their own: the run thread never waits for a name server.
#pragma once

#include "net/door/door.h"

namespace zet::inner
{

// Asks the operating system, and waits for it.
using AskSystem = std::vector<Endpoint> (*)(const char* name);

// Calls ask() on a thread of the process and then the answer; "localhost" is this machine, and no system is asked. A
// few threads serve all requests in order and end when there are none; nothing waits for them. Where no thread can be
// started, the answer is empty and comes at once.
void resolveApart(const char* name, AskSystem ask, Door::Answer answer);

} // namespace zet::inner
