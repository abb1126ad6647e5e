// The folders of test data and of the programs of this build.
#pragma once

#include <string>
#include <vector>

namespace test
{

// The folder tests/ of the tree.
std::string getTestsFolder();

// The folder of the programs and modules of this build.
std::string getBuildFolder();

// The prefix of a command that starts such a program: empty, or an emulator's command.
std::string getStarter();

// The arguments that start a program of this build as a child process.
std::vector<std::string> getStartWords(const std::string& program);

} // namespace test
