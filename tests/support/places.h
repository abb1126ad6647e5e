// The folders that a test finds its data and the programs of its build in.
#pragma once

#include <string>
#include <vector>

namespace test
{

// The folder tests/ of the tree.
std::string getTestsFolder();

// The folder that the programs and modules of this build lie in.
std::string getBuildFolder();

// What stands before the name of such a program in a command that starts it: nothing, or an emulator's words.
std::string getStarter();

// The words that start a program of this build, as a child process takes them.
std::vector<std::string> getStartWords(const std::string& program);

} // namespace test
