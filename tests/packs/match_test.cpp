// The match messages: defaults, both packagers, and which lists are emptied when they are read.
#include "packs/match.h"

#include "tests/packs/payload.h"

#include <gtest/gtest.h>

namespace
{

using test::Payload;
using test::written;
using Texts = std::vector<zet::String_T<wchar_t>>;

TEST(MatchPack, BaodiStateIsOnUnlessTheSenderSaysOtherwise)
{
    EXPECT_EQ(written(MatchPack_UpdateBaodiTaskExecState_Request()), std::string("\x01", 1));
}

TEST(MatchPack, StampExchangeBeginsWithOneNumberAtMinusOne)
{
    EXPECT_EQ(written(MatchPack_ExchangeStampRequest()).substr(0, 16), (Payload() << 0 << 0 << -1 << 0).bytes());
    EXPECT_EQ(written(MatchPack_ExchangeStampReply()).substr(0, 17), (Payload() << L"" << -1 << 0 << 0 << 0).bytes());
}

TEST(MatchPack, StampExchangeHasTheSameBytesInBothPackagers)
{
    MatchPack_ExchangeStampRequest request;
    request.m_Value1 = 3;
    request.m_MatchData.m_MatchText0 = L"player";
    EXPECT_EQ(written<CCmdPackager>(request), written<CDataPackager>(request));

    MatchPack_ExchangeStampReply reply;
    reply.m_Msg = L"done";
    reply.m_MatchData.m_MatchText0 = L"player";
    EXPECT_EQ(written<CCmdPackager>(reply), written<CDataPackager>(reply));

    CDataPackager packager;
    ASSERT_TRUE(reply.Write(&packager));
    MatchPack_ExchangeStampReply read;
    EXPECT_TRUE(read.Read(&packager));
    EXPECT_EQ(read.m_MatchData.m_MatchText0, reply.m_MatchData.m_MatchText0);
}

TEST(MatchPack, RequestsWithoutFieldsHaveNoBytes)
{
    EXPECT_EQ(written(MatchPack_FinalMatchInfo_Request()).size(), 0u);
    EXPECT_EQ(written(MatchPack_LotteryRevealer_Request()).size(), 0u);
}

TEST(MatchPack, TeamAwardsAddToWhatTheObjectHolds)
{
    MatchPack_TeamAwards_Reply reply;
    reply.m_List1 = {L"a"};
    reply.m_Numbers = {1};
    EXPECT_TRUE((Payload() << 1 << L"b" << 1 << L"c" << 0 << 2 << 3 << 4).into(reply));
    EXPECT_EQ(reply.m_List1, (Texts{L"a", L"b"}));
    EXPECT_EQ(reply.m_List2, (Texts{L"c"}));
    EXPECT_EQ(reply.m_Numbers, (std::vector<int>{1, 3, 4}));
}

TEST(MatchPack, TeamAwardsReadWellAtEveryLength)
{
    const Payload whole = Payload() << 1 << L"b" << 1 << L"c" << 1 << L"d" << 2 << 3 << 4;
    for (int last = 0; last <= whole.size(); ++last)
    {
        MatchPack_TeamAwards_Reply reply;
        EXPECT_TRUE(whole.cut(last).into(reply)) << last;
    }
}

TEST(MatchPack, FinishedScheduleReadsWellAtEveryLengthAndHoldsNoOldNames)
{
    const Payload whole = Payload() << 5 << 2 << L"a" << L"b";
    for (int last = 0; last <= whole.size(); ++last)
    {
        MatchPack_FinishSchedule_Request request;
        request.m_Names = {L"old", L"older", L"oldest"};
        EXPECT_TRUE(whole.cut(last).into(request)) << last;
        EXPECT_EQ(request.m_Names.size(), whole.size() - last < 8 ? 0u : 2u) << last;
    }
}

TEST(MatchPack, FinalLotteryReplacesItsNumbers)
{
    MatchPack_FinalLottery_Reply reply;
    const Payload fixed = Payload() << 1 << L"m" << AccountData() << 2 << 3;
    reply.m_Numbers = {8, 9};
    EXPECT_TRUE((Payload(fixed) << 1 << 7).into(reply));
    EXPECT_EQ(reply.m_Numbers, std::vector<int>{7});
    EXPECT_TRUE(fixed.into(reply)) << "the count is not tested";
    EXPECT_TRUE(reply.m_Numbers.empty());
    EXPECT_FALSE(fixed.cut(1).into(reply)) << "the number before it is";
}

TEST(MatchPack, PlayerListReplacesItsRows)
{
    MatchPack_PlayerList_Reply reply;
    reply.m_SortList.resize(3);
    const Payload fixed = Payload() << 1 << 2 << 3 << L"m" << 4 << 5 << GameMatchSortInfo();
    EXPECT_TRUE((Payload(fixed) << 2 << GameMatchSortInfo()).into(reply)) << "the rows are not tested";
    EXPECT_EQ(reply.m_SortList.size(), 2u);
    EXPECT_TRUE(fixed.into(reply));
    EXPECT_TRUE(reply.m_SortList.empty());
    EXPECT_FALSE(fixed.cut(1).into(reply));
}

TEST(MatchPack, FinalMatchInfoTestsEachOfItsFields)
{
    const std::string bytes = written(MatchPack_FinalMatchInfo_Reply());
    Payload whole;
    for (const char byte : bytes)
        whole << byte;
    MatchPack_FinalMatchInfo_Reply reply;
    EXPECT_TRUE(whole.into(reply));
    for (int last = 1; last <= whole.size(); ++last)
        EXPECT_FALSE(whole.cut(last).into(reply)) << last;
}

TEST(MatchPack, FinalMatchInfoSendsAWholePairAtATime)
{
    MatchPack_FinalMatchInfo_Reply reply;
    reply.m_Pair1 = {L"1a", L"1b"};
    reply.m_Pair2 = {L"2a", L"2b"};
    EXPECT_EQ(written(reply), (Payload() << 0 << 0 << 0 << 0 << L"1a" << L"1b" << L"2a" << L"2b" << AccountMatchData3()
                                         << AccountMatchData3() << L"")
                                  .bytes());
}

} // namespace
