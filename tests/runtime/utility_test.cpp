#include "runtime/utility.h"

#include "framework/app.h"
#include "framework/platform/platform.h"
#include "framework/string_helper.h"
#include "tests/support/log_lines.h"

#include <gtest/gtest.h>

#include <climits>
#include <cstdlib>
#include <cwchar>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

namespace fs = std::filesystem;
namespace platform = zet::platform;
using Wide = zet::String_T<wchar_t>;

namespace
{

struct Split
{
    std::vector<std::wstring> m_Arguments;
    int m_NumArgs = 0;
    int m_NumChars = 0;
};

// Splits a line in two passes, the second into blocks of exactly the sizes that the first returned.
Split splitOf(const wchar_t* line)
{
    Split split;
    CZETUtility::parse_cmdline(line, nullptr, nullptr, &split.m_NumArgs, &split.m_NumChars);
    std::vector<wchar_t*> argv(static_cast<size_t>(split.m_NumArgs), const_cast<wchar_t*>(L"unset"));
    std::vector<wchar_t> args(static_cast<size_t>(split.m_NumChars), L'?');
    int numargs = 0;
    int numchars = 0;
    CZETUtility::parse_cmdline(line, argv.data(), args.data(), &numargs, &numchars);
    EXPECT_EQ(numargs, split.m_NumArgs);
    EXPECT_EQ(numchars, split.m_NumChars);
    EXPECT_EQ(argv.back(), nullptr);
    argv.pop_back();
    for (const wchar_t* argument : argv)
        split.m_Arguments.emplace_back(argument);
    return split;
}

using Arguments = std::vector<std::wstring>;

std::wstring parameterOf(const wchar_t* line, const wchar_t* name)
{
    return CZETUtility::ParseParameterStr(line, name, L"default").getBuffer();
}

Wide textOf(const fs::path& path)
{
    const std::u8string text = path.generic_u8string();
    return zet::StringHelper::utf8ToWide(reinterpret_cast<const char*>(text.c_str()));
}

fs::path pathOf(const wchar_t* text)
{
    const zet::String_T<char> bytes = zet::StringHelper::wideToUtf8(text);
    return {reinterpret_cast<const char8_t*>(bytes.getBuffer())};
}

size_t filesIn(const fs::path& directory)
{
    size_t count = 0;
    for (const auto& entry : fs::directory_iterator(directory))
        count += entry.is_regular_file() ? 1 : 0;
    return count;
}

// A directory for one test. Restores the current directory and the static state.
class CZETUtilityPaths : public testing::Test
{
protected:
    CZETUtilityPaths() : m_Before(fs::current_path())
    {
        const Wide file = platform::createTempFile(platform::getTempDirectory());
        platform::deleteFile(file);
        m_Root = pathOf(file);
        fs::create_directory(m_Root);
        reset();
    }
    ~CZETUtilityPaths() override
    {
        CZETUtility::DeleteTempFile();
        reset();
        fs::current_path(m_Before);
        std::error_code error;
        fs::permissions(m_Root, fs::perms::owner_all, error);
        fs::remove_all(m_Root, error);
    }
    static void reset()
    {
        CZETUtility::work_path[0] = L'\0';
        CZETUtility::tempPath[0] = L'\0';
        CZETUtility::tempFileName[0] = L'\0';
    }

    fs::path m_Before;
    fs::path m_Root;
};

} // namespace

