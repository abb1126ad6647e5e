// Numbers of some conversions differed from C's printf: "%+x" showed a sign, "%.0d" of 0 showed a digit, "%010a" padded
// before "0x", "%#g" of 0 lost its zeros. Every combination of flags, width and precision is now compared with the C
// library.
#include "framework/format.h"
#include "framework/string.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <limits>
#include <string>

namespace
{

std::string shown(const char* pattern, double value)
{
    return zet::formatText(pattern, value).getBuffer();
}

std::string shown(const char* pattern, int value)
{
    return zet::formatText(pattern, value).getBuffer();
}

TEST(Bugs, NumbersStandAsPrintfHasThem)
{
    EXPECT_EQ(shown("%+x|", 255), "ff|");
    EXPECT_EQ(shown("% o|", 8), "10|");
    EXPECT_EQ(shown("%+u|", 7), "7|");
    EXPECT_EQ(shown("%.0d|", 0), "|");
    EXPECT_EQ(shown("%5.0d|", 0), "     |");
    EXPECT_EQ(shown("%+.0d|", 0), "+|");
    EXPECT_EQ(shown("%#.0o|", 0), "0|");
    EXPECT_EQ(shown("%#.0x|", 0), "|");
    EXPECT_EQ(shown("%05.3d|", 7), "  007|");
    EXPECT_EQ(shown("%#08x|", 255), "0x0000ff|");
    EXPECT_EQ(shown("%010a|", 1.0), "0x00001p+0|");
    EXPECT_EQ(shown("%+010.1A|", -1.0), "-0X01.0P+0|");
    EXPECT_EQ(shown("%#g|", 0.0), "0.00000|");
    EXPECT_EQ(shown("%#.0g|", 0.0), "0.|");
    EXPECT_EQ(shown("%#g|", 1.5), "1.50000|");
    EXPECT_EQ(shown("%#.3g|", 100000.0), "1.00e+05|");
    // The GNU C library itself loses zeros here, so the sweep below omits this number.
    EXPECT_EQ(shown("%#g|", 999999.5), "1.00000e+06|");
    EXPECT_EQ(shown("%06f|", std::numeric_limits<double>::infinity()), "   inf|");
    EXPECT_STREQ(zet::formatText(L"%+x|%.0d|%010a|%#g", 255, 0, 1.0, 0.0), L"ff||0x00001p+0|0.00000");
}

#ifdef __GLIBC__

// Calls a function with each pattern of flags, width and precision for each letter.
template <class Call>
void withEachPattern(const char* letters, Call call)
{
    constexpr char kFlags[] = {'-', '+', ' ', '#', '0'};
    for (const char* letter = letters; *letter; ++letter)
        for (unsigned int flags = 0; flags < 32; ++flags)
            for (const char* const width : {"", "1", "9", "25", "*"})
                for (const char* const precision : {"", ".", ".0", ".1", ".3", ".20"})
                {
                    std::string pattern = "%";
                    for (unsigned int flag = 0; flag < 5; ++flag)
                        if (flags >> flag & 1)
                            pattern += kFlags[flag];
                    call((pattern + width + precision + *letter).c_str(), *width == '*');
                }
}

template <class Value>
void compare(const char* letters, Value value)
{
    withEachPattern(letters,
                    [value](const char* pattern, bool takesWidth)
                    {
                        char expected[512];
                        if (takesWidth)
                        {
                            std::snprintf(expected, sizeof expected, pattern, -12, value);
                            ASSERT_STREQ(zet::formatText(pattern, -12, value), expected) << pattern << " " << value;
                            return;
                        }
                        std::snprintf(expected, sizeof expected, pattern, value);
                        ASSERT_STREQ(zet::formatText(pattern, value), expected) << pattern << " " << value;
                    });
}

TEST(Bugs, EveryPatternOfANumberGivesWhatPrintfGives)
{
    for (const int value : {0, 1, -1, 8, 255, -70000, std::numeric_limits<int>::max(), std::numeric_limits<int>::min()})
        compare("di", value);
    for (const unsigned int value : {0U, 1U, 8U, 255U, 4000000000U})
        compare("uxXo", value);
    for (const double value : {0.0, -0.0, 1.0, -1.5, 3.14159265, 1e10, -1e-10, 100000.0, 1234567.0, 999999.25, 0.0001,
                               0.00001234, 2.5, 1e300, 2.2250738585072014e-308, std::numeric_limits<double>::infinity(),
                               -std::numeric_limits<double>::infinity(), std::numeric_limits<double>::quiet_NaN()})
        compare("fFeEgGaA", value);
}

#endif

} // namespace
