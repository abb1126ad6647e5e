#include "tools/field_difference.h"

#include <gtest/gtest.h>

namespace
{

using Json = nlohmann::ordered_json;

// "path: first, second" for each difference.
std::vector<std::string> differences(const char* first, const char* second)
{
    std::vector<std::string> all;
    for (const auto& each : tools::differencesOf(Json::parse(first), Json::parse(second)))
        all.push_back(each.m_Path + ": " + each.m_First.dump() + ", " + each.m_Second.dump());
    return all;
}

TEST(FieldDifference, EqualObjectsHaveNone)
{
    EXPECT_TRUE(differences(R"({"m_A":1,"m_B":[{"m_C":"x"}]})", R"({"m_B":[{"m_C":"x"}],"m_A":1})").empty());
}

TEST(FieldDifference, NamesEachValueThatDiffers)
{
    EXPECT_EQ(
        differences(R"({"m_A":1,"m_B":[{"m_C":"x"},{"m_C":"y"}]})", R"({"m_A":2,"m_B":[{"m_C":"x"},{"m_C":"z"}]})"),
        (std::vector<std::string>{"m_A: 1, 2", "m_B[1].m_C: \"y\", \"z\""}));
}

TEST(FieldDifference, WhatOneSideLacksIsNull)
{
    EXPECT_EQ(differences(R"({"m_A":[1,2]})", R"({"m_A":[1],"m_B":true})"),
              (std::vector<std::string>{"m_A[1]: 2, null", "m_B: null, true"}));
    EXPECT_EQ(differences(R"({"m_A":{"m_B":1}})", R"({"m_A":[1]})"),
              (std::vector<std::string>{"m_A: {\"m_B\":1}, [1]"}));
}

TEST(FieldDifference, AFieldGoesByItsPathOrItsLastName)
{
    for (const char* const name : {"m_A.m_List[3].m_Time", "m_A.m_List.m_Time", "m_Time"})
        EXPECT_TRUE(tools::isField("m_A.m_List[3].m_Time", name)) << name;
    for (const char* const name : {"m_A", "m_List", "m_List.m_Time", "Time", "m_A.m_List[2].m_Time", ""})
        EXPECT_FALSE(tools::isField("m_A.m_List[3].m_Time", name)) << name;
    EXPECT_TRUE(tools::isField("m_Values[3]", "m_Values"));
}

} // namespace
