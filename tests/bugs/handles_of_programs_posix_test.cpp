// A program that a host started inherited its listening ports, its connections, its log file and all other open files:
// it kept the port in use after the host had ended, and could read and write foreign data. Nothing that the library
// opens is inherited, from the opening call on.
#ifdef __linux__

#include "framework/log.h"
#include "framework/string_helper.h"
#include "runtime/utility.h"
#include "tests/support/handles_of_program.h"
#include "tests/support/log_folder.h"
#include "tests/support/loopback.h"

#include <gtest/gtest.h>

#include <set>
#include <string>

namespace
{

TEST(Bugs, AStartedProgramInheritsNoHandleOfTheLibrary)
{
    const std::multiset<std::string> before = test::handlesOfAProgram();

    CCmdAnalyserSocket analyser;
    test::Loopback tcp(&analyser);
    const test::ClientHandle client = tcp.connect(&analyser);
    ASSERT_FALSE(client.isNull());
    EXPECT_EQ(test::handlesOfAProgram(), before) << "TCP";

    const test::LogFolder folder;
    ASSERT_TRUE(folder.use());
    zet::Log::start();
    zet::Log::message(L"line");
    EXPECT_TRUE(zet::Log::flush(20000));
    EXPECT_EQ(folder.lines().size(), 1u);
    const zet::String_T<wchar_t> place = zet::StringHelper::utf8ToWide(folder.m_Path.c_str());
    EXPECT_EQ(CZETUtility::SetTempPath(place), CZETUtility::GetTempPathW());
    ASSERT_NE(CZETUtility::tempFile, nullptr);
    EXPECT_EQ(test::handlesOfAProgram(), before) << "files";
    CZETUtility::DeleteTempFile();
    zet::Log::stop();
    zet::Log::setparam(L"FileLog@path=");
}

} // namespace

#endif
