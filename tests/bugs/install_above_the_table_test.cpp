// Install() stored beyond the end of its table for an id of 0x4019 and above. Such an id is now refused with one log
// line, and builds with assertions stop there.
#include "dispatch/analyser.h"
#include "dispatch/analyser_socket.h"
#include "tests/support/log_lines.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdio>
#include <memory>
#include <vector>

namespace
{

// The installed functions must not matter.
void handle(CCmdHead*, unsigned long, unsigned long) {}
bool process(CCmdPackager*, CmdHandler, unsigned long, unsigned long)
{
    return true;
}
void handleBySocket(CCommandSocket*, CCmdHead*, unsigned long, unsigned long) {}
bool processBySocket(CCommandSocket*, CCmdPackager*, SocketCmdHandler, unsigned long, unsigned long)
{
    return true;
}

// Two tables side by side, so that a store beyond the first one shows in the second.
template <class Analyser, class Install>
void expectRefused(const char* name, Install install)
{
    const std::string line = std::string(name) + " cannot Install CMD(0x4019)";
#ifdef NDEBUG
    const auto pair = std::make_unique<Analyser[]>(2);
    const test::LogLines lines;
    install(pair[0]);
    const std::vector<std::wstring> expected = {std::wstring(line.begin(), line.end())};
    EXPECT_EQ(lines.texts(), expected);
#else
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_DEATH(
        {
            zet::Log::addSink([](zet::Log::Level, const zet::String_T<wchar_t>& text)
                              { std::fprintf(stderr, "%ls\n", text.getBuffer()); });
            const auto pair = std::make_unique<Analyser[]>(2);
            install(pair[0]);
        },
        testing::HasSubstr(line));
#endif
}

TEST(Bugs, AnIdAboveTheTableIsNotInstalled)
{
    expectRefused<CCmdAnalyser>("CCmdAnalyser",
                                [](CCmdAnalyser& analyser) { analyser.Install(0x4019, process, handle); });
}

TEST(Bugs, AnIdAboveTheTableIsNotInstalledForSockets)
{
    expectRefused<CCmdAnalyserSocket>("CCmdAnalyserSocket", [](CCmdAnalyserSocket& analyser)
                                      { analyser.Install(0x4019, processBySocket, handleBySocket, 0, 0); });
}

} // namespace
