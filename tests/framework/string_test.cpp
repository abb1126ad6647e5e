#include "framework/string.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <map>

using zet::String_T;
using Wide = String_T<wchar_t>;
using Narrow = String_T<char>;

namespace
{

// Whether the text of a string is inside the object, that is, without an allocation.
template <class T>
bool liesInside(const String_T<T>& text)
{
    const auto object = reinterpret_cast<std::uintptr_t>(&text);
    const auto place = reinterpret_cast<std::uintptr_t>(text.getBuffer());
    return place >= object && place < object + sizeof text;
}

} // namespace

TEST(String, DefaultIsEmptyAndTerminated)
{
    const Wide text;
    EXPECT_TRUE(text.isEmpty());
    EXPECT_EQ(text.getLength(), 0);
    EXPECT_EQ(text.getBuffer()[0], L'\0');
    EXPECT_TRUE(liesInside(text));
}

TEST(String, TextOf11UnitsCostsNoAllocation)
{
    const Wide text(L"12345678901");
    EXPECT_EQ(text.getLength(), 11);
    EXPECT_TRUE(liesInside(text));
    EXPECT_TRUE(text == L"12345678901");
    EXPECT_TRUE(liesInside(Narrow("12345678901")));
}

TEST(String, TextOf12UnitsMovesOut)
{
    const Wide text(L"123456789012");
    EXPECT_EQ(text.getLength(), 12);
    EXPECT_FALSE(liesInside(text));
    EXPECT_EQ(text.getBuffer()[12], L'\0');
}

TEST(String, ComesFromNumbersAndNull)
{
    EXPECT_TRUE(Wide(-2147483647 - 1) == L"-2147483648");
    EXPECT_TRUE(Wide(0) == L"0");
    EXPECT_TRUE(Wide(static_cast<const wchar_t*>(nullptr)).isEmpty());
    Wide text(L"before");
    text = static_cast<const wchar_t*>(nullptr);
    EXPECT_TRUE(text.isEmpty());
}

TEST(String, AssignmentFromPointerStopsAtFirstZero)
{
    Wide text;
    text = L"ab\0cd";
    EXPECT_EQ(text.getLength(), 2);
}

TEST(String, CountedTextKeepsZeros)
{
    const Wide text(L"ab\0cd", 5);
    EXPECT_EQ(text.getLength(), 5);
    EXPECT_EQ(text[2], L'\0');
    const Wide copy(text);
    EXPECT_TRUE(copy == text);
    EXPECT_FALSE(copy == L"ab");
}

TEST(String, CopiesAreApart)
{
    Wide first(L"a text that does not fit inside");
    Wide second(first);
    second += L"!";
    EXPECT_EQ(first.getLength(), 31);
    EXPECT_EQ(second.getLength(), 32);
    first = second;
    EXPECT_TRUE(first == second);
    EXPECT_NE(first.getBuffer(), second.getBuffer());
}

TEST(String, SelfAssignmentChangesNothing)
{
    for (const wchar_t* content : {L"short", L"a text that does not fit inside"})
    {
        Wide text(content);
        const Wide& same = text;
        text = same;
        EXPECT_TRUE(text == content);
        text = text.getBuffer();
        EXPECT_TRUE(text == content);
    }
}

TEST(String, TakesAPieceOfItself)
{
    Wide text(L"a text that does not fit inside");
    text = text.getBuffer() + 2;
    EXPECT_TRUE(text == L"text that does not fit inside");
    text = text.getBuffer() + 23;
    EXPECT_TRUE(text == L"inside");
    Wide small(L"abcdef");
    small = small.getBuffer() + 3;
    EXPECT_TRUE(small == L"def");
}

TEST(String, AppendsItself)
{
    Wide text(L"abc");
    for (int i = 0; i < 4; ++i)
        text += text;
    EXPECT_EQ(text.getLength(), 48);
    text += text.getBuffer() + 45;
    EXPECT_EQ(text.getLength(), 51);
    for (int i = 0; i < 51; ++i)
        ASSERT_EQ(text[i], L"abc"[i % 3]) << i;
}

TEST(String, MoveLeavesAnEmptyText)
{
    for (const wchar_t* content : {L"short", L"a text that does not fit inside"})
    {
        Wide from(content);
        Wide to(std::move(from));
        EXPECT_TRUE(to == content);
        EXPECT_TRUE(from.isEmpty()); // NOLINT(bugprone-use-after-move): what is left is the point
        from = L"again";
        EXPECT_TRUE(from == L"again");
        to = std::move(from);
        EXPECT_TRUE(to == L"again");
        EXPECT_TRUE(liesInside(to));
    }
}

