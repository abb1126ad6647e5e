// The command lines of the roles that are no host::Service; those have options of their own.
#pragma once

#include <CLI/App.hpp>
#include <CLI/Config.hpp>
#include <CLI/Formatter.hpp>

#include <optional>

namespace arena
{

constexpr int kMostPort = 0xFFFF;

// Parses the words of a role, the first of which is its name. Returns nothing if the role is to go on; otherwise the
// exit code: 0 after --help, 2 after a line on standard error that says what is not valid, with the usage.
std::optional<int> parseWords(CLI::App& app, int count, char** words);

} // namespace arena
