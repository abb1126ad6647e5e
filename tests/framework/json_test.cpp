#include "framework/json.h"

#include <gtest/gtest.h>

#include <limits>
#include <string>
#include <utility>

using zet::Json;
using zet::JsonValue;
using Wide = zet::String_T<wchar_t>;

namespace
{

std::wstring textOf(const JsonValue& value, bool isPretty = false)
{
    const Wide text = Json::convertToString(value, isPretty);
    return {text.getBuffer(), static_cast<size_t>(text.getLength())};
}

JsonValue parsed(const std::wstring& text)
{
    JsonValue value;
    const wchar_t* end = Json::parseValue(text.c_str(), value);
    EXPECT_NE(end, nullptr);
    return value;
}

// The number of units parsed, or -1 if there is no value.
long taken(const std::wstring& text)
{
    JsonValue value(5);
    const wchar_t* end = Json::parseValue(text.c_str(), value);
    // Refused text leaves null.
    EXPECT_TRUE(end || value.isNull());
    return end ? static_cast<long>(end - text.c_str()) : -1;
}

std::wstring nested(int depth)
{
    return std::wstring(static_cast<size_t>(depth), L'[') + std::wstring(static_cast<size_t>(depth), L']');
}

} // namespace

TEST(Json, ValuesKnowTheirTypes)
{
    EXPECT_EQ(JsonValue().getType(), JsonValue::kNull);
    EXPECT_EQ(JsonValue(true).getType(), JsonValue::kBool);
    EXPECT_EQ(JsonValue(-1).getType(), JsonValue::kSigned);
    EXPECT_EQ(JsonValue(1UL).getType(), JsonValue::kUnsigned);
    EXPECT_EQ(JsonValue(1.5).getType(), JsonValue::kFloat);
    EXPECT_EQ(JsonValue(L"1").getType(), JsonValue::kString);
    EXPECT_EQ(JsonValue(Wide(L"1")).getType(), JsonValue::kString);
    for (const JsonValue::Type type : {JsonValue::kNull, JsonValue::kBool, JsonValue::kSigned, JsonValue::kUnsigned,
                                       JsonValue::kFloat, JsonValue::kString, JsonValue::kArray, JsonValue::kObject})
        EXPECT_EQ(JsonValue(type).getType(), type);
    EXPECT_TRUE(JsonValue().isNull());
    EXPECT_TRUE(JsonValue(JsonValue::kArray).isArray());
    EXPECT_TRUE(JsonValue(JsonValue::kObject).isObject());
    EXPECT_FALSE(JsonValue(0).isNull());
}

TEST(Json, PrintsInOneLineWithoutBlanks)
{
    JsonValue value;
    value[L"z"] = 1;
    value[L"a"] = L"text";
    value[L"list"][0] = -5;
    value[L"list"][1] = JsonValue();
    value[L"list"][2] = 4294967295UL;
    value[L"none"] = JsonValue(JsonValue::kObject);
    value[L"flag"] = true;
    value[L"half"] = 0.5;
    EXPECT_EQ(textOf(value),
              L"{\"z\":1,\"a\":\"text\",\"list\":[-5,null,4294967295],\"none\":{},\"flag\":true,\"half\":0.5}");
}

TEST(Json, PrintsPrettyWithFourBlanksALevel)
{
    JsonValue value;
    value[L"a"][0] = 1;
    value[L"a"][1] = JsonValue(JsonValue::kArray);
    value[L"b"] = JsonValue(JsonValue::kObject);
    EXPECT_EQ(textOf(value, true), L"{\n    \"a\": [\n        1,\n        []\n    ],\n    \"b\": {}\n}");
    EXPECT_EQ(textOf(parsed(textOf(value, true))), textOf(value));
}

