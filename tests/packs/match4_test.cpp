// The sports meet: lists that must be sized before the read, and rank tables whose bounds no count can exceed.
#include "packs/match4.h"

#include "tests/packs/payload.h"

#include <gtest/gtest.h>

namespace
{

using test::Payload;
using test::written;

Match4HistoryRec line(const wchar_t* text)
{
    Match4HistoryRec record;
    record.m_Text1 = text;
    return record;
}

MatchRankData rank(int value)
{
    MatchRankData data;
    data.m_RankValue0 = value;
    return data;
}

TEST(Match4Pack, ShortRequestsAreFourBytes)
{
    EXPECT_EQ(written(Match4Pack_RememberStateIn_Request()).size(), 4u);
    EXPECT_EQ(written(Match4Pack_DeductEnergy_Request()).size(), 4u);
}

TEST(Match4Pack, HistorySendsTheSecondListFirst)
{
    Match4Pack_CheckHstryRec_Reply reply;
    reply.m_History1 = {line(L"1")};
    reply.m_History2 = {line(L"2")};
    EXPECT_EQ(written(reply), (Payload() << L"" << L"" << 1 << line(L"2") << 1 << line(L"1")).bytes());
    EXPECT_EQ(written(Match4Pack_CheckHstryRec_Reply()), (Payload() << L"" << L"" << 0 << 0).bytes());
}

TEST(Match4Pack, HistoryFillsTheSlotsThatTheReaderMade)
{
    Match4Pack_CheckHstryRec_Reply reply;
    reply.m_History2.resize(2);
    reply.m_History1 = {line(L"old 1"), line(L"old 2")};
    EXPECT_TRUE(
        (Payload() << L"" << L"" << 3 << line(L"a") << line(L"b") << line(L"c") << 1 << line(L"d")).into(reply));
    ASSERT_EQ(reply.m_History2.size(), 2u);
    EXPECT_EQ(reply.m_History2[0].m_Text1, line(L"a").m_Text1);
    EXPECT_EQ(reply.m_History2[1].m_Text1, line(L"b").m_Text1);
    ASSERT_EQ(reply.m_History1.size(), 2u) << "a smaller count does not shorten a list";
    EXPECT_EQ(reply.m_History1[0].m_Text1, line(L"d").m_Text1);
    EXPECT_EQ(reply.m_History1[1].m_Text1, line(L"old 2").m_Text1);
}

TEST(Match4Pack, HistoryWithoutSlotsIsReadPast)
{
    Match4Pack_CheckHstryRec_Reply reply;
    reply.m_History1.resize(1);
    EXPECT_TRUE((Payload() << L"" << L"" << 2 << line(L"a") << line(L"b") << 1 << line(L"c")).into(reply));
    EXPECT_TRUE(reply.m_History2.empty());
    EXPECT_EQ(reply.m_History1[0].m_Text1, line(L"c").m_Text1);
}

TEST(Match4Pack, HistoryIsDecidedByItsTexts)
{
    Match4Pack_CheckHstryRec_Reply reply;
    EXPECT_TRUE((Payload() << L"" << L"" << 0x7FFFFFFF << line(L"a")).into(reply));
    EXPECT_FALSE((Payload() << L"").into(reply));
}

TEST(Match4Pack, RankTablesAlwaysTravelInFull)
{
    Match4Pack_SportRank_Reply reply;
    reply.m_Table1[0][1] = rank(1);
    reply.m_Table2[0][1] = rank(2);
    Payload expected;
    expected << 0 << 0 << 0 << 0 << L"" << rank(0) << rank(0) << false << false << 0 << 0 << 0 << 6 << 5;
    expected << rank(0) << rank(0) << rank(1) << rank(2);
    for (int i = 4; i < 60; ++i)
        expected << rank(0);
    EXPECT_EQ(written(reply), expected.bytes());
}

class RankTables : public testing::Test
{
protected:
    Payload fixed()
    {
        return Payload() << 0 << 0 << 0 << 0 << L"" << rank(0) << rank(0) << false << false << 0 << 0 << 0;
    }
    // Fixed fields, two counts, and cells that hold 1000 * table + 10 * row + column.
    Payload tables(int rows, int columns)
    {
        Payload payload = fixed();
        payload << rows << columns;
        for (int row = 0; row < rows; ++row)
            for (int column = 0; column < columns; ++column)
                payload << rank(1000 + 10 * row + column) << rank(2000 + 10 * row + column);
        return payload;
    }
    void expectCells(int rows, int columns)
    {
        for (int row = 0; row < 6; ++row)
        {
            for (int column = 0; column < 5; ++column)
            {
                const bool sent = row < rows && column < columns;
                EXPECT_EQ(m_Reply.m_Table1[row][column].m_RankValue0, sent ? 1000 + 10 * row + column : 0);
                EXPECT_EQ(m_Reply.m_Table2[row][column].m_RankValue0, sent ? 2000 + 10 * row + column : 0);
            }
        }
    }

    Match4Pack_SportRank_Reply m_Reply;
};

TEST_F(RankTables, TakeTheRowsAndColumnsThatWereSent)
{
    EXPECT_TRUE(tables(2, 3).into(m_Reply));
    expectCells(2, 3);
}

TEST_F(RankTables, DropRowsAndColumnsBeyondTheirOwn)
{
    EXPECT_TRUE(tables(8, 7).into(m_Reply));
    expectCells(8, 7);
}

TEST_F(RankTables, AreNotLeftByHostileCounts)
{
    for (const int rows : {0x7FFFFFFF, -1, 1, static_cast<int>(0x80000000)})
        for (const int columns : {0x7FFFFFFF, -1, 65536, static_cast<int>(0x80000000)})
            EXPECT_TRUE((fixed() << rows << columns << rank(1)).into(m_Reply)) << rows << ' ' << columns;
}

TEST_F(RankTables, DoNotDecideTheResult)
{
    EXPECT_TRUE(fixed().into(m_Reply));
    EXPECT_TRUE((fixed() << 6).into(m_Reply));
    EXPECT_FALSE(fixed().cut(1).into(m_Reply));
}

} // namespace