TEST(CommandLine, ProgramEndsAtTheFirstBlankOutsideOfQuotes)
{
    EXPECT_EQ(splitOf(L"prog").m_Arguments, (Arguments{L"prog"}));
    EXPECT_EQ(splitOf(L"prog a").m_Arguments, (Arguments{L"prog", L"a"}));
    EXPECT_EQ(splitOf(L"prog\ta").m_Arguments, (Arguments{L"prog", L"a"}));
    EXPECT_EQ(splitOf(L"\"C:\\Program Files\\p.exe\" a").m_Arguments, (Arguments{L"C:\\Program Files\\p.exe", L"a"}));
    EXPECT_EQ(splitOf(L"\"C:\\dir\\\"x\\\" a").m_Arguments, (Arguments{L"C:\\dir\\x\\ a"}));
    EXPECT_EQ(splitOf(L"a\"b c\"d e").m_Arguments, (Arguments{L"ab cd", L"e"}));
    EXPECT_EQ(splitOf(L"\"open a").m_Arguments, (Arguments{L"open a"}));
    // A leading blank already ends the name.
    EXPECT_EQ(splitOf(L" a").m_Arguments, (Arguments{L"", L"a"}));
}

TEST(CommandLine, BlanksAndTabsBetweenArgumentsAreSkipped)
{
    EXPECT_EQ(splitOf(L"p  a \t b\t\tc  ").m_Arguments, (Arguments{L"p", L"a", L"b", L"c"}));
    EXPECT_EQ(splitOf(L"p \n").m_Arguments, (Arguments{L"p", L"\n"}));
}

TEST(CommandLine, BackslashesCountBeforeAQuoteOnly)
{
    EXPECT_EQ(splitOf(L"p a\\b\\\\c\\").m_Arguments, (Arguments{L"p", L"a\\b\\\\c\\"}));
    EXPECT_EQ(splitOf(L"p a\\\"b c").m_Arguments, (Arguments{L"p", L"a\"b", L"c"}));
    EXPECT_EQ(splitOf(L"p a\\\\\"b c\"").m_Arguments, (Arguments{L"p", L"a\\b c"}));
    EXPECT_EQ(splitOf(L"p a\\\\\\\"b c").m_Arguments, (Arguments{L"p", L"a\\\"b", L"c"}));
    EXPECT_EQ(splitOf(L"p a\\\\\\\\\"b c\" d").m_Arguments, (Arguments{L"p", L"a\\\\b c", L"d"}));
    EXPECT_EQ(splitOf(L"p \"a\\\" b\"").m_Arguments, (Arguments{L"p", L"a\" b"}));
    EXPECT_EQ(splitOf(L"p \"a b\\\\\" c").m_Arguments, (Arguments{L"p", L"a b\\", L"c"}));
}

TEST(CommandLine, DoubledQuoteInsideOfQuotesGivesOneAndClosesThem)
{
    EXPECT_EQ(splitOf(L"p \"a\"\"b c").m_Arguments, (Arguments{L"p", L"a\"b", L"c"}));
    EXPECT_EQ(splitOf(L"p \"a\"\"\" b").m_Arguments, (Arguments{L"p", L"a\" b"}));
    EXPECT_EQ(splitOf(L"p \"\" a").m_Arguments, (Arguments{L"p", L"", L"a"}));
    EXPECT_EQ(splitOf(L"p \"").m_Arguments, (Arguments{L"p", L""}));
    EXPECT_EQ(splitOf(L"p \"\"\"").m_Arguments, (Arguments{L"p", L"\""}));
}

TEST(CommandLine, CountsHoldTheNullSlotAndTheTerminators)
{
    const Split split = splitOf(L"prog -a \"b c\"");
    EXPECT_EQ(split.m_NumArgs, 4);
    EXPECT_EQ(split.m_NumChars, 5 + 3 + 4);
    EXPECT_EQ(splitOf(L"").m_Arguments, (Arguments{L""}));
    EXPECT_EQ(splitOf(L"").m_NumArgs, 2);
    EXPECT_EQ(splitOf(L"").m_NumChars, 1);
    EXPECT_EQ(splitOf(nullptr).m_Arguments, (Arguments{L""}));
}

