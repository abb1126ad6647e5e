// The page of the protocol reference as a text; tests/docs uses it in a browser.
#include "tests/support/run_program.h"
#include "tools/class_table.h"
#include "tools/docs/comments.h"
#include "tools/docs/page_text.h"
#include "tools/docs/sample.h"
#include "tools/schema_document.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <set>
#include <string>

namespace
{

const std::string& page()
{
    static const std::string text = tools::pageText("1.2.3");
    return text;
}

nlohmann::json data()
{
    const std::string begin = "<script type=\"application/json\" id=\"data\">";
    const size_t from = page().find(begin) + begin.size();
    return nlohmann::json::parse(page().substr(from, page().find("</script>", from) - from));
}

TEST(Page, HasEveryClassWithItsFields)
{
    const nlohmann::json classes = data();
    ASSERT_EQ(classes.size(), tools::classTable().size());
    for (size_t i = 0; i < classes.size(); ++i)
    {
        const tools::ClassInfo& info = tools::classTable()[i];
        EXPECT_EQ(classes[i]["name"], info.m_Name);
        std::set<std::string> names;
        for (const auto& field : classes[i]["fields"])
            names.insert(field.contains("head") ? "(head)" : field["name"].get<std::string>());
        for (const wire::Field& field : info.m_Wire().fields)
            EXPECT_TRUE(names.contains(field.head ? "(head)" : field.name)) << info.m_Name << " " << field.name;
    }
}

TEST(Page, ExplainsEveryWord)
{
    std::set<std::string> words;
    for (const auto& entry : data())
        for (const auto& field : entry["fields"])
            for (const auto& word : field.value("words", nlohmann::json::array()))
                words.insert(word.get<std::string>());
    EXPECT_GT(words.size(), 20u);
    const nlohmann::ordered_json meanings = tools::schemaWords();
    for (const std::string& word : words)
        EXPECT_FALSE(meanings.value(word, "").empty()) << word;
    EXPECT_NE(page().find(" id=\"meanings\">" + meanings.dump() + "</script>"), std::string::npos);
}

TEST(Page, SaysWhoSendsACommandAndWhatAnswers)
{
    for (const tools::ClassInfo& info : tools::classTable())
        EXPECT_TRUE(info.m_Family == tools::Family::kRecord || !tools::commentOf(info.m_Name).empty()) << info.m_Name;
    const std::string comment =
        "Server to server: checks that the other side is alive. Answered by CCmdServerEchoReply.";
    EXPECT_EQ(tools::commentOf("CCmdServerEcho"), comment);
    EXPECT_EQ(tools::commentOf("Unknown"), "");
    EXPECT_EQ(tools::commentOf("CCmdBillSuccess", "m_GameTrade"), "The trade that was made.");
    EXPECT_EQ(tools::commentOf("CCmdBillSuccess", "m_Unknown"), "");
    const nlohmann::json all = data();
    const auto echo =
        std::find_if(all.begin(), all.end(), [](const auto& one) { return one["name"] == "CCmdServerEcho"; });
    EXPECT_EQ((*echo)["comment"], comment);
}

TEST(Page, LoadsNothing)
{
    for (const char* const sign : {"http:", "https:", "src=", "@import", "url(", "fetch(", "import("})
        EXPECT_EQ(page().find(sign), std::string::npos) << sign;
    EXPECT_NE(page().find("of version 1.2.3."), std::string::npos);
}

TEST(Page, ExampleHasAValueInEveryField)
{
    const auto pieces = tools::sampleOf(*tools::findClass("CCmdServerEcho"));
    ASSERT_EQ(pieces.size(), 5u);
    EXPECT_EQ(pieces[0].m_Name, "(version)");
    EXPECT_TRUE(pieces[3].m_IsHead);
    EXPECT_EQ(pieces[3].m_Value, "\"accountN\"");
    EXPECT_EQ(pieces[4].m_Name, "m_Data");
    EXPECT_EQ(pieces[4].m_Bytes, std::string("\0\0\0\1", 4));
    EXPECT_FALSE(pieces[4].m_IsHead);
}

TEST(Page, IsWhatWirelensPrints)
{
    const test::Run run = test::runProgram("wirelens", "docs");
    EXPECT_EQ(run.m_Code, 0);
    EXPECT_TRUE(run.m_Output.starts_with("<!DOCTYPE html>"));
    EXPECT_NE(run.m_Output.find("\"CCmdServerEcho\""), std::string::npos);
}

} // namespace
