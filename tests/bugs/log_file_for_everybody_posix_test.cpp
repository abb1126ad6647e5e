// Log files were readable by every user of the machine unless the process's umask prevented it. They contain accounts
// and addresses, so a new one is accessible to its owner and the owner's group only.
#include "framework/log.h"
#include "tests/support/log_folder.h"

#include <gtest/gtest.h>

#include <sys/stat.h>

namespace
{

TEST(Bugs, ALogFileIsForItsOwnerAndTheGroupAlone)
{
    const test::LogFolder folder;
    ASSERT_TRUE(folder.use());
    const mode_t before = umask(0);
    testing::internal::CaptureStderr();
    zet::Log::start();
    zet::Log::message(L"line");
    zet::Log::stop();
    zet::Log::setparam(L"FileLog@path=");
    testing::internal::GetCapturedStderr();
    umask(before);
    ASSERT_EQ(folder.lines().size(), 1u);
    const std::filesystem::path file = *std::filesystem::directory_iterator(folder.m_Path);
    struct stat status;
    ASSERT_EQ(stat(file.c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777, 0640u);
}

} // namespace