TEST(CommandLine, SkipSpaceOfNullIsNull)
{
    EXPECT_EQ(CZETUtility::SkipSpace(nullptr), nullptr);
    EXPECT_STREQ(CZETUtility::SkipSpace(L" \t\r\n a b"), L"a b");
    EXPECT_STREQ(CZETUtility::SkipSpace(L"a"), L"a");
    EXPECT_STREQ(CZETUtility::SkipSpace(L"  "), L"");
}

TEST(CommandLine, ParameterHasTheFormNameEqualsValue)
{
    EXPECT_EQ(CZETUtility::ParseParameterInt(L"prog -port=80", L"port", 5), 80);
    EXPECT_EQ(CZETUtility::ParseParameterInt(L"prog -port=80", L"po", 5), 5);
    EXPECT_EQ(CZETUtility::ParseParameterInt(L"prog -port=80", L"ports", 5), 5);
    EXPECT_EQ(parameterOf(L"prog -name=a=b", L"name"), L"a=b");
    EXPECT_EQ(parameterOf(L"prog name=a", L"name"), L"default");
    EXPECT_EQ(parameterOf(L"prog --name=a", L"name"), L"default");
    EXPECT_EQ(parameterOf(L"prog -name", L"name"), L"default");
    EXPECT_EQ(parameterOf(L"prog -name=", L"name"), L"");
    EXPECT_EQ(parameterOf(L"prog -Name=a", L"name"), L"default");
    EXPECT_EQ(parameterOf(L"", L"name"), L"default");
    EXPECT_EQ(parameterOf(nullptr, L"name"), L"default");
    EXPECT_EQ(parameterOf(L"prog -=a", nullptr), L"default");
    EXPECT_EQ(parameterOf(L"prog -=a", L""), L"a");
    EXPECT_TRUE(CZETUtility::ParseParameterStr(L"prog", L"name", nullptr).isEmpty());
    // The program is an argument like the others.
    EXPECT_EQ(parameterOf(L"-name=a", L"name"), L"a");
}

TEST(CommandLine, BlanksPartArgumentsUnlessTheyAreQuoted)
{
    EXPECT_EQ(parameterOf(L"prog -name = value", L"name"), L"default");
    EXPECT_EQ(parameterOf(L"prog -name= value", L"name"), L"");
    EXPECT_EQ(parameterOf(L"prog \"  -name  =  two words \"", L"name"), L"  two words ");
    EXPECT_EQ(parameterOf(L"prog -name=\"two words\"", L"name"), L"two words");
    EXPECT_EQ(parameterOf(L"prog \"- name=a\"", L"name"), L"default");
}

TEST(CommandLine, FirstOfTwoValuesHolds)
{
    EXPECT_EQ(parameterOf(L"prog -name=first -name=second", L"name"), L"first");
    EXPECT_EQ(parameterOf(L"prog -name -name=second", L"name"), L"second");
}

TEST(CommandLine, NumberIsTheBeginningOfTheText)
{
    const auto number = [](const wchar_t* line) { return CZETUtility::ParseParameterInt(line, L"n", 5); };
    EXPECT_EQ(number(L"p -n=12x"), 12);
    EXPECT_EQ(number(L"p \"-n= +12\""), 12);
    EXPECT_EQ(number(L"p -n=-12"), -12);
    EXPECT_EQ(number(L"p -n=x"), 0);
    EXPECT_EQ(number(L"p -n=-"), 0);
    EXPECT_EQ(number(L"p -n="), 5);
    EXPECT_EQ(number(L"p"), 5);
    EXPECT_EQ(number(L"p -n=2147483647"), INT_MAX);
    EXPECT_EQ(number(L"p -n=2147483648"), INT_MAX);
    EXPECT_EQ(number(L"p -n=-2147483648"), INT_MIN);
    EXPECT_EQ(number(L"p -n=-99999999999999999999999999"), INT_MIN);
}

