// Log lines contain names and texts from peers. Line ends and escape sequences in them reached the console and the file
// unchanged, so a peer could write log lines of its own and control the reader's terminal. Both log modules now escape
// control characters; the tabs and the final line end of the library's own texts are kept.
#include "framework/log.h"
#include "framework/module.h"
#include "tests/support/log_folder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>

using zet::Log;

namespace
{

bool hasControls(const std::string& line)
{
    return std::any_of(line.begin(), line.end(), [](unsigned char c) { return (c < 0x20 && c != '\t') || c == 0x7F; });
}

// Both modules give the same output for a line.
std::string writtenAs(const zet::String_T<wchar_t>& line)
{
    const test::LogFolder folder;
    EXPECT_TRUE(folder.use());
    EXPECT_TRUE(zet::DllModule::createInstance()->load(L"zet_ConsoleLog.dll"));
    testing::internal::CaptureStderr();
    Log::start();
    Log::write(Log::kError, line);
    Log::stop();
    Log::setparam(L"FileLog@path=");
    const std::string shown = testing::internal::GetCapturedStderr();
    std::string text;
    for (const std::string& written : folder.lines())
        text += written + "\n";
    EXPECT_EQ(shown, text);
    return test::LogFolder::withoutTime(text);
}

TEST(Bugs, APeersTextCannotForgeALogLine)
{
    const std::string written = writtenAs(L"peer a\r\n2013-12-09 15:18:50.042 [E] forged");
    EXPECT_EQ(written, "[E] peer a\\r\\n2013-12-09 15:18:50.042 [E] forged\n");
}

TEST(Bugs, APeersTextCannotSteerATerminal)
{
    const std::string written = writtenAs(L"\x1B[2J \x7F \x80 \x85 \x9B"
                                          L"31m \x2028 \x2029 \a\b\v\f \u4E2D");
    EXPECT_EQ(written, "[E] \\x1B[2J \\x7F \\x80 \\x85 \\x9B31m \\u2028 \\u2029 \\x07\\x08\\x0B\\x0C \xE4\xB8\xAD\n");
    EXPECT_FALSE(hasControls(written.substr(0, written.size() - 1)));
    // A zero does not end the line either.
    EXPECT_EQ(writtenAs(zet::String_T<wchar_t>(L"a\0b\n\nc", 6)), "[E] a\\x00b\\n\\nc\n");
}

TEST(Bugs, TabsAndTheFinalLineEndOfALogLineStay)
{
    EXPECT_EQ(writtenAs(L"NULL command(0x1013) \t(peer)"), "[E] NULL command(0x1013) \t(peer)\n");
    EXPECT_EQ(writtenAs(L"with an end\n"), "[E] with an end\n\n");
}

} // namespace
