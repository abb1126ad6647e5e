#include "commands/progress.h"

#include "commands/rank.h"
#include "tests/support/payload_helpers.h"

#include <gtest/gtest.h>

using tests::bytesOf;
using tests::writeHead;
using tests::written;

namespace
{

constexpr int kHostileCount = 0x7FFFFFFF;

GameRushSortInfo rushRow(int rank)
{
    GameRushSortInfo row;
    row.m_Rank = rank;
    row.m_AccountName = L"runner";
    return row;
}

// A board's payload up to its count.
void beginAccountBoard(CCmdPackager& packager, int count)
{
    writeHead(packager, command_id::CCmdReplySortAccount);
    for (int i = 0; i < 5; ++i)
        packager.Write(i);
    packager.Write(0.0f);
    packager.Write(zet::String_T<wchar_t>());
    static_cast<void>(AccountSortInfo().Write(&packager));
    packager.Write(count);
}

} // namespace

TEST(ReplyFinishMission, CountsAsFinishedUnlessItsSenderSaysOtherwise)
{
    CCmdReplyFinishMission reply;
    EXPECT_TRUE(reply.m_Flag1);
    CCmdPackager packager;
    writeHead(packager, command_id::CCmdReplyFinishMission);
    EXPECT_FALSE(reply.Read(&packager));
    EXPECT_TRUE(reply.m_Flag1);
}

TEST(ReplyEndGame, LaterMatchDataStaysAtHome)
{
    CCmdReplyEndGame sent;
    const tests::Bytes plain = written(sent);
    sent.m_MatchData4.m_MatchRating = 4321;
    EXPECT_EQ(written(sent), plain);

    CCmdPackager packager;
    ASSERT_TRUE(CCmdReplyEndGame().Write(&packager));
    ASSERT_TRUE(sent.Read(&packager));
    EXPECT_EQ(sent.m_MatchData4.m_MatchRating, 4321);
}

TEST(RankBoard, ReadingReplacesTheRows)
{
    CCmdPackager packager;
    beginAccountBoard(packager, 1);
    ASSERT_TRUE(AccountSortInfo().Write(&packager));
    CCmdReplySortAccount reply;
    reply.m_SortInfos.resize(3);
    reply.m_SortInfos[0].m_Rank = 9;
    ASSERT_TRUE(reply.Read(&packager));
    ASSERT_EQ(reply.m_SortInfos.size(), 1u);
    EXPECT_EQ(reply.m_SortInfos[0].m_Rank, 0);
}

TEST(RankBoard, MissingRowsKeepTheirDefaultsAndFailNothing)
{
    CCmdPackager packager;
    beginAccountBoard(packager, 3);
    AccountSortInfo row;
    row.m_SortId = 12;
    ASSERT_TRUE(row.Write(&packager));
    packager.Write(zet::String_T<wchar_t>(L"half a row"));
    CCmdReplySortAccount reply;
    EXPECT_TRUE(reply.Read(&packager));
    ASSERT_EQ(reply.m_SortInfos.size(), 3u);
    EXPECT_EQ(reply.m_SortInfos[0].m_SortId, 12);
    EXPECT_EQ(reply.m_SortInfos[1].m_AccountName, L"half a row");
    EXPECT_EQ(reply.m_SortInfos[1].m_SortId, 0);
    EXPECT_EQ(reply.m_SortInfos[2].m_AccountName, L"");
}

TEST(RankBoard, HostileCountCostsNoMoreThanThePayloadHolds)
{
    CCmdPackager packager;
    beginAccountBoard(packager, kHostileCount);
    CCmdReplySortAccount reply;
    EXPECT_TRUE(reply.Read(&packager));
    EXPECT_LE(reply.m_SortInfos.size(), 1u);
}

TEST(RushBoard, EmptyListStillCarriesItsNumbers)
{
    CCmdReplySortRush reply;
    CCmdPackager expected;
    writeHead(expected, command_id::CCmdReplySortRush);
    for (int i = 0; i < 5; ++i)
        expected.Write(0);
    expected.Write(0.0f);
    ASSERT_TRUE(GameRushSortInfo().Write(&expected));
    expected.Write(zet::String_T<wchar_t>());
    for (int zero = 0; zero < 1 + 101; ++zero)
        expected.Write(0);
    EXPECT_EQ(written(reply), bytesOf(expected));
}

TEST(RushBoard, RowsFollowTheNumbersThatTheirCountPrecedes)
{
    CCmdReplySortRush sent;
    sent.m_Values[100] = -5;
    sent.m_GameRushSortInfos = {rushRow(1), rushRow(2)};
    CCmdPackager packager;
    ASSERT_TRUE(sent.Write(&packager));

    CCmdReplySortRush received;
    received.m_GameRushSortInfos.resize(4);
    ASSERT_TRUE(received.Read(&packager));
    EXPECT_EQ(packager.GetReadPointer(), packager.GetDataSize());
    EXPECT_EQ(received.m_Values[100], -5);
    ASSERT_EQ(received.m_GameRushSortInfos.size(), 2u);
    EXPECT_EQ(received.m_GameRushSortInfos[1].m_Rank, 2);
}

TEST(RushBoard, RowsStayWhereTheNumbersAreCut)
{
    CCmdReplySortRush sent;
    sent.m_GameRushSortInfos = {rushRow(1)};
    tests::Bytes bytes = written(sent);
    bytes.resize(bytes.size() - written(rushRow(1)).size() - 1);
    CCmdPackager cut;
    cut.SetCmdID(command_id::CCmdReplySortRush);
    cut.Write(bytes.data(), static_cast<int>(bytes.size()));

    CCmdReplySortRush received;
    received.m_GameRushSortInfos = {rushRow(7), rushRow(8)};
    EXPECT_FALSE(received.Read(&cut));
    EXPECT_EQ(received.m_GameRushSortInfos.size(), 2u);
}

TEST(RushBoard, HostileCountCostsNoMoreThanThePayloadHolds)
{
    CCmdReplySortRush sent;
    tests::Bytes bytes = written(sent);
    const size_t countAt = bytes.size() - 4 * 102;
    const unsigned char hostile[] = {0x7F, 0xFF, 0xFF, 0xFF};
    std::copy(std::begin(hostile), std::end(hostile), bytes.begin() + static_cast<std::ptrdiff_t>(countAt));
    CCmdPackager packager;
    packager.SetCmdID(command_id::CCmdReplySortRush);
    packager.Write(bytes.data(), static_cast<int>(bytes.size()));
    CCmdReplySortRush received;
    EXPECT_TRUE(received.Read(&packager));
    EXPECT_LE(received.m_GameRushSortInfos.size(), 1u);
}