TEST_F(CZETUtilityPaths, WorkPathIsTheExecutablesDirectoryAtFirst)
{
    const Wide path = CZETUtility::GetWorkPath();
    EXPECT_TRUE(path + L"/" == zet::getAppPath());
    EXPECT_TRUE(fs::equivalent(fs::current_path(), pathOf(path)));
    EXPECT_EQ(CZETUtility::GetWorkPath(), static_cast<const wchar_t*>(CZETUtility::work_path));
    // Only the first call makes it the current directory.
    fs::current_path(m_Root);
    CZETUtility::GetWorkPath();
    EXPECT_TRUE(fs::equivalent(fs::current_path(), m_Root));
}

TEST_F(CZETUtilityPaths, WorkPathIsReplacedOnlyWhenItCanBeEntered)
{
    CZETUtility::SetWorkPath(textOf(m_Root));
    EXPECT_STREQ(CZETUtility::GetWorkPath(), textOf(m_Root).getBuffer());
    EXPECT_TRUE(fs::equivalent(fs::current_path(), m_Root));
    const test::LogLines lines;
    const Wide missing = textOf(m_Root / "missing");
    CZETUtility::SetWorkPath(missing);
    EXPECT_STREQ(CZETUtility::GetWorkPath(), textOf(m_Root).getBuffer());
    EXPECT_TRUE(fs::equivalent(fs::current_path(), m_Root));
    EXPECT_EQ(lines.texts().size(), 1u);
    EXPECT_TRUE(lines.has(zet::Log::kError, std::wstring(L"不能设置当前目录[") + missing.getBuffer() + L"]"));
    CZETUtility::SetWorkPath(nullptr);
    EXPECT_TRUE(lines.has(zet::Log::kError, L"不能设置当前目录[]"));
    EXPECT_STREQ(CZETUtility::GetWorkPath(), textOf(m_Root).getBuffer());
}

TEST_F(CZETUtilityPaths, WorkPathIsCutAt275Units)
{
    const test::LogLines lines;
    const std::wstring path(400, L'x');
    CZETUtility::SetWorkPath(path.c_str());
    EXPECT_TRUE(lines.has(zet::Log::kError, L"不能设置当前目录[" + path.substr(0, 275) + L"]"));
    EXPECT_STREQ(CZETUtility::work_path, L"");
}

TEST_F(CZETUtilityPaths, TempPathIsMadeWithAllItsDirectories)
{
    const fs::path directory = m_Root / "a" / "b" / "c";
    const Wide text = textOf(directory);
    EXPECT_STREQ(CZETUtility::SetTempPath(text), text.getBuffer());
    EXPECT_NE(CZETUtility::tempFile, nullptr);
    EXPECT_TRUE(CZETUtility::initTempFile);
    EXPECT_EQ(filesIn(directory), 1u);
    EXPECT_TRUE(fs::exists(pathOf(CZETUtility::tempFileName)));
    EXPECT_GE(std::fputs("x", CZETUtility::tempFile), 0);
    EXPECT_STREQ(CZETUtility::GetTempPathW(), text.getBuffer());
    CZETUtility::DeleteTempFile();
    EXPECT_EQ(CZETUtility::tempFile, nullptr);
    EXPECT_FALSE(CZETUtility::initTempFile);
    EXPECT_EQ(filesIn(directory), 0u);
    CZETUtility::DeleteTempFile();
}

TEST_F(CZETUtilityPaths, AnotherTempPathTakesTheFileAway)
{
    CZETUtility::SetTempPath(textOf(m_Root / "a"));
    CZETUtility::SetTempPath(textOf(m_Root / "b/"));
    EXPECT_EQ(filesIn(m_Root / "a"), 0u);
    EXPECT_EQ(filesIn(m_Root / "b"), 1u);
    // The current path may be set again.
    CZETUtility::SetTempPath(CZETUtility::GetTempPathW());
    EXPECT_EQ(filesIn(m_Root / "b"), 1u);
    const fs::path path = pathOf(CZETUtility::tempPath);
    EXPECT_FALSE(path.has_filename());
    EXPECT_TRUE(fs::equivalent(path.parent_path(), m_Root / "b"));
}

