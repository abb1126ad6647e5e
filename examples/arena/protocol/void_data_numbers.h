// The numbers of the payloads in void-data envelopes, for client and platform.
#pragma once

namespace arena
{

enum VoidDataNumber : int
{
    kVoidDataCreateCharactorRequest = 1,
    kVoidDataCreateCharactorReply = 2,
    kVoidDataRandomNickRequest = 3,
    kVoidDataRandomNickReply = 4,
    kVoidDataGetUserDataReply = 5,
    kVoidDataGetV5UserDataRequest = 6,
    kVoidDataGetV5UserDataReply = 7,
    kVoidDataUserAddressRequest = 8,
    kVoidDataUserAddressReply = 9,
    kVoidDataCommitPhoneRequest = 10,
    kVoidDataCommitQuestionnaireRequest = 11,
    kVoidDataCommitQuestionnaireReply = 12,
    kVoidDataServerDateRequest = 13,
    kVoidDataServerDateReply = 14,
    kVoidDataShopListRequest = 15,
    kVoidDataShopListReply = 16,
    kVoidDataLingyuangouBuyListRequest = 17,
    kVoidDataLingyuangouBuyListReply = 18,
    kVoidDataBuyItemRequest = 19,
    kVoidDataBuyItemReply = 20,
    kVoidDataUseItemRequest = 21,
    kVoidDataUseItemReply = 22,
    kVoidDataUseGiftRequest = 23,
    kVoidDataUseGiftReply = 24,
    kVoidDataExchangeGoldRequest = 25,
    kVoidDataExchangeGoldReply = 26,
    kVoidDataUpdateGoldRequest = 27,
    kVoidDataUpdateGoldReply = 28,
    kVoidDataUpdateDiamondRequest = 29,
    kVoidDataUpdateDiamondReply = 30,
    kVoidDataActivityRequest = 31,
    kVoidDataActivityReply = 32,
    kVoidDataBigTableRequest = 33,
    kVoidDataBigTableReply = 34,
    kVoidDataTurnTableRewardRequest = 35,
    kVoidDataTurnTableRewardReply = 36,
    kVoidDataUnlockGameRequest = 37,
    kVoidDataUnlockGameReply = 38,
    kVoidDataCancelCDRequest = 39,
    kVoidDataCancelCDReply = 40,
    kVoidDataDropScoreNotVIPRequest = 41,
    kVoidDataDropScoreNotVIPReply = 42,
    kVoidDataUpdateTrainGameMapReply = 43,
    kVoidDataUpdateKinectGameReply = 44,
    kVoidDataTrainGameScoreRankReply = 45,
    kVoidDataMatchPlayerRequest = 46,
    kVoidDataMatchPlayerReply = 47,
    kVoidDataAvatarLoadDataRequest = 48,
    kVoidDataAvatarLoadDataReply = 49,
    kVoidDataAvatarSaveDataRequest = 50,
    kVoidDataAvatarSaveDataReply = 51,
    kVoidDataAvatarBuyDataRequest = 52,
    kVoidDataAvatarBuyDataReply = 53,
    // These replies have no request of their own.
    kVoidDataUpdateTrainGameMapRequest = 54,
    kVoidDataUpdateKinectGameRequest = 55,
    kVoidDataTrainGameScoreRankRequest = 56
};

} // namespace arena
