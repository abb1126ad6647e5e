// The catalogue of wirelens named a request's envelope for every message, although half of all, replies, notices,
// results and pushes, are never sent in one. Each message's row now names its envelope; a message that is sent both
// ways has two.
#include "tests/support/run_program.h"
#include "tools/class_table.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <map>
#include <string_view>

namespace
{

using nlohmann::json;

bool endsInOneOf(std::string_view name, std::initializer_list<std::string_view> endings)
{
    for (const std::string_view ending : endings)
        if (name.ends_with(ending))
            return true;
    return false;
}

std::map<std::string, json> messages()
{
    std::map<std::string, json> rows;
    for (const json& row : json::parse(test::runProgram("wirelens", "catalogue --json").m_Output))
        if (row["family"] == "message")
            rows[row["class"]] = row;
    return rows;
}

TEST(Bugs, AMessageIsInTheEnvelopeOfItsDirection)
{
    const auto rows = messages();
    EXPECT_EQ(rows.size(), 316u);
    int answers = 0;
    for (const auto& [name, row] : rows)
    {
        const std::string envelope = row["envelope"];
        const bool isAnswer = endsInOneOf(name, {"Reply", "Respond", "Notify", "Result", "Push"});
        answers += isAnswer ? 1 : 0;
        EXPECT_TRUE(!isAnswer || endsInOneOf(envelope, {"Reply", "Notify"})) << name << " in " << envelope;
        EXPECT_TRUE(!endsInOneOf(name, {"Request", "Action"}) || envelope.ends_with("Request"))
            << name << " in " << envelope;
        EXPECT_TRUE(tools::findClass(envelope)) << envelope;
    }
    EXPECT_EQ(answers, 161);
}

TEST(Bugs, AMessageWithoutADirectionInItsNameIsInItsEnvelopeToo)
{
    auto rows = messages();
    // The lottery's replies.
    for (const char* const name :
         {"MatchPackType_LotteryBaseNum", "MatchPackType_LotteryAllNum", "MatchPackType_LotteryReset",
          "MatchPackType_LotteryRevealer", "MatchPackType_IsCanRevealer"})
        EXPECT_EQ(rows[name]["envelope"], "CCmdMatchPackReply") << name;
    // Only one family has a separate envelope for notices.
    EXPECT_EQ(rows["CmdGameOverNotify"]["envelope"], "CCmdSportPackNotify");
    EXPECT_EQ(rows["CmdSportCommonResult"]["envelope"], "CCmdSportPackReply");
    EXPECT_EQ(rows["BS4Pack_MatchEnd_Notify"]["envelope"], "CCmdMatchPackReply");
    // A player's own settings.
    EXPECT_EQ(rows["FriendSystemPack_SetSelfVip"]["envelope"], "CCmdFriendSystemPackRequest");
    EXPECT_FALSE(rows["FriendSystemPack_SetSelfVip"].contains("or_envelope"));
    // Sent both ways.
    EXPECT_EQ(rows["WorldSquarePack_PlayerInfo"]["envelope"], "CCmdWorldSquarePackRequest");
    EXPECT_EQ(rows["WorldSquarePack_PlayerInfo"]["or_envelope"], "CCmdWorldSquarePackReply");
    int either = 0;
    for (const auto& [name, row] : rows)
        either += row.contains("or_envelope") ? 1 : 0;
    EXPECT_EQ(either, 6);
}

} // namespace