TEST_F(CZETUtilityPaths, RelativeTempPathIsMadeBelowTheCurrentDirectory)
{
    fs::current_path(m_Root);
    EXPECT_STREQ(CZETUtility::SetTempPath(L"c//d"), L"c//d");
    EXPECT_EQ(filesIn(m_Root / "c" / "d"), 1u);
}

TEST_F(CZETUtilityPaths, TempFileThatIsGoneAlreadyCanBeDeleted)
{
    CZETUtility::SetTempPath(textOf(m_Root / "a"));
#ifndef _WIN32
    fs::remove(pathOf(CZETUtility::tempFileName));
#endif
    CZETUtility::DeleteTempFile();
    EXPECT_EQ(CZETUtility::tempFile, nullptr);
    EXPECT_EQ(filesIn(m_Root / "a"), 0u);
}

TEST_F(CZETUtilityPaths, WithoutAGivenPathItLiesInTheWorkDirectory)
{
    CZETUtility::SetWorkPath(textOf(m_Root));
    const Wide expected = textOf(m_Root / "tmp");
    EXPECT_STREQ(CZETUtility::GetTempPathW(), expected.getBuffer());
    EXPECT_EQ(filesIn(m_Root / "tmp"), 1u);
}

TEST_F(CZETUtilityPaths, GivenPathThatTakesNoFileGivesWayToTheWorkDirectory)
{
    CZETUtility::SetWorkPath(textOf(m_Root));
    std::ofstream(m_Root / "file") << "x";
    const Wide expected = textOf(m_Root / "tmp");
    EXPECT_STREQ(CZETUtility::SetTempPath(textOf(m_Root / "file" / "below")), expected.getBuffer());
    EXPECT_STREQ(CZETUtility::SetTempPath(L""), expected.getBuffer());
    EXPECT_EQ(filesIn(m_Root / "tmp"), 1u);
    EXPECT_EQ(filesIn(m_Root), 1u);
}

TEST_F(CZETUtilityPaths, WithNoPlaceForAFileItIsTheSystemsTempPath)
{
    CZETUtility::SetWorkPath(textOf(m_Root));
    std::ofstream(m_Root / "tmp") << "no directory";
    EXPECT_TRUE(Wide(CZETUtility::SetTempPath(textOf(m_Root / "tmp"))) == platform::getTempDirectory());
    EXPECT_EQ(CZETUtility::tempFile, nullptr);
    EXPECT_FALSE(CZETUtility::initTempFile);
    // While no file is open, each query tries again.
    fs::remove(m_Root / "tmp");
    EXPECT_STREQ(CZETUtility::GetTempPathW(), textOf(m_Root / "tmp").getBuffer());
}

TEST_F(CZETUtilityPaths, TempPathTakes130UnitsOfTheWorkPath)
{
    // A name that is truncated, with a position that can be recognized from the rest.
    const size_t behind = static_cast<size_t>(textOf(m_Root).getLength()) + 1;
    ASSERT_LT(behind, 120u);
    const fs::path work = m_Root / std::string(150 - behind, 'w');
    fs::create_directory(work);
    CZETUtility::SetWorkPath(textOf(work));
    const Wide expected = textOf(work).getSubString(0, 130) + L"/tmp";
    EXPECT_STREQ(CZETUtility::GetTempPathW(), expected.getBuffer());
    EXPECT_TRUE(fs::exists(m_Root / std::string(130 - behind, 'w') / "tmp"));
}

