#include "playerdata/text_scan.h"

#include <gtest/gtest.h>

#include <limits>
#include <string>

namespace
{

// The number that a scanner reads, 77 if it reads none.
int intOf(std::wstring_view record)
{
    int number = 77;
    TextScanner(record).takeInt(number);
    return number;
}

bool isInt(std::wstring_view record)
{
    int number = 0;
    return TextScanner(record).takeInt(number);
}

} // namespace

TEST(TextScanner, TakesDecimalNumbers)
{
    EXPECT_EQ(intOf(L"0"), 0);
    EXPECT_EQ(intOf(L"12x"), 12);
    EXPECT_EQ(intOf(L"007"), 7);
    EXPECT_EQ(intOf(L"-3"), -3);
    EXPECT_EQ(intOf(L"+3"), 3);
    EXPECT_EQ(intOf(L"3.9"), 3);
    EXPECT_EQ(intOf(L"0x10"), 0);
}

TEST(TextScanner, SkipsWhiteSpaceBeforeNumbersOnly)
{
    EXPECT_EQ(intOf(L" \t\n\v\f\r 5"), 5);
    int number = 0;
    TextScanner scanner(L"1 |2");
    EXPECT_TRUE(scanner.takeInt(number));
    EXPECT_FALSE(scanner.takeUnit(L'|'));
    EXPECT_FALSE(isInt(L"- 5"));
    // Blanks and digits of other scripts do not count.
    EXPECT_FALSE(isInt(L"\x3000"
                       L"5"));
    EXPECT_FALSE(isInt(L"\xFF15"));
}

TEST(TextScanner, WithoutDigitsTheNumberStays)
{
    for (const wchar_t* record : {L"", L" ", L"x", L"-", L"+", L"--5", L"+-5", L"|5", L".5"})
        EXPECT_EQ(intOf(record), 77);
}

TEST(TextScanner, NumberBeyond32BitsKeepsItsLowHalf)
{
    EXPECT_EQ(intOf(L"2147483647"), std::numeric_limits<int>::max());
    EXPECT_EQ(intOf(L"-2147483648"), std::numeric_limits<int>::min());
    EXPECT_EQ(intOf(L"2147483648"), std::numeric_limits<int>::min());
    EXPECT_EQ(intOf(L"4294967295"), -1);
    EXPECT_EQ(intOf(L"4294967299"), 3);
    EXPECT_EQ(intOf(L"-4294967299"), -3);
    // 10^20 is 0x56BC75E2D63100000.
    EXPECT_EQ(intOf(L"100000000000000000000"), 0x63100000);
    EXPECT_EQ(intOf(L"00000000000000000000000000000000000000000000000008"), 8);
}

TEST(TextScanner, TakesTextUpToAUnit)
{
    zet::String_T<wchar_t> text;
    TextScanner scanner(L" a b|rest");
    EXPECT_TRUE(scanner.takeText(L'|', 9, text));
    EXPECT_TRUE(text == L" a b");
    EXPECT_TRUE(scanner.takeUnit(L'|'));
    EXPECT_TRUE(scanner.takeText(L'|', 9, text));
    EXPECT_TRUE(text == L"rest");
    EXPECT_FALSE(scanner.takeUnit(L'|'));
    EXPECT_FALSE(scanner.takeText(L'|', 9, text));
    EXPECT_TRUE(text == L"rest");
}

TEST(TextScanner, TextIsOneUnitAtLeastAndNoMoreThanFit)
{
    zet::String_T<wchar_t> text(L"old");
    EXPECT_FALSE(TextScanner(L"|x").takeText(L'|', 9, text));
    EXPECT_FALSE(TextScanner(L"").takeText(L'|', 9, text));
    EXPECT_FALSE(TextScanner(L"12345|").takeText(L'|', 4, text));
    EXPECT_TRUE(text == L"old");
    EXPECT_TRUE(TextScanner(L"1234|").takeText(L'|', 4, text));
    EXPECT_TRUE(text == L"1234");
}

TEST(TextScanner, ZeroUnitEndsTheRecord)
{
    const std::wstring record(L"12\0"
                              L"34|5",
                              7);
    TextScanner scanner(record);
    int number = 0;
    EXPECT_TRUE(scanner.takeInt(number));
    EXPECT_EQ(number, 12);
    EXPECT_FALSE(scanner.takeInt(number));
    EXPECT_FALSE(scanner.takeUnit(L'|'));
    EXPECT_FALSE(scanner.takeUnit(L'\0'));
    zet::String_T<wchar_t> text;
    EXPECT_TRUE(TextScanner(record).takeText(L'|', 9, text));
    EXPECT_TRUE(text == L"12");
}

TEST(TextScanner, RecordsEndInATerminator)
{
    std::wstring_view text = L"a__bc_rest";
    std::wstring_view record;
    EXPECT_TRUE(TextScanner::takeRecord(text, L'_', record));
    EXPECT_EQ(record, L"a");
    EXPECT_TRUE(TextScanner::takeRecord(text, L'_', record));
    EXPECT_EQ(record, L"");
    EXPECT_TRUE(TextScanner::takeRecord(text, L'_', record));
    EXPECT_EQ(record, L"bc");
    EXPECT_FALSE(TextScanner::takeRecord(text, L'_', record));
    text = L"";
    EXPECT_FALSE(TextScanner::takeRecord(text, L'_', record));
}
