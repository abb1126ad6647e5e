// The numbers of the messages in pack envelopes, for client and server. The numbers of one pair of envelopes are one
// enumeration, and one function gives them to a router. A number is never used again for another message.
#pragma once

#include "examples/arena/protocol/void_data_numbers.h"
#include "host/pack_router.h"

namespace arena
{

// Asks for a reply that has no request of its own; has no bytes.
template <class Reply>
struct RequestFor
{
    template <class Packager>
    bool Write(Packager*) const
    {
        return true;
    }
    template <class Packager>
    bool Read(Packager*)
    {
        return true;
    }
};

} // namespace arena

namespace host
{

// It travels in the request of the envelope that carries the reply.
template <class Reply>
inline constexpr bool isCarriedBy<arena::RequestFor<Reply>, CCmdFriendSystemPackRequest> =
    isCarriedBy<Reply, CCmdFriendSystemPackReply>;
template <class Reply>
inline constexpr bool isCarriedBy<arena::RequestFor<Reply>, CCmdInPurchasePackRequest> =
    isCarriedBy<Reply, CCmdInPurchasePackReply>;
template <class Reply>
inline constexpr bool isCarriedBy<arena::RequestFor<Reply>, CCmdMatchPackRequest> =
    isCarriedBy<Reply, CCmdMatchPackReply>;
template <class Reply>
inline constexpr bool isCarriedBy<arena::RequestFor<Reply>, CCmdQueryToolRequest> =
    isCarriedBy<Reply, CCmdQueryToolReply>;
template <class Reply>
inline constexpr bool isCarriedBy<arena::RequestFor<Reply>, CCmdVoidDataRequest> =
    isCarriedBy<Reply, CCmdVoidDataReply>;

} // namespace host

