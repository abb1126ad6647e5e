#include "framework/format.h"

#include "framework/string.h"

#include <gtest/gtest.h>

#include <clocale>
#include <cstdio>
#include <limits>
#include <string>

using zet::formatText;

namespace
{

template <class... Args>
std::wstring wide(const wchar_t* pattern, const Args&... args)
{
    return formatText(pattern, args...).getBuffer();
}

template <class... Args>
std::string narrow(const char* pattern, const Args&... args)
{
    return formatText(pattern, args...).getBuffer();
}

enum Colour : unsigned char
{
    kRed = 200
};

} // namespace

TEST(Format, NumbersStandAsInPrintf)
{
    EXPECT_EQ(wide(L"%d %i %u", -1, 2, 3u), L"-1 2 3");
    EXPECT_EQ(wide(L"%x %X %o", 255, 255, 8), L"ff FF 10");
    EXPECT_EQ(wide(L"%04x|%04x|%02d|%03d", 0x1A, 0xFFFFF, 7, 1234), L"001a|fffff|07|1234");
    EXPECT_EQ(wide(L"%5d|%-5d|%+d|% d|%05d", 42, 42, 42, 42, -42), L"   42|42   |+42| 42|-0042");
    EXPECT_EQ(wide(L"%#x %#o", 255, 8), L"0xff 010");
    EXPECT_EQ(wide(L"%.4d|%8.3d", 7, 7), L"0007|     007");
}

TEST(Format, FloatsStandAsInPrintf)
{
    const double values[] = {0.0, 1.0, -1.5, 3.14159265, 1e10, 1e-10, 123456.789, 2.5, -0.0};
    char expected[64];
    for (const double value : values)
    {
        for (const char* pattern : {"%f", "%g", "%e", "%.2f", "%10.3f", "%-10.1f|", "%+.0f", "%012.4f", "%G", "%E"})
        {
            std::snprintf(expected, sizeof expected, pattern, value);
            EXPECT_EQ(narrow(pattern, value), expected) << pattern;
        }
    }
    EXPECT_EQ(wide(L"%f", 0.1f), L"0.100000");
    EXPECT_EQ(wide(L"%f %f", std::numeric_limits<double>::infinity(), 1e20), L"inf 100000000000000000000.000000");
}

TEST(Format, LongTakesSixtyFourBits)
{
    EXPECT_EQ(wide(L"%ld", 0x7FFFFFFFFFFFFFFFLL), L"9223372036854775807");
    EXPECT_EQ(wide(L"%lld %ld %d", -5LL, -5, -5LL), L"-5 -5 -5");
    EXPECT_EQ(wide(L"%lu %llu", 0xFFFFFFFFFFFFFFFFULL, 7), L"18446744073709551615 7");
    EXPECT_EQ(wide(L"%d", 5000000000LL), L"5000000000");
    EXPECT_EQ(wide(L"%lx", -1), L"ffffffff");
    EXPECT_EQ(wide(L"%zu", sizeof(char)), L"1");
}

TEST(Format, NumbersConvertToWhatThePatternAsks)
{
    EXPECT_EQ(wide(L"%d", 4294967295u), L"-1");
    EXPECT_EQ(wide(L"%u", -1), L"4294967295");
    EXPECT_EQ(wide(L"%x", static_cast<short>(-1)), L"ffffffff");
    EXPECT_EQ(wide(L"%d %d", static_cast<unsigned short>(65535), static_cast<short>(-3)), L"65535 -3");
    EXPECT_EQ(wide(L"%d %d", true, static_cast<unsigned char>(200)), L"1 200");
    EXPECT_EQ(wide(L"%hd %hhd %hx %hhx", 70000, 300, -1, -1), L"4464 44 ffff ff");
    EXPECT_EQ(wide(L"%d", 3.9), L"3");
    EXPECT_EQ(wide(L"%f", 3), L"3.000000");
    EXPECT_EQ(wide(L"%.1f", 3u), L"3.0");
    EXPECT_EQ(wide(L"%d", kRed), L"200");
}

TEST(Format, WideTextsAreWide)
{
    const zet::String_T<wchar_t> name(L"\u4E2D\u6587");
    EXPECT_EQ(wide(L"[%s] [%5s] [%-5s] [%.1s] [%ls]", name, name, name, name, name),
              L"[\u4E2D\u6587] [   \u4E2D\u6587] [\u4E2D\u6587   ] [\u4E2D] [\u4E2D\u6587]");
    EXPECT_EQ(wide(L"%s", L"literal"), L"literal");
    EXPECT_EQ(narrow("%s", "literal"), "literal");
}

