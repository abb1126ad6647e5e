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

#ifdef __cpp_impl_coroutine

TEST(Arena, RunEndsWithACleanAudit)
{
    const Outcome outcome = runArena("run --players 2 --seconds 0 --races 1 --verbose");
    EXPECT_TRUE(outcome.m_IsGood) << outcome.m_Output;
    // The last lines of the scripts of the race, the session, the lesson and the device.
    for (const char* const line : {": back with 80 coins", ": back with 70 coins", ": <- CCmdSport_GameOverMessage",
                                   "Ann-2: <- CCmdMazurixOnDataExportedNotify", "Ann-2: <- CCmdMaskImage"})
        EXPECT_NE(outcome.m_Output.find(line), std::string::npos) << line << "\n" << outcome.m_Output;
    EXPECT_TRUE(outcome.m_LastLine.starts_with("run: 2 players, ")) << outcome.m_Output;
    EXPECT_TRUE(outcome.m_LastLine.ends_with(" 0 interrupted, 0 faults, 0 findings")) << outcome.m_Output;
}

TEST(Arena, PlayersComeBackWhenAServerIsKilled)
{
    // It goes on until a server was killed and has registered again.
    const Outcome outcome = runArena("run --players 2 --seconds 0 --faults");
    EXPECT_TRUE(outcome.m_IsGood) << outcome.m_Output;
    EXPECT_NE(outcome.m_Output.find("fault: "), std::string::npos) << outcome.m_Output;
    EXPECT_TRUE(outcome.m_LastLine.ends_with(" faults, 0 findings")) << outcome.m_Output;
    EXPECT_EQ(outcome.m_LastLine.find(" 0 faults"), std::string::npos) << outcome.m_Output;
}

TEST(Arena, RunFindsRacesThatWereNotRaced)
{
    const Outcome outcome = runArena("run --players 2 --seconds 0 --races 2 --race-time 1 --script device");
    EXPECT_FALSE(outcome.m_IsGood) << outcome.m_Output;
    EXPECT_NE(outcome.m_Output.find("finding: 0 of 2 races were raced to the end"), std::string::npos)
        << outcome.m_Output;
}

#endif

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
         {"", "dance", "run --players 0", "player", "player --platform here", "player --platform ::1:7000",
          "player --platform [::1:7000", "player --script race --platform 127.0.0.1:1",
          "player --platform 127.0.0.1:1 --script x", "lookup --type 256 --registry 1",
          "service --type 1 --name ../x --registry 1", "registry --port", "registry --port 0 --port 0", "shutdown"})
    {
        const Outcome outcome = runArena(words);
        EXPECT_FALSE(outcome.m_IsGood) << words;
        EXPECT_NE(outcome.m_Output.find("usage: arena"), std::string::npos) << words;
    }
}
