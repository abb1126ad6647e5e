#include "commands/account_payloads.h"
#include "commands/game_payloads.h"
#include "commands/shop_payloads.h"

#include "tests/support/payload_helpers.h"

#include <gtest/gtest.h>

#include <map>
#include <type_traits>

using tests::bytesOf;
using tests::written;

namespace
{

// The number of virtual functions cannot be checked from outside; that there is a table, and that it has no destructor,
// can.
template <class T>
constexpr bool kHasPlainTable = std::is_polymorphic_v<T> && !std::has_virtual_destructor_v<T>;

static_assert(kHasPlainTable<CmdUnlockGameRequest> && kHasPlainTable<CmdUnlockGameReply>);
static_assert(kHasPlainTable<CmdCancelCDRequest> && kHasPlainTable<CmdCancelCDReply>);
static_assert(kHasPlainTable<CmdDropScoreNotVIPRequest> && kHasPlainTable<CmdDropScoreNotVIPReply>);
static_assert(kHasPlainTable<CmdExchangeGoldRequest> && kHasPlainTable<CmdExchangeGoldReply>);
static_assert(kHasPlainTable<CmdCommitQuestionnaireRequest> && kHasPlainTable<CmdCommitQuestionnaireReply>);
static_assert(kHasPlainTable<CmdGetV5UserDataRequest> && kHasPlainTable<CmdGetV5UserDataReply>);
static_assert(!std::is_polymorphic_v<CmdActivityRequest> && !std::is_polymorphic_v<CmdUpdateTrainGameMapReply>);

// A player's fields up to the count of the pairs.
void beginPlayer(CDataPackager& packager)
{
    packager.Write(zet::String_T<wchar_t>(L"name"));
    packager.Write(zet::String_T<wchar_t>(L"team"));
    for (float value : {0.5f, 1.5f, 2.5f})
        packager.Write(value);
}

MatchPlayerInfo usedPlayer()
{
    MatchPlayerInfo player;
    player.m_Text1 = L"before";
    player.m_Float3 = 9.0f;
    player.m_ValueMap = {{1, 10}, {2, 20}};
    player.m_Value1 = 33;
    return player;
}

FGameTraining game(int id)
{
    FGameTraining training;
    training.m_GameId = id;
    return training;
}

} // namespace

TEST(VoidDataPayload, AddressRequestHasNoBytes)
{
    CDataPackager packager;
    EXPECT_TRUE(CmdUserAddressRequest().Write(&packager));
    EXPECT_EQ(packager.GetDataSize(), 0);
    EXPECT_TRUE(CmdUserAddressRequest().Read(&packager));
}

TEST(VoidDataPayload, NickRequestIsOneFlag)
{
    CmdRandomNickRequest request;
    request.m_Flag1 = true;
    EXPECT_EQ(written<CDataPackager>(request), tests::Bytes{1});
}

TEST(VoidDataPayload, ExchangeOfGoldDefaultsItsSecondNumber)
{
    const CmdExchangeGoldRequest request;
    EXPECT_EQ(request.m_Value1, 0);
    EXPECT_EQ(request.m_Value2, -1);
    EXPECT_EQ(request.m_Value3, 0);
}

TEST(VoidDataPayload, WriteFailsWhereThePackagerIsFull)
{
    CDataPackager packager;
    const tests::Bytes filler(static_cast<size_t>(packager.GetBufferSize()) - 6);
    packager.Write(filler.data(), static_cast<int>(filler.size()));
    EXPECT_FALSE(CmdActivityRequest().Write(&packager));
    EXPECT_FALSE(MatchPlayerInfo().Write(&packager));
    CmdUpdateTrainGameMapReply games;
    games.m_TrainingMap[1] = game(1);
    EXPECT_FALSE(games.Write(&packager));
}

TEST(VoidDataPayload, GamesStandUnderTheirIdsAndReplaceTheOldOnes)
{
    CDataPackager packager;
    packager.Write(3);
    for (int id : {8, 2, 8})
        ASSERT_TRUE(game(id).Write(&packager));
    CmdUpdateTrainGameMapReply reply;
    reply.m_TrainingMap[5] = game(5);
    ASSERT_TRUE(reply.Read(&packager));
    ASSERT_EQ(reply.m_TrainingMap.size(), 2u);
    EXPECT_EQ(reply.m_TrainingMap.begin()->first, 2);
    EXPECT_EQ(reply.m_TrainingMap.rbegin()->first, 8);
}

TEST(VoidDataPayload, GamesThatThePayloadLacksFailNothing)
{
    CDataPackager packager;
    packager.Write(true);
    packager.Write(2);
    ASSERT_TRUE(game(8).Write(&packager));
    CmdDropScoreNotVIPRequest request;
    EXPECT_TRUE(request.Read(&packager));
    ASSERT_EQ(request.m_TrainingMap.size(), 2u);
    EXPECT_EQ(request.m_TrainingMap.begin()->first, FGameTraining().m_GameId);
}