TEST(Format, NullTextIsShown)
{
    EXPECT_EQ(wide(L"[%s]", static_cast<const wchar_t*>(nullptr)), L"[(null)]");
    EXPECT_EQ(narrow("[%s]", static_cast<const char*>(nullptr)), "[(null)]");
    EXPECT_EQ(wide(L"[%8s]", nullptr), L"[  (null)]");
}

TEST(Format, PrecisionNeedsNoTerminator)
{
    const wchar_t units[] = {L'a', L'b', L'c'};
    EXPECT_EQ(wide(L"%.3s", static_cast<const wchar_t*>(units)), L"abc");
}

TEST(Format, UnitsAndPointers)
{
    EXPECT_EQ(wide(L"%c%c|%3c|%-3c|", L'\u4E2D', 65, L'x', L'y'), L"\u4E2DA|  x|y  |");
    EXPECT_EQ(narrow("%c", 'z'), "z");
    EXPECT_EQ(formatText(L"a%cb", 0).getLength(), 3);
    EXPECT_EQ(wide(L"%p", reinterpret_cast<void*>(static_cast<size_t>(0x1234))), L"0x1234");
    EXPECT_EQ(wide(L"%p", static_cast<void*>(nullptr)), L"(nil)");
}

TEST(Format, StarsTakeTheirNumbersFromTheArguments)
{
    EXPECT_EQ(wide(L"[%*d] [%-*d] [%*d]", 4, 7, 4, 7, -4, 7), L"[   7] [7   ] [7   ]");
    EXPECT_EQ(wide(L"[%.*f] [%.*s]", 2, 1.5, 2, L"abc"), L"[1.50] [ab]");
    EXPECT_EQ(wide(L"[%.*d]", -1, 7), L"[7]");
}

TEST(Format, PercentStandsForItself)
{
    EXPECT_EQ(wide(L"100%%"), L"100%");
    EXPECT_EQ(wide(L"%d%%", 5), L"5%");
    EXPECT_EQ(wide(L""), L"");
}

TEST(Format, MismatchedPatternIsReturned)
{
    EXPECT_EQ(wide(L"%d"), L"%d");
    EXPECT_EQ(wide(L"%d %d", 1), L"%d %d");
    EXPECT_EQ(wide(L"%s", 5), L"%s");
    EXPECT_EQ(wide(L"%d", L"text"), L"%d");
    EXPECT_EQ(wide(L"%s", "narrow"), L"%s");
    EXPECT_EQ(narrow("%s", L"wide"), "%s");
    EXPECT_EQ(wide(L"%f", L"text"), L"%f");
    EXPECT_EQ(wide(L"%p", 5), L"%p");
    EXPECT_EQ(wide(L"%c", L"text"), L"%c");
    EXPECT_EQ(wide(L"%n", 5), L"%n");
    EXPECT_EQ(wide(L"%1$d", 5), L"%1$d");
    EXPECT_EQ(wide(L"end %", 5), L"end %");
    EXPECT_EQ(wide(L"%\u4E2D", 5), L"%\u4E2D");
    EXPECT_EQ(wide(L"%*d", L"text", 5), L"%*d");
    EXPECT_EQ(wide(L"%*d", 2000000000, 5), L"%*d");
    EXPECT_EQ(wide(L"%99999999999d", 5), L"%99999999999d");
    EXPECT_EQ(wide(L"%d", 1e300), L"%d");
    EXPECT_EQ(wide(L"%d", std::numeric_limits<double>::quiet_NaN()), L"%d");
    EXPECT_TRUE(formatText(static_cast<const wchar_t*>(nullptr), 5).isEmpty());
}

TEST(Format, ArgumentsToSpareAreLeftOut)
{
    EXPECT_EQ(wide(L"%d", 1, 2, L"three"), L"1");
}

TEST(Format, LongResultsAreWhole)
{
    const std::wstring text(5000, L'x');
    EXPECT_EQ(wide(L"%s|%s", text.c_str(), text.c_str()), text + L"|" + text);
    EXPECT_EQ(wide(L"%3000d", 1).size(), 3000u);
}

TEST(Format, LocaleHasNoSay)
{
    const std::string before = std::setlocale(LC_ALL, nullptr);
    // If the machine has no such locale, the test still checks the plain form.
    for (const char* name : {"de_DE.UTF-8", "fr_FR.UTF-8", ""})
        if (std::setlocale(LC_ALL, name))
            break;
    EXPECT_EQ(wide(L"%f %.1f %d", 1.5, 1234567.5, 1234567), L"1.500000 1234567.5 1234567");
    EXPECT_EQ(wide(L"%s", L"\u4E2D"), L"\u4E2D");
    std::setlocale(LC_ALL, before.c_str());
}
