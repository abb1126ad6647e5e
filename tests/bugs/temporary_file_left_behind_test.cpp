// The temporary file was deleted by the name that it was opened with: created under a relative path it was left
// if the current directory had changed since. And a forked process that ended by exit() ran the inherited clean-up, so
// its parent lost the file.
#include "runtime/utility.h"

#include "framework/platform/platform.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>

namespace fs = std::filesystem;

namespace
{

class TemporaryFile : public testing::Test
{
protected:
    TemporaryFile()
    {
        CZETUtility::DeleteTempFile();
        const zet::String_T<wchar_t> name = zet::platform::createTempFile(zet::platform::getTempDirectory());
        m_Root = fs::path(name.getBuffer());
        fs::remove(m_Root);
        fs::create_directory(m_Root);
        fs::current_path(m_Root);
    }
    ~TemporaryFile() override
    {
        CZETUtility::DeleteTempFile();
        fs::current_path(m_Before);
        fs::remove_all(m_Root);
    }

    std::ptrdiff_t filesIn(const char* directory) const
    {
        return std::distance(fs::directory_iterator(m_Root / directory), fs::directory_iterator());
    }

    const fs::path m_Before = fs::current_path();
    fs::path m_Root;
};

} // namespace

TEST_F(TemporaryFile, OfARelativePathGoesAlsoAfterAChangeOfTheDirectory)
{
    EXPECT_STREQ(CZETUtility::SetTempPath(L"a/b"), L"a/b");
    EXPECT_EQ(filesIn("a/b"), 1);
    fs::create_directory("elsewhere");
    fs::current_path("elsewhere");
    CZETUtility::DeleteTempFile();
    EXPECT_EQ(filesIn("a/b"), 0);
}

#ifndef _WIN32
TEST_F(TemporaryFile, OutlivesAForkedProcess)
{
    testing::GTEST_FLAG(death_test_style) = "fast";
    CZETUtility::SetTempPath(L"tmp");
    EXPECT_EQ(filesIn("tmp"), 1);
    EXPECT_EXIT(std::exit(3), testing::ExitedWithCode(3), "");
    EXPECT_EQ(filesIn("tmp"), 1);
    // A file that the other process opens itself is deleted with it.
    EXPECT_EXIT(
        {
            CZETUtility::SetTempPath(L"own");
            std::exit(filesIn("own") == 1 ? 3 : 4);
        },
        testing::ExitedWithCode(3), "");
    EXPECT_EQ(filesIn("own"), 0);
    EXPECT_EQ(filesIn("tmp"), 1);
    CZETUtility::DeleteTempFile();
    EXPECT_EQ(filesIn("tmp"), 0);
}
#endif