TEST(Json, TextIsEscapedOnlyWhereItMust)
{
    EXPECT_EQ(textOf(JsonValue(L"a\"b\\c/\n\t\x01\x7F")), L"\"a\\\"b\\\\c/\\n\\t\\u0001\x7F\"");
    EXPECT_EQ(textOf(JsonValue(L"\u4E2D\U0001F3BE")), L"\"\u4E2D\U0001F3BE\"");
    // A zero inside a text is an ordinary character.
    const Wide zeros(L"\0a\0\0b\0", 6);
    EXPECT_EQ(textOf(JsonValue(zeros)), L"\"\\u0000a\\u0000\\u0000b\\u0000\"");
    EXPECT_TRUE(parsed(L"\"\\u0000a\\u0000\\u0000b\\u0000\"").asString() == zeros);
    // An invalid unit is printed as the replacement character.
    const wchar_t alone[] = {L'x', static_cast<wchar_t>(0xD800), L'\0'};
    EXPECT_EQ(textOf(JsonValue(alone)), L"\"x\uFFFD\"");
}

TEST(Json, EndsOfTheNumbersGoRound)
{
    for (const wchar_t* text : {L"0", L"-1", L"9223372036854775807", L"-9223372036854775808", L"18446744073709551615",
                                L"0.1", L"1e+100", L"-2.5"})
        EXPECT_EQ(textOf(parsed(text)), text);
    EXPECT_EQ(textOf(JsonValue(std::numeric_limits<double>::infinity())), L"null");
}

TEST(Json, ParsingReturnsTheEndOfWhatWasTaken)
{
    EXPECT_EQ(taken(L"{}"), 2);
    EXPECT_EQ(taken(L"  {\"a\":[1,2]}  rest"), 13);
    EXPECT_EQ(taken(L"[1] [2]"), 3);
    EXPECT_EQ(taken(L"\"a\"\"b\""), 3);
    EXPECT_EQ(taken(L"null!"), 4);
    EXPECT_EQ(taken(L"\"\u4E2D\U0001F3BE\"x"), 2 + static_cast<long>(std::wstring(L"\u4E2D\U0001F3BE").size()));
}

TEST(Json, NumberEndsBeforeWhatFollows)
{
    EXPECT_EQ(taken(L"12"), 2);
    EXPECT_EQ(taken(L"12 "), 2);
    EXPECT_EQ(taken(L"12,13"), 2);
    EXPECT_EQ(taken(L"01"), 1);
    EXPECT_EQ(taken(L"-1.5e3x"), 6);
    EXPECT_EQ(taken(L"7\u4E2D"), 1);
    EXPECT_EQ(taken(L"7\U0001F3BE"), 1);
    EXPECT_EQ(parsed(L"01").asInt32(), 0);
}

TEST(Json, InvalidTextIsRefused)
{
    for (const wchar_t* text : {L"",      L"  ",      L"{",           L"[1,",    L"[1,]", L"{\"a\"}",  L"{\"a\":}",
                                L"{a:1}", L"tru",     L"\"open",      L"'a'",    L"-",    L"1.",       L"1e",
                                L"1e999", L"\"\\x\"", L"\"\\ud800\"", L"\"\n\"", L"]",    L"// no\n1", L"NaN"})
        EXPECT_EQ(taken(text), -1) << std::string(text, text + std::wcslen(text));
    // Every 16-bit unit is accepted as a character.
    const wchar_t odd[] = {L'"', static_cast<wchar_t>(-1), L'"', L'\0'};
    EXPECT_EQ(taken(odd), sizeof(wchar_t) == 2 ? 3 : -1);
    JsonValue value(5);
    EXPECT_EQ(Json::parseValue(nullptr, value), nullptr);
    EXPECT_TRUE(value.isNull());
}

TEST(Json, NullIsTakenAndIsNull)
{
    EXPECT_EQ(taken(L"null"), 4);
    EXPECT_TRUE(parsed(L"null").isNull());
}

TEST(Json, DepthIsBounded)
{
    EXPECT_EQ(taken(nested(Json::kMaxDepth)), 2L * Json::kMaxDepth);
    EXPECT_EQ(taken(nested(Json::kMaxDepth + 1)), -1);
    EXPECT_EQ(taken(nested(1000000)), -1);
    EXPECT_EQ(taken(std::wstring(1000000, L'[')), -1);
    std::wstring objects;
    for (int i = 0; i < 100000; ++i)
        objects += L"{\"a\":";
    EXPECT_EQ(taken(objects), -1);
    // The limit is on nesting, not on the number.
    std::wstring beside = L"[[]";
    for (int i = 0; i < 1000; ++i)
        beside += L",[]";
    EXPECT_EQ(parsed(beside + L"]").size(), 1001);
}

