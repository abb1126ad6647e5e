#include "framework/platform/platform.h"

#include "framework/app.h"
#include "framework/string_helper.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <filesystem>
#include <string>

namespace platform = zet::platform;
using Wide = zet::String_T<wchar_t>;

namespace
{

std::filesystem::path pathOf(const Wide& text)
{
    const zet::String_T<char> bytes = zet::StringHelper::wideToUtf8(text);
    return std::filesystem::path(reinterpret_cast<const char8_t*>(bytes.getBuffer()));
}

bool endsWithSlash(const Wide& path)
{
    return !path.isEmpty() && path[path.getLength() - 1] == L'/';
}

} // namespace

TEST(App, PathIsTheDirectoryOfTheExecutable)
{
    const Wide path = zet::getAppPath();
    EXPECT_TRUE(endsWithSlash(path));
    EXPECT_TRUE(std::filesystem::is_directory(pathOf(path)));
    EXPECT_TRUE(std::filesystem::exists(pathOf(platform::getExecutablePath())));
    EXPECT_TRUE(platform::getExecutablePath().getSubString(0, path.getLength()) == path);
}

TEST(App, LastErrorHasAText)
{
    EXPECT_EQ(platform::openFile(L"no/such/directory/file", "r"), nullptr);
    const int error = platform::getLastError();
    const Wide text = zet::getLastErrorString();
    EXPECT_FALSE(text.isEmpty());
    EXPECT_TRUE(text == zet::getErrorString(error));
    EXPECT_FALSE(zet::getErrorString(-12345).isEmpty() && zet::getErrorString(1).isEmpty());
#ifndef _WIN32
    EXPECT_EQ(error, ENOENT);
    EXPECT_TRUE(text == L"No such file or directory");
#endif
}

TEST(Platform, LibraryKnowsItsDirectory)
{
    const Wide directory = platform::getLibraryDirectory();
    EXPECT_TRUE(endsWithSlash(directory));
    EXPECT_TRUE(std::filesystem::is_directory(pathOf(directory)));
}

TEST(Platform, TempFilesAreNewAndCanGo)
{
    const Wide directory = platform::getTempDirectory();
    ASSERT_TRUE(endsWithSlash(directory));
    const Wide first = platform::createTempFile(directory);
    const Wide second = platform::createTempFile(directory.getSubString(0, directory.getLength() - 1));
    ASSERT_FALSE(first.isEmpty());
    ASSERT_FALSE(second.isEmpty());
    EXPECT_FALSE(first == second);
    EXPECT_TRUE(std::filesystem::exists(pathOf(first)));
    std::FILE* file = platform::openFile(first, "w");
    ASSERT_NE(file, nullptr);
    std::fclose(file);
    EXPECT_TRUE(platform::deleteFile(first));
    EXPECT_FALSE(platform::deleteFile(first));
    EXPECT_TRUE(platform::deleteFile(second));
    EXPECT_TRUE(platform::createTempFile(L"no/such/directory").isEmpty());
}

TEST(Platform, FilesGetOtherNames)
{
    const Wide first = platform::createTempFile(platform::getTempDirectory());
    const Wide second = platform::createTempFile(platform::getTempDirectory());
    const Wide third = first + L"\u4E2D";
    ASSERT_TRUE(platform::isFile(first) && platform::isFile(second));
    EXPECT_FALSE(platform::isFile(third));
    EXPECT_FALSE(platform::isFile(platform::getTempDirectory()));
    EXPECT_FALSE(platform::isFile(L"/dev/null"));
    EXPECT_TRUE(platform::renameFile(first, third));
    EXPECT_FALSE(platform::isFile(first));
    EXPECT_FALSE(platform::renameFile(first, second));
    // In the place of a file that exists.
    EXPECT_TRUE(platform::renameFile(third, second));
    EXPECT_FALSE(platform::isFile(third));
    EXPECT_TRUE(platform::deleteFile(second));
}

TEST(Platform, DirectoriesAreMadeAndEntered)
{
    const Wide before = platform::getCurrentDirectory();
    ASSERT_FALSE(before.isEmpty());
    const Wide file = platform::createTempFile(platform::getTempDirectory());
    ASSERT_TRUE(platform::deleteFile(file));
    const Wide directory = file + L"\u4E2D";
    EXPECT_TRUE(platform::createDirectory(directory));
    EXPECT_FALSE(platform::createDirectory(directory));
    EXPECT_TRUE(platform::setCurrentDirectory(directory));
    EXPECT_TRUE(std::filesystem::equivalent(pathOf(platform::getCurrentDirectory()), pathOf(directory)));
    EXPECT_FALSE(platform::setCurrentDirectory(L"no/such/directory"));
    EXPECT_TRUE(platform::setCurrentDirectory(before));
    EXPECT_TRUE(std::filesystem::remove(pathOf(directory)));
}

TEST(Platform, WorkingSetIsMoreThanAMegabyte)
{
    EXPECT_GT(platform::getWorkingSetSize(), 1u << 20);
}

TEST(Platform, LocalTimeIsADate)
{
    const platform::LocalTime time = platform::getLocalTime();
    EXPECT_GE(time.m_Year, 2020);
    EXPECT_TRUE(time.m_Month >= 1 && time.m_Month <= 12);
    EXPECT_TRUE(time.m_Day >= 1 && time.m_Day <= 31);
    EXPECT_TRUE(time.m_Hour >= 0 && time.m_Hour <= 23);
    EXPECT_TRUE(time.m_Minute >= 0 && time.m_Minute <= 59);
    EXPECT_TRUE(time.m_Second >= 0 && time.m_Second <= 60);
    EXPECT_TRUE(time.m_Milliseconds >= 0 && time.m_Milliseconds <= 999);
}
