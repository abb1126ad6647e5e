// The scores, the weekly reset and the rankings of the match events.
#include "playerdata/match_data.h"

#include "packaging/cmd_packager.h"
#include "packaging/data_packager.h"

#include <gtest/gtest.h>

#include <climits>
#include <cstring>

namespace
{

TEST(AccountMatchData3, StartScoresTotal79999)
{
    const AccountMatchData3 data;
    const std::map<int, int> start = {{2, 10000}, {5, -1},     {6, 10000},  {7, 10000}, {8, 10000},
                                      {9, 10000}, {10, 10000}, {11, 10000}, {13, 10000}};
    EXPECT_EQ(start, data.m_ScoreMap);
    EXPECT_EQ(79999, data.GetTotalGameScore());
}

TEST(AccountMatchData3, ClearScoreMapKeepsOtherGames)
{
    AccountMatchData3 data;
    data.m_ScoreMap[3] = 33;
    data.m_ScoreMap[5] = 55;
    data.m_ScoreMap[13] = 1;
    data.ClearScoreMap();
    EXPECT_EQ(33, data.m_ScoreMap[3]);
    EXPECT_EQ(-1, data.m_ScoreMap[5]);
    EXPECT_EQ(10000, data.m_ScoreMap[13]);
    EXPECT_EQ(10u, data.m_ScoreMap.size());
}

TEST(AccountMatchData3, TotalScoreTakesEveryGame)
{
    AccountMatchData3 data;
    data.m_ScoreMap = {{-1, 5}, {3, -7}, {99, 100}};
    EXPECT_EQ(98, data.GetTotalGameScore());
    data.m_ScoreMap.clear();
    EXPECT_EQ(0, data.GetTotalGameScore());
}

TEST(AccountMatchData3, TotalScoreWraps)
{
    AccountMatchData3 data;
    data.m_ScoreMap = {{1, INT_MAX}, {2, 1}};
    EXPECT_EQ(INT_MIN, data.GetTotalGameScore());
}

TEST(AccountMatchData3, JoinNeedsStageAndTeam)
{
    AccountMatchData3 data;
    EXPECT_FALSE(data.IsJoinMatch());
    data.m_MatchStage = 1;
    EXPECT_FALSE(data.IsJoinMatch());
    data.m_MatchTeam = 1;
    EXPECT_TRUE(data.IsJoinMatch());
    data.m_MatchStage = -1;
    EXPECT_FALSE(data.IsJoinMatch());
}

TEST(AccountMatchData3, WeekResultComesFromStagesTwoToFive)
{
    for (const auto& [stage, result] : {std::pair(-1, 77), {0, 77}, {1, 77}, {2, 5}, {3, 6}, {4, 7}, {5, 8}, {6, 77}})
    {
        AccountMatchData3 data;
        data.m_WeekResult = 77;
        data.m_MatchStage = stage;
        data.WeekCleanData();
        EXPECT_EQ(result, data.m_WeekResult) << stage;
    }
}

TEST(AccountMatchData3, WeekCleanDataClearsTheWeekAndLeavesTheScores)
{
    AccountMatchData3 data;
    data.m_WeekValue0 = 1;
    data.m_WeekValue1 = 2;
    data.m_WeekLives = 3;
    data.m_MatchStage = 1;
    data.m_MatchTeam = 3;
    data.m_Match3Value0 = 4;
    data.m_ScoreMap[5] = 5;
    data.WeekCleanData();
    EXPECT_EQ(0, data.m_WeekValue0);
    EXPECT_EQ(0, data.m_WeekValue1);
    EXPECT_EQ(15, data.m_WeekLives);
    EXPECT_EQ(0, data.m_MatchStage);
    EXPECT_EQ(0, data.m_MatchTeam);
    EXPECT_EQ(4, data.m_Match3Value0);
    EXPECT_EQ(5, data.m_ScoreMap[5]);
}

template <class P>
void expectLocalFlagStaysAtHome()
{
    AccountMatchData3 data;
    data.m_Match3Local = true;
    P with;
    ASSERT_TRUE(data.Write(&with));
    data.m_Match3Local = false;
    P without;
    ASSERT_TRUE(data.Write(&without));
    ASSERT_EQ(without.GetDataSize(), with.GetDataSize());
    EXPECT_EQ(0, std::memcmp(without.GetBuffer(), with.GetBuffer(), static_cast<size_t>(with.GetDataSize())));

    AccountMatchData3 read;
    read.m_Match3Local = true;
    ASSERT_TRUE(read.Read(&without));
    EXPECT_TRUE(read.m_Match3Local);
}

TEST(AccountMatchData3, LocalFlagIsNotSent)
{
    expectLocalFlagStaysAtHome<CCmdPackager>();
    expectLocalFlagStaysAtHome<CDataPackager>();
}

TEST(AccountMatchData3, ReadingReplacesTheScores)
{
    AccountMatchData3 sent;
    sent.m_ScoreMap = {{4, 44}};
    CDataPackager pk;
    ASSERT_TRUE(sent.Write(&pk));

    AccountMatchData3 read;
    ASSERT_TRUE(read.Read(&pk));
    EXPECT_EQ(sent.m_ScoreMap, read.m_ScoreMap);
}

TEST(AccountMatchRankData, TakesTheScoreAndNotTheFirstValue)
{
    AccountMatchData data;
    data.m_MatchText0 = L"zero";
    data.m_MatchText1 = L"one";
    data.m_MatchValue0 = 7;
    data.m_MatchScore = 8;
    data.m_MatchName = L"name";
    AccountMatchRankData rank;
    rank.ReadData(data);
    EXPECT_EQ(L"zero", rank.m_RankText0.view());
    EXPECT_EQ(L"one", rank.m_RankText1.view());
    EXPECT_EQ(8, rank.m_RankScore);
    EXPECT_EQ(L"name", rank.m_RankName.view());
}

} // namespace
