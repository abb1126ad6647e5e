#include "examples/arena/player/pack_client.h"

#include "commands/system_info.h"
#include "examples/arena/player/players.h"
#include "examples/arena/text.h"
#include "framework/string_helper.h"

#include <cctype>

namespace arena::player
{

namespace
{

// How many lines of a history are read.
constexpr size_t kMostHistory = 20;

// Questions may name these replies.
template <class... Replies, class Packs>
bool expectAll(Packs& packs, host::Questions& questions)
{
    return (host::expectPack<Replies>(packs, questions) && ...);
}

} // namespace

bool PackClient::installMatch(host::Handlers& handlers, host::Questions& questions)
{
    numberMatch(m_Match);
    return expectAll<MatchPack_EnterBestFamily_Reply, MatchPack_ExitBestFamily_Reply,
                     MatchPack_BestFamilyRandomDice_Reply, MatchPack_BestFamilySetDice_Reply,
                     MatchPack_BestFamilyTigerMachine_Reply, MatchPack_BestFamilyTask_Reply,
                     MatchPack_BestFamilyCheckGameResult_Reply, MatchPack_BestFamilyCountDownTime_Reply,
                     MatchPack_ExchangeStampReply, MatchPack_NotEnoughStockReply, MatchPack_StampChangeGoodsReply,
                     MatchPack_FinishSchedule_Reply, MatchPack_TakeGift_Reply, MatchPack_TeamAwards_Reply,
                     MatchPack_GiveBet_Reply, MatchPack_GivePraise_Reply, MatchPack_FinalLottery_Reply,
                     MatchPack_FinalMatchInfo_Reply, MatchPack_SelectBrainGame_Reply, MatchPack_StartBrainGame_Reply,
                     MatchPack_BuyTool_Reply, MatchPack_TryAgainGame_Reply, MatchPack_PlayerList_Reply>(m_Match,
                                                                                                        questions) &&
           expectPush<MatchPack_ModifyCountDownTime_Reply>(m_Match, questions) &&
           expectAll<MatchPackType_Login_Reply, MatchPackType_Logout_Reply, MatchPackType_QueryMatchState_Reply,
                     MatchPackType_SelectTeam_Reply, MatchPackType_StartGame_Reply, MatchPackType_EndGame_Reply,
                     MatchPackType_QueryTeamState_Reply, MatchPackType_QueryTeamRank_Reply,
                     MatchPackType_QueryPersonTeamRank_Reply, MatchPackType_QueryTotalScoreRank_Reply,
                     MatchPackType_QueryGameStopRank_Reply, MatchPackType_QuerySchedule_Reply,
                     MatchPackType_QueryAwardsReply, MatchPackType_LotteryBaseNum, MatchPackType_LotteryAllNum,
                     MatchPackType_LotteryReset, MatchPackType_LotteryRevealer, MatchPackType_IsCanRevealer>(
               m_Match, questions) &&
           expectPush<MatchPackType_UpdateTeamState_Reply>(m_Match, questions) &&
           expectAll<Match4Pack_EnterYundonghui_Reply, Match4Pack_ExitYundonghui_Reply, Match4Pack_GetAccuntInfo_Reply,
                     Match4Pack_SaveMatchData_Reply, Match4Pack_DeductEnergy_Reply, Match4Pack_EndGameCalculate_Reply,
                     Match4Pack_FindMate_Reply, Match4Pack_CheckBeWeekend_Reply, Match4Pack_SportRank_Reply,
                     Match4Pack_BuyShopGood_Reply, Match4Pack_TicketGoodConfig_Reply, Match4Pack_OrderRecord_Reply>(
               m_Match, questions) &&
           // It is read into the elements that its lists have.
           host::expectPack<Match4Pack_CheckHstryRec_Reply>(m_Match, questions, {},
                                                            [](Match4Pack_CheckHstryRec_Reply& reply)
                                                            {
                                                                reply.m_History1.resize(kMostHistory);
                                                                reply.m_History2.resize(kMostHistory);
                                                            }) &&
           expectAll<CombatPack_Enroll_Reply, CombatPack_QueryEnroll_Reply, CombatPack_QueryGroup_Reply,
                     CombatPack_PlayerSelectGroup_Reply, CombatPack_Change_Diamond, CombatPack_BuyShopGood_Reply,
                     CombatPack_TicketGoodConfig_Reply, CombatPack_OrderRecord_Reply, CombatRankData_Pack_Reply,
                     BS4Pack_GameSeason_Reply, BS4Pack_SelectGroup_Reply, BS4Pack_GoldenTime_Reply,
                     BS4Pack_LastStand_Reply, BS4RankData_Pack_Reply>(m_Match, questions) &&
           expectPush<BS4Pack_GoldenTimeEnd_Notify>(m_Match, questions) &&
           expectPush<BS4Pack_LastStandEnd_Notify>(m_Match, questions) &&
           expectPush<BS4Pack_MatchEnd_Notify>(m_Match, questions) && m_Match.install(handlers);
}

bool PackClient::installTools(host::Handlers& handlers, host::Questions& questions)
{
    numberProfiling(m_Profiling);
    numberQueryTool(m_QueryTool);
    numberSocial(m_Social);
    return expectAll<CmdProfilingPack_GetMaxValues, CmdProfilingPack_SubmitMaxValues>(m_Profiling, questions) &&
           expectAll<QT_Login_Reply, QT_CheckVersion_Reply, QT_SendProductType, QT_TableTimeFrom_Reply,
                     QT_QueryCondition_Reply, QT_OverviewPay_Reply, QT_Payment_Pay_Reply, QT_Payment_Consumption_Reply,
                     QT_Nib2Nib3_Pay_Reply, QT_OnlineQuery_Hours24Online_Reply, QT_OnlineQuery_DaysOnline_Reply,
                     QT_BstFmy3_DailyStats_Reply, QT_BstFmy3_EventTrigger_Reply, QT_BstFmy3_PropsOutput_Reply,
                     QT_BstFmy3_WeekMatchStats_Reply, QT_BstFmy3_ZillionaireProps_Reply,
                     QT_BstFmy3_ZillionaireStats_Reply>(m_QueryTool, questions) &&
           expectAll<CmdSocialOccupyAPIReply, CmdSocialReleaseAPIReply, CmdSocialCreateAccessTokenReply>(m_Social,
                                                                                                         questions) &&
           questions.expect<CCmdSystemInfoReply, CCmdProfilerUsage>() && m_Profiling.install(handlers) &&
           m_QueryTool.install(handlers) && m_Social.install(handlers);
}

bool PackClient::install(Players& players)
{
    host::Handlers& handlers = players.getHandlers();
    host::Questions& questions = players.getQuestions();
    m_IsVerbose = players.getOptions().m_IsVerbose;
    numberHome(m_Home);
    numberTravel(m_Travel);
    numberFriend(m_Friends);
    numberAchievement(m_Achievements);
    numberChangingRoom(m_ChangingRoom);
    numberInPurchase(m_InPurchase);
    numberWizard(m_Wizard);
    numberWorldSquare(m_WorldSquare);
    numberVoidData(m_VoidData);
    return expectAll<HomePack_LoadData_Reply, HomePack_SaveData_Reply, HomePack_StartGame_Reply, HomePack_EndGame_Reply,
                     HomePack_CountdownTime_Reply, HomePack_JumpOff_Reply, HomePack_DirectReWard_Reply,
                     HomePack_UnlockGame_Reply, HomePack_GetPlayerList_Reply, HomePack_PlayerNumList_Reply,
                     HomePack_ClearDaily_Reply>(m_Home, questions) &&
           expectAll<TravelWorldPack_LoadData_Reply, TravelWorldPack_SaveData_Reply,
                     TravelWorldPack_AttractUnLock_Reply>(m_Travel, questions) &&
           expectAll<FriendSystemPack_FriendListReply, FriendSystemPack_FriendLimitRespond,
                     FriendSystemPack_FriendInfoRespond, FriendSystemPack_BasicFriendInfoRespond,
                     FriendSystemPack_FetchMsgRespond, FriendSystemPack_FetchOfficalMsgRespond,
                     FriendSystemPack_SelfIdRespond>(m_Friends, questions) &&
           expectPush<FriendSystemPack_MsgPush>(m_Friends, questions) &&
           expectAll<AchievementPack_StartGame_Reply, AchievementPack_SendAchievement_Reply,
                     AchievementPack_EndGame_Reply, AchievementPack_GetAllAchievement_Reply>(m_Achievements,
                                                                                             questions) &&
           expectPush<AchievementPack_Notice_Reply>(m_Achievements, questions) &&
           expectAll<ChangingRoomPack_LoadUserDataReply, ChangingRoomPack_UpdateEquipReply,
                     ChangingRoomPack_BuyEquipReply, ChangingRoomPack_LuckDrawEquipReply>(m_ChangingRoom, questions) &&
           expectAll<CmdAvatarLoadDataReply, CmdAvatarSaveDataReply, CmdAvatarBuyDataReply>(m_VoidData, questions) &&
           expectAll<InPurchasePack_CheckIfOpenInPurchase_Reply, InPurchasePack_SaveOrderId_Reply,
                     InPurchasePack_GetCheckResult_Reply, InPurchasePack_CheckAuthorizationCode_Reply,
                     InPurchasePack_CreateAndSaveFCode_Reply, InPurchasePack_GetFCodeList_Reply,
                     InPurchasePack_UseFCode_Reply>(m_InPurchase, questions) &&
           expectAll<WizardPack_Login_Reply, WizardPack_Logout_Reply>(m_Wizard, questions) &&
           expectAll<WorldSquarePack_Login_Reply, WorldSquarePack_Logout_Reply>(m_WorldSquare, questions) &&
           expectPush<WorldSquarePack_PlayerInfo>(m_WorldSquare, questions) &&
           expectPush<WorldSquarePack_TransmisData>(m_WorldSquare, questions) && m_Home.install(handlers) &&
           m_Travel.install(handlers) && m_Friends.install(handlers) && m_Achievements.install(handlers) &&
           m_ChangingRoom.install(handlers) && m_InPurchase.install(handlers) && m_Wizard.install(handlers) &&
           m_WorldSquare.install(handlers) && m_VoidData.install(handlers) && installMatch(handlers, questions) &&
           installTools(handlers, questions);
}

std::string PackClient::getClassName(const char* encoded)
{
    const std::string text = encoded;
    constexpr char kRequestFor[] = "RequestForI";
    const size_t inner = text.find(kRequestFor);
    size_t from = inner == std::string::npos ? 0 : inner + sizeof kRequestFor - 1;
    size_t length = 0;
    for (; from < text.size() && std::isdigit(static_cast<unsigned char>(text[from])); ++from)
        length = length * 10 + static_cast<size_t>(text[from] - '0');
    return (inner == std::string::npos ? "" : "RequestFor ") + text.substr(from, length);
}

void PackClient::note(PackAccount& player, const char* what, const char* encoded)
{
    player.note("%s %s", what, getClassName(encoded).c_str());
}

void PackClient::notePush(const char* encoded) const
{
    if (m_IsVerbose)
        say("a player receives %s", getClassName(encoded).c_str());
}

void expectDone(PackAccount& player, const zet::String_T<wchar_t>& result, const char* what)
{
    if (!result.isEmpty())
        player.fail("%s: %s", what, zet::StringHelper::wideToUtf8(result).getBuffer());
}

void expectRefused(PackAccount& player, const zet::String_T<wchar_t>& result, const char* what)
{
    if (result.isEmpty())
        player.fail("not refused: %s", what);
    else
        player.note("refused: %s: %s", what, zet::StringHelper::wideToUtf8(result).getBuffer());
}

} // namespace arena::player