namespace arena
{

enum HomeNumber : int
{
    kHomeLoadDataRequest = 1,
    kHomeLoadDataReply = 2,
    kHomeSaveDataRequest = 3,
    kHomeSaveDataReply = 4,
    kHomeStartGameRequest = 5,
    kHomeStartGameReply = 6,
    kHomeEndGameRequest = 7,
    kHomeEndGameReply = 8,
    kHomeCountdownTimeRequest = 9,
    kHomeCountdownTimeReply = 10,
    kHomeJumpOffRequest = 11,
    kHomeJumpOffReply = 12,
    kHomeDirectReWardRequest = 13,
    kHomeDirectReWardReply = 14,
    kHomeUnlockGameRequest = 15,
    kHomeUnlockGameReply = 16,
    kHomeGetPlayerListRequest = 17,
    kHomeGetPlayerListReply = 18,
    kHomePlayerNumListRequest = 19,
    kHomePlayerNumListReply = 20,
    kHomeClearDailyRequest = 21,
    kHomeClearDailyReply = 22
};
using HomePacks = host::PackRouter<CCmdHomePackRequest, CCmdHomePackReply>;
void numberHome(HomePacks& home);

enum TravelNumber : int
{
    kTravelLoadDataRequest = 1,
    kTravelLoadDataReply = 2,
    kTravelSaveDataRequest = 3,
    kTravelSaveDataReply = 4,
    kTravelAttractUnLockRequest = 5,
    kTravelAttractUnLockReply = 6
};
using TravelPacks = host::PackRouter<CCmdTravelWorldPackRequest, CCmdTravelWorldPackReply>;
void numberTravel(TravelPacks& travel);

enum FriendNumber : int
{
    kFriendFriendAddRequest = 1,
    kFriendFriendAddWithInfoRequest = 2,
    kFriendFriendDeleteRequest = 3,
    kFriendFriendListReply = 4,
    kFriendFriendLimitRequest = 5,
    kFriendFriendLimitRespond = 6,
    kFriendFriendInfoRequest = 7,
    kFriendFriendInfoRespond = 8,
    kFriendBasicFriendInfoRequest = 9,
    kFriendBasicFriendInfoRespond = 10,
    kFriendSendMsgRequest = 11,
    kFriendFetchMsgRequest = 12,
    kFriendFetchMsgRespond = 13,
    kFriendFetchOfficalMsgRequest = 14,
    kFriendFetchOfficalMsgRespond = 15,
    kFriendMsgPush = 16,
    kFriendSelfMomentMsgRequest = 17,
    kFriendSelfIdRespond = 18,
    kFriendSetSelfPrestige = 19,
    kFriendSetSelfVip = 20,
    kFriendFriendListRequest = 21,
    kFriendSelfIdRequest = 22
};
using FriendPacks = host::PackRouter<CCmdFriendSystemPackRequest, CCmdFriendSystemPackReply>;
void numberFriend(FriendPacks& friends);

enum AchievementNumber : int
{
    kAchievementStartGameRequest = 1,
    kAchievementStartGameReply = 2,
    kAchievementSendAchievementRequest = 3,
    kAchievementSendAchievementReply = 4,
    kAchievementEndGameRequest = 5,
    kAchievementEndGameReply = 6,
    kAchievementNoticeReply = 7,
    kAchievementGetAllAchievementRequest = 8,
    kAchievementGetAllAchievementReply = 9
};
using AchievementPacks = host::PackRouter<CCmdAchievementPackRequest, CCmdAchievementPackReply>;
void numberAchievement(AchievementPacks& achievements);

enum ChangingRoomNumber : int
{
    kChangingRoomLoadUserDataRequest = 1,
    kChangingRoomLoadUserDataReply = 2,
    kChangingRoomUpdateEquipRequest = 3,
    kChangingRoomUpdateEquipReply = 4,
    kChangingRoomBuyEquipRequest = 5,
    kChangingRoomBuyEquipReply = 6,
    kChangingRoomLuckDrawEquipRequest = 7,
    kChangingRoomLuckDrawEquipReply = 8
};
using ChangingRoomPacks = host::PackRouter<CCmdChangingRoomPackRequest, CCmdChangingRoomPackReply>;
void numberChangingRoom(ChangingRoomPacks& changingRoom);

enum InPurchaseNumber : int
{
    kInPurchaseCheckIfOpenInPurchaseRequest = 1,
    kInPurchaseCheckIfOpenInPurchaseReply = 2,
    kInPurchaseSaveOrderIdRequest = 3,
    kInPurchaseSaveOrderIdReply = 4,
    kInPurchaseGetCheckResultRequest = 5,
    kInPurchaseGetCheckResultReply = 6,
    kInPurchaseSendBuySuccessMessageRequest = 7,
    kInPurchaseCheckAuthorizationCodeRequest = 8,
    kInPurchaseCheckAuthorizationCodeReply = 9,
    kInPurchaseCreateAndSaveFCodeRequest = 10,
    kInPurchaseCreateAndSaveFCodeReply = 11,
    kInPurchaseGetFCodeListReply = 12,
    kInPurchaseUseFCodeRequest = 13,
    kInPurchaseUseFCodeReply = 14,
    kInPurchaseGetFCodeListRequest = 15
};
using InPurchasePacks = host::PackRouter<CCmdInPurchasePackRequest, CCmdInPurchasePackReply>;
void numberInPurchase(InPurchasePacks& inPurchase);

enum WizardNumber : int
{
    kWizardLoginRequest = 1,
    kWizardLoginReply = 2,
    kWizardLogoutRequest = 3,
    kWizardLogoutReply = 4,
    kWizardGoWarRequest = 5
};
using WizardPacks = host::PackRouter<CCmdWizardPackRequest, CCmdWizardPackReply>;
void numberWizard(WizardPacks& wizard);

enum WorldSquareNumber : int
{
    kWorldSquareLoginRequest = 1,
    kWorldSquareLoginReply = 2,
    kWorldSquareLogoutRequest = 3,
    kWorldSquareLogoutReply = 4,
    kWorldSquarePlayerInfo = 5,
    kWorldSquareTransmisData = 6
};
using WorldSquarePacks = host::PackRouter<CCmdWorldSquarePackRequest, CCmdWorldSquarePackReply>;
void numberWorldSquare(WorldSquarePacks& square);

// Five families and two rank boards share these envelopes: the match and its best family event from 1, teams from 101,
// the sports meet from 201, combat from 301, BS4 from 401.
enum MatchNumber : int
{
    kMatchEnterBestFamilyRequest = 1,
    kMatchEnterBestFamilyReply = 2,
    kMatchExitBestFamilyRequest = 3,
    kMatchExitBestFamilyReply = 4,
    kMatchBestFamilyRandomDiceRequest = 5,
    kMatchBestFamilyRandomDiceReply = 6,
    kMatchBestFamilySetDiceRequest = 7,
    kMatchBestFamilySetDiceReply = 8,
    kMatchBestFamilyTigerMachineRequest = 9,
    kMatchBestFamilyTigerMachineReply = 10,
    kMatchBestFamilyTaskRequest = 11,
    kMatchBestFamilyTaskReply = 12,
    kMatchBestFamilyCheckGameResultRequest = 13,
    kMatchBestFamilyCheckGameResultReply = 14,
    kMatchBestFamilyCountDownTimeRequest = 15,
    kMatchBestFamilyCountDownTimeReply = 16,
    kMatchModifyCountDownTimeReply = 17,
    kMatchExchangeStampRequest = 18,
    kMatchExchangeStampReply = 19,
    kMatchNotEnoughStockReply = 20,
    kMatchStampChangeGoodsRequest = 21,
    kMatchStampChangeGoodsReply = 22,
    kMatchFinishScheduleRequest = 23,
    kMatchFinishScheduleReply = 24,
    kMatchTakeGiftRequest = 25,
    kMatchTakeGiftReply = 26,
    kMatchTeamAwardsRequest = 27,
    kMatchTeamAwardsReply = 28,
    kMatchUpdateBaodiTaskExecStateRequest = 29,
    kMatchGiveBetRequest = 30,
    kMatchGiveBetReply = 31,
    kMatchGivePraiseRequest = 32,
    kMatchGivePraiseReply = 33,
    kMatchFinalLotteryRequest = 34,
    kMatchFinalLotteryReply = 35,
    kMatchFinalMatchInfoRequest = 36,
    kMatchFinalMatchInfoReply = 37,
    kMatchLotteryResetRequest = 38,
    kMatchLotteryRevealerRequest = 39,
    kMatchSelectBrainGameRequest = 40,
    kMatchSelectBrainGameReply = 41,
    kMatchStartBrainGameRequest = 42,
    kMatchStartBrainGameReply = 43,
    kMatchBuyToolRequest = 44,
    kMatchBuyToolReply = 45,
    kMatchTryAgainGameRequest = 46,
    kMatchTryAgainGameReply = 47,
    kMatchPlayerListRequest = 48,
    kMatchPlayerListReply = 49,
    kMatchTeamLoginRequest = 101,
    kMatchTeamLoginReply = 102,
    kMatchTeamLogoutRequest = 103,
    kMatchTeamLogoutReply = 104,
    kMatchTeamQueryMatchStateRequest = 105,
    kMatchTeamQueryMatchStateReply = 106,
    kMatchTeamSelectTeamRequest = 107,
    kMatchTeamSelectTeamReply = 108,
    kMatchTeamStartGameRequest = 109,
    kMatchTeamStartGameReply = 110,
    kMatchTeamEndGameRequest = 111,
    kMatchTeamEndGameReply = 112,
    kMatchTeamQueryTeamStateReply = 113,
    kMatchTeamUpdateTeamStateReply = 114,
    kMatchTeamQueryTeamRankRequest = 115,
    kMatchTeamQueryTeamRankReply = 116,
    kMatchTeamQueryPersonTeamRankRequest = 117,
    kMatchTeamQueryPersonTeamRankReply = 118,
    kMatchTeamQueryTotalScoreRankReply = 119,
    kMatchTeamQueryGameStopRankReply = 120,
    kMatchTeamQueryScheduleReply = 121,
    kMatchTeamQueryPersonClearedInfoRequest = 122,
    kMatchTeamQueryAwardsRequest = 123,
    kMatchTeamQueryAwardsReply = 124,
    kMatchTeamLotteryBaseNum = 125,
    kMatchTeamLotteryAllNum = 126,
    kMatchTeamLotteryReset = 127,
    kMatchTeamLotteryRevealer = 128,
    kMatchTeamIsCanRevealer = 129,
    kMatchTeamQueryTeamStateRequest = 130,
    kMatchTeamQueryTotalScoreRankRequest = 131,
    kMatchTeamQueryGameStopRankRequest = 132,
    kMatchTeamQueryScheduleRequest = 133,
    kMatchTeamLotteryBaseNumRequest = 134,
    kMatchTeamLotteryAllNumRequest = 135,
    kMatchTeamIsCanRevealerRequest = 136,
    kMatchMeetEnterYundonghuiRequest = 201,
    kMatchMeetEnterYundonghuiReply = 202,
    kMatchMeetExitYundonghuiRequest = 203,
    kMatchMeetExitYundonghuiReply = 204,
    kMatchMeetGetAccuntInfoRequest = 205,
    kMatchMeetGetAccuntInfoReply = 206,
    kMatchMeetSaveMatchDataRequest = 207,
    kMatchMeetSaveMatchDataReply = 208,
    kMatchMeetDeductEnergyRequest = 209,
    kMatchMeetDeductEnergyReply = 210,
    kMatchMeetEndGameCalculateReply = 211,
    kMatchMeetFindMateRequest = 212,
    kMatchMeetFindMateReply = 213,
    kMatchMeetCheckHstryRecRequest = 214,
    kMatchMeetCheckHstryRecReply = 215,
    kMatchMeetCheckBeWeekendReply = 216,
    kMatchMeetRememberStateInRequest = 217,
    kMatchMeetSportRankReply = 218,
    kMatchMeetBuyShopGoodRequest = 219,
    kMatchMeetBuyShopGoodReply = 220,
    kMatchMeetTicketGoodConfigReply = 221,
    kMatchMeetOrderRecordReply = 222,
    kMatchMeetEndGameCalculateRequest = 223,
    kMatchMeetCheckBeWeekendRequest = 224,
    kMatchMeetSportRankRequest = 225,
    kMatchMeetTicketGoodConfigRequest = 226,
    kMatchMeetOrderRecordRequest = 227,
    kMatchCombatEnrollRequest = 301,
    kMatchCombatEnrollReply = 302,
    kMatchCombatQueryEnrollReply = 303,
    kMatchCombatQueryGroupReply = 304,
    kMatchCombatPlayerSelectGroupRequest = 305,
    kMatchCombatPlayerSelectGroupReply = 306,
    kMatchCombatChangeDiamond = 307,
    kMatchCombatBuyShopGoodRequest = 308,
    kMatchCombatBuyShopGoodReply = 309,
    kMatchCombatTicketGoodConfigReply = 310,
    kMatchCombatOrderRecordReply = 311,
    kMatchCombatRankDataReply = 312,
    kMatchCombatQueryEnrollRequest = 313,
    kMatchCombatQueryGroupRequest = 314,
    kMatchCombatTicketGoodConfigRequest = 315,
    kMatchCombatOrderRecordRequest = 316,
    kMatchCombatRankDataRequest = 317,
    kMatchBS4GameSeasonReply = 401,
    kMatchBS4SelectGroupReply = 402,
    kMatchBS4GoldenTimeReply = 403,
    kMatchBS4GoldenTimeEndNotify = 404,
    kMatchBS4LastStandReply = 405,
    kMatchBS4LastStandEndNotify = 406,
    kMatchBS4MatchEndNotify = 407,
    kMatchBS4RankDataReply = 408,
    kMatchBS4GameSeasonRequest = 409,
    kMatchBS4SelectGroupRequest = 410,
    kMatchBS4GoldenTimeRequest = 411,
    kMatchBS4LastStandRequest = 412,
    kMatchBS4RankDataRequest = 413
};
using MatchPacks = host::PackRouter<CCmdMatchPackRequest, CCmdMatchPackReply>;
void numberMatch(MatchPacks& match);

enum ProfilingNumber : int
{
    kProfilingGetMaxValues = 1,
    kProfilingSubmitMaxValues = 2
};
using ProfilingPacks = host::PackRouter<CCmdProfilingPackRequest, CCmdProfilingPackReply>;
void numberProfiling(ProfilingPacks& profiling);

enum QueryToolNumber : int
{
    kQueryToolLoginRequest = 1,
    kQueryToolLoginReply = 2,
    kQueryToolCheckVersionRequest = 3,
    kQueryToolCheckVersionReply = 4,
    kQueryToolSendProductType = 5,
    kQueryToolInsertMacRequest = 6,
    kQueryToolTableTimeFromReply = 7,
    kQueryToolQueryConditionReply = 8,
    kQueryToolOverviewPayRequest = 9,
    kQueryToolOverviewPayReply = 10,
    kQueryToolPaymentPayRequest = 11,
    kQueryToolPaymentPayReply = 12,
    kQueryToolPaymentConsumptionRequest = 13,
    kQueryToolPaymentConsumptionReply = 14,
    kQueryToolNib2Nib3PayRequest = 15,
    kQueryToolNib2Nib3PayReply = 16,
    kQueryToolOnlineQueryHours24OnlineRequest = 17,
    kQueryToolOnlineQueryHours24OnlineReply = 18,
    kQueryToolOnlineQueryDaysOnlineRequest = 19,
    kQueryToolOnlineQueryDaysOnlineReply = 20,
    kQueryToolBstFmy3DailyStatsRequest = 21,
    kQueryToolBstFmy3DailyStatsReply = 22,
    kQueryToolBstFmy3EventTriggerRequest = 23,
    kQueryToolBstFmy3EventTriggerReply = 24,
    kQueryToolBstFmy3PropsOutputRequest = 25,
    kQueryToolBstFmy3PropsOutputReply = 26,
    kQueryToolBstFmy3WeekMatchStatsRequest = 27,
    kQueryToolBstFmy3WeekMatchStatsReply = 28,
    kQueryToolBstFmy3ZillionairePropsRequest = 29,
    kQueryToolBstFmy3ZillionairePropsReply = 30,
    kQueryToolBstFmy3ZillionaireStatsRequest = 31,
    kQueryToolBstFmy3ZillionaireStatsReply = 32,
    kQueryToolTableTimeFromRequest = 33,
    kQueryToolQueryConditionRequest = 34
};
using QueryToolPacks = host::PackRouter<CCmdQueryToolRequest, CCmdQueryToolReply>;
void numberQueryTool(QueryToolPacks& queryTool);

// The social messages have their numbers by protocol: those of SocialPackType.
using SocialPacks = host::PackRouter<CCmdSocialRequest, CCmdSocialReply>;
void numberSocial(SocialPacks& social);

enum SportNumber : int
{
    kSportStartSessionAction = 1,
    kSportEnterLobbyAction = 2,
    kSportEnterRoomAction = 3,
    kSportAutoMatchAction = 4,
    kSportPrepareGameAction = 5,
    kSportSetReadyAction = 6,
    kSportEndGameAction = 7,
    kSportSubmitActEffectDataAction = 8,
    kSportSportCommonResult = 9,
    kSportSessionStartedNotify = 10,
    kSportCreateRoomNotify = 11,
    kSportEnterRoomNotify = 12,
    kSportActEffectNotify = 13,
    kSportGameOverNotify = 14,
    kSportSportCommonNotify = 15
};
using SportPacks = host::PackRouter<CCmdSportPackRequest, CCmdSportPackReply, CCmdSportPackNotify>;
void numberSport(SportPacks& sport);

// The numbers are in void_data_numbers.h.
using VoidDataPacks = host::PackRouter<CCmdVoidDataRequest, CCmdVoidDataReply>;
void numberVoidData(VoidDataPacks& voidData);

// The tables of all routers, one line of JSON each, for tools that open packs.
zet::String_T<wchar_t> getPackTables();

} // namespace arena
