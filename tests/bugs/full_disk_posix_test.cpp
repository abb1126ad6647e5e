// A log file on a full disk lost its lines silently, and continued in the middle of a line when there was space again.
// The fault is now reported once, the file is opened again for the next lines, and the loss is logged in it.
#include "framework/log.h"
#include "framework/platform/platform.h"
#include "framework/time.h"
#include "tests/support/log_folder.h"
#include "tests/support/log_lines.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

using zet::Log;

namespace
{

TEST(Bugs, AFullDiskIsSaidOnceAndRecoveredFrom)
{
    const test::LogFolder folder;
    ASSERT_TRUE(folder.use());
    const test::LogLines others;
    const zet::TestClock clock(1386602330);
    const zet::platform::LocalTime time = zet::platform::getLocalTime(1386602330000);
    const zet::String_T<wchar_t> name = zet::formatText(L"%04d-%02d-%02d.log", time.m_Year, time.m_Month, time.m_Day);
    const std::filesystem::path file = folder.m_Path / name.getBuffer();
    std::filesystem::create_symlink("/dev/full", file);

    testing::internal::CaptureStderr();
    Log::start();
    for (int i = 0; i < 3; ++i)
    {
        Log::message(L"lost");
        EXPECT_TRUE(Log::flush(20000));
    }
    std::filesystem::remove(file);
    Log::message(L"kept");
    EXPECT_TRUE(Log::flush(20000));
    Log::message(L"kept, too");
    Log::stop();
    Log::setparam(L"FileLog@path=");
    testing::internal::GetCapturedStderr();

    std::vector<std::string> written;
    for (const std::string& line : folder.lines())
        written.push_back(test::LogFolder::withoutTime(line));
    EXPECT_EQ(written,
              (std::vector<std::string>{"[M] kept", "[W] FileLog writes again: 3 lines are lost", "[M] kept, too"}));
    std::vector<std::wstring> told;
    for (const std::wstring& line : others.texts())
        if (line.find(L"FileLog") == 0)
            told.push_back(line);
    ASSERT_EQ(told.size(), 2u);
    EXPECT_NE(told[0].find(name), std::wstring::npos);
    EXPECT_NE(told[0].find(L"No space left on device"), std::wstring::npos);
    EXPECT_EQ(told[1], L"FileLog writes again: 3 lines are lost");
}

} // namespace
