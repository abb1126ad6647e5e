// Faults of an order's statement as a whole, as found in its schema; no class's statement has one.
#include "packaging/wire/order.h"
#include "tests/support/wire_bytes.h"
#include "tools/class_table.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <string>
#include <string_view>
#include <vector>

using Ints = std::vector<int>;

struct TwiceInOneStep
{
    SMALL_RECORD
    int m_A = 0;
};
WIRE_ORDER_CMD(TwiceInOneStep)
{
    return FIELDS(r.m_A, r.m_A);
}

struct TwiceInTwoSteps
{
    SMALL_RECORD
    int m_A = 0;
    Ints m_List;
};
WIRE_ORDER_CMD(TwiceInTwoSteps)
{
    return FIELDS(r.m_A) && LIST(r.m_List) && LIST(r.m_List, wire::Appends);
}

struct TwiceOnPurpose
{
    SMALL_RECORD
    int m_A = 0;
};
WIRE_ORDER_CMD(TwiceOnPurpose)
{
    return FIELDS(r.m_A) && AGAIN(r.m_A);
}

struct AgainAtFirst
{
    SMALL_RECORD
    int m_A = 0;
};
WIRE_ORDER_CMD(AgainAtFirst)
{
    return AGAIN(r.m_A);
}

struct SentAndNotSent
{
    SMALL_RECORD
    int m_A = 0;
};
WIRE_ORDER_CMD(SentAndNotSent)
{
    return FIELDS(r.m_A) && NOT_SENT(r.m_A);
}

struct HalfOfAList
{
    SMALL_RECORD
    Ints m_List;
    Ints m_Column;
};
WIRE_ORDER_CMD(HalfOfAList)
{
    return ELEMENTS_OF(r.m_List) && COUNT_OF(r.m_Column);
}

struct WholeLists
{
    SMALL_RECORD
    Ints m_List;
    Ints m_Column;
};
WIRE_ORDER_CMD(WholeLists)
{
    return COUNT_OF(r.m_List) && COUNT_OF(r.m_Column) && TABLE(wire::CountedRows, r.m_Column) && ELEMENTS_OF(r.m_List);
}

namespace
{

// The parts of a member that were sent so far.
struct Sent
{
    bool m_IsCounted = false;
    bool m_IsWhole = false;
};

// The faults of a statement, each as a word and the member.
std::vector<std::string> faultsOf(const wire::Schema& schema)
{
    std::map<std::pair<size_t, std::string>, Sent> sent;
    std::vector<std::string> faults;
    const auto look = [&](const wire::Field& field)
    {
        Sent& before = sent[{field.offset, field.name}];
        const bool isAgain = std::ranges::count(field.words, std::string_view("Again")) > 0;
        bool& half = field.kind == wire::Kind::kCount ? before.m_IsCounted : before.m_IsWhole;
        if (half && !isAgain)
            faults.push_back("twice " + field.name);
        if (!half && isAgain)
            faults.push_back("again " + field.name);
        half = true;
    };
    for (const wire::Field& field : schema.fields)
    {
        if (!field.name.empty())
            look(field);
        for (const wire::Field& column : field.kind == wire::Kind::kTable ? field.parts : std::vector<wire::Field>())
            look(column);
        const wire::Field& list = field.kind == wire::Kind::kTable ? field.parts[0] : field;
        if (field.says == wire::Says::kCountBefore && !sent[{list.offset, list.name}].m_IsCounted)
            faults.push_back("no count of " + list.name);
    }
    for (const auto& [member, halves] : sent)
    {
        if (halves.m_IsCounted && !halves.m_IsWhole)
            faults.push_back("no elements of " + member.second);
        if (std::ranges::count(schema.notSent, member.second) > 0)
            faults.push_back("not sent " + member.second);
    }
    return faults;
}

using Faults = std::vector<std::string>;

TEST(WireStatement, MemberNamedTwiceIsAFault)
{
    EXPECT_EQ(faultsOf(TwiceInOneStep::Wire()), Faults{"twice m_A"});
    EXPECT_EQ(faultsOf(TwiceInTwoSteps::Wire()), Faults{"twice m_List"});
}

TEST(WireStatement, AgainIsForAMemberThatWentBefore)
{
    EXPECT_EQ(faultsOf(TwiceOnPurpose::Wire()), Faults{});
    EXPECT_EQ(faultsOf(AgainAtFirst::Wire()), Faults{"again m_A"});
}

TEST(WireStatement, MemberIsSentOrNot)
{
    EXPECT_EQ(faultsOf(SentAndNotSent::Wire()), Faults{"not sent m_A"});
}

TEST(WireStatement, CountAndElementsBelongTogether)
{
    EXPECT_EQ(faultsOf(HalfOfAList::Wire()), (Faults{"no count of m_List", "no elements of m_Column"}));
    EXPECT_EQ(faultsOf(WholeLists::Wire()), Faults{});
}

TEST(WireStatement, NoClassHasAFault)
{
    for (const tools::ClassInfo& info : tools::classTable())
        EXPECT_EQ(faultsOf(info.m_Wire()), Faults{}) << info.m_Name;
}

} // namespace
