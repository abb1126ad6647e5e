// Which messages have a table of virtual functions, and the order of the functions in it.
#include "packs/achievement.h"
#include "packs/combat_bs4.h"
#include "packs/friend.h"
#include "packs/home.h"
#include "packs/in_purchase.h"
#include "packs/match.h"
#include "packs/match4.h"
#include "packs/match_type.h"
#include "packs/query_tool.h"
#include "packs/travel.h"
#include "packs/wizard_square.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>

namespace
{

template <class... T>
constexpr bool areVirtual = (true && ... && (std::is_polymorphic_v<T> && !std::has_virtual_destructor_v<T>));
template <class... T>
constexpr bool arePlain = (true && ... && !std::is_polymorphic_v<T>);

static_assert(areVirtual<HomePack_StartGame_Request, HomePack_StartGame_Reply, HomePack_EndGame_Request,
                         HomePack_EndGame_Reply, HomePack_CountdownTime_Request, HomePack_CountdownTime_Reply,
                         HomePack_JumpOff_Request, HomePack_JumpOff_Reply, HomePack_DirectReWard_Request,
                         HomePack_DirectReWard_Reply, HomePack_UnlockGame_Request, HomePack_UnlockGame_Reply,
                         HomePack_GetPlayerList_Request, HomePack_GetPlayerList_Reply>);
static_assert(arePlain<HomePack_LoadData_Request, HomePack_LoadData_Reply, HomePack_SaveData_Request,
                       HomePack_SaveData_Reply, HomePack_PlayerNumList_Request, HomePack_PlayerNumList_Reply,
                       HomePack_ClearDaily_Request, HomePack_ClearDaily_Reply>);
static_assert(areVirtual<MatchPack_ExchangeStampReply, MatchPack_NotEnoughStockReply, Match4Pack_CheckBeWeekend_Reply,
                         Match4Pack_OrderRecord_Reply, CombatPack_OrderRecord_Reply>);
static_assert(arePlain<MatchPack_ExchangeStampRequest, MatchPack_EnterBestFamily_Request, MatchPackType_Login_Reply,
                       MatchPackType_LotteryAllNum, Match4Pack_SportRank_Reply, Match4Pack_TicketGoodConfig_Reply,
                       CombatPack_BuyShopGood_Reply, BS4Pack_GameSeason_Reply>);
static_assert(areVirtual<AchievementPack_StartGame_Request, AchievementPack_StartGame_Reply,
                         AchievementPack_SendAchievement_Request, AchievementPack_SendAchievement_Reply,
                         AchievementPack_EndGame_Request, AchievementPack_EndGame_Reply, AchievementPack_Notice_Reply>);
static_assert(arePlain<AchievementPack_GetAllAchievement_Request, AchievementPack_GetAllAchievement_Reply>);
static_assert(areVirtual<InPurchasePack_GetCheckResult_Request, InPurchasePack_SendBuySuccessMessage_Request>);
static_assert(arePlain<InPurchasePack_GetCheckResult_Reply, InPurchasePack_SaveOrderId_Request,
                       InPurchasePack_GetFCodeList_Reply, FriendSystemPack_MsgPush, TravelWorldPack_LoadData_Request,
                       WizardPack_GoWar_Request, WorldSquarePack_PlayerInfo>);
static_assert(
    areVirtual<QT_Login_Request, QT_Login_Reply, QT_CheckVersion_Request, QT_CheckVersion_Reply, QT_SendProductType,
               QT_InsertMac_Request, QT_TableTimeFrom_Reply, QT_QueryCondition_Reply, QT_OverviewPay_Request,
               QT_OverviewPay_Reply, QT_Payment_Pay_Request, QT_Payment_Pay_Reply, QT_Payment_Consumption_Request,
               QT_Payment_Consumption_Reply, QT_Nib2Nib3_Pay_Request, QT_Nib2Nib3_Pay_Reply,
               QT_OnlineQuery_Hours24Online_Request, QT_OnlineQuery_Hours24Online_Reply,
               QT_OnlineQuery_DaysOnline_Request, QT_OnlineQuery_DaysOnline_Reply, QT_BstFmy3_DailyStats_Request,
               QT_BstFmy3_DailyStats_Reply, QT_BstFmy3_EventTrigger_Request, QT_BstFmy3_EventTrigger_Reply,
               QT_BstFmy3_PropsOutput_Request, QT_BstFmy3_PropsOutput_Reply, QT_BstFmy3_WeekMatchStats_Request,
               QT_BstFmy3_WeekMatchStats_Reply, QT_BstFmy3_ZillionaireProps_Request, QT_BstFmy3_ZillionaireProps_Reply,
               QT_BstFmy3_ZillionaireStats_Request, QT_BstFmy3_ZillionaireStats_Reply>);

#if defined(__GNUC__) && defined(__x86_64__)
// A pointer to a virtual function is its offset in the table, in bytes, plus one.
template <class Function>
size_t placeOf(Function function)
{
    uintptr_t word = 0;
    std::memcpy(&word, &function, sizeof word);
    return (word - 1) / sizeof(void*);
}

template <class T, class P>
size_t placeOfWrite()
{
    return placeOf(static_cast<bool (T::*)(P*) const>(&T::Write));
}
template <class T, class P>
size_t placeOfRead()
{
    return placeOf(static_cast<bool (T::*)(P*)>(&T::Read));
}

template <class T>
void expectWriteThenRead()
{
    EXPECT_EQ((placeOfWrite<T, CCmdPackager>()), 0u);
    EXPECT_EQ((placeOfRead<T, CCmdPackager>()), 1u);
}

TEST(VirtualPair, IsWriteThenRead)
{
    expectWriteThenRead<HomePack_StartGame_Request>();
    expectWriteThenRead<MatchPack_NotEnoughStockReply>();
    expectWriteThenRead<Match4Pack_OrderRecord_Reply>();
    expectWriteThenRead<AchievementPack_StartGame_Reply>();
    expectWriteThenRead<InPurchasePack_SendBuySuccessMessage_Request>();
    expectWriteThenRead<QT_Payment_Pay_Reply>();
}

TEST(VirtualPair, OfBothPackagersIsTheDataPackagersWriteFirst)
{
    using Reply = MatchPack_ExchangeStampReply;
    EXPECT_EQ((placeOfWrite<Reply, CDataPackager>()), 0u);
    EXPECT_EQ((placeOfWrite<Reply, CCmdPackager>()), 1u);
    EXPECT_EQ((placeOfRead<Reply, CDataPackager>()), 2u);
    EXPECT_EQ((placeOfRead<Reply, CCmdPackager>()), 3u);
}
#endif

} // namespace
