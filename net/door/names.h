// Host names are resolved on threads of their own: the run thread never waits for a name server.
#pragma once

#include "net/door/door.h"

namespace zet::inner
{

// Lookups that wait for a thread, in the whole process. One more has no address.
constexpr size_t kMostLookups = 1024;

// Asks the operating system, and waits for it.
using AskSystem = std::vector<Endpoint> (*)(const char* name);
COMMONGROUND_API std::vector<Endpoint> askSystem(const char* name);

// The order in which addresses are to be tried (RFC 8305): the families in turn, IPv6 first; those of one family stay
// in the system's order.
COMMONGROUND_API std::vector<Endpoint> alternateFamilies(const std::vector<Endpoint>& found);

// Calls ask() and then answer on a background thread; "localhost" needs no lookup. A few threads of the process serve
// all requests in order and end when the queue is empty; nothing waits for them. A request whose asker is gone leaves
// the queue without an answer. If no thread can be started or the queue is full, answer is called at once with an empty
// list. A child process made by fork() starts with an empty queue and threads of its own.
COMMONGROUND_API void resolveApart(const char* name, Door::Answer answer, const Door::Asker& asker,
                                   AskSystem ask = askSystem);

} // namespace zet::inner
