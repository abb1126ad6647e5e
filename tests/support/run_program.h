// Runs a program of this build by the shell.
#pragma once

#include <string>

namespace test
{

struct Run
{
    // The exit code.
    int m_Code = 0;
    // Standard output and error together. Line ends are one byte on every platform.
    std::string m_Output;
};

// Runs a program of the build folder with arguments for the shell and the given standard input. Its files are named
// after the running test, so tests may run in parallel.
Run runProgram(const std::string& name, const std::string& words, const std::string& input = "");

} // namespace test
