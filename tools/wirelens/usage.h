// The help of wirelens.
#pragma once

#include <iosfwd>
#include <string>

namespace wirelens
{

// Whether a command of this name exists.
bool isCommand(const std::string& name);
// The help of one command, or of the whole program for an unknown name.
void printHelp(std::ostream& out, const std::string& name);
// Prints the fault of a call and the usage of the command, and returns the exit code.
int misuse(const std::string& name, const std::string& what);

} // namespace wirelens