TEST(Json, LastOfMembersWithOneNameHoldsAtThePlaceOfTheFirst)
{
    EXPECT_EQ(textOf(parsed(L"{\"a\":1,\"b\":2,\"a\":{\"x\":3},\"c\":4,\"b\":5,\"a\":6}")),
              L"{\"a\":6,\"b\":5,\"c\":4}");
}

TEST(Json, ManyMembersKeepTheirOrder)
{
    std::wstring text;
    for (int i = 0; i < 20000; ++i)
        text += (i > 0 ? L",\"" : L"{\"") + std::to_wstring(i * 7919 % 20000) + L"\":" + std::to_wstring(i);
    text += L'}';
    const JsonValue value = parsed(text);
    EXPECT_EQ(value.size(), 20000);
    EXPECT_EQ(textOf(value), text);
}

TEST(Json, ValuesOfAnotherTypeReadAsNothing)
{
    const JsonValue values[] = {JsonValue(),
                                JsonValue(true),
                                JsonValue(L"5"),
                                JsonValue(JsonValue::kArray),
                                JsonValue(JsonValue::kObject),
                                parsed(L"[5]"),
                                parsed(L"{\"5\":5}")};
    for (const JsonValue& value : values)
    {
        EXPECT_EQ(value.asInt32(), 0);
        EXPECT_EQ(value.asUInt64(), 0u);
        EXPECT_EQ(value.asFloat(), 0.0f);
        EXPECT_TRUE(value.asString().isEmpty() || value.getType() == JsonValue::kString);
    }
    for (const JsonValue& value : {JsonValue(5), JsonValue(5UL), JsonValue(5.0), JsonValue(true)})
        EXPECT_TRUE(value.asString().isEmpty());
    EXPECT_TRUE(JsonValue(L"5").asString() == L"5");
}

TEST(Json, NumbersThatDoNotFitReadAsZero)
{
    EXPECT_EQ(parsed(L"2147483647").asInt32(), 2147483647);
    EXPECT_EQ(parsed(L"2147483648").asInt32(), 0);
    EXPECT_EQ(parsed(L"-2147483648").asInt32(), std::numeric_limits<int>::min());
    EXPECT_EQ(parsed(L"-2147483649").asInt32(), 0);
    EXPECT_EQ(parsed(L"2147483648.0").asInt32(), 0);
    EXPECT_EQ(parsed(L"-2147483649.0").asInt32(), 0);
    EXPECT_EQ(parsed(L"18446744073709551615").asUInt64(), 18446744073709551615u);
    EXPECT_EQ(parsed(L"18446744073709551615").asInt32(), 0);
    EXPECT_EQ(parsed(L"18446744073709551616").asUInt64(), 0u);
    EXPECT_EQ(parsed(L"-1").asUInt64(), 0u);
    EXPECT_EQ(parsed(L"1e39").asFloat(), 0.0f);
    EXPECT_EQ(parsed(L"1e300").asInt32(), 0);
    EXPECT_EQ(parsed(L"1e300").asUInt64(), 0u);
    EXPECT_EQ(JsonValue(std::numeric_limits<double>::quiet_NaN()).asInt32(), 0);
    EXPECT_EQ(JsonValue(std::numeric_limits<double>::quiet_NaN()).asUInt64(), 0u);
    EXPECT_EQ(JsonValue(std::numeric_limits<double>::quiet_NaN()).asFloat(), 0.0f);
}

