// The file log wrote the first message of a second and held the others until a message of another second, which took
// hours on a quiet server and lost them if the process crashed; two messages a minute apart counted as of the same
// second. If its folder could not be written it reported nothing. A line is now written as soon as no other line waits,
// and a fault is reported once, to the other sinks or to standard error.
#include "framework/log.h"
#include "framework/time.h"
#include "tests/support/eventually.h"
#include "tests/support/log_folder.h"
#include "tests/support/log_lines.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <string>

using zet::Log;

namespace
{

// Redirects standard error to the test during its lifetime: the console log may be loaded.
class QuietLog
{
public:
    QuietLog()
    {
        testing::internal::CaptureStderr();
        Log::start();
    }
    ~QuietLog() { stop(); }
    QuietLog(const QuietLog&) = delete;
    QuietLog& operator=(const QuietLog&) = delete;

    std::string stop()
    {
        if (!m_IsOn)
            return "";
        m_IsOn = false;
        Log::stop();
        Log::setparam(L"FileLog@path=");
        return testing::internal::GetCapturedStderr();
    }

private:
    bool m_IsOn = true;
};

TEST(Bugs, ALogLineIsInItsFileWhateverFollows)
{
    const test::LogFolder folder;
    ASSERT_TRUE(folder.use());
    QuietLog log;
    Log::message(L"first");
    Log::message(L"second");
    Log::message(L"third");
    EXPECT_TRUE(test::eventually([&] { return folder.lines().size() == 3; }));
}

TEST(Bugs, LogLinesAMinuteApartAreNotOfOneSecond)
{
    const test::LogFolder folder;
    ASSERT_TRUE(folder.use());
    QuietLog log;
    zet::TestClock clock(1386602330);
    Log::message(L"first");
    EXPECT_TRUE(test::eventually([&] { return folder.lines().size() == 1; }));
    clock.advance(60000);
    Log::message(L"second");
    EXPECT_TRUE(test::eventually([&] { return folder.lines().size() == 2; }));
}

TEST(Bugs, AFolderThatCannotBeWrittenIsSaidOnceToTheOtherSinks)
{
    const test::LogFolder folder;
    std::ofstream(folder.m_Path / "file") << "no directory";
    ASSERT_TRUE(folder.use(L"file"));
    const test::LogLines lines;
    QuietLog log;
    for (int i = 0; i < 20; ++i)
        Log::message(L"line %d", i);
    log.stop();
    const auto isTold = [](const std::wstring& text) { return text.find(L"FileLog") != std::wstring::npos; };
    const std::vector<std::wstring> texts = lines.texts();
    ASSERT_EQ(std::count_if(texts.begin(), texts.end(), isTold), 1);
    const std::wstring told = *std::find_if(texts.begin(), texts.end(), isTold);
    // It names the file.
    EXPECT_NE(told.find(L"/file/"), std::wstring::npos);
    EXPECT_EQ(texts.size(), 21u);
}

TEST(Bugs, AFolderThatCannotBeWrittenIsReportedOnStandardErrorWithoutASink)
{
    const test::LogFolder folder;
    std::ofstream(folder.m_Path / "file") << "no directory";
    ASSERT_TRUE(folder.use(L"file"));
    QuietLog log;
    for (int i = 0; i < 20; ++i)
        Log::message(L"line %d", i);
    const std::string shown = log.stop();
    const size_t at = shown.find("FileLog");
    ASSERT_NE(at, std::string::npos);
    EXPECT_EQ(shown.find("FileLog", at + 1), std::string::npos);
}

} // namespace
