// The miniature platform as a user runs it: one command line, real processes, one result.
#include "tests/support/run_program.h"

#include <gtest/gtest.h>

#include <sstream>
#include <string>

namespace
{

struct Outcome
{
    bool m_IsGood = false;
    std::string m_Output;
    std::string m_LastLine;
};

// Runs the program with the given arguments; 0 means success.
Outcome runArena(const std::string& words)
{
    const test::Run run = test::runProgram("arena", words);
    Outcome outcome;
    outcome.m_IsGood = run.m_Code == 0;
    outcome.m_Output = run.m_Output;
    std::istringstream lines(outcome.m_Output);
    for (std::string line; std::getline(lines, line);)
        outcome.m_LastLine = line;
    return outcome;
}

} // namespace

TEST(Arena, DemoPlaysAllStepsAndLeavesWithZero)
{
    const Outcome outcome = runArena("demo");
    EXPECT_TRUE(outcome.m_IsGood) << outcome.m_Output;
    EXPECT_EQ(outcome.m_LastLine, "demo: all 9 steps done") << outcome.m_Output;
}

TEST(Arena, LookupWithoutARegistryIsAFault)
{
    // Nothing listens on port 1.
    EXPECT_FALSE(runArena("lookup --type 1 --registry 1").m_IsGood);
    EXPECT_FALSE(runArena("shutdown --registry 1").m_IsGood);
    EXPECT_FALSE(runArena("service --type 1 --name alone --registry 1").m_IsGood);
}

TEST(Arena, ABadCommandLineShowsTheUsage)
{
    for (const char* words :
         {"", "dance", "lookup --type 256 --registry 1", "service --type 1 --name ../x --registry 1", "registry --port",
          "registry --port 0 --port 0", "shutdown"})
    {
        const Outcome outcome = runArena(words);
        EXPECT_FALSE(outcome.m_IsGood) << words;
        EXPECT_NE(outcome.m_Output.find("usage: arena"), std::string::npos) << words;
    }
}
