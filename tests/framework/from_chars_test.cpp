// The implementation by the C library, which only some standard libraries need, compared with the standard library's.
#include "framework/platform/from_chars.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace
{

#ifndef _WIN32
template <class Float>
void expectSame(const std::string& text, std::chars_format format)
{
    Float own = 42;
    Float same = 42;
    const char* const end = text.data() + text.size();
    const std::from_chars_result expected = std::from_chars(text.data(), end, own, format);
    const std::from_chars_result result = zet::platform::fromCharsByC(text.data(), end, same, format);
    EXPECT_EQ(result.ec, expected.ec) << text;
    EXPECT_EQ(result.ptr - text.data(), expected.ptr - text.data()) << text;
    EXPECT_EQ(same, own) << text;
}

TEST(FromChars, TheCLibraryReadsTheSame)
{
    std::vector<std::string> texts = {"0",       "-0",        "1",
                                      "-1.5",    ".5",        "5.",
                                      "1e10",    "1e",        "1e+",
                                      "3.4e38",  "3.5e38",    "-3.5e38",
                                      "1e-45",   "1e-46",     "1e400",
                                      "1e-400",  "",          "-",
                                      "e5",      "16777217",  "1.17549435e-38",
                                      "7x",      "4,5",       "0.1",
                                      "-.25e2z", "123456789", "2.2250738e-308"};
    texts.push_back("0." + std::string(60, '0') + "1");
    texts.push_back("1" + std::string(60, '0'));
    for (const std::string& text : texts)
    {
        expectSame<float>(text, std::chars_format::general);
        expectSame<double>(text, std::chars_format::general);
    }
}

TEST(FromChars, TheCLibraryReadsTheSameHexadecimals)
{
    for (const char* text : {"1", "1p3", "-1.8p-2", "a.fp0", "p1", "", "-", "1p200", "1p-200", "fFz", ".8"})
    {
        expectSame<float>(text, std::chars_format::hex);
        expectSame<double>(text, std::chars_format::hex);
    }
}
#endif

TEST(FromChars, TakesTheStandardLibrarysOwnWhereItIs)
{
    const std::string text = "2.5;";
    float value = 0;
    const auto result = zet::platform::fromChars(text.data(), text.data() + text.size(), value);
    EXPECT_EQ(result.ec, std::errc());
    EXPECT_EQ(*result.ptr, ';');
    EXPECT_EQ(value, 2.5f);
}

} // namespace