TEST(VoidDataPayload, GamesStayWhereTheirCountIsCut)
{
    CDataPackager packager;
    packager.Write(true);
    packager.Write(static_cast<unsigned short>(0));
    CmdDropScoreNotVIPReply reply;
    reply.m_TrainingMap[5] = game(5);
    EXPECT_FALSE(reply.Read(&packager));
    EXPECT_TRUE(reply.m_Flag1);
    EXPECT_EQ(reply.m_TrainingMap.size(), 1u);
}

TEST(VoidDataPayload, PurchaseThatCannotBeReadEndsTheList)
{
    CmdLingyuangouBuyListReply sent;
    sent.m_Entries.resize(2);
    sent.m_Entries[0].m_Text7 = L"seventh";
    CDataPackager packager;
    ASSERT_TRUE(sent.Write(&packager));
    CDataPackager cut;
    cut.Write(packager.GetBuffer(), packager.GetDataSize() - 1);

    CmdLingyuangouBuyListReply received;
    received.m_Entries.resize(5);
    EXPECT_FALSE(received.Read(&cut));
    ASSERT_EQ(received.m_Entries.size(), 1u);
    EXPECT_EQ(received.m_Entries[0].m_Text7, L"seventh");
}

TEST(MatchPlayer, PairsReplaceTheOldOnes)
{
    CDataPackager packager;
    beginPlayer(packager);
    for (int value : {1, 7, 70})
        packager.Write(value);
    MatchPlayerInfo player = usedPlayer();
    EXPECT_TRUE(player.Read(&packager));
    EXPECT_EQ(player.m_Text1, L"name");
    EXPECT_EQ(player.m_Float3, 2.5f);
    EXPECT_EQ(player.m_ValueMap, (std::map<int, int>{{7, 70}}));
    EXPECT_EQ(player.m_Value1, 33);
}

TEST(MatchPlayer, CountBelowOneLeavesThePairs)
{
    for (int count : {0, -1})
    {
        CDataPackager packager;
        beginPlayer(packager);
        packager.Write(count);
        MatchPlayerInfo player = usedPlayer();
        EXPECT_TRUE(player.Read(&packager));
        EXPECT_EQ(player.m_ValueMap, usedPlayer().m_ValueMap);
    }
}

TEST(MatchPlayer, CutCountLeavesThePairs)
{
    CDataPackager packager;
    beginPlayer(packager);
    packager.Write(static_cast<unsigned short>(1));
    MatchPlayerInfo player = usedPlayer();
    EXPECT_TRUE(player.Read(&packager));
    EXPECT_EQ(player.m_ValueMap, usedPlayer().m_ValueMap);
}

TEST(MatchPlayer, TextThatFailsSkipsToTheCount)
{
    CDataPackager packager;
    // A text of 63 announced units without their bytes.
    packager.Write(static_cast<unsigned char>(63));
    for (int value : {1, 7, 70})
        packager.Write(value);
    MatchPlayerInfo player = usedPlayer();
    EXPECT_TRUE(player.Read(&packager));
    EXPECT_EQ(player.m_Text1, L"before");
    EXPECT_EQ(player.m_Float3, 9.0f);
    EXPECT_EQ(player.m_ValueMap, (std::map<int, int>{{7, 70}}));
}

TEST(MatchPlayer, PairsAreReadUntested)
{
    CDataPackager packager;
    beginPlayer(packager);
    for (int value : {3, 7, 70, 8})
        packager.Write(value);
    MatchPlayerInfo player = usedPlayer();
    EXPECT_TRUE(player.Read(&packager));
    EXPECT_EQ(player.m_ValueMap, (std::map<int, int>{{0, 0}, {7, 70}, {8, 0}}));
}

TEST(MatchPlayer, LocalNumberDoesNotTravel)
{
    MatchPlayerInfo player;
    const tests::Bytes plain = written<CDataPackager>(player);
    player.m_Value1 = 44;
    EXPECT_EQ(written<CDataPackager>(player), plain);
}

TEST(MatchPlayer, HostileCountsCostNoMoreThanThePayloadHolds)
{
    CDataPackager packager;
    beginPlayer(packager);
    packager.Write(0x7FFFFFFF);
    MatchPlayerInfo player;
    EXPECT_TRUE(player.Read(&packager));
    EXPECT_LE(player.m_ValueMap.size(), 1u);

    CDataPackager list;
    list.Write(0x7FFFFFFF);
    CmdMatchPlayerReply reply;
    EXPECT_TRUE(reply.Read(&list));
    EXPECT_LE(reply.m_MatchPlayerInfos.size(), 1u);
}
