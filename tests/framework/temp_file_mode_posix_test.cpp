#include "framework/platform/platform.h"
#include "framework/string_helper.h"

#include <gtest/gtest.h>

#include <sys/stat.h>
#include <unistd.h>

namespace
{

TEST(TempFile, IsItsUsersAlone)
{
    const mode_t before = umask(0);
    const auto name = zet::StringHelper::wideToUtf8(zet::platform::createTempFile(zet::platform::getTempDirectory()));
    umask(before);
    struct stat state
    {
    };
    ASSERT_EQ(stat(name.getBuffer(), &state), 0) << name.getBuffer();
    EXPECT_EQ(state.st_mode & 0777, 0600U);
    EXPECT_EQ(unlink(name.getBuffer()), 0);
}

} // namespace
