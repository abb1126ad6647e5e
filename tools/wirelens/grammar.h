// The command line of wirelens, by CLI11: commands, options and help from one description.
#pragma once

namespace wirelens
{

// Runs the command that the arguments name, and returns the exit code: 0 success, 1 bad input, 2 wrong usage.
int run(int argc, const char* const* argv);

} // namespace wirelens
