#include "tools/object_text.h"

#include "tests/support/payload_maker.h"
#include "tools/line_reader.h"
#include "tools/object_json.h"
#include "tools/reading.h"

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <limits>
#include <random>
#include <string>

namespace
{

using tools::JsonText;

std::string printed(float value)
{
    JsonText out;
    out.addFloat(value);
    return std::string(out.view());
}

std::string printed(const wchar_t* text)
{
    JsonText out;
    out.addText(text);
    return std::string(out.view());
}

// Every class: whole payloads, and the same with a byte changed, whose objects are read in part.
TEST(ObjectText, PrintsWhatTheTreeOfValuesPrints)
{
    unsigned seed = 1;
    int compared = 0;
    std::mt19937 random(5);
    for (const tools::ClassInfo& info : tools::classTable())
        for (const tools::Form form : {tools::Form::kCmd, tools::Form::kData})
        {
            if (!tools::hasForm(info, form))
                continue;
            test::PayloadMaker maker(++seed);
            for (int i = 0; i < 10; ++i)
            {
                std::string bytes = maker.make(info.m_Wire()).m_Bytes;
                if (i % 2 == 1 && !bytes.empty())
                    bytes[random() % bytes.size()] ^= static_cast<char>(1 << random() % 8);
                const tools::Reading reading = tools::readOnly(info, form, bytes);
                JsonText text;
                tools::addObject(text, info.m_Wire(), reading.m_Object.get());
                ASSERT_EQ(text.view(), tools::printedLine(tools::objectJson(info.m_Wire(), reading.m_Object.get())))
                    << info.m_Name;
                ++compared;
            }
        }
    EXPECT_GT(compared, 6000);
}

TEST(JsonText, FloatsAreThoseOfTheLibrary)
{
    const auto expectSame = [](float value) { ASSERT_EQ(printed(value), tools::floatJson(value).dump()); };
    for (const float value : {0.0f, -0.0f, 1.0f, -1.5f, 0.1f, 9.999999f, 10.0f, 16777216.0f, 8388607.5f, 0.001953125f,
                              std::numeric_limits<float>::max(), std::numeric_limits<float>::denorm_min(),
                              std::numeric_limits<float>::infinity(), std::numeric_limits<float>::quiet_NaN()})
        expectSame(value);
    std::mt19937 random(3);
    for (int i = 0; i < 100000; ++i)
    {
        expectSame(std::bit_cast<float>(static_cast<uint32_t>(random())));
        // Numbers of few decimals, and their neighbours.
        const float few = static_cast<float>(random() % 10000000) / static_cast<float>(std::pow(10, random() % 8));
        expectSame(few);
        expectSame(-std::nextafter(few, 1e9f));
    }
}

TEST(JsonText, TextsAreThoseOfTheLibrary)
{
    for (const wchar_t* const text : {L"", L"plain", L"\"\\/\b\f\n\r\t\x01\x1F\x7F", L"\x80\x7FF\x800\x4E00\xFFFF",
                                      L"a\xD83D\xDE00z", L"lone \xD83D and \xDE00", L"\xD83D"})
        EXPECT_EQ(printed(text), nlohmann::ordered_json(tools::utf8Of(text)).dump());
    if constexpr (sizeof(wchar_t) == 4)
        for (const char32_t c : {0x1F600, 0x10FFFF, 0x110000, 0x7FFFFFFF})
        {
            const wchar_t text[] = {L'<', static_cast<wchar_t>(c), L'"', 0};
            EXPECT_EQ(printed(text), nlohmann::ordered_json(tools::utf8Of(text)).dump());
        }
    JsonText out;
    out.addText(std::string_view("\"\xC3\xA9\n"));
    EXPECT_EQ(out.view(), "\"\\\"\xC3\xA9\\n\"");
}

TEST(JsonText, HexadecimalAndIntegers)
{
    JsonText out;
    out.addHex("\x01\xAB\xFF", 3);
    out.addHex(nullptr, 0);
    out.addInteger(std::numeric_limits<long long>::min());
    out.addBool(true);
    EXPECT_EQ(out.view(), "\"01abff\"\"\"-9223372036854775808true");
    out.clear();
    EXPECT_EQ(out.view(), "");
}

} // namespace
