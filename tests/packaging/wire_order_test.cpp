// Every word of the order machinery on its own structure: the bytes written, and the result of truncated or odd
// payloads.
#include "packaging/wire/order.h"
#include "tests/support/wire_bytes.h"

#include <gtest/gtest.h>

#include <atomic>
#include <latch>
#include <map>
#include <string>
#include <thread>
#include <vector>

using test::Bytes;
using test::number;
using test::operator+;
using test::Outcome;
using test::readInto;
using test::written;

// The structures are outside the unnamed namespace, like every class with an order.
struct SmallPair
{
    SMALL_RECORD
    int m_Key = 0;
    int m_Value = 0;
};
WIRE_ORDER_CMD(SmallPair)
{
    return FIELDS(r.m_Key, r.m_Value);
}

struct SmallFields
{
    SMALL_RECORD
    int m_A = 1;
    unsigned char m_B = 2;
    zet::String_T<wchar_t> m_C;
    unsigned short m_D[2] = {3, 4};
    float m_E = 5;
    std::pair<int, int> m_F{6, 7};
    SmallPair m_G;
    int m_Home = 9;
};
WIRE_ORDER_CMD(SmallFields)
{
    return FIELDS(r.m_A, r.m_B, r.m_C, r.m_D, r.m_E, r.m_F, r.m_G) && NOT_SENT(r.m_Home);
}

struct SmallUntested
{
    SMALL_RECORD
    int m_A = 1;
    int m_B[2] = {2, 3};
    int m_C[2] = {4, 5};
};
WIRE_ORDER_CMD(SmallUntested)
{
    return UNTESTED(r.m_A, r.m_B, r.m_C);
}

#define SMALL_LIST(Name, Container, ...)                                                                               \
    struct Name                                                                                                        \
    {                                                                                                                  \
        SMALL_RECORD                                                                                                   \
        Container m_List;                                                                                              \
    };                                                                                                                 \
    WIRE_ORDER_CMD(Name)                                                                                               \
    {                                                                                                                  \
        return LIST(r.m_List __VA_OPT__(, ) __VA_ARGS__);                                                              \
    }

using Ints = std::vector<int>;
using SmallPairs = std::vector<SmallPair>;
using PairMap = std::map<int, SmallPair>;
using IntMap = std::map<int, int>;

SMALL_LIST(TestedList, SmallPairs)
SMALL_LIST(UntestedList, SmallPairs, wire::Untested)
SMALL_LIST(ElementsUntestedList, SmallPairs, wire::ElementsUntested)
SMALL_LIST(AppendingList, Ints, wire::Appends)
SMALL_LIST(ClearedFirstList, Ints, wire::ClearedFirst)
SMALL_LIST(SizedFirstList, SmallPairs, wire::SizedFirst, wire::ElementsUntested)
SMALL_LIST(SlottedList, Ints, wire::IntoExistingSlots, wire::Untested)
SMALL_LIST(LastDecidesList, Ints, wire::LastElementDecides)
SMALL_LIST(AboveZeroList, Ints, wire::OnlyAboveZero)
SMALL_LIST(KeyedMap, PairMap, wire::KeyedBy(&SmallPair::m_Key))
SMALL_LIST(PositionMap, IntMap, wire::KeyedByPosition)
SMALL_LIST(PairsMap, IntMap, wire::Pairs)
SMALL_LIST(UntestedPairsMap, IntMap, wire::Pairs, wire::Untested)

struct OneLocalLists
{
    SMALL_RECORD
    SmallPairs m_List;
    SmallPairs m_Second;
};
WIRE_ORDER_CMD(OneLocalLists)
{
    return THROUGH_ONE_LOCAL(r.m_List, r.m_Second);
}

struct SmallApart
{
    SMALL_RECORD
    Ints m_First;
    Ints m_Second;
};
WIRE_ORDER_CMD(SmallApart)
{
    return COUNT_OF(r.m_First) && COUNT_OF(r.m_Second) && ELEMENTS_OF(r.m_Second, wire::ElementsUntested) &&
           ELEMENTS_OF(r.m_First, wire::ElementsUntested);
}

struct SmallBase
{
    SMALL_RECORD
    int m_Base = 1;
};
WIRE_ORDER_CMD(SmallBase)
{
    return FIELDS(r.m_Base);
}

