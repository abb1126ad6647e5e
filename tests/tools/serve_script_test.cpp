#include "tools/serve_script.h"

#include <gtest/gtest.h>

namespace
{

using Json = nlohmann::ordered_json;

Json lineOf(int data)
{
    return {{"class", "CCmdServerEcho"}, {"fields", {{"m_ClientIndex", 7}, {"m_Data", data}}}};
}

std::string faultOf(const std::string& text)
{
    return tools::ServeScript().parse(text);
}

TEST(ServeScript, TheFirstRuleThatFitsAnswers)
{
    tools::ServeScript script;
    ASSERT_EQ(script.parse(R"([{"class":"CCmdServerEcho","if":["m_Data > 5"],
                                 "answers":[{"class":"CCmdServerEchoReply","fields":{"m_Data":1}}]},
                                {"class":"CCmdServerEcho",
                                 "answers":[{"class":"CCmdServerEchoReply","fields":{"m_Data":2}},
                                            {"class":"CCmdHostnameRequest"}]}])"),
              "");
    const auto above = script.answersTo(lineOf(6));
    ASSERT_EQ(above.size(), 1u);
    EXPECT_EQ(above[0]["fields"]["m_Data"], 1);
    const auto below = script.answersTo(lineOf(5));
    ASSERT_EQ(below.size(), 2u);
    EXPECT_EQ(below[0]["fields"]["m_Data"], 2);
    EXPECT_EQ(below[1], (Json{{"class", "CCmdHostnameRequest"}, {"fields", Json::object()}}));
    EXPECT_TRUE(script.answersTo({{"class", "CCmdHostnameRequest"}, {"fields", Json::object()}}).empty());
    EXPECT_TRUE(script.answersTo({{"id", "0x4012"}, {"error", "unknown id"}, {"payload", ""}}).empty());
}

TEST(ServeScript, AllTestsOfARuleHaveToHold)
{
    tools::ServeScript script;
    ASSERT_EQ(script.parse(
                  R"([{"class":"CCmdServerEcho","if":["m_Data > 5","m_Data < 8"],
                                 "answers":[{"class":"CCmdHostnameRequest"}]}])"),
              "");
    EXPECT_EQ(script.answersTo(lineOf(6)).size(), 1u);
    EXPECT_TRUE(script.answersTo(lineOf(9)).empty());
}

TEST(ServeScript, EchoTakesFieldsOfTheCommandByName)
{
    tools::ServeScript script;
    ASSERT_EQ(script.parse(R"([{"class":"CCmdServerEcho","answers":[
                                 {"class":"CCmdServerEchoReply","fields":{"m_Data":1},
                                  "echo":["m_Data","m_ClientIndex"]},
                                 {"class":"CCmdServerEchoReply","echo":{"m_Data":"m_ClientIndex"}}]}])"),
              "");
    const auto answers = script.answersTo(lineOf(42));
    ASSERT_EQ(answers.size(), 2u);
    EXPECT_EQ(answers[0]["fields"], (Json{{"m_Data", 42}, {"m_ClientIndex", 7}}));
    EXPECT_EQ(answers[1]["fields"], (Json{{"m_Data", 7}}));
    EXPECT_FALSE(answers[0].contains("echo"));
}

TEST(ServeScript, SaysWhatIsWrongAndWhere)
{
    EXPECT_EQ(faultOf("{"), "it is not valid JSON");
    EXPECT_EQ(faultOf("{}"), "it is not an array of rules");
    EXPECT_EQ(faultOf("[1]"), "rule 1: it has no class of a command");
    EXPECT_EQ(faultOf(R"([{"class":"FGameItem","answers":[]}])"), "rule 1: it has no class of a command");
    EXPECT_EQ(faultOf(R"([{"class":"CCmdServerEcho"}])"), "rule 1: it has no array of answers");
    EXPECT_EQ(faultOf(R"([{"class":"CCmdServerEcho","answer":[]}])"), "rule 1: it has no use for answer");
    EXPECT_EQ(faultOf(R"([{"class":"CCmdServerEcho","answers":[],"if":["m_Data"]}])"),
              "rule 1: \"m_Data\" is not a field, one of == != < <= > >= and a value");
    const auto withAnswer = [](const std::string& answer)
    {
        return faultOf(R"([{"class":"CCmdServerEcho","answers":[]},{"class":"CCmdServerEcho","answers":[)" + answer +
                       "]}]");
    };
    EXPECT_EQ(withAnswer("{}"), "rule 2: answer 1: it has no class of a command");
    EXPECT_EQ(withAnswer(R"({"class":"CCmdHostnameRequest","field":{}})"), "rule 2: answer 1: it has no use for field");
    EXPECT_EQ(withAnswer(R"({"class":"CCmdServerEchoReply","fields":{"m_Date":1}})"),
              "rule 2: answer 1: CCmdServerEchoReply: m_Date is not a field of CCmdServerEchoReply");
    EXPECT_EQ(withAnswer(R"({"class":"CCmdServerEchoReply","echo":["m_Date"]})"),
              "rule 2: answer 1: m_Date is not a field of CCmdServerEcho");
    EXPECT_EQ(withAnswer(R"({"class":"CCmdServerEchoReply","echo":{"m_Date":"m_Data"}})"),
              "rule 2: answer 1: m_Date is not a field of CCmdServerEchoReply");
    EXPECT_EQ(withAnswer(R"({"class":"CCmdServerEchoReply","echo":"m_Data"})"),
              "rule 2: answer 1: echo is neither an array of names nor an object of names");
}

} // namespace
