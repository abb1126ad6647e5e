// The rank boards: their tables with counts of other sizes.
#include "playerdata/combat_rank.h"

#include "packaging/cmd_packager.h"

#include <gtest/gtest.h>

#include <memory>

namespace
{

CombatRankData line(const wchar_t* name, int value)
{
    CombatRankData data;
    data.m_Name = name;
    data.m_Value1 = value;
    return data;
}

// A default board without its tables.
void writeFixedFields(CCmdPackager& pk, const CombatRankData_Pack_Reply&)
{
    const CombatRankData self;
    for (int i = 0; i < 4; ++i)
        ASSERT_TRUE(pk.Write(0));
    ASSERT_TRUE(pk.Write(zet::String_T<wchar_t>()));
    ASSERT_TRUE(self.Write(&pk) && self.Write(&pk));
    ASSERT_TRUE(pk.Write(false) && pk.Write(false));
    for (int i = 0; i < 3; ++i)
        ASSERT_TRUE(pk.Write(0));
}
void writeFixedFields(CCmdPackager& pk, const BS4RankData_Pack_Reply&)
{
    ASSERT_TRUE(pk.Write(zet::String_T<wchar_t>()));
    ASSERT_TRUE(pk.Write(0));
    ASSERT_TRUE(CombatRankData().Write(&pk));
}

TEST(CombatRankData_Pack_Reply, HasSixByFiveAndSixByThreeLines)
{
    CCmdPackager pk;
    ASSERT_TRUE(CombatRankData_Pack_Reply().Write(&pk));
    CCmdPackager fixed;
    writeFixedFields(fixed, CombatRankData_Pack_Reply());
    EXPECT_EQ(fixed.GetDataSize() + 8 + 78 * 9, pk.GetDataSize());
}

TEST(CombatRankData_Pack_Reply, SmallTableKeepsTheOtherLines)
{
    CCmdPackager pk;
    writeFixedFields(pk, CombatRankData_Pack_Reply());
    ASSERT_TRUE(pk.Write(1) && pk.Write(1));
    ASSERT_TRUE(line(L"a", 1).Write(&pk) && line(L"b", 2).Write(&pk) && line(L"c", 3).Write(&pk));

    const auto board = std::make_unique<CombatRankData_Pack_Reply>();
    board->m_CombatRankDatas1[0][1].m_Value1 = 77;
    board->m_CombatRankDatas3[5][2].m_Value1 = 78;
    EXPECT_TRUE(board->Read(&pk));
    EXPECT_EQ(1, board->m_CombatRankDatas1[0][0].m_Value1);
    EXPECT_EQ(2, board->m_CombatRankDatas2[0][0].m_Value1);
    EXPECT_EQ(3, board->m_CombatRankDatas3[0][0].m_Value1);
    EXPECT_EQ(77, board->m_CombatRankDatas1[0][1].m_Value1);
    EXPECT_EQ(78, board->m_CombatRankDatas3[5][2].m_Value1);
}

TEST(CombatRankData_Pack_Reply, LargeTableIsReadToItsEndAndTheRestOfItDropped)
{
    constexpr int kRows = 500;
    constexpr int kColumns = 7;
    CCmdPackager pk;
    writeFixedFields(pk, CombatRankData_Pack_Reply());
    ASSERT_TRUE(pk.Write(kRows) && pk.Write(kColumns));
    for (int row = 0; row < kRows; ++row)
        for (int column = 0; column < kColumns; ++column)
            for (int table = 1; table <= (column < 3 ? 3 : 2); ++table)
                ASSERT_TRUE(line(L"", table * 1000000 + row * 1000 + column).Write(&pk));

    const auto board = std::make_unique<CombatRankData_Pack_Reply>();
    EXPECT_TRUE(board->Read(&pk));
    EXPECT_EQ(pk.GetDataSize(), pk.GetReadPointer());
    EXPECT_EQ(1005004, board->m_CombatRankDatas1[5][4].m_Value1);
    EXPECT_EQ(2005004, board->m_CombatRankDatas2[5][4].m_Value1);
    EXPECT_EQ(3005002, board->m_CombatRankDatas3[5][2].m_Value1);
    EXPECT_EQ(3001000, board->m_CombatRankDatas3[1][0].m_Value1);
}

TEST(CombatRankData_Pack_Reply, CountsBeyondThePayloadReadWhatIsThere)
{
    for (const auto& [rows, columns] : {std::pair(0x7FFFFFFF, 5), {5, 0x7FFFFFFF}, {0x7FFFFFFF, 0x7FFFFFFF}})
    {
        CCmdPackager pk;
        writeFixedFields(pk, CombatRankData_Pack_Reply());
        ASSERT_TRUE(pk.Write(rows) && pk.Write(columns));
        ASSERT_TRUE(line(L"a", 1).Write(&pk));
        const auto board = std::make_unique<CombatRankData_Pack_Reply>();
        board->m_CombatRankDatas2[0][0].m_Value1 = 77;
        EXPECT_TRUE(board->Read(&pk));
        EXPECT_EQ(1, board->m_CombatRankDatas1[0][0].m_Value1);
        EXPECT_EQ(77, board->m_CombatRankDatas2[0][0].m_Value1);
    }
}

TEST(CombatRankData_Pack_Reply, CutFixedFieldFails)
{
    CCmdPackager whole;
    writeFixedFields(whole, CombatRankData_Pack_Reply());
    CCmdPackager cut;
    ASSERT_TRUE(cut.Write(whole.GetBuffer(), whole.GetDataSize() - 1));
    EXPECT_FALSE(std::make_unique<CombatRankData_Pack_Reply>()->Read(&cut));
}

TEST(BS4RankData_Pack_Reply, HasTwoHundredLines)
{
    CCmdPackager pk;
    ASSERT_TRUE(std::make_unique<BS4RankData_Pack_Reply>()->Write(&pk));
    EXPECT_EQ(1 + 4 + 9 + 4 + 200 * 9, pk.GetDataSize());
}

TEST(BS4RankData_Pack_Reply, LargeTableIsReadToItsEndAndTheRestOfItDropped)
{
    constexpr int kRows = 3000;
    CCmdPackager pk;
    writeFixedFields(pk, BS4RankData_Pack_Reply());
    ASSERT_TRUE(pk.Write(kRows));
    for (int row = 0; row < kRows; ++row)
        ASSERT_TRUE(line(L"", row).Write(&pk) && line(L"", -row).Write(&pk));
    const auto board = std::make_unique<BS4RankData_Pack_Reply>();
    EXPECT_TRUE(board->Read(&pk));
    EXPECT_EQ(pk.GetDataSize(), pk.GetReadPointer());
    EXPECT_EQ(99, board->m_CombatRankDatas1[99].m_Value1);
    EXPECT_EQ(-99, board->m_CombatRankDatas2[99].m_Value1);
}

TEST(BS4RankData_Pack_Reply, CountBeyondThePayloadReadsWhatIsThere)
{
    CCmdPackager pk;
    writeFixedFields(pk, BS4RankData_Pack_Reply());
    ASSERT_TRUE(pk.Write(0x7FFFFFFF));
    ASSERT_TRUE(line(L"a", 1).Write(&pk));
    const auto board = std::make_unique<BS4RankData_Pack_Reply>();
    board->m_CombatRankDatas2[0].m_Value1 = 77;
    EXPECT_TRUE(board->Read(&pk));
    EXPECT_EQ(1, board->m_CombatRankDatas1[0].m_Value1);
    EXPECT_EQ(77, board->m_CombatRankDatas2[0].m_Value1);
}

TEST(BS4RankData_Pack_Reply, MissingCountIsNoFailure)
{
    CCmdPackager pk;
    writeFixedFields(pk, BS4RankData_Pack_Reply());
    EXPECT_TRUE(std::make_unique<BS4RankData_Pack_Reply>()->Read(&pk));
}

} // namespace
