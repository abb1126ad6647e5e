// What a change of the schemas breaks, in which direction, and in which words.
#include "tools/schema_diff.h"

#include "tools/schema_document.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

namespace
{

using nlohmann::ordered_json;
using tools::Change;
using tools::Effect;

const ordered_json& present()
{
    static const ordered_json document = tools::schemaDocument();
    return document;
}

ordered_json& classOf(ordered_json& document, const std::string& name)
{
    for (ordered_json& each : document["classes"])
        if (each["class"] == name)
            return each;
    throw std::out_of_range(name);
}

ordered_json& fieldOf(ordered_json& each, const std::string& name)
{
    for (ordered_json& field : each["fields"])
        if (field.value("name", "") == name)
            return field;
    throw std::out_of_range(name);
}

// The one difference after a change of one class.
template <class Edit>
Change after(const std::string& className, Edit edit)
{
    ordered_json changed = present();
    edit(classOf(changed, className));
    EXPECT_EQ(tools::documentFault(changed), "");
    const std::vector<Change> changes = tools::schemaDifferences(present(), changed);
    EXPECT_EQ(changes.size(), 1u);
    return changes.empty() ? Change() : changes.front();
}

void expectBreaks(const Change& change, bool oldReadsNew, bool newReadsOld)
{
    EXPECT_EQ(change.m_Effect, Effect::kBreaks) << change.m_Sentence;
    EXPECT_EQ(change.m_OldReadsNew, oldReadsNew) << change.m_Sentence;
    EXPECT_EQ(change.m_NewReadsOld, newReadsOld) << change.m_Sentence;
}

ordered_json newField(const std::string& name)
{
    return {{"name", name}, {"type", "int"}, {"default", 0}};
}

TEST(SchemaDiff, TheSameSchemasDoNotDiffer)
{
    EXPECT_TRUE(tools::schemaDifferences(present(), present()).empty());
}

TEST(SchemaDiff, AnotherOrderBreaksBothWaysAndIsSaidByClassAndField)
{
    const Change change = after("CCmdServerInfoResponse", [](ordered_json& each)
                                { std::swap(fieldOf(each, "m_MaxOnlineNum"), fieldOf(each, "m_OnlineCount")); });
    expectBreaks(change, true, true);
    EXPECT_EQ(change.m_Class, "CCmdServerInfoResponse");
    EXPECT_EQ(change.m_Sentence,
              "CCmdServerInfoResponse (0x1208): m_MaxOnlineNum is sent after m_OnlineCount, and was sent after "
              "m_ServiceExtra. Neither an older nor a newer peer can read what the other sends.");
}

TEST(SchemaDiff, AnotherOrderInARecordNamesTheClassesThatHoldIt)
{
    const Change change =
        after("FGameItem", [](ordered_json& each) { std::swap(each["fields"][0], each["fields"][1]); });
    expectBreaks(change, true, true);
    EXPECT_NE(change.m_Sentence.find(" It is in "), std::string::npos) << change.m_Sentence;
}

TEST(SchemaDiff, AnotherTypeBreaksBothWays)
{
    const Change change = after("CCmdServerEcho", [](ordered_json& each) { fieldOf(each, "m_Data")["type"] = "text"; });
    expectBreaks(change, true, true);
    EXPECT_NE(change.m_Sentence.find("m_Data is text, and was "), std::string::npos) << change.m_Sentence;
}

TEST(SchemaDiff, AFieldAtTheEndOfACommandBreaksBothWays)
{
    expectBreaks(after("CCmdServerEcho", [](ordered_json& each) { each["fields"].push_back(newField("m_More")); }),
                 true, true);
}

TEST(SchemaDiff, AListThatMayBeMissingAtTheEndOfACommandBreaksOnlyOlderPeers)
{
    const ordered_json list = {
        {"name", "m_More"}, {"type", "list"}, {"of", {{"type", "int"}}}, {"words", ordered_json::array({"Untested"})}};
    const Change change = after("CCmdServerEcho", [&](ordered_json& each) { each["fields"].push_back(list); });
    expectBreaks(change, true, false);
    EXPECT_NE(change.m_Sentence.find("An older peer cannot read what a newer one sends."), std::string::npos);
}

TEST(SchemaDiff, AFieldAtTheEndOfAMessageBreaksOnlyNewerPeers)
{
    expectBreaks(
        after("HomePack_PlayerNumList_Reply", [](ordered_json& each) { each["fields"].push_back(newField("m_More")); }),
        false, true);
}

TEST(SchemaDiff, AListThatMayBeMissingAtTheEndOfAMessageOnlyAdds)
{
    const ordered_json list = {
        {"name", "m_More"}, {"type", "list"}, {"of", {{"type", "int"}}}, {"words", ordered_json::array({"Untested"})}};
    EXPECT_EQ(
        after("HomePack_PlayerNumList_Reply", [&](ordered_json& each) { each["fields"].push_back(list); }).m_Effect,
        Effect::kAdds);
}

TEST(SchemaDiff, AMissingFieldBreaks)
{
    const Change change = after("CCmdServerEcho", [](ordered_json& each) { each["fields"].erase(4); });
    expectBreaks(change, true, true);
    EXPECT_EQ(change.m_Field, "m_Data");
    EXPECT_NE(change.m_Sentence.find("m_Data is gone"), std::string::npos) << change.m_Sentence;
}

TEST(SchemaDiff, AnotherNameOrDefaultIsDocumentation)
{
    const Change named =
        after("CCmdServerEcho", [](ordered_json& each) { fieldOf(each, "m_Data")["name"] = "m_Number"; });
    EXPECT_EQ(named.m_Effect, Effect::kDocuments);
    EXPECT_EQ(named.m_Sentence, "CCmdServerEcho (0x120d): m_Number was named m_Data, and its bytes stay.");
    EXPECT_EQ(after("CCmdServerEcho", [](ordered_json& each) { fieldOf(each, "m_Data")["default"] = 7; }).m_Effect,
              Effect::kDocuments);
}

TEST(SchemaDiff, AnotherIdBreaksBothWays)
{
    expectBreaks(after("CCmdServerEcho", [](ordered_json& each) { each["id"] = "0x1210"; }), true, true);
}

TEST(SchemaDiff, AFormThatIsGoneBreaksAndOneMoreAdds)
{
    expectBreaks(after("MatchPack_ExchangeStampReply", [](ordered_json& each) { each["forms"].erase(1); }), true, true);
    EXPECT_EQ(after("CCmdServerEcho", [](ordered_json& each) { each["forms"].push_back("data"); }).m_Effect,
              Effect::kAdds);
}

TEST(SchemaDiff, ANewCommandAddsAndAMissingOneBreaksNewerPeers)
{
    ordered_json more = present();
    ordered_json added = classOf(more, "CCmdServerEcho");
    added["class"] = "CCmdNew";
    added["id"] = "0x1210";
    more["classes"].push_back(added);
    const std::vector<Change> forth = tools::schemaDifferences(present(), more);
    ASSERT_EQ(forth.size(), 1u);
    EXPECT_EQ(forth[0].m_Effect, Effect::kAdds);
    const std::vector<Change> back = tools::schemaDifferences(more, present());
    ASSERT_EQ(back.size(), 1u);
    expectBreaks(back[0], false, true);
}

TEST(SchemaDiff, ACommandOfAnotherNameIsDocumentation)
{
    const Change change = after("CCmdServerEcho", [](ordered_json& each) { each["class"] = "CCmdEcho"; });
    EXPECT_EQ(change.m_Effect, Effect::kDocuments);
    EXPECT_NE(change.m_Sentence.find("CCmdServerEcho"), std::string::npos);
}

TEST(SchemaDiff, ANewCommandWithTheIdOfAnotherBreaksOlderPeers)
{
    ordered_json changed = present();
    ordered_json& each = classOf(changed, "CCmdServerEcho");
    each["class"] = "CCmdOther";
    each["fields"].push_back(newField("m_More"));
    const std::vector<Change> changes = tools::schemaDifferences(present(), changed);
    ASSERT_EQ(changes.size(), 2u);
    EXPECT_TRUE(std::all_of(changes.begin(), changes.end(),
                            [](const Change& change) { return change.m_Effect == Effect::kBreaks; }));
}

TEST(SchemaDiff, ASmallerLimitBreaksNewerPeersAndALargerOneOlderPeers)
{
    ordered_json changed = present();
    changed["limits"]["cmd"]["text_units"] = 500;
    const std::vector<Change> smaller = tools::schemaDifferences(present(), changed);
    ASSERT_EQ(smaller.size(), 1u);
    expectBreaks(smaller[0], false, true);
    const std::vector<Change> larger = tools::schemaDifferences(changed, present());
    ASSERT_EQ(larger.size(), 1u);
    expectBreaks(larger[0], true, false);
}

TEST(SchemaDiff, BreaksAreFirst)
{
    ordered_json changed = present();
    fieldOf(classOf(changed, "CCmdServerEcho"), "m_Data")["default"] = 7;
    std::swap(classOf(changed, "FGameItem")["fields"][0], classOf(changed, "FGameItem")["fields"][1]);
    const std::vector<Change> changes = tools::schemaDifferences(present(), changed);
    ASSERT_EQ(changes.size(), 2u);
    EXPECT_EQ(changes[0].m_Effect, Effect::kBreaks);
    EXPECT_EQ(changes[1].m_Effect, Effect::kDocuments);
}

} // namespace
