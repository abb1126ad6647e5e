// The live page of a role, at / of its HTTP port.
#pragma once

#include "host/service.h"

namespace arena
{

// Before run(). The page shows the figures of the service; arena_role among them names the role, in UTF-8.
void addRolePage(host::Service& service, const char* role);

} // namespace arena
