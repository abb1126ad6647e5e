// The trace line of a command received by a socket went to the standard error, while the fields of the same command
// went to the standard output. Whether there is a trace was decided by a macro of each file that includes the header.
#include "commands/registry.h"
#include "dispatch/analyser.h"
#include "dispatch/trace.h"
#include "packaging/cmd_packager.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <regex>
#include <string>

namespace
{

class Shown : public CCmdServerEcho
{
public:
    void OutDebug(FILE* out) const override { std::fputs("fields\n", out); }
};

struct Printed
{
    std::string m_Output;
    std::string m_Error;
};

template <class Call>
Printed printedBy(Call call)
{
    testing::internal::CaptureStdout();
    testing::internal::CaptureStderr();
    call();
    Printed printed;
    printed.m_Output = testing::internal::GetCapturedStdout();
    printed.m_Error = testing::internal::GetCapturedStderr();
    return printed;
}

const std::string kTime = R"(\*\*\* \d{4}/\d{2}/\d{2} \d{2}:\d{2}:\d{2}\.\d{3} \*\*\* <<<)";

TEST(Bugs, TheTraceOfASocketCommandPrecedesItsFields)
{
    const Printed printed = printedBy([] { TraceSocketCommand(Shown(), L"\u4E2D 10.0.0.1:80"); });
    EXPECT_TRUE(
        std::regex_match(printed.m_Output, std::regex(kTime + " \\(\xE4\xB8\xAD 10\\.0\\.0\\.1:80\\)fields\r?\n")))
        << printed.m_Output;
    EXPECT_EQ(printed.m_Error, "");
}

TEST(Bugs, TheTraceOfACommandPrecedesItsFields)
{
    const Printed printed = printedBy([] { TraceCommand(Shown()); });
    EXPECT_TRUE(std::regex_match(printed.m_Output, std::regex(kTime + "\r?\nfields\r?\n"))) << printed.m_Output;
    EXPECT_EQ(printed.m_Error, "");
}

TEST(Bugs, TheLibrarysBuildDecidesOfTheTrace)
{
    CCmdPackager packager;
    ASSERT_TRUE(CCmdServerEcho().Write(&packager));
    CCmdAnalyser analyser;
    analyser.Install(command_id::CCmdServerEcho, CCmdServerEcho::CCmdServerEcho_Process,
                     [](CCmdHead*, unsigned long, unsigned long) {});
    const Printed printed = printedBy([&] { analyser.Analyse(packager, 0, 0); });
    EXPECT_EQ(std::regex_match(printed.m_Output, std::regex(kTime + "\r?\n")), kTraceCommands) << printed.m_Output;
    EXPECT_TRUE(kTraceCommands || printed.m_Output.empty());
}

} // namespace
