// Runs a program of this build as a user's shell does.
#pragma once

#include <string>

namespace test
{

struct Run
{
    // What the program returned.
    int m_Code = 0;
    // Standard output and error in one. On Windows the end of a line may be the two bytes of that system; here it is
    // one byte everywhere.
    std::string m_Output;
};

// Runs a program of the build folder with words for the shell behind its name and the input on its standard input.
// Its files carry the name of the running test, so tests may run at the same time.
Run runProgram(const std::string& name, const std::string& words, const std::string& input = "");

} // namespace test
