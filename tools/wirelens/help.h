// What the grammar says about itself: help, the manual page and completion for shells, all from the same descriptions.
#pragma once

#include <string>

namespace CLI
{
class App;
}

namespace wirelens
{

// Of the program or of one command.
std::string helpOf(const CLI::App* app, bool hasColours);

// wirelens(1), for man.
std::string manualOf(const CLI::App* app, const std::string& version);

// A script for bash, and one for zsh that takes its suggestions.
std::string bashCompletionOf(const CLI::App* app);
std::string zshCompletionOf(const CLI::App* app);

} // namespace wirelens