TEST_F(CZETUtilityPaths, GivenTempPathIsCutAt275Units)
{
#ifdef _WIN32
    GTEST_SKIP() << "Windows makes no file in so long a path";
#endif
    Wide path = textOf(m_Root);
    while (path.getLength() < 300)
        path += L"/0123456789";
    const Wide expected = path.getSubString(0, 275);
    EXPECT_STREQ(CZETUtility::SetTempPath(path), expected.getBuffer());
    EXPECT_TRUE(fs::is_directory(pathOf(expected)));
    EXPECT_FALSE(fs::exists(pathOf(path)));
}

#ifdef _WIN32
TEST_F(CZETUtilityPaths, GivenPathTooLongForWindowsGivesWayToTheWorkDirectory)
{
    CZETUtility::SetWorkPath(textOf(m_Root));
    const Wide expected = textOf(m_Root / "tmp");
    const std::wstring root = textOf(m_Root).getBuffer();
    for (const size_t length : {size_t{247}, size_t{260}, size_t{275}, size_t{300}})
    {
        std::wstring path = root;
        while (path.size() < length)
            path += L"/0123456789";
        EXPECT_STREQ(CZETUtility::SetTempPath(path.substr(0, length).c_str()), expected.getBuffer()) << length;
        EXPECT_EQ(filesIn(m_Root / "tmp"), 1u);
    }
}
#endif

TEST_F(CZETUtilityPaths, TempFileGoesWithTheProcess)
{
    fs::path directory = m_Root / "exit";
#ifdef _WIN32
    // The child is this program started again, with its own root: it gets the parent's directory as an argument.
    constexpr char kTold[] = "COMMONGROUND_TEST_DIRECTORY";
    if (const char* told = std::getenv(kTold))
        directory = told;
    else
        _putenv_s(kTold, directory.string().c_str());
#endif
    EXPECT_EXIT(
        {
            CZETUtility::SetTempPath(textOf(directory));
            CZETUtility::DeleteTempFile();
            CZETUtility::SetTempPath(textOf(directory));
            std::exit(filesIn(directory) == 1 ? 0 : 1);
        },
        testing::ExitedWithCode(0), "");
#ifdef _WIN32
    _putenv_s(kTold, "");
#endif
    EXPECT_EQ(filesIn(directory), 0u);
}

TEST(Hashes, MD5IsLowerCaseHexadecimal)
{
    EXPECT_STREQ(CZETUtility::GetMD5(""), "d41d8cd98f00b204e9800998ecf8427e");
    EXPECT_STREQ(CZETUtility::GetMD5("abc"), "900150983cd24fb0d6963f7d28e17f72");
    EXPECT_STREQ(
        CZETUtility::GetMD5("12345678901234567890123456789012345678901234567890123456789012345678901234567890"),
        "57edf4a22be3c955ac49da2e2107b67a");
}

TEST(Hashes, HmacIsBase64OfTwentyBytes)
{
    EXPECT_STREQ(CZETUtility::GetHMACSHA1("key", "The quick brown fox jumps over the lazy dog"),
                 "3nybhbi3iqa8ino29wqQcBydtNk=");
    EXPECT_STREQ(CZETUtility::GetHMACSHA1("", ""), "+9sdGxiqbAgyS31ktx+3Y3BpDh0=");
}

TEST(Hashes, KeyOfMoreThan64BytesIsHashedFirst)
{
    const std::string key(64, 'k');
    EXPECT_STREQ(CZETUtility::GetHMACSHA1(key.c_str(), "text"), "ef9V+mmPl6cDuwrUJocQBu50U0M=");
    EXPECT_STREQ(CZETUtility::GetHMACSHA1((key + "k").c_str(), "text"), "I83EQtupjIhlJV9PzhSson9ERLo=");
}

TEST(Hashes, DigestEndsAtItsFirstZeroByte)
{
    // 3c340bc75400510c...: five bytes before the zero.
    EXPECT_STREQ(CZETUtility::GetHMACSHA1("key", "127"), "PDQLx1Q=");
    // 0067c67d...: none.
    EXPECT_STREQ(CZETUtility::GetHMACSHA1("key", "290"), "");
}
