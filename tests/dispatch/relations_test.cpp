// Holds the rows of dispatch/relations.def and packs/relations.def to the catalogue and to each other.
#include "tests/support/relations.h"
#include "tools/class_table.h"

#include <gtest/gtest.h>

#include <map>
#include <set>
#include <string>
#include <utility>

namespace
{

using test::getCommandRelations;
using test::getMessageRelations;
using test::Outcome;

std::set<std::string> namesOf(tools::Family family)
{
    std::set<std::string> names;
    for (const tools::ClassInfo& info : tools::classTable())
        if (info.m_Family == family)
            names.insert(info.m_Name);
    return names;
}

TEST(Relations, EveryCommandHasARowAndNoneThatContradictsIt)
{
    std::multiset<std::string> directed;
    for (const test::Direction& row : getCommandRelations().m_Directions)
        directed.insert(row.m_Class);
    std::set<std::string> requests;
    std::set<std::string> answers;
    for (const test::Answer& row : getCommandRelations().m_Answers)
    {
        requests.insert(row.m_Request);
        answers.insert(row.m_Answer);
    }
    const std::multiset<std::string> unstated(getCommandRelations().m_Unstated.begin(),
                                              getCommandRelations().m_Unstated.end());
    const std::set<std::string> commands = namesOf(tools::Family::kCommand);
    ASSERT_FALSE(commands.empty());
    for (const std::string& name : commands)
    {
        const bool related = directed.count(name) != 0 || requests.count(name) != 0 || answers.count(name) != 0;
        EXPECT_EQ(unstated.count(name), related ? 0u : 1u)
            << name << ": say in dispatch/relations.def who sends it, or that the protocol does not (UNSTATED)";
        // An answer goes back to the sender of its request.
        EXPECT_LE(directed.count(name), answers.count(name) != 0 ? 0u : 1u) << name;
        EXPECT_FALSE(requests.count(name) != 0 && answers.count(name) != 0) << name;
    }
}

TEST(Relations, ARequestHasOneReplyOrASuccessWithAFailure)
{
    std::map<std::string, std::multiset<Outcome>> outcomes;
    std::set<std::pair<std::string, std::string>> pairs;
    for (const test::Answer& row : getCommandRelations().m_Answers)
    {
        outcomes[row.m_Request].insert(row.m_Outcome);
        EXPECT_TRUE(pairs.emplace(row.m_Request, row.m_Answer).second) << row.m_Request << ", " << row.m_Answer;
    }
    ASSERT_FALSE(outcomes.empty());
    for (const auto& [request, found] : outcomes)
        EXPECT_TRUE(found == std::multiset<Outcome>{Outcome::Reply} ||
                    found == (std::multiset<Outcome>{Outcome::Success, Outcome::Failure}))
            << request;
}

TEST(Relations, EveryMessageIsPairedOrAlone)
{
    std::multiset<std::string> requests;
    std::set<std::string> rows;
    for (const test::Answer& row : getMessageRelations().m_Answers)
    {
        requests.insert(row.m_Request);
        rows.insert(row.m_Request);
        rows.insert(row.m_Answer);
    }
    for (const test::Answer& row : getMessageRelations().m_Answers)
    {
        EXPECT_EQ(requests.count(row.m_Request), 1u) << row.m_Request;
        EXPECT_EQ(requests.count(row.m_Answer), 0u) << row.m_Answer;
    }
    for (const std::string& name : getMessageRelations().m_Alone)
        EXPECT_TRUE(rows.insert(name).second) << name;
    const std::set<std::string> messages = namesOf(tools::Family::kMessage);
    for (const std::string& name : messages)
        EXPECT_EQ(rows.count(name), 1u) << name;
    for (const std::string& name : rows)
        EXPECT_EQ(messages.count(name), 1u) << name;
}

TEST(Relations, AMessageIsAnsweredInTheEnvelopeThatAnswersItsOwn)
{
    std::set<std::pair<std::string, std::string>> envelopes;
    for (const test::Answer& row : getCommandRelations().m_Answers)
        envelopes.emplace(row.m_Request, row.m_Answer);
    ASSERT_FALSE(getMessageRelations().m_Answers.empty());
    for (const test::Answer& row : getMessageRelations().m_Answers)
    {
        const tools::ClassInfo* request = tools::findClass(row.m_Request);
        const tools::ClassInfo* answer = tools::findClass(row.m_Answer);
        ASSERT_TRUE(request && answer) << row.m_Request << ", " << row.m_Answer;
        EXPECT_EQ(envelopes.count({request->m_Base, answer->m_Base}), 1u) << row.m_Request << ", " << row.m_Answer;
    }
}

} // namespace
