// The tables of the account database, as the steps by which they came to be. A step that was released never changes;
// a new version of the tables is a new step at the end.
#pragma once

#include <string>
#include <vector>

namespace arena::platform
{

// The statements that bring a database from version i to version i + 1. "BYTES" is the type of a column of bytes and
// "NUMBERED" that of a key that counts up, which the two databases name differently.
const std::vector<std::vector<std::string>>& getMigrations();

} // namespace arena::platform
