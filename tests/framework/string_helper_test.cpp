#include "framework/string_helper.h"

#include <gtest/gtest.h>

#include <string>

using zet::StringHelper;

namespace
{

std::wstring wide(const std::string& text)
{
    return StringHelper::utf8ToWide(text.c_str()).getBuffer();
}

std::string narrow(const std::wstring& text)
{
    return StringHelper::wideToUtf8(text.c_str()).getBuffer();
}

} // namespace

TEST(StringHelper, TextsGoBothWays)
{
    const struct
    {
        const char* m_Narrow;
        const wchar_t* m_Wide;
    } cases[] = {{"", L""},
                 {"plain", L"plain"},
                 {"\xC2\x80\xDF\xBF", L"\u0080\u07FF"},
                 {"\xE0\xA0\x80\xEF\xBF\xBF", L"\u0800\uFFFF"},
                 {"\xE4\xB8\xAD\xE6\x96\x87", L"\u4E2D\u6587"},
                 {"\xF0\x90\x80\x80\xF4\x8F\xBF\xBF", L"\U00010000\U0010FFFF"},
                 {"\xF0\x9F\x98\x80 end", L"\U0001F600 end"}};
    for (const auto& entry : cases)
    {
        EXPECT_EQ(wide(entry.m_Narrow), entry.m_Wide);
        EXPECT_EQ(narrow(entry.m_Wide), entry.m_Narrow);
    }
    // A pair of 16-bit units is one character in 32-bit text too.
    EXPECT_EQ(narrow({static_cast<wchar_t>(0xD83D), static_cast<wchar_t>(0xDE00)}), "\xF0\x9F\x98\x80");
}

TEST(StringHelper, NullIsEmpty)
{
    EXPECT_TRUE(StringHelper::utf8ToWide(nullptr).isEmpty());
    EXPECT_TRUE(StringHelper::wideToUtf8(nullptr).isEmpty());
}

TEST(StringHelper, InvalidUtf8IsReplaced)
{
    EXPECT_EQ(wide("a\x80z"), L"a\uFFFDz");
    EXPECT_EQ(wide("a\xFFz"), L"a\uFFFDz");
    EXPECT_EQ(wide("a\xE4\xB8z"), L"a\uFFFDz");
    EXPECT_EQ(wide("a\xE4\xB8"), L"a\uFFFD");
    EXPECT_EQ(wide("a\xF0"), L"a\uFFFD");
    // Overlong sequences.
    EXPECT_EQ(wide("\xC0\x80"), L"\uFFFD\uFFFD");
    EXPECT_EQ(wide("\xE0\x80\x80"), L"\uFFFD\uFFFD\uFFFD");
    // Half a surrogate pair, and above the last code point.
    EXPECT_EQ(wide("\xED\xA0\x80"), L"\uFFFD\uFFFD\uFFFD");
    EXPECT_EQ(wide("\xF4\x90\x80\x80"), L"\uFFFD\uFFFD\uFFFD\uFFFD");
}

TEST(StringHelper, InvalidUnitIsReplaced)
{
    const auto unit = [](unsigned value) { return std::wstring(1, static_cast<wchar_t>(value)); };
    EXPECT_EQ(narrow(unit(0xD800)), "\xEF\xBF\xBD");
    EXPECT_EQ(narrow(unit(0xDC00)), "\xEF\xBF\xBD");
    EXPECT_EQ(narrow(unit(0xD800) + L"a"), "\xEF\xBF\xBD"
                                           "a");
    EXPECT_EQ(narrow(unit(0xDC00) + unit(0xD800)), "\xEF\xBF\xBD\xEF\xBF\xBD");
    if (sizeof(wchar_t) == 4)
    {
        EXPECT_EQ(narrow(unit(0x110000)), "\xEF\xBF\xBD");
        EXPECT_EQ(narrow(unit(0xFFFFFFFF)), "\xEF\xBF\xBD");
    }
}

TEST(StringHelper, CharactersOfEveryLengthGoRound)
{
    for (unsigned character = 1; character <= 0x10FFFF; character += character < 0x11000 ? 1 : 17)
    {
        if (character >= 0xD800 && character <= 0xDFFF)
            continue;
        std::wstring text;
        if (sizeof(wchar_t) == 2 && character > 0xFFFF)
        {
            text += static_cast<wchar_t>(0xD800 + ((character - 0x10000) >> 10));
            text += static_cast<wchar_t>(0xDC00 + (character & 0x3FF));
        }
        else
        {
            text += static_cast<wchar_t>(character);
        }
        ASSERT_EQ(wide(narrow(text)), text) << character;
    }
}