TEST(Json, NumbersConvertWithoutTheirFraction)
{
    EXPECT_EQ(parsed(L"1.9").asInt32(), 1);
    EXPECT_EQ(parsed(L"-1.9").asInt32(), -1);
    EXPECT_EQ(parsed(L"2147483647.5").asInt32(), 2147483647);
    EXPECT_EQ(parsed(L"-2147483648.5").asInt32(), std::numeric_limits<int>::min());
    EXPECT_EQ(parsed(L"-0.5").asUInt64(), 0u);
    EXPECT_EQ(parsed(L"1e3").asUInt64(), 1000u);
    EXPECT_EQ(parsed(L"-7").asFloat(), -7.0f);
    EXPECT_EQ(parsed(L"7").asFloat(), 7.0f);
    EXPECT_EQ(parsed(L"0.1").asFloat(), 0.1f);
}

TEST(Json, MissingMembersAreNull)
{
    const JsonValue array = parsed(L"[1,2]");
    EXPECT_EQ(array.size(), 2);
    EXPECT_EQ(array[1].asInt32(), 2);
    EXPECT_TRUE(array[2].isNull());
    EXPECT_TRUE(array[-1].isNull());
    EXPECT_TRUE(array[L"a"].isNull());
    const JsonValue object = parsed(L"{\"a\":{\"b\":3}}");
    EXPECT_EQ(object.size(), 1);
    EXPECT_EQ(object[L"a"][L"b"].asInt32(), 3);
    EXPECT_TRUE(object[L"b"][L"c"][5][L"d"].isNull());
    EXPECT_TRUE(object[0].isNull());
    EXPECT_TRUE(object[static_cast<const wchar_t*>(nullptr)].isNull());
    EXPECT_EQ(JsonValue(L"text").size(), 0);
    EXPECT_EQ(JsonValue(5).size(), 0);
}

TEST(Json, IndexingForWritingMakesWhatIsMissing)
{
    JsonValue value(5);
    value[L"a"][2] = L"x";
    EXPECT_EQ(textOf(value), L"{\"a\":[null,null,\"x\"]}");
    value[L"a"][-3] = 1;
    EXPECT_EQ(textOf(value), L"{\"a\":[1,null,\"x\"]}");
    value[L"a"][L"b"] = 2;
    EXPECT_EQ(textOf(value), L"{\"a\":{\"b\":2}}");
    EXPECT_TRUE(value[L"new"].isNull());
    EXPECT_EQ(value.size(), 2);
}

TEST(Json, CopiesAreDeep)
{
    JsonValue value = parsed(L"{\"a\":[1]}");
    const JsonValue copy = value;
    value[L"a"][0] = 2;
    EXPECT_EQ(textOf(copy), L"{\"a\":[1]}");
    EXPECT_EQ(textOf(value), L"{\"a\":[2]}");
}

TEST(Json, ValueTakesAPartOfItself)
{
    JsonValue value = parsed(L"{\"a\":{\"a\":[1,[2,3]]}}");
    value = value[L"a"];
    EXPECT_EQ(textOf(value), L"{\"a\":[1,[2,3]]}");
    value = std::move(value[L"a"]);
    EXPECT_EQ(textOf(value), L"[1,[2,3]]");
    value[0] = value;
    EXPECT_EQ(textOf(value), L"[[1,[2,3]],[2,3]]");
    value = parsed(L"{\"a\":{\"x\":1,\"y\":2},\"b\":3}");
    value = value[L"a"];
    EXPECT_EQ(textOf(value), L"{\"x\":1,\"y\":2}");
    JsonValue& same = value;
    value = same;
    EXPECT_EQ(textOf(value), L"{\"x\":1,\"y\":2}");
}

TEST(Json, ClearKeepsTheTypeOfContainersAndSwapExchanges)
{
    JsonValue array = parsed(L"[1]");
    JsonValue object = parsed(L"{\"a\":1}");
    array.swap(object);
    EXPECT_EQ(textOf(array), L"{\"a\":1}");
    EXPECT_EQ(textOf(object), L"[1]");
    array.clear();
    object.clear();
    EXPECT_EQ(textOf(array), L"{}");
    EXPECT_EQ(textOf(object), L"[]");
    JsonValue text(L"text");
    text.clear();
    EXPECT_TRUE(text.isNull());
}
