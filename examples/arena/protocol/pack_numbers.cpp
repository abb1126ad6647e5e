#include "examples/arena/protocol/pack_numbers.h"

namespace arena
{

void numberHome(HomePacks& home)
{
    home.number<HomePack_LoadData_Request>(kHomeLoadDataRequest);
    home.number<HomePack_LoadData_Reply>(kHomeLoadDataReply);
    home.number<HomePack_SaveData_Request>(kHomeSaveDataRequest);
    home.number<HomePack_SaveData_Reply>(kHomeSaveDataReply);
    home.number<HomePack_StartGame_Request>(kHomeStartGameRequest);
    home.number<HomePack_StartGame_Reply>(kHomeStartGameReply);
    home.number<HomePack_EndGame_Request>(kHomeEndGameRequest);
    home.number<HomePack_EndGame_Reply>(kHomeEndGameReply);
    home.number<HomePack_CountdownTime_Request>(kHomeCountdownTimeRequest);
    home.number<HomePack_CountdownTime_Reply>(kHomeCountdownTimeReply);
    home.number<HomePack_JumpOff_Request>(kHomeJumpOffRequest);
    home.number<HomePack_JumpOff_Reply>(kHomeJumpOffReply);
    home.number<HomePack_DirectReWard_Request>(kHomeDirectReWardRequest);
    home.number<HomePack_DirectReWard_Reply>(kHomeDirectReWardReply);
    home.number<HomePack_UnlockGame_Request>(kHomeUnlockGameRequest);
    home.number<HomePack_UnlockGame_Reply>(kHomeUnlockGameReply);
    home.number<HomePack_GetPlayerList_Request>(kHomeGetPlayerListRequest);
    home.number<HomePack_GetPlayerList_Reply>(kHomeGetPlayerListReply);
    home.number<HomePack_PlayerNumList_Request>(kHomePlayerNumListRequest);
    home.number<HomePack_PlayerNumList_Reply>(kHomePlayerNumListReply);
    home.number<HomePack_ClearDaily_Request>(kHomeClearDailyRequest);
    home.number<HomePack_ClearDaily_Reply>(kHomeClearDailyReply);
}

void numberTravel(TravelPacks& travel)
{
    travel.number<TravelWorldPack_LoadData_Request>(kTravelLoadDataRequest);
    travel.number<TravelWorldPack_LoadData_Reply>(kTravelLoadDataReply);
    travel.number<TravelWorldPack_SaveData_Request>(kTravelSaveDataRequest);
    travel.number<TravelWorldPack_SaveData_Reply>(kTravelSaveDataReply);
    travel.number<TravelWorldPack_AttractUnLock_Request>(kTravelAttractUnLockRequest);
    travel.number<TravelWorldPack_AttractUnLock_Reply>(kTravelAttractUnLockReply);
}

void numberFriend(FriendPacks& friends)
{
    friends.number<FriendSystemPack_FriendAddRequest>(kFriendFriendAddRequest);
    friends.number<FriendSystemPack_FriendAddWithInfoRequest>(kFriendFriendAddWithInfoRequest);
    friends.number<FriendSystemPack_FriendDeleteRequest>(kFriendFriendDeleteRequest);
    friends.number<FriendSystemPack_FriendListReply>(kFriendFriendListReply);
    friends.number<FriendSystemPack_FriendLimitRequest>(kFriendFriendLimitRequest);
    friends.number<FriendSystemPack_FriendLimitRespond>(kFriendFriendLimitRespond);
    friends.number<FriendSystemPack_FriendInfoRequest>(kFriendFriendInfoRequest);
    friends.number<FriendSystemPack_FriendInfoRespond>(kFriendFriendInfoRespond);
    friends.number<FriendSystemPack_BasicFriendInfoRequest>(kFriendBasicFriendInfoRequest);
    friends.number<FriendSystemPack_BasicFriendInfoRespond>(kFriendBasicFriendInfoRespond);
    friends.number<FriendSystemPack_SendMsgRequest>(kFriendSendMsgRequest);
    friends.number<FriendSystemPack_FetchMsgRequest>(kFriendFetchMsgRequest);
    friends.number<FriendSystemPack_FetchMsgRespond>(kFriendFetchMsgRespond);
    friends.number<FriendSystemPack_FetchOfficalMsgRequest>(kFriendFetchOfficalMsgRequest);
    friends.number<FriendSystemPack_FetchOfficalMsgRespond>(kFriendFetchOfficalMsgRespond);
    friends.number<FriendSystemPack_MsgPush>(kFriendMsgPush);
    friends.number<FriendSystemPack_SelfMomentMsgRequest>(kFriendSelfMomentMsgRequest);
    friends.number<FriendSystemPack_SelfIdRespond>(kFriendSelfIdRespond);
    friends.number<FriendSystemPack_SetSelfPrestige>(kFriendSetSelfPrestige);
    friends.number<FriendSystemPack_SetSelfVip>(kFriendSetSelfVip);
    friends.number<RequestFor<FriendSystemPack_FriendListReply>>(kFriendFriendListRequest);
    friends.number<RequestFor<FriendSystemPack_SelfIdRespond>>(kFriendSelfIdRequest);
}

void numberAchievement(AchievementPacks& achievements)
{
    achievements.number<AchievementPack_StartGame_Request>(kAchievementStartGameRequest);
    achievements.number<AchievementPack_StartGame_Reply>(kAchievementStartGameReply);
    achievements.number<AchievementPack_SendAchievement_Request>(kAchievementSendAchievementRequest);
    achievements.number<AchievementPack_SendAchievement_Reply>(kAchievementSendAchievementReply);
    achievements.number<AchievementPack_EndGame_Request>(kAchievementEndGameRequest);
    achievements.number<AchievementPack_EndGame_Reply>(kAchievementEndGameReply);
    achievements.number<AchievementPack_Notice_Reply>(kAchievementNoticeReply);
    achievements.number<AchievementPack_GetAllAchievement_Request>(kAchievementGetAllAchievementRequest);
    achievements.number<AchievementPack_GetAllAchievement_Reply>(kAchievementGetAllAchievementReply);
}

void numberChangingRoom(ChangingRoomPacks& changingRoom)
{
    changingRoom.number<ChangingRoomPack_LoadUserDataRequest>(kChangingRoomLoadUserDataRequest);
    changingRoom.number<ChangingRoomPack_LoadUserDataReply>(kChangingRoomLoadUserDataReply);
    changingRoom.number<ChangingRoomPack_UpdateEquipRequest>(kChangingRoomUpdateEquipRequest);
    changingRoom.number<ChangingRoomPack_UpdateEquipReply>(kChangingRoomUpdateEquipReply);
    changingRoom.number<ChangingRoomPack_BuyEquipRequest>(kChangingRoomBuyEquipRequest);
    changingRoom.number<ChangingRoomPack_BuyEquipReply>(kChangingRoomBuyEquipReply);
    changingRoom.number<ChangingRoomPack_LuckDrawEquipRequest>(kChangingRoomLuckDrawEquipRequest);
    changingRoom.number<ChangingRoomPack_LuckDrawEquipReply>(kChangingRoomLuckDrawEquipReply);
}

void numberInPurchase(InPurchasePacks& inPurchase)
{
    inPurchase.number<InPurchasePack_CheckIfOpenInPurchase_Request>(kInPurchaseCheckIfOpenInPurchaseRequest);
    inPurchase.number<InPurchasePack_CheckIfOpenInPurchase_Reply>(kInPurchaseCheckIfOpenInPurchaseReply);
    inPurchase.number<InPurchasePack_SaveOrderId_Request>(kInPurchaseSaveOrderIdRequest);
    inPurchase.number<InPurchasePack_SaveOrderId_Reply>(kInPurchaseSaveOrderIdReply);
    inPurchase.number<InPurchasePack_GetCheckResult_Request>(kInPurchaseGetCheckResultRequest);
    inPurchase.number<InPurchasePack_GetCheckResult_Reply>(kInPurchaseGetCheckResultReply);
    inPurchase.number<InPurchasePack_SendBuySuccessMessage_Request>(kInPurchaseSendBuySuccessMessageRequest);
    inPurchase.number<InPurchasePack_CheckAuthorizationCode_Request>(kInPurchaseCheckAuthorizationCodeRequest);
    inPurchase.number<InPurchasePack_CheckAuthorizationCode_Reply>(kInPurchaseCheckAuthorizationCodeReply);
    inPurchase.number<InPurchasePack_CreateAndSaveFCode_Request>(kInPurchaseCreateAndSaveFCodeRequest);
    inPurchase.number<InPurchasePack_CreateAndSaveFCode_Reply>(kInPurchaseCreateAndSaveFCodeReply);
    inPurchase.number<InPurchasePack_GetFCodeList_Reply>(kInPurchaseGetFCodeListReply);
    inPurchase.number<InPurchasePack_UseFCode_Request>(kInPurchaseUseFCodeRequest);
    inPurchase.number<InPurchasePack_UseFCode_Reply>(kInPurchaseUseFCodeReply);
    inPurchase.number<RequestFor<InPurchasePack_GetFCodeList_Reply>>(kInPurchaseGetFCodeListRequest);
}

void numberWizard(WizardPacks& wizard)
{
    wizard.number<WizardPack_Login_Request>(kWizardLoginRequest);
    wizard.number<WizardPack_Login_Reply>(kWizardLoginReply);
    wizard.number<WizardPack_Logout_Request>(kWizardLogoutRequest);
    wizard.number<WizardPack_Logout_Reply>(kWizardLogoutReply);
    wizard.number<WizardPack_GoWar_Request>(kWizardGoWarRequest);
}

void numberWorldSquare(WorldSquarePacks& square)
{
    square.number<WorldSquarePack_Login_Request>(kWorldSquareLoginRequest);
    square.number<WorldSquarePack_Login_Reply>(kWorldSquareLoginReply);
    square.number<WorldSquarePack_Logout_Request>(kWorldSquareLogoutRequest);
    square.number<WorldSquarePack_Logout_Reply>(kWorldSquareLogoutReply);
    square.number<WorldSquarePack_PlayerInfo>(kWorldSquarePlayerInfo);
    square.number<WorldSquarePack_TransmisData>(kWorldSquareTransmisData);
}

void numberMatch(MatchPacks& match)
{
    match.number<MatchPack_EnterBestFamily_Request>(kMatchEnterBestFamilyRequest);
    match.number<MatchPack_EnterBestFamily_Reply>(kMatchEnterBestFamilyReply);
    match.number<MatchPack_ExitBestFamily_Request>(kMatchExitBestFamilyRequest);
    match.number<MatchPack_ExitBestFamily_Reply>(kMatchExitBestFamilyReply);
    match.number<MatchPack_BestFamilyRandomDice_Request>(kMatchBestFamilyRandomDiceRequest);
    match.number<MatchPack_BestFamilyRandomDice_Reply>(kMatchBestFamilyRandomDiceReply);
    match.number<MatchPack_BestFamilySetDice_Request>(kMatchBestFamilySetDiceRequest);
    match.number<MatchPack_BestFamilySetDice_Reply>(kMatchBestFamilySetDiceReply);
    match.number<MatchPack_BestFamilyTigerMachine_Request>(kMatchBestFamilyTigerMachineRequest);
    match.number<MatchPack_BestFamilyTigerMachine_Reply>(kMatchBestFamilyTigerMachineReply);
    match.number<MatchPack_BestFamilyTask_Request>(kMatchBestFamilyTaskRequest);
    match.number<MatchPack_BestFamilyTask_Reply>(kMatchBestFamilyTaskReply);
    match.number<MatchPack_BestFamilyCheckGameResult_Request>(kMatchBestFamilyCheckGameResultRequest);
    match.number<MatchPack_BestFamilyCheckGameResult_Reply>(kMatchBestFamilyCheckGameResultReply);
    match.number<MatchPack_BestFamilyCountDownTime_Request>(kMatchBestFamilyCountDownTimeRequest);
    match.number<MatchPack_BestFamilyCountDownTime_Reply>(kMatchBestFamilyCountDownTimeReply);
    match.number<MatchPack_ModifyCountDownTime_Reply>(kMatchModifyCountDownTimeReply);
    match.number<MatchPack_ExchangeStampRequest>(kMatchExchangeStampRequest);
    match.number<MatchPack_ExchangeStampReply>(kMatchExchangeStampReply);
    match.number<MatchPack_NotEnoughStockReply>(kMatchNotEnoughStockReply);
    match.number<MatchPack_StampChangeGoodsRequest>(kMatchStampChangeGoodsRequest);
    match.number<MatchPack_StampChangeGoodsReply>(kMatchStampChangeGoodsReply);
    match.number<MatchPack_FinishSchedule_Request>(kMatchFinishScheduleRequest);
    match.number<MatchPack_FinishSchedule_Reply>(kMatchFinishScheduleReply);
    match.number<MatchPack_TakeGift_Request>(kMatchTakeGiftRequest);
    match.number<MatchPack_TakeGift_Reply>(kMatchTakeGiftReply);
    match.number<MatchPack_TeamAwards_Request>(kMatchTeamAwardsRequest);
    match.number<MatchPack_TeamAwards_Reply>(kMatchTeamAwardsReply);
    match.number<MatchPack_UpdateBaodiTaskExecState_Request>(kMatchUpdateBaodiTaskExecStateRequest);
    match.number<MatchPack_GiveBet_Request>(kMatchGiveBetRequest);
    match.number<MatchPack_GiveBet_Reply>(kMatchGiveBetReply);
    match.number<MatchPack_GivePraise_Request>(kMatchGivePraiseRequest);
    match.number<MatchPack_GivePraise_Reply>(kMatchGivePraiseReply);
    match.number<MatchPack_FinalLottery_Request>(kMatchFinalLotteryRequest);
    match.number<MatchPack_FinalLottery_Reply>(kMatchFinalLotteryReply);
    match.number<MatchPack_FinalMatchInfo_Request>(kMatchFinalMatchInfoRequest);
    match.number<MatchPack_FinalMatchInfo_Reply>(kMatchFinalMatchInfoReply);
    match.number<MatchPack_LotteryReset_Request>(kMatchLotteryResetRequest);
    match.number<MatchPack_LotteryRevealer_Request>(kMatchLotteryRevealerRequest);
    match.number<MatchPack_SelectBrainGame_Request>(kMatchSelectBrainGameRequest);
    match.number<MatchPack_SelectBrainGame_Reply>(kMatchSelectBrainGameReply);
    match.number<MatchPack_StartBrainGame_Request>(kMatchStartBrainGameRequest);
    match.number<MatchPack_StartBrainGame_Reply>(kMatchStartBrainGameReply);
    match.number<MatchPack_BuyTool_Request>(kMatchBuyToolRequest);
    match.number<MatchPack_BuyTool_Reply>(kMatchBuyToolReply);
    match.number<MatchPack_TryAgainGame_Request>(kMatchTryAgainGameRequest);
    match.number<MatchPack_TryAgainGame_Reply>(kMatchTryAgainGameReply);
    match.number<MatchPack_PlayerList_Request>(kMatchPlayerListRequest);
    match.number<MatchPack_PlayerList_Reply>(kMatchPlayerListReply);
    match.number<MatchPackType_Login_Request>(kMatchTeamLoginRequest);
    match.number<MatchPackType_Login_Reply>(kMatchTeamLoginReply);
    match.number<MatchPackType_Logout_Request>(kMatchTeamLogoutRequest);
    match.number<MatchPackType_Logout_Reply>(kMatchTeamLogoutReply);
    match.number<MatchPackType_QueryMatchState_Request>(kMatchTeamQueryMatchStateRequest);
    match.number<MatchPackType_QueryMatchState_Reply>(kMatchTeamQueryMatchStateReply);
    match.number<MatchPackType_SelectTeam_Request>(kMatchTeamSelectTeamRequest);
    match.number<MatchPackType_SelectTeam_Reply>(kMatchTeamSelectTeamReply);
    match.number<MatchPackType_StartGame_Request>(kMatchTeamStartGameRequest);
    match.number<MatchPackType_StartGame_Reply>(kMatchTeamStartGameReply);
    match.number<MatchPackType_EndGame_Request>(kMatchTeamEndGameRequest);
    match.number<MatchPackType_EndGame_Reply>(kMatchTeamEndGameReply);
    match.number<MatchPackType_QueryTeamState_Reply>(kMatchTeamQueryTeamStateReply);
    match.number<MatchPackType_UpdateTeamState_Reply>(kMatchTeamUpdateTeamStateReply);
    match.number<MatchPackType_QueryTeamRank_Request>(kMatchTeamQueryTeamRankRequest);
    match.number<MatchPackType_QueryTeamRank_Reply>(kMatchTeamQueryTeamRankReply);
    match.number<MatchPackType_QueryPersonTeamRank_Request>(kMatchTeamQueryPersonTeamRankRequest);
    match.number<MatchPackType_QueryPersonTeamRank_Reply>(kMatchTeamQueryPersonTeamRankReply);
    match.number<MatchPackType_QueryTotalScoreRank_Reply>(kMatchTeamQueryTotalScoreRankReply);
    match.number<MatchPackType_QueryGameStopRank_Reply>(kMatchTeamQueryGameStopRankReply);
    match.number<MatchPackType_QuerySchedule_Reply>(kMatchTeamQueryScheduleReply);
    match.number<MatchPackType_QueryPersonClearedInfo_Request>(kMatchTeamQueryPersonClearedInfoRequest);
    match.number<MatchPackType_QueryAwardsRequest>(kMatchTeamQueryAwardsRequest);
    match.number<MatchPackType_QueryAwardsReply>(kMatchTeamQueryAwardsReply);
    match.number<MatchPackType_LotteryBaseNum>(kMatchTeamLotteryBaseNum);
    match.number<MatchPackType_LotteryAllNum>(kMatchTeamLotteryAllNum);
    match.number<MatchPackType_LotteryReset>(kMatchTeamLotteryReset);
    match.number<MatchPackType_LotteryRevealer>(kMatchTeamLotteryRevealer);
    match.number<MatchPackType_IsCanRevealer>(kMatchTeamIsCanRevealer);
    match.number<RequestFor<MatchPackType_QueryTeamState_Reply>>(kMatchTeamQueryTeamStateRequest);
    match.number<RequestFor<MatchPackType_QueryTotalScoreRank_Reply>>(kMatchTeamQueryTotalScoreRankRequest);
    match.number<RequestFor<MatchPackType_QueryGameStopRank_Reply>>(kMatchTeamQueryGameStopRankRequest);
    match.number<RequestFor<MatchPackType_QuerySchedule_Reply>>(kMatchTeamQueryScheduleRequest);
    match.number<RequestFor<MatchPackType_LotteryBaseNum>>(kMatchTeamLotteryBaseNumRequest);
    match.number<RequestFor<MatchPackType_LotteryAllNum>>(kMatchTeamLotteryAllNumRequest);
    match.number<RequestFor<MatchPackType_IsCanRevealer>>(kMatchTeamIsCanRevealerRequest);
    match.number<Match4Pack_EnterYundonghui_Request>(kMatchMeetEnterYundonghuiRequest);
    match.number<Match4Pack_EnterYundonghui_Reply>(kMatchMeetEnterYundonghuiReply);
    match.number<Match4Pack_ExitYundonghui_Request>(kMatchMeetExitYundonghuiRequest);
    match.number<Match4Pack_ExitYundonghui_Reply>(kMatchMeetExitYundonghuiReply);
    match.number<Match4Pack_GetAccuntInfo_Request>(kMatchMeetGetAccuntInfoRequest);
    match.number<Match4Pack_GetAccuntInfo_Reply>(kMatchMeetGetAccuntInfoReply);
    match.number<Match4Pack_SaveMatchData_Request>(kMatchMeetSaveMatchDataRequest);
    match.number<Match4Pack_SaveMatchData_Reply>(kMatchMeetSaveMatchDataReply);
    match.number<Match4Pack_DeductEnergy_Request>(kMatchMeetDeductEnergyRequest);
    match.number<Match4Pack_DeductEnergy_Reply>(kMatchMeetDeductEnergyReply);
    match.number<Match4Pack_EndGameCalculate_Reply>(kMatchMeetEndGameCalculateReply);
    match.number<Match4Pack_FindMate_Request>(kMatchMeetFindMateRequest);
    match.number<Match4Pack_FindMate_Reply>(kMatchMeetFindMateReply);
    match.number<Match4Pack_CheckHstryRec_Request>(kMatchMeetCheckHstryRecRequest);
    match.number<Match4Pack_CheckHstryRec_Reply>(kMatchMeetCheckHstryRecReply);
    match.number<Match4Pack_CheckBeWeekend_Reply>(kMatchMeetCheckBeWeekendReply);
    match.number<Match4Pack_RememberStateIn_Request>(kMatchMeetRememberStateInRequest);
    match.number<Match4Pack_SportRank_Reply>(kMatchMeetSportRankReply);
    match.number<Match4Pack_BuyShopGood_Request>(kMatchMeetBuyShopGoodRequest);
    match.number<Match4Pack_BuyShopGood_Reply>(kMatchMeetBuyShopGoodReply);
    match.number<Match4Pack_TicketGoodConfig_Reply>(kMatchMeetTicketGoodConfigReply);
    match.number<Match4Pack_OrderRecord_Reply>(kMatchMeetOrderRecordReply);
    match.number<RequestFor<Match4Pack_EndGameCalculate_Reply>>(kMatchMeetEndGameCalculateRequest);
    match.number<RequestFor<Match4Pack_CheckBeWeekend_Reply>>(kMatchMeetCheckBeWeekendRequest);
    match.number<RequestFor<Match4Pack_SportRank_Reply>>(kMatchMeetSportRankRequest);
    match.number<RequestFor<Match4Pack_TicketGoodConfig_Reply>>(kMatchMeetTicketGoodConfigRequest);
    match.number<RequestFor<Match4Pack_OrderRecord_Reply>>(kMatchMeetOrderRecordRequest);
    match.number<CombatPack_Enroll_Request>(kMatchCombatEnrollRequest);
    match.number<CombatPack_Enroll_Reply>(kMatchCombatEnrollReply);
    match.number<CombatPack_QueryEnroll_Reply>(kMatchCombatQueryEnrollReply);
    match.number<CombatPack_QueryGroup_Reply>(kMatchCombatQueryGroupReply);
    match.number<CombatPack_PlayerSelectGroup_Request>(kMatchCombatPlayerSelectGroupRequest);
    match.number<CombatPack_PlayerSelectGroup_Reply>(kMatchCombatPlayerSelectGroupReply);
    match.number<CombatPack_Change_Diamond>(kMatchCombatChangeDiamond);
    match.number<CombatPack_BuyShopGood_Request>(kMatchCombatBuyShopGoodRequest);
    match.number<CombatPack_BuyShopGood_Reply>(kMatchCombatBuyShopGoodReply);
    match.number<CombatPack_TicketGoodConfig_Reply>(kMatchCombatTicketGoodConfigReply);
    match.number<CombatPack_OrderRecord_Reply>(kMatchCombatOrderRecordReply);
    match.number<CombatRankData_Pack_Reply>(kMatchCombatRankDataReply);
    match.number<RequestFor<CombatPack_QueryEnroll_Reply>>(kMatchCombatQueryEnrollRequest);
    match.number<RequestFor<CombatPack_QueryGroup_Reply>>(kMatchCombatQueryGroupRequest);
    match.number<RequestFor<CombatPack_TicketGoodConfig_Reply>>(kMatchCombatTicketGoodConfigRequest);
    match.number<RequestFor<CombatPack_OrderRecord_Reply>>(kMatchCombatOrderRecordRequest);
    match.number<RequestFor<CombatRankData_Pack_Reply>>(kMatchCombatRankDataRequest);
    match.number<BS4Pack_GameSeason_Reply>(kMatchBS4GameSeasonReply);
    match.number<BS4Pack_SelectGroup_Reply>(kMatchBS4SelectGroupReply);
    match.number<BS4Pack_GoldenTime_Reply>(kMatchBS4GoldenTimeReply);
    match.number<BS4Pack_GoldenTimeEnd_Notify>(kMatchBS4GoldenTimeEndNotify);
    match.number<BS4Pack_LastStand_Reply>(kMatchBS4LastStandReply);
    match.number<BS4Pack_LastStandEnd_Notify>(kMatchBS4LastStandEndNotify);
    match.number<BS4Pack_MatchEnd_Notify>(kMatchBS4MatchEndNotify);
    match.number<BS4RankData_Pack_Reply>(kMatchBS4RankDataReply);
    match.number<RequestFor<BS4Pack_GameSeason_Reply>>(kMatchBS4GameSeasonRequest);
    match.number<RequestFor<BS4Pack_SelectGroup_Reply>>(kMatchBS4SelectGroupRequest);
    match.number<RequestFor<BS4Pack_GoldenTime_Reply>>(kMatchBS4GoldenTimeRequest);
    match.number<RequestFor<BS4Pack_LastStand_Reply>>(kMatchBS4LastStandRequest);
    match.number<RequestFor<BS4RankData_Pack_Reply>>(kMatchBS4RankDataRequest);
}

void numberProfiling(ProfilingPacks& profiling)
{
    profiling.number<CmdProfilingPack_GetMaxValues>(kProfilingGetMaxValues);
    profiling.number<CmdProfilingPack_SubmitMaxValues>(kProfilingSubmitMaxValues);
}

void numberQueryTool(QueryToolPacks& queryTool)
{
    queryTool.number<QT_Login_Request>(kQueryToolLoginRequest);
    queryTool.number<QT_Login_Reply>(kQueryToolLoginReply);
    queryTool.number<QT_CheckVersion_Request>(kQueryToolCheckVersionRequest);
    queryTool.number<QT_CheckVersion_Reply>(kQueryToolCheckVersionReply);
    queryTool.number<QT_SendProductType>(kQueryToolSendProductType);
    queryTool.number<QT_InsertMac_Request>(kQueryToolInsertMacRequest);
    queryTool.number<QT_TableTimeFrom_Reply>(kQueryToolTableTimeFromReply);
    queryTool.number<QT_QueryCondition_Reply>(kQueryToolQueryConditionReply);
    queryTool.number<QT_OverviewPay_Request>(kQueryToolOverviewPayRequest);
    queryTool.number<QT_OverviewPay_Reply>(kQueryToolOverviewPayReply);
    queryTool.number<QT_Payment_Pay_Request>(kQueryToolPaymentPayRequest);
    queryTool.number<QT_Payment_Pay_Reply>(kQueryToolPaymentPayReply);
    queryTool.number<QT_Payment_Consumption_Request>(kQueryToolPaymentConsumptionRequest);
    queryTool.number<QT_Payment_Consumption_Reply>(kQueryToolPaymentConsumptionReply);
    queryTool.number<QT_Nib2Nib3_Pay_Request>(kQueryToolNib2Nib3PayRequest);
    queryTool.number<QT_Nib2Nib3_Pay_Reply>(kQueryToolNib2Nib3PayReply);
    queryTool.number<QT_OnlineQuery_Hours24Online_Request>(kQueryToolOnlineQueryHours24OnlineRequest);
    queryTool.number<QT_OnlineQuery_Hours24Online_Reply>(kQueryToolOnlineQueryHours24OnlineReply);
    queryTool.number<QT_OnlineQuery_DaysOnline_Request>(kQueryToolOnlineQueryDaysOnlineRequest);
    queryTool.number<QT_OnlineQuery_DaysOnline_Reply>(kQueryToolOnlineQueryDaysOnlineReply);
    queryTool.number<QT_BstFmy3_DailyStats_Request>(kQueryToolBstFmy3DailyStatsRequest);
    queryTool.number<QT_BstFmy3_DailyStats_Reply>(kQueryToolBstFmy3DailyStatsReply);
    queryTool.number<QT_BstFmy3_EventTrigger_Request>(kQueryToolBstFmy3EventTriggerRequest);
    queryTool.number<QT_BstFmy3_EventTrigger_Reply>(kQueryToolBstFmy3EventTriggerReply);
    queryTool.number<QT_BstFmy3_PropsOutput_Request>(kQueryToolBstFmy3PropsOutputRequest);
    queryTool.number<QT_BstFmy3_PropsOutput_Reply>(kQueryToolBstFmy3PropsOutputReply);
    queryTool.number<QT_BstFmy3_WeekMatchStats_Request>(kQueryToolBstFmy3WeekMatchStatsRequest);
    queryTool.number<QT_BstFmy3_WeekMatchStats_Reply>(kQueryToolBstFmy3WeekMatchStatsReply);
    queryTool.number<QT_BstFmy3_ZillionaireProps_Request>(kQueryToolBstFmy3ZillionairePropsRequest);
    queryTool.number<QT_BstFmy3_ZillionaireProps_Reply>(kQueryToolBstFmy3ZillionairePropsReply);
    queryTool.number<QT_BstFmy3_ZillionaireStats_Request>(kQueryToolBstFmy3ZillionaireStatsRequest);
    queryTool.number<QT_BstFmy3_ZillionaireStats_Reply>(kQueryToolBstFmy3ZillionaireStatsReply);
    queryTool.number<RequestFor<QT_TableTimeFrom_Reply>>(kQueryToolTableTimeFromRequest);
    queryTool.number<RequestFor<QT_QueryCondition_Reply>>(kQueryToolQueryConditionRequest);
}

void numberSocial(SocialPacks& social)
{
    social.number<CmdSocialOccupyAPIRequest>(kSocialOccupyAPI);
    social.number<CmdSocialOccupyAPIReply>(kSocialOccupyAPI);
    social.number<CmdSocialReleaseAPIRequest>(kSocialReleaseAPI);
    social.number<CmdSocialReleaseAPIReply>(kSocialReleaseAPI);
    social.number<CmdSocialCreateAccessTokenRequest>(kSocialCreateAccessToken);
    social.number<CmdSocialCreateAccessTokenReply>(kSocialCreateAccessToken);
}

void numberSport(SportPacks& sport)
{
    sport.number<CmdStartSessionAction>(kSportStartSessionAction);
    sport.number<CmdEnterLobbyAction>(kSportEnterLobbyAction);
    sport.number<CmdEnterRoomAction>(kSportEnterRoomAction);
    sport.number<CmdAutoMatchAction>(kSportAutoMatchAction);
    sport.number<CmdPrepareGameAction>(kSportPrepareGameAction);
    sport.number<CmdSetReadyAction>(kSportSetReadyAction);
    sport.number<CmdEndGameAction>(kSportEndGameAction);
    sport.number<CmdSubmitActEffectDataAction>(kSportSubmitActEffectDataAction);
    sport.number<CmdSportCommonResult>(kSportSportCommonResult);
    sport.number<CmdSessionStartedNotify>(kSportSessionStartedNotify);
    sport.number<CmdCreateRoomNotify>(kSportCreateRoomNotify);
    sport.number<CmdEnterRoomNotify>(kSportEnterRoomNotify);
    sport.number<CmdActEffectNotify>(kSportActEffectNotify);
    sport.number<CmdGameOverNotify>(kSportGameOverNotify);
    sport.number<CmdSportCommonNotify>(kSportSportCommonNotify);
}

void numberVoidData(VoidDataPacks& voidData)
{
    voidData.number<CmdCreateCharactorRequest>(kVoidDataCreateCharactorRequest);
    voidData.number<CmdCreateCharactorReply>(kVoidDataCreateCharactorReply);
    voidData.number<CmdRandomNickRequest>(kVoidDataRandomNickRequest);
    voidData.number<CmdRandomNickReply>(kVoidDataRandomNickReply);
    voidData.number<CmdGetUserDataReply>(kVoidDataGetUserDataReply);
    voidData.number<CmdGetV5UserDataRequest>(kVoidDataGetV5UserDataRequest);
    voidData.number<CmdGetV5UserDataReply>(kVoidDataGetV5UserDataReply);
    voidData.number<CmdUserAddressRequest>(kVoidDataUserAddressRequest);
    voidData.number<CmdUserAddressReply>(kVoidDataUserAddressReply);
    voidData.number<CmdCommitPhoneRequest>(kVoidDataCommitPhoneRequest);
    voidData.number<CmdCommitQuestionnaireRequest>(kVoidDataCommitQuestionnaireRequest);
    voidData.number<CmdCommitQuestionnaireReply>(kVoidDataCommitQuestionnaireReply);
    voidData.number<CmdServerDateRequest>(kVoidDataServerDateRequest);
    voidData.number<CmdServerDateReply>(kVoidDataServerDateReply);
    voidData.number<CmdShopListRequest>(kVoidDataShopListRequest);
    voidData.number<CmdShopListReply>(kVoidDataShopListReply);
    voidData.number<CmdLingyuangouBuyListRequest>(kVoidDataLingyuangouBuyListRequest);
    voidData.number<CmdLingyuangouBuyListReply>(kVoidDataLingyuangouBuyListReply);
    voidData.number<CmdBuyItemRequest>(kVoidDataBuyItemRequest);
    voidData.number<CmdBuyItemReply>(kVoidDataBuyItemReply);
    voidData.number<CmdUseItemRequest>(kVoidDataUseItemRequest);
    voidData.number<CmdUseItemReply>(kVoidDataUseItemReply);
    voidData.number<CmdUseGiftRequest>(kVoidDataUseGiftRequest);
    voidData.number<CmdUseGiftReply>(kVoidDataUseGiftReply);
    voidData.number<CmdExchangeGoldRequest>(kVoidDataExchangeGoldRequest);
    voidData.number<CmdExchangeGoldReply>(kVoidDataExchangeGoldReply);
    voidData.number<CmdUpdateGoldRequest>(kVoidDataUpdateGoldRequest);
    voidData.number<CmdUpdateGoldReply>(kVoidDataUpdateGoldReply);
    voidData.number<CmdUpdateDiamondRequest>(kVoidDataUpdateDiamondRequest);
    voidData.number<CmdUpdateDiamondReply>(kVoidDataUpdateDiamondReply);
    voidData.number<CmdActivityRequest>(kVoidDataActivityRequest);
    voidData.number<CmdActivityReply>(kVoidDataActivityReply);
    voidData.number<CmdBigTableRequest>(kVoidDataBigTableRequest);
    voidData.number<CmdBigTableReply>(kVoidDataBigTableReply);
    voidData.number<CmdTurnTableRewardRequest>(kVoidDataTurnTableRewardRequest);
    voidData.number<CmdTurnTableRewardReply>(kVoidDataTurnTableRewardReply);
    voidData.number<CmdUnlockGameRequest>(kVoidDataUnlockGameRequest);
    voidData.number<CmdUnlockGameReply>(kVoidDataUnlockGameReply);
    voidData.number<CmdCancelCDRequest>(kVoidDataCancelCDRequest);
    voidData.number<CmdCancelCDReply>(kVoidDataCancelCDReply);
    voidData.number<CmdDropScoreNotVIPRequest>(kVoidDataDropScoreNotVIPRequest);
    voidData.number<CmdDropScoreNotVIPReply>(kVoidDataDropScoreNotVIPReply);
    voidData.number<CmdUpdateTrainGameMapReply>(kVoidDataUpdateTrainGameMapReply);
    voidData.number<CmdUpdateKinectGameReply>(kVoidDataUpdateKinectGameReply);
    voidData.number<CmdTrainGameScoreRankReply>(kVoidDataTrainGameScoreRankReply);
    voidData.number<CmdMatchPlayerRequest>(kVoidDataMatchPlayerRequest);
    voidData.number<CmdMatchPlayerReply>(kVoidDataMatchPlayerReply);
    voidData.number<CmdAvatarLoadDataRequest>(kVoidDataAvatarLoadDataRequest);
    voidData.number<CmdAvatarLoadDataReply>(kVoidDataAvatarLoadDataReply);
    voidData.number<CmdAvatarSaveDataRequest>(kVoidDataAvatarSaveDataRequest);
    voidData.number<CmdAvatarSaveDataReply>(kVoidDataAvatarSaveDataReply);
    voidData.number<CmdAvatarBuyDataRequest>(kVoidDataAvatarBuyDataRequest);
    voidData.number<CmdAvatarBuyDataReply>(kVoidDataAvatarBuyDataReply);
    voidData.number<RequestFor<CmdUpdateTrainGameMapReply>>(kVoidDataUpdateTrainGameMapRequest);
    voidData.number<RequestFor<CmdUpdateKinectGameReply>>(kVoidDataUpdateKinectGameRequest);
    voidData.number<RequestFor<CmdTrainGameScoreRankReply>>(kVoidDataTrainGameScoreRankRequest);
}

namespace
{

template <class Packs>
zet::String_T<wchar_t> tableOf(void (*number)(Packs&))
{
    Packs packs;
    number(packs);
    return packs.toJson() + L"\n";
}

} // namespace

zet::String_T<wchar_t> getPackTables()
{
    return tableOf(numberHome) + tableOf(numberTravel) + tableOf(numberFriend) + tableOf(numberAchievement) +
           tableOf(numberChangingRoom) + tableOf(numberInPurchase) + tableOf(numberWizard) +
           tableOf(numberWorldSquare) + tableOf(numberMatch) + tableOf(numberProfiling) + tableOf(numberQueryTool) +
           tableOf(numberSocial) + tableOf(numberSport) + tableOf(numberVoidData);
}

} // namespace arena