TEST(String, SwapsInlineWithMovedOut)
{
    Wide small(L"small");
    Wide large(L"a text that does not fit inside");
    small.swap(large);
    EXPECT_TRUE(small == L"a text that does not fit inside");
    EXPECT_TRUE(large == L"small");
    EXPECT_TRUE(liesInside(large));
    large.swap(large);
    EXPECT_TRUE(large == L"small");
}

TEST(String, PlusJoinsTextsAndPointers)
{
    const Wide a(L"a");
    const Wide b(L"b");
    EXPECT_TRUE(a + b == L"ab");
    EXPECT_TRUE(a + L"c" == L"ac");
    EXPECT_TRUE(L"c" + a == L"ca");
    EXPECT_TRUE(a + static_cast<const wchar_t*>(nullptr) == L"a");
}

TEST(String, OrderIsByUtf16Unit)
{
    EXPECT_TRUE(Wide(L"a") < Wide(L"b"));
    EXPECT_TRUE(Wide(L"a") < Wide(L"ab"));
    EXPECT_FALSE(Wide(L"ab") < L"a");
    EXPECT_FALSE(Wide(L"a") < Wide(L"a"));
    // U+10000 starts with the unit 0xD800 and so sorts before U+FF21 in 16-bit and in 32-bit text alike.
    EXPECT_TRUE(Wide(L"\U00010000") < Wide(L"\uFF21"));
    EXPECT_FALSE(Wide(L"\uFF21") < Wide(L"\U00010000"));
    EXPECT_TRUE(Wide(L"\uD7FF") < Wide(L"\U00010000"));
    EXPECT_TRUE(Wide(L"\U00010000") < Wide(L"\U00010001"));
    EXPECT_TRUE(Wide(L"\U0001F600") < Wide(L"\U0010FFFF"));
    // Narrow units are bytes, not signed numbers.
    EXPECT_TRUE(Narrow("z") < Narrow("\xC3\xA4"));
}

TEST(String, MapAscendsByUnit)
{
    std::map<Wide, int> map;
    map[L"\uFF21"] = 3;
    map[L"\U00010000"] = 2;
    map[L"A"] = 1;
    int expected = 1;
    for (const auto& entry : map)
        EXPECT_EQ(entry.second, expected++);
}

TEST(String, FindStartsAtThePlace)
{
    const Wide text(L"abcabc");
    EXPECT_EQ(text.find(L'b', 0), 1);
    EXPECT_EQ(text.find(L'b', 2), 4);
    EXPECT_EQ(text.find(L'b', 5), -1);
    EXPECT_EQ(text.find(L'a', -3), 0);
    EXPECT_EQ(text.find(L'a', 99), -1);
}

TEST(String, SubStringIsCutAtTheEnd)
{
    const Wide text(L"abcdef");
    EXPECT_TRUE(text.getSubString(2, 3) == L"cde");
    EXPECT_TRUE(text.getSubString(4, 99) == L"ef");
    EXPECT_TRUE(text.getSubString(4, 0x7FFFFFFF) == L"ef");
    EXPECT_TRUE(text.getSubString(6, 1).isEmpty());
    EXPECT_TRUE(text.getSubString(0, -1).isEmpty());
    EXPECT_TRUE(text.getSubString(-2, 2) == L"ab");
}

TEST(String, TrimTakesWhiteSpaceOffBothEnds)
{
    Narrow text(" \t\r\n10.0.0.1 allow\v\f ");
    text.trim();
    EXPECT_TRUE(text == "10.0.0.1 allow");
    Narrow blank(" \n ");
    EXPECT_TRUE(blank.trim().isEmpty());
    EXPECT_EQ(text.getBufferLength(), 14);
}

TEST(String, FormatMayUseItsOwnText)
{
    Wide text(L"abc");
    text.format(L"<%s %d>", text.getBuffer(), 7);
    EXPECT_TRUE(text == L"<abc 7>");
}

TEST(String, ResizeForOverwriteTerminates)
{
    Wide text(L"abc");
    wchar_t* place = text.resizeForOverwrite(40);
    EXPECT_EQ(text.getLength(), 40);
    EXPECT_EQ(text.getBuffer()[40], L'\0');
    EXPECT_EQ(place, text.getBuffer());
    text.resizeForOverwrite(-1);
    EXPECT_TRUE(text.isEmpty());
}

TEST(String, TruncateOnlyShortens)
{
    Wide text(L"abcdef");
    text.truncate(9);
    text.truncate(-1);
    EXPECT_EQ(text.getLength(), 6);
    text.truncate(2);
    EXPECT_TRUE(text == L"ab");
    text.clear();
    EXPECT_TRUE(text.isEmpty());
}