struct SmallDerived : SmallBase
{
    SMALL_RECORD
    int m_Own = 2;
};
WIRE_ORDER_CMD(SmallDerived)
{
    return FIELDS(r.m_Own) && HEAD(SmallBase);
}

struct CountedRecord
{
    CountedRecord() { ++s_Alive; }
    ~CountedRecord() { --s_Alive; }
    CountedRecord(const CountedRecord&) = delete;
    CountedRecord& operator=(const CountedRecord&) = delete;
    SMALL_RECORD
    static inline std::atomic<int> s_Alive = 0;
    int m_A = 1;
};
WIRE_ORDER_CMD(CountedRecord)
{
    return FIELDS(r.m_A);
}

namespace
{

TEST(WireOrder, FieldsGoInTheStatedOrder)
{
    SmallFields record;
    record.m_G = {8, 9};
    const Bytes expected = number(1) + Bytes{2, 0, 0, 3, 0, 4, 8, '5', '.', '0', '0', '0', '0', '0', '0'} + number(6) +
                           number(7) + number(8) + number(9);
    EXPECT_EQ(written(record), expected);
    SmallFields back;
    back.m_F = {0, 0};
    back.m_Home = 10;
    EXPECT_EQ(readInto(back, expected), (Outcome{true, static_cast<int>(expected.size())}));
    EXPECT_EQ(back.m_F.second, 7);
    EXPECT_EQ(back.m_G.m_Value, 9);
    EXPECT_EQ(back.m_Home, 10);
}

TEST(WireOrder, CutFieldsKeepWhatWasReadAndTheRest)
{
    SmallFields record;
    EXPECT_EQ(readInto(record, number(11) + Bytes{12, 0, 0}), (Outcome{false, 6}));
    EXPECT_EQ(record.m_A, 11);
    EXPECT_EQ(record.m_B, 12);
    EXPECT_EQ(record.m_D[0], 3);
}

TEST(WireOrder, RunOfFixedFieldsCutInTheMiddleReadsUpToTheCut)
{
    SmallPair record{5, 6};
    EXPECT_EQ(readInto(record, number(1) + Bytes{0, 0}), (Outcome{false, 4}));
    EXPECT_EQ(record.m_Key, 1);
    EXPECT_EQ(record.m_Value, 6);
}

TEST(WireOrder, UntestedFieldsNeverFail)
{
    SmallUntested record;
    EXPECT_EQ(readInto(record, number(9) + number(8) + Bytes{0, 0}), (Outcome{true, 8}));
    EXPECT_EQ(record.m_A, 9);
    EXPECT_EQ(record.m_B[0], 8);
    EXPECT_EQ(record.m_B[1], 3);
    EXPECT_EQ(record.m_C[0], 4);
    EXPECT_EQ(record.m_C[1], 5);
}

TEST(WireOrder, TestedListClearsAndStopsAtTheFirstShortElement)
{
    TestedList record;
    record.m_List = {{1, 1}, {2, 2}};
    EXPECT_EQ(readInto(record, number(2) + number(5) + number(6) + number(7)), (Outcome{false, 16}));
    ASSERT_EQ(record.m_List.size(), 1u);
    EXPECT_EQ(record.m_List[0].m_Value, 6);
    EXPECT_EQ(written(record), number(1) + number(5) + number(6));
}

TEST(WireOrder, TestedListWithACutCountKeepsItsElements)
{
    TestedList record;
    record.m_List = {{1, 1}};
    EXPECT_EQ(readInto(record, {0, 0}), (Outcome{false, 0}));
    EXPECT_EQ(record.m_List.size(), 1u);
}

TEST(WireOrder, NegativeCountReadsNoElements)
{
    TestedList record;
    record.m_List = {{1, 1}};
    EXPECT_EQ(readInto(record, number(-1) + number(4)), (Outcome{true, 4}));
    EXPECT_TRUE(record.m_List.empty());
}

TEST(WireOrder, UntestedListStoresWhatThereIsAndSucceeds)
{
    UntestedList record;
    record.m_List = {{1, 1}};
    EXPECT_EQ(readInto(record, number(3) + number(5) + number(6) + number(7)), (Outcome{true, 16}));
    ASSERT_EQ(record.m_List.size(), 3u);
    EXPECT_EQ(record.m_List[1].m_Key, 7);
    EXPECT_EQ(record.m_List[1].m_Value, 0);
    EXPECT_EQ(record.m_List[2].m_Key, 0);
    EXPECT_EQ(readInto(record, {0}), (Outcome{true, 0}));
    EXPECT_TRUE(record.m_List.empty());
}

TEST(WireOrder, ElementsUntestedStillTestsTheCount)
{
    ElementsUntestedList record;
    EXPECT_FALSE(readInto(record, {0}).m_Read);
    EXPECT_TRUE(readInto(record, number(2)).m_Read);
    EXPECT_EQ(record.m_List.size(), 2u);
}

TEST(WireOrder, AppendingListKeepsWhatItHolds)
{
    AppendingList record;
    record.m_List = {1};
    EXPECT_TRUE(readInto(record, number(1) + number(2)).m_Read);
    EXPECT_EQ(record.m_List, (Ints{1, 2}));
}

TEST(WireOrder, ClearedFirstEmptiesTheListEvenWhenTheCountIsCut)
{
    ClearedFirstList record;
    record.m_List = {1};
    EXPECT_FALSE(readInto(record, {0}).m_Read);
    EXPECT_TRUE(record.m_List.empty());
}

TEST(WireOrder, SizedFirstFillsInPlace)
{
    SizedFirstList record;
    record.m_List = {{1, 1}, {2, 2}, {3, 3}};
    EXPECT_TRUE(readInto(record, number(2) + number(9)).m_Read);
    ASSERT_EQ(record.m_List.size(), 2u);
    EXPECT_EQ(record.m_List[0].m_Key, 9);
    EXPECT_EQ(record.m_List[0].m_Value, 1);
    EXPECT_EQ(record.m_List[1].m_Key, 2);
}

TEST(WireOrder, ExistingSlotsTakeWhatFitsAndTheRestIsConsumed)
{
    SlottedList record;
    record.m_List = {1, 1};
    EXPECT_EQ(readInto(record, number(3) + number(7) + number(8) + number(9)), (Outcome{true, 16}));
    EXPECT_EQ(record.m_List, (Ints{7, 8}));
}

TEST(WireOrder, OneLocalCarriesOverWhatAShortElementLeavesOut)
{
    OneLocalLists record;
    record.m_List = {{1, 2}};
    EXPECT_TRUE(readInto(record, number(1) + number(5) + number(6) + number(2) + number(7)).m_Read);
    ASSERT_EQ(record.m_List.size(), 2u);
    EXPECT_EQ(record.m_List[1].m_Value, 6);
    ASSERT_EQ(record.m_Second.size(), 2u);
    EXPECT_EQ(record.m_Second[0].m_Key, 7);
    EXPECT_EQ(record.m_Second[0].m_Value, 6);
    EXPECT_EQ(record.m_Second[1].m_Key, 7);
}

TEST(WireOrder, LastElementDecidesTheResult)
{
    LastDecidesList record;
    EXPECT_TRUE(readInto(record, number(0)).m_Read);
    EXPECT_TRUE(readInto(record, number(1) + number(5)).m_Read);
    EXPECT_FALSE(readInto(record, number(2) + number(5)).m_Read);
    EXPECT_EQ(record.m_List, (Ints{5, 0}));
}

TEST(WireOrder, CountBelowOneLeavesTheListAsItWas)
{
    AboveZeroList record;
    record.m_List = {1};
    EXPECT_TRUE(readInto(record, number(0)).m_Read);
    EXPECT_TRUE(readInto(record, {0}).m_Read);
    EXPECT_EQ(record.m_List, (Ints{1}));
    EXPECT_TRUE(readInto(record, number(1) + number(4)).m_Read);
    EXPECT_EQ(record.m_List, (Ints{4}));
}

TEST(WireOrder, KeyedMapKeepsTheLaterOfTwoElementsAndWritesInKeyOrder)
{
    KeyedMap record;
    EXPECT_TRUE(
        readInto(record, number(3) + number(9) + number(1) + number(4) + number(2) + number(9) + number(3)).m_Read);
    ASSERT_EQ(record.m_List.size(), 2u);
    EXPECT_EQ(written(record), number(2) + number(4) + number(2) + number(9) + number(3));
}

TEST(WireOrder, PositionMapIsRenumbered)
{
    PositionMap record;
    record.m_List = {{2, 20}, {7, 70}};
    const Bytes bytes = written(record);
    EXPECT_EQ(bytes, number(2) + number(20) + number(70));
    EXPECT_TRUE(readInto(record, bytes).m_Read);
    EXPECT_EQ(record.m_List, (IntMap{{0, 20}, {1, 70}}));
}

TEST(WireOrder, PairsCarryTheirKeys)
{
    PairsMap record;
    record.m_List = {{2, 20}, {7, 70}};
    const Bytes bytes = number(2) + number(2) + number(20) + number(7) + number(70);
    EXPECT_EQ(written(record), bytes);
    PairsMap back;
    EXPECT_TRUE(readInto(back, bytes).m_Read);
    EXPECT_EQ(back.m_List, record.m_List);
    EXPECT_FALSE(readInto(back, number(2) + number(2) + number(20) + number(7)).m_Read);
    EXPECT_EQ(back.m_List, (IntMap{{2, 20}}));
}

TEST(WireOrder, UntestedPairsStoreADefaultForWhatIsMissing)
{
    UntestedPairsMap record;
    EXPECT_TRUE(readInto(record, number(2) + number(2) + number(20) + number(7)).m_Read);
    EXPECT_EQ(record.m_List, (IntMap{{2, 20}, {7, 0}}));
}

TEST(WireOrder, CountsMayPrecedeTheirElements)
{
    SmallApart record;
    record.m_First = {1, 2};
    record.m_Second = {3};
    const Bytes bytes = number(2) + number(1) + number(3) + number(1) + number(2);
    EXPECT_EQ(written(record), bytes);
    SmallApart back;
    EXPECT_TRUE(readInto(back, bytes).m_Read);
    EXPECT_EQ(back.m_First, record.m_First);
    EXPECT_EQ(back.m_Second, record.m_Second);
}

TEST(WireOrder, BodyMayStandBeforeItsHead)
{
    EXPECT_EQ(written(SmallDerived()), number(2) + number(1));
}

TEST(WireOrder, HostileCountsBoundMemoryAndTimeByTheBytesThatAreThere)
{
    UntestedList list;
    EXPECT_TRUE(readInto(list, number(0x7FFFFFFF) + Bytes(800, 1)).m_Read);
    EXPECT_EQ(list.m_List.size(), 101u);
    UntestedPairsMap map;
    EXPECT_TRUE(readInto(map, number(0x7FFFFFFF) + number(1) + number(2)).m_Read);
    SizedFirstList sized;
    EXPECT_TRUE(readInto(sized, number(0x7FFFFFFF) + Bytes(16, 1)).m_Read);
    EXPECT_EQ(sized.m_List.size(), 3u);
}

TEST(WireOrder, SchemaNamesMembersKindsWordsAndTheSmallestSize)
{
    const wire::Schema& schema = SmallFields::Wire();
    EXPECT_EQ(schema.name, "SmallFields");
    ASSERT_EQ(schema.fields.size(), 7u);
    EXPECT_EQ(schema.fields[0].name, "m_A");
    EXPECT_EQ(schema.fields[2].kind, wire::Kind::kText);
    EXPECT_EQ(schema.fields[3].kind, wire::Kind::kArray);
    EXPECT_EQ(schema.fields[3].extent, 2);
    EXPECT_EQ(schema.fields[6].record, &SmallPair::Wire());
    EXPECT_EQ(schema.smallest, 4 + 1 + 1 + 4 + 1 + 8 + 8);
    const SmallFields record;
    EXPECT_EQ(*reinterpret_cast<const int*>(reinterpret_cast<const char*>(&record) + schema.fields[0].offset), 1);
    EXPECT_EQ(wire::wordsOf(KeyedMap::Wire().fields[0]), "KeyedBy");
    EXPECT_EQ(wire::wordsOf(UntestedPairsMap::Wire().fields[0]), "Untested Pairs");
}

TEST(WireOrder, ThreadsThatAskAtOnceGetOneSchemaAndNoSampleStays)
{
    constexpr int kThreads = 8;
    std::latch start(kThreads);
    std::vector<const wire::Schema*> schemas(kThreads);
    std::vector<std::thread> threads;
    for (const wire::Schema*& schema : schemas)
        threads.emplace_back(
            [&]
            {
                start.arrive_and_wait();
                schema = &CountedRecord::Wire();
            });
    for (std::thread& thread : threads)
        thread.join();
    for (const wire::Schema* schema : schemas)
        EXPECT_EQ(schema, schemas[0]);
    EXPECT_EQ(schemas[0]->fields.size(), 1u);
    EXPECT_EQ(CountedRecord::s_Alive, 0);
}

} // namespace
