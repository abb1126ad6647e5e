// The team and lottery messages: strict and lenient lists, and the tables whose counts are ignored.
#include "packs/match_type.h"

#include "tests/packs/payload.h"

#include <gtest/gtest.h>

namespace
{

using test::Payload;
using test::written;

TEST(MatchPackType, RequestsWithoutFieldsHaveNoBytes)
{
    EXPECT_EQ(written(MatchPackType_Login_Request()).size(), 0u);
    EXPECT_EQ(written(MatchPackType_Logout_Request()).size(), 0u);
    EXPECT_EQ(written(MatchPackType_QueryMatchState_Request()).size(), 0u);
    EXPECT_EQ(written(MatchPackType_QueryTeamRank_Request()).size(), 0u);
}

TEST(MatchPackType, TeamRankIsEmptiedBeforeItsCount)
{
    MatchPackType_QueryTeamRank_Reply reply;
    reply.m_RankList.resize(2);
    EXPECT_FALSE(Payload().into(reply));
    EXPECT_TRUE(reply.m_RankList.empty());
}

TEST(MatchPackType, TeamRankReadsAtItsFullLengthAlone)
{
    const Payload whole = Payload() << 2 << TeamMatchRankData() << TeamMatchRankData() << L"m";
    MatchPackType_QueryTeamRank_Reply reply;
    EXPECT_TRUE(whole.into(reply));
    EXPECT_EQ(reply.m_RankList.size(), 2u);
    for (int last = 1; last <= whole.size(); ++last)
        EXPECT_FALSE(whole.cut(last).into(reply)) << last;
}

TEST(MatchPackType, LenientListsReplaceTheirRowsAndLeaveTheResultToTheEnd)
{
    MatchPackType_QuerySchedule_Reply schedule;
    schedule.m_Schedule.resize(3);
    EXPECT_TRUE((Payload() << 1 << L"").into(schedule)) << "the row's number does not fit, the text does";
    EXPECT_EQ(schedule.m_Schedule.size(), 1u);

    MatchPackType_QueryAwardsReply awards;
    awards.m_Awards.resize(2);
    EXPECT_FALSE((Payload() << 0).into(awards));
    EXPECT_TRUE(awards.m_Awards.empty());
    EXPECT_TRUE((Payload() << 0 << 4).into(awards));
    EXPECT_EQ(awards.m_Value1, 4);

    MatchPackType_QueryTotalScoreRank_Reply scores;
    scores.m_RankList1.resize(2);
    scores.m_RankList2.resize(2);
    EXPECT_FALSE(Payload().into(scores));
    EXPECT_TRUE(scores.m_RankList1.empty());
    EXPECT_TRUE(scores.m_RankList2.empty()) << "the first count's failure does not end the reading";

    MatchPackType_QueryPersonTeamRank_Reply person;
    person.m_RankList2.resize(2);
    EXPECT_TRUE((Payload() << 0 << 0 << 6 << L"m").into(person));
    EXPECT_TRUE(person.m_RankList2.empty());
    EXPECT_EQ(person.m_Value1, 6);
}

TEST(MatchPackType, RevealerIsDecidedByItsFourNumbers)
{
    const Payload whole = Payload() << 1 << 10 << 1 << L"n" << 0 << 0 << 1 << 2 << 3 << 4;
    MatchPackType_LotteryRevealer revealer;
    revealer.m_Numbers3 = {1, 2};
    EXPECT_TRUE(whole.into(revealer));
    EXPECT_EQ(revealer.m_Numbers1, std::vector<int>{10});
    EXPECT_TRUE(revealer.m_Numbers3.empty());
    EXPECT_EQ(revealer.m_Value4, 4);
    EXPECT_FALSE(whole.cut(1).into(revealer));
}

TEST(MatchPackType, AllLotteryNumbersHaveAConstantSizeAndTheSameCounts)
{
    const std::string bytes = written(MatchPackType_LotteryAllNum());
    EXPECT_EQ(bytes.size(), 2u * (4 + 100) + 3 * (4 + 20) + 2 * (4 + 5) + 1 + 4 + 4);
    const std::string table = (Payload() << 25).bytes();
    const std::string row = (Payload() << 5).bytes();
    EXPECT_EQ(bytes.substr(0, 4), table);
    EXPECT_EQ(bytes.substr(104, 4), table);
    for (const size_t at : {208, 232, 241, 250, 274})
        EXPECT_EQ(bytes.substr(at, 4), row) << at;
}

TEST(MatchPackType, AllLotteryNumbersKeepWhatACutPayloadLeavesOut)
{
    MatchPackType_LotteryAllNum all;
    all.m_Table1[0][1] = 41;
    all.m_Row3[4] = 43;
    all.m_Names2[0] = L"kept";
    EXPECT_FALSE((Payload() << 25 << 7).into(all));
    EXPECT_EQ(all.m_Table1[0][0], 7);
    EXPECT_EQ(all.m_Table1[0][1], 41);
    EXPECT_EQ(all.m_Row3[4], 43);
    EXPECT_EQ(all.m_Names2[0], zet::String_T<wchar_t>(L"kept"));
}

} // namespace
