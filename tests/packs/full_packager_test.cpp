// The result of a message's Write if the packager has space for some of its fields only: shows which fields it tests.
#include "packaging/wire/access.h"
#include "packs/achievement.h"
#include "packs/home.h"
#include "packs/in_purchase.h"
#include "packs/match.h"
#include "packs/match4.h"
#include "packs/match_type.h"
#include "packs/query_tool.h"

#include <gtest/gtest.h>

#include <memory>

namespace
{

class FullPackager : public testing::Test
{
protected:
    static void SetUpTestSuite()
    {
        s_Packager = std::make_unique<CCmdPackager>();
        ASSERT_TRUE(s_Packager->Alloc(CCmdPackager::kMaxDataSize));
    }
    static void TearDownTestSuite() { s_Packager.reset(); }

    // The result of Write if exactly room more bytes fit.
    template <class T>
    bool writes(const T& message, int room)
    {
        // The bytes before are uninitialized: nothing reads them.
        wire::Access::wrote(*s_Packager, CCmdPackager::kMaxDataSize - room - s_Packager->GetDataSize());
        return message.Write(s_Packager.get());
    }

    static std::unique_ptr<CCmdPackager> s_Packager;
};
std::unique_ptr<CCmdPackager> FullPackager::s_Packager;

TEST_F(FullPackager, PlayerNumListAndTeamAwardsSucceedWithoutAnySpace)
{
    EXPECT_TRUE(writes(HomePack_PlayerNumList_Reply(), 0));
    EXPECT_TRUE(writes(MatchPack_TeamAwards_Reply(), 0));
}

TEST_F(FullPackager, PlayerListIsDecidedByTextAndNumber)
{
    EXPECT_TRUE(writes(HomePack_GetPlayerList_Reply(), 5));
    EXPECT_FALSE(writes(HomePack_GetPlayerList_Reply(), 4));
}

TEST_F(FullPackager, FinishedScheduleIsDecidedByItsNumber)
{
    MatchPack_FinishSchedule_Request request;
    request.m_Names = {L"a"};
    EXPECT_TRUE(writes(request, 4));
    EXPECT_FALSE(writes(request, 3));
}

TEST_F(FullPackager, CodeListIsTestedToItsLastRow)
{
    InPurchasePack_GetFCodeList_Reply reply;
    EXPECT_FALSE(writes(reply, 0));
    EXPECT_FALSE(writes(reply, 4));
    EXPECT_TRUE(writes(reply, 5));
    reply.m_InPurchaseFCodeRows.resize(1);
    EXPECT_FALSE(writes(reply, 5 + 6));
    EXPECT_TRUE(writes(reply, 5 + 7));
}

TEST_F(FullPackager, StrictRanksAreTestedAndLenientOnesAreNot)
{
    MatchPackType_QueryTeamRank_Reply strict;
    EXPECT_FALSE(writes(strict, 3));
    strict.m_RankList.resize(1);
    EXPECT_FALSE(writes(strict, 5));
    MatchPackType_QueryTotalScoreRank_Reply lenient;
    lenient.m_RankList1.resize(1);
    EXPECT_TRUE(writes(lenient, 3)) << "no count fits, the text does";
    EXPECT_FALSE(writes(lenient, 0));
}

TEST_F(FullPackager, LotteryTablesAreNotTested)
{
    // Five bytes hold a count and one empty text of a later table; the message's text does not fit.
    EXPECT_FALSE(writes(MatchPackType_LotteryAllNum(), 5));
    const int whole = 2 * (4 + 100) + 3 * (4 + 20) + 2 * (4 + 5) + 9;
    EXPECT_TRUE(writes(MatchPackType_LotteryAllNum(), whole));
    EXPECT_FALSE(writes(MatchPackType_LotteryAllNum(), whole - 1));
}

TEST_F(FullPackager, RankTablesAreNotTested)
{
    const int fixed = 16 + 1 + 2 * 9 + 2 + 12;
    EXPECT_TRUE(writes(Match4Pack_SportRank_Reply(), fixed));
    EXPECT_FALSE(writes(Match4Pack_SportRank_Reply(), fixed - 1));
}

TEST_F(FullPackager, GoodsOrdersAndHistoryAreDecidedByTheirTexts)
{
    EXPECT_TRUE(writes(Match4Pack_TicketGoodConfig_Reply(), 1));
    EXPECT_FALSE(writes(Match4Pack_TicketGoodConfig_Reply(), 0));
    EXPECT_TRUE(writes(Match4Pack_OrderRecord_Reply(), 1));
    EXPECT_FALSE(writes(Match4Pack_OrderRecord_Reply(), 0));
    EXPECT_TRUE(writes(Match4Pack_CheckHstryRec_Reply(), 2));
    EXPECT_FALSE(writes(Match4Pack_CheckHstryRec_Reply(), 1));
}

TEST_F(FullPackager, AchievementsAreDecidedByTheSizes)
{
    AchievementPack_StartGame_Request request;
    request.m_Achievements[1];
    EXPECT_TRUE(writes(request, 8));
    EXPECT_FALSE(writes(request, 7));
    AchievementPack_StartGame_Reply reply;
    reply.m_Achievements[1];
    reply.m_Behaviours.resize(1);
    EXPECT_TRUE(writes(reply, 10));
    EXPECT_FALSE(writes(reply, 9));
}

TEST_F(FullPackager, ReportsAreDecidedByTheirHeads)
{
    QT_Payment_Consumption_Reply reply;
    reply.m_Column1 = {L"a", L"b"};
    EXPECT_TRUE(writes(reply, 1 + 4 + 12));
    EXPECT_FALSE(writes(reply, 1 + 4 + 11));
    EXPECT_FALSE(writes(reply, 4));
}

} // namespace
