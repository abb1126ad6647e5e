// A float's text outside the range of float was decided by the sign of its exponent alone: "0." with 53 zeros and a 1
// was read as infinity, and a 1 with 60 zeros and "e-5" as 0. The position of the first nonzero digit together with the
// exponent decides; every text is compared with the C library's reading.
#include "packaging/float_text.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <cstring>
#include <limits>
#include <random>
#include <string>

namespace
{

bool sameBits(float a, float b)
{
    return std::memcmp(&a, &b, sizeof a) == 0;
}

void check(const std::string& text)
{
    float expected = -7;
    float got = -7;
    const bool parses = std::sscanf(text.c_str(), "%f", &expected) == 1;
    ASSERT_EQ(wire::scanFloat(text.data(), static_cast<int>(text.size()), got), parses) << text;
    ASSERT_TRUE(sameBits(got, expected)) << text << " gives " << got << ", not " << expected;
}

std::string zeros(int count)
{
    return std::string(static_cast<size_t>(count), '0');
}

TEST(Bugs, AFloatOfManyDigitsIsWhatItsFirstDigitSays)
{
    float value = -7;
    const std::string small = "0." + zeros(53) + "1";
    EXPECT_TRUE(wire::scanFloat(small.data(), static_cast<int>(small.size()), value));
    EXPECT_EQ(value, 0.0f);
    const std::string large = "1" + zeros(60) + "e-5";
    EXPECT_TRUE(wire::scanFloat(large.data(), static_cast<int>(large.size()), value));
    EXPECT_EQ(value, std::numeric_limits<float>::infinity());
    const std::string back = "-0." + zeros(53) + "1e60";
    EXPECT_TRUE(wire::scanFloat(back.data(), static_cast<int>(back.size()), value));
    EXPECT_EQ(value, -1e6f);
}

// Compared with a library that rounds every text correctly.
#ifdef __GLIBC__
TEST(Bugs, FloatsOfManyDigitsAreReadAsTheCLibraryReadsThem)
{
    std::mt19937 random(53);
    const auto upTo = [&random](unsigned int most) { return static_cast<int>(random() % (most + 1)); };
    for (int i = 0; i < 300000; ++i)
    {
        const bool isHex = upTo(3) == 0;
        const char* const digits = isHex ? "0123456789abcdefABCDEF" : "0123456789";
        const auto someDigits = [&](int count)
        {
            std::string text;
            for (int k = 0; k < count; ++k)
                text += digits[upTo(isHex ? 21 : 9)];
            return text;
        };
        std::string text = upTo(3) == 0 ? "-" : "";
        text += isHex ? "0x" : "";
        // "0x." without a digit is not a valid number, and C libraries differ on it.
        text += zeros(upTo(2) == 0 ? upTo(60) : 0) + someDigits(upTo(2) == 0 ? 1 + upTo(59) : 1 + upTo(2));
        if (upTo(3) != 0)
            text += "." + zeros(upTo(1) == 0 ? upTo(70) : 0) + someDigits(upTo(2) == 0 ? upTo(60) : upTo(3));
        if (upTo(1) == 0)
            text += (isHex ? "p" : "e") + std::string(upTo(1) == 0 ? "-" : "") + zeros(upTo(3)) +
                    std::to_string(upTo(isHex ? 400 : 120));
        ASSERT_LE(text.size(), 255u);
        ASSERT_NO_FATAL_FAILURE(check(text));
    }
}

#endif

TEST(Bugs, AnExponentOfManyDigitsIsNotCutShort)
{
    for (const char* const sign : {"", "-"})
    {
        check("1e" + std::string(sign) + "4294967297");
        check("1e" + std::string(sign) + "18446744073709551617");
        check("1e" + std::string(sign) + std::string(200, '9'));
        check("0x1p" + std::string(sign) + std::string(200, '9'));
        check("0x0.0001p" + std::string(sign) + "4294967297");
        check("0e" + std::string(sign) + std::string(200, '9'));
        check("0." + zeros(180) + "1e" + std::string(sign) + "180");
        check("1" + zeros(180) + "e" + std::string(sign) + "180");
        check("1" + zeros(180) + "e" + std::string(sign) + "220");
    }
}

} // namespace
