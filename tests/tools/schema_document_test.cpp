// The document of all schemas: complete, and without a fault of its own.
#include "tools/schema_document.h"

#include <gtest/gtest.h>

#include <string>

namespace
{

using nlohmann::ordered_json;

const ordered_json& whole()
{
    static const ordered_json document = tools::schemaDocument();
    return document;
}

ordered_json classOf(const ordered_json& document, const std::string& name)
{
    for (const ordered_json& each : document["classes"])
        if (each["class"] == name)
            return each;
    return nullptr;
}

ordered_json fieldOf(const std::string& className, const std::string& name)
{
    const ordered_json each = classOf(whole(), className);
    for (const ordered_json& field : each["fields"])
        if (field.value("name", "") == name)
            return field;
    return nullptr;
}

TEST(SchemaDocument, HasEveryClassOnceAndNoFault)
{
    EXPECT_EQ(tools::documentFault(whole()), "");
    for (const tools::ClassInfo& info : tools::classTable())
        EXPECT_FALSE(classOf(whole(), info.m_Name).is_null()) << info.m_Name;
}

TEST(SchemaDocument, HasIdBaseFormsAndEnvelope)
{
    const ordered_json command = classOf(whole(), "CCmdServerEcho");
    EXPECT_EQ(command["id"], "0x120d");
    EXPECT_EQ(command["base"], "CCmdSystem");
    EXPECT_EQ(command["forms"], ordered_json::array({"cmd"}));
    EXPECT_EQ(command["smallest"], 25);
    EXPECT_EQ(classOf(whole(), "HomePack_LoadData_Reply")["envelope"], "CCmdHomePackReply");
    EXPECT_EQ(classOf(whole(), "MatchPack_ExchangeStampReply")["forms"], ordered_json::array({"cmd", "data"}));
}

TEST(SchemaDocument, HasFieldsInTheirOrderWithTypesAndDefaults)
{
    const ordered_json fields = classOf(whole(), "CCmdServerEcho")["fields"];
    EXPECT_EQ(fields[0], ordered_json::parse(R"({"type":"version","value":2})"));
    EXPECT_EQ(fields[1],
              ordered_json::parse(
                  R"({"name":"m_ClientIndex","type":"unsigned short","default":0,"words":["UntestedOnRead"]})"));
    EXPECT_EQ(fields[3], ordered_json::parse(R"({"name":"m_AccountName","type":"text","default":""})"));
    EXPECT_EQ(fields[4]["name"], "m_Data");
}

TEST(SchemaDocument, NamesTheMemberThatIsTheKeyOfAMap)
{
    EXPECT_EQ(fieldOf("AccountData", "m_TrainingMap")["key_member"], "m_GameId");
    EXPECT_EQ(fieldOf("FGameShop", "m_ShopTrades")["key_member"], "m_TradeName");
    EXPECT_EQ(fieldOf("CCmdServerListReply", "m_PlatformServerInfos")["key_member"], "m_Node");
}

TEST(SchemaDocument, HasTheSpaceOfAPayloadByItsPackager)
{
    EXPECT_EQ(fieldOf("CCmdHomePackRequest", "m_PackData")["most"], 0x0FFFFFFF);
    EXPECT_EQ(fieldOf("CCmdSportPackRequest", "m_PackData")["most"], 0x10000);
}

TEST(SchemaDocument, ExplainsEveryWord)
{
    const auto explained = [](const ordered_json& field)
    {
        for (const ordered_json& word : field.value("words", ordered_json::array()))
            EXPECT_TRUE(whole()["words"].contains(word.get<std::string>())) << word;
    };
    for (const ordered_json& each : whole()["classes"])
        for (const ordered_json& field : each["fields"])
        {
            explained(field);
            for (const ordered_json& column : field.value("columns", ordered_json::array()))
                explained(column);
        }
}

TEST(SchemaDocument, OfOneClassHasTheRecordsThatItHolds)
{
    const ordered_json one = tools::schemaDocument(tools::findClass("FGameTrade"));
    EXPECT_EQ(one["only"], "FGameTrade");
    EXPECT_EQ(tools::documentFault(one), "");
    EXPECT_FALSE(classOf(one, "FGameItem").is_null());
    EXPECT_TRUE(classOf(one, "CCmdServerEcho").is_null());
}

TEST(SchemaDocument, IsReadAgainAsItWasPrinted)
{
    EXPECT_EQ(ordered_json::parse(tools::documentText(whole())), whole());
}

TEST(SchemaDocument, FaultsOfOtherDocumentsAreNamed)
{
    EXPECT_EQ(tools::documentFault(ordered_json::array()), "it is not a wire schema");
    ordered_json document = whole();
    document["version"] = 2;
    EXPECT_EQ(tools::documentFault(document), "its version is not 1");
    document = tools::schemaDocument(tools::findClass("FGameTrade"));
    for (ordered_json& each : document["classes"])
        for (ordered_json& field : each["fields"])
            if (field["type"] == "list")
                field["of"]["record"] = "Unknown";
    EXPECT_EQ(tools::documentFault(document), "FGameTrade: a record that is not in the document");
}

} // namespace
