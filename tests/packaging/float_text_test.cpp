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

std::string printed(float value)
{
    char text[wire::kFloatTextRoom];
    return std::string(text, static_cast<size_t>(wire::printFloat(value, text)));
}

std::string byPrintf(float value)
{
    char text[128];
    std::snprintf(text, sizeof text, "%f", static_cast<double>(value));
    return text;
}

bool scan(const std::string& text, float& value)
{
    return wire::scanFloat(text.data(), static_cast<int>(text.size()), value);
}

bool sameBits(float a, float b)
{
    return std::memcmp(&a, &b, sizeof a) == 0;
}

// Compares one float in both directions with the standard functions.
void check(float value)
{
    if (std::isnan(value))
    {
        // Not every platform's functions print the sign of a NaN.
        const std::string text = std::signbit(value) ? "-nan" : "nan";
        ASSERT_EQ(printed(value), text);
        float got = -7;
        ASSERT_TRUE(scan(text, got));
        ASSERT_TRUE(sameBits(got, std::copysign(std::numeric_limits<float>::quiet_NaN(), value))) << text;
        return;
    }
    const std::string text = byPrintf(value);
    ASSERT_EQ(printed(value), text);
    float expected = -7;
    float got = -7;
    const bool parses = std::sscanf(text.c_str(), "%f", &expected) == 1;
    ASSERT_EQ(scan(text, got), parses) << text;
    ASSERT_TRUE(sameBits(got, expected)) << text;
}

TEST(FloatText, PrintsAndScansAsTheStandardFunctionsForMillionsOfBitPatterns)
{
    std::mt19937 random(20131);
    for (int i = 0; i < 1000000; ++i)
    {
        const uint32_t bits = static_cast<uint32_t>(random());
        float value;
        std::memcpy(&value, &bits, sizeof value);
        check(value);
    }
    for (int i = 0; i < 1000000; ++i)
        check(static_cast<float>(static_cast<int>(random())) / 1000.0f);
    for (int i = 0; i < 1000000; ++i)
        check(static_cast<float>(random() % 100000000) / 1e6f);
}

TEST(FloatText, ExactHalvesRoundToEven)
{
    // The decimals of 2^-21 end in a five after the sixth place; odd multiples of 2^-7 end exactly at the seventh.
    for (int i = -100000; i <= 100000; ++i)
        check(static_cast<float>(i) / 128.0f);
    for (int i = 1; i < 100000; i += 2)
        check(static_cast<float>(i) / 2097152.0f);
}

TEST(FloatText, EdgesOfTheFormat)
{
    const float all[] = {0.0f,
                         -0.0f,
                         std::numeric_limits<float>::min(),
                         std::numeric_limits<float>::denorm_min(),
                         std::numeric_limits<float>::max(),
                         std::numeric_limits<float>::lowest(),
                         16777215.0f,
                         16777216.0f,
                         1e9f,
                         1e19f,
                         0.0000005f,
                         0.00000049999f};
    for (const float value : all)
        check(value);
    EXPECT_EQ(printed(std::numeric_limits<float>::infinity()), "inf");
    EXPECT_EQ(printed(-std::numeric_limits<float>::infinity()), "-inf");
    EXPECT_EQ(printed(std::numeric_limits<float>::quiet_NaN()), "nan");
}

TEST(FloatText, TextFromElsewhereScansAsScanfWould)
{
    const char* const texts[] = {
        "1e5",   "1e",    " 12.5x", "+3",  "-.5",  ".",     "0x1p3", "0x1.8p", "inf",  "infinity",
        "nan",   "1e999", "-1e999", "--1", "1..2", "",      "-",     "1e+",    "5.",   "1e-999",
        "00001", "1,5",   "\t4",    "e5",  "0e",   "1e5e5", "0.1.2", "1 2",    "1e-5", "123456789012.345678"};
    for (const char* const text : texts)
    {
        float expected = -7;
        float got = -7;
        const bool parses = std::sscanf(text, "%f", &expected) == 1;
        EXPECT_EQ(scan(text, got), parses) << text;
        EXPECT_TRUE(sameBits(got, expected)) << text << " " << got << " " << expected;
    }
}

TEST(FloatText, ScanStopsAtAZeroByte)
{
    float value = 0;
    EXPECT_TRUE(wire::scanFloat("12\0"
                                "34",
                                5, value));
    EXPECT_EQ(value, 12.0f);
}

} // namespace
