// The handles that a started program inherits from this process.
#pragma once

#include <gtest/gtest.h>

#include <cstdio>
#include <set>
#include <string>

namespace test
{

// The targets of a started program's handles, as it lists them itself, without its own pipe and folder.
inline std::multiset<std::string> handlesOfAProgram()
{
    std::multiset<std::string> targets;
    std::FILE* const program = popen("ls -l /proc/self/fd", "r");
    char line[4096];
    while (program && std::fgets(line, sizeof line, program))
    {
        const std::string text = line;
        const size_t arrow = text.find(" -> ");
        if (arrow != std::string::npos && text.find("pipe:") == std::string::npos &&
            text.find("/proc/") == std::string::npos)
            targets.insert(text.substr(arrow + 4));
    }
    EXPECT_EQ(program ? pclose(program) : -1, 0);
    return targets;
}

} // namespace test
