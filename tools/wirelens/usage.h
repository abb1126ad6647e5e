// What wirelens says of its own commands.
#pragma once

#include <iosfwd>
#include <string>

namespace wirelens
{

// Whether there is a command of the name.
bool isCommand(const std::string& name);
// The help of one command, or of the whole program for a name that is no command.
void printHelp(std::ostream& out, const std::string& name);
// Says what is wrong with the call of a command, with the command's form, and returns the exit code for it.
int misuse(const std::string& name, const std::string& what);

} // namespace wirelens
