// The miniature platform as a user starts it: one command line, real processes, one result.
#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <sstream>
#include <string>

namespace
{

const std::string kDirectory = COMMONGROUND_BUILD_DIR "/";

struct Outcome
{
    bool m_IsGood = false;
    std::string m_Output;
    std::string m_LastLine;
};

// Runs the program with the words behind its name; a result of 0 is good. Tests may run at the same time.
Outcome runArena(const std::string& words)
{
    const std::string test = testing::UnitTest::GetInstance()->current_test_info()->name();
    const std::string path = kDirectory + "arena_" + test + ".txt";
    const std::string command = "\"" + kDirectory + "arena\" " + words + " > \"" + path + "\" 2>&1";
    Outcome outcome;
    outcome.m_IsGood = std::system(command.c_str()) == 0;
    std::ostringstream all;
    all << std::ifstream(path).rdbuf();
    outcome.m_Output = all.str();
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
    // Nobody listens at the lowest port.
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
