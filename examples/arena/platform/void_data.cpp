// The small account requests in void-data envelopes. Requests that bring the client's records are decided by the
// platform's own; the reply returns those.
#include "commands/account_payloads.h"
#include "commands/game_payloads.h"
#include "commands/shop_payloads.h"
#include "examples/arena/platform/calendar.h"
#include "examples/arena/platform/catalogue.h"
#include "examples/arena/platform/platform.h"
#include "examples/arena/protocol/pack_numbers.h"
#include "examples/arena/protocol/platform_codes.h"
#include "framework/time.h"
#include "playerdata/rule_constants.h"

#include <algorithm>
#include <iterator>

namespace arena::platform
{

namespace
{

using namespace protocol;
using Text = zet::String_T<wchar_t>;

constexpr int kMostPieces = 99;
constexpr int kGoldPerDiamond = 10;
constexpr int kMostExchange = 10000;
constexpr int kTurnPrice = 10;
constexpr int kQuestionnaireGold = 20;
constexpr int kActivityGold = 5;
constexpr int kNickLimit = 20;
constexpr int kMostPlayers = 8;

constexpr wchar_t kNotIn[] = L"no player is logged in";
constexpr wchar_t kNoSave[] = L"the change was not saved";

// Installs a request with its reply: act fills the reply.
template <class Request, class Reply, class Act>
void answer(Platform& platform, int number, int replyNumber, Act act)
{
    VoidData& router = platform.getVoidData();
    router.number<Reply>(replyNumber);
    router.on<Request>(number,
                       [&router, act](CCommandSocket& socket, Request& request, CCmdVoidDataRequest& envelope)
                       {
                           Reply reply;
                           act(static_cast<Session&>(socket), request, reply);
                           router.reply(socket, envelope, reply);
                       });
}

// The same for a request that changes the player's records and whose reply has a text for the reason and the account.
// act returns the reason why it refuses, or the empty text; then the records are saved before the reply.
template <class Request, class Reply, class Act>
void change(Platform& platform, int number, int replyNumber, Text Reply::*reason, Act act)
{
    answer<Request, Reply>(platform, number, replyNumber,
                           [reason, act](Session& session, Request& request, Reply& reply)
                           {
                               if (!session.isLoggedIn())
                               {
                                   reply.*reason = kNotIn;
                                   return;
                               }
                               reply.*reason = act(session.getAccount(), request, reply);
                               if ((reply.*reason).isEmpty() && !session.save())
                                   reply.*reason = kNoSave;
                               if (!session.isLoggedIn())
                                   return;
                               if constexpr (requires { reply.m_Account; })
                                   copyAccount(session.getAccount().m_Account, reply.m_Account);
                               if constexpr (requires { reply.m_GlobalData; })
                                   reply.m_GlobalData = session.getAccount().m_GlobalData;
                           });
}

bool take(int& purse, int price)
{
    if (price < 0 || purse < price)
        return false;
    purse -= price;
    return true;
}

// m_Value1: the position in the shop, m_Value2: how many.
const wchar_t* buyItem(CAccount& records, const CmdBuyItemRequest& request)
{
    const auto& trades = getShop().m_ShopTrades;
    if (request.m_Value1 < 0 || request.m_Value1 >= static_cast<int>(trades.size()))
        return L"the shop has no such offer";
    if (request.m_Value2 < 1 || request.m_Value2 > kMostPieces)
        return L"from 1 to 99 can be bought";
    const FGameTrade& trade = std::next(trades.begin(), request.m_Value1)->second;
    if (!take(goldOf(records), trade.m_Cost0 * request.m_Value2))
        return L"there is too little gold";
    for (FGameItem item : trade.m_Items)
    {
        item.m_Num *= request.m_Value2;
        records.m_Account.AddItem(item);
    }
    return L"";
}

// m_Value1: the position in the gift box. Its piece goes into the bag.
const wchar_t* useGift(CAccount& records, const CmdUseGiftRequest& request)
{
    const FGameItem* const gift = records.m_Account.GetGiftBox(request.m_Value1);
    if (!gift)
        return L"there is no such gift";
    FGameItem piece = *gift;
    piece.m_Num = 1;
    if (!records.m_Account.AddItem(piece) || !records.m_Account.UseGiftBox(request.m_Value1))
        return L"the gift is out of date";
    return L"";
}

// m_Value1: the training game.
const wchar_t* unlock(CAccount& records, const CmdUnlockGameRequest& request)
{
    const auto game = records.m_Account.m_TrainingMap.find(request.m_Value1);
    if (game == records.m_Account.m_TrainingMap.end() || !game->second.m_Locked)
        return L"there is no such locked game";
    if (!take(goldOf(records), g_UnlockTrainPrice))
        return L"there is too little gold";
    game->second.m_Locked = false;
    return L"";
}

// m_Value1: the training game. Each diamond cancels g_OneDiamond_CDTime seconds of its cool-down.
const wchar_t* cancelCoolDown(CAccount& records, const CmdCancelCDRequest& request)
{
    const auto found = records.m_Account.m_TrainingMap.find(request.m_Value1);
    if (found == records.m_Account.m_TrainingMap.end())
        return L"there is no such game";
    FGameTraining& game = found->second;
    game.SetCDTimeByPlayTimes();
    if (!(game.m_CDTime > 0.0f))
        return L"the game does not cool down";
    const int price = (static_cast<int>(game.m_CDTime) + g_OneDiamond_CDTime - 1) / g_OneDiamond_CDTime;
    if (!take(diamondsOf(records), price))
        return L"there are too few diamonds";
    // Without plays there is no cool-down.
    game.m_PlayTimes = 0;
    game.m_CDTime = 0.0f;
    game.SetCDTimeByPlayTimes();
    return L"";
}

void installShop(Platform& platform)
{
    answer<CmdShopListRequest, CmdShopListReply>(platform, kVoidDataShopListRequest, kVoidDataShopListReply,
                                                 [](Session&, const CmdShopListRequest&, CmdShopListReply& reply)
                                                 { reply.m_GameShop = getShop(); });
    change<CmdBuyItemRequest, CmdBuyItemReply>(
        platform, kVoidDataBuyItemRequest, kVoidDataBuyItemReply, &CmdBuyItemReply::m_Text1,
        [](CAccount& records, const CmdBuyItemRequest& request, CmdBuyItemReply& reply)
        {
            reply.m_Value1 = request.m_Value1;
            reply.m_Value2 = request.m_Value2;
            return buyItem(records, request);
        });
    // m_Value1: the position in the bag, m_Value2: how many.
    change<CmdUseItemRequest, CmdUseItemReply>(
        platform, kVoidDataUseItemRequest, kVoidDataUseItemReply, &CmdUseItemReply::m_Text1,
        [](CAccount& records, const CmdUseItemRequest& request, CmdUseItemReply& reply)
        {
            reply.m_Value1 = request.m_Value1;
            reply.m_Value2 = request.m_Value2;
            return records.m_Account.UseItem(request.m_Value1, request.m_Value2) ? L"" : L"there is no such item";
        });
    change<CmdUseGiftRequest, CmdUseGiftReply>(platform, kVoidDataUseGiftRequest, kVoidDataUseGiftReply,
                                               &CmdUseGiftReply::m_Text1,
                                               [](CAccount& records, const CmdUseGiftRequest& request, CmdUseGiftReply&)
                                               { return useGift(records, request); });
    // m_Value1: the diamonds.
    change<CmdExchangeGoldRequest, CmdExchangeGoldReply>(
        platform, kVoidDataExchangeGoldRequest, kVoidDataExchangeGoldReply, &CmdExchangeGoldReply::m_Text1,
        [](CAccount& records, const CmdExchangeGoldRequest& request, CmdExchangeGoldReply& reply)
        {
            if (request.m_Value1 < 1 || request.m_Value1 > kMostExchange ||
                !take(diamondsOf(records), request.m_Value1))
                return L"there are too few diamonds";
            reply.m_Value1 = request.m_Value1 * kGoldPerDiamond;
            goldOf(records) += reply.m_Value1;
            return L"";
        });
    change<CmdTurnTableRewardRequest, CmdTurnTableRewardReply>(
        platform, kVoidDataTurnTableRewardRequest, kVoidDataTurnTableRewardReply, &CmdTurnTableRewardReply::m_Text1,
        [](CAccount& records, const CmdTurnTableRewardRequest&, CmdTurnTableRewardReply& reply)
        {
            if (!take(goldOf(records), kTurnPrice))
                return L"there is too little gold";
            FGameItem prize;
            prize.m_Name = L"apple";
            prize.m_Num = 1;
            records.m_Account.AddItem(prize);
            reply.m_Text2 = prize.m_Name;
            reply.m_Value3 = prize.m_Num;
            return L"";
        });
    change<CmdBigTableRequest, CmdBigTableReply>(
        platform, kVoidDataBigTableRequest, kVoidDataBigTableReply, &CmdBigTableReply::m_Text1,
        [](CAccount& records, const CmdBigTableRequest&, CmdBigTableReply& reply)
        {
            if (!take(diamondsOf(records), G_BigTable_Diamond))
                return L"there are too few diamonds";
            FGameItem prize;
            prize.m_Name = L"treasure-card";
            prize.m_Num = 5;
            records.m_Account.AddItem(prize);
            reply.m_Text2 = prize.m_Name;
            reply.m_Value3 = prize.m_Num;
            return L"";
        });
    answer<CmdUpdateDiamondRequest, CmdUpdateDiamondReply>(
        platform, kVoidDataUpdateDiamondRequest, kVoidDataUpdateDiamondReply,
        [](Session& session, const CmdUpdateDiamondRequest&, CmdUpdateDiamondReply& reply)
        {
            reply.m_Value1 = session.isLoggedIn() ? diamondsOf(session.getAccount()) : 0;
            reply.m_Text1 = session.isLoggedIn() ? L"" : kNotIn;
        });
    answer<CmdUpdateGoldRequest, CmdUpdateGoldReply>(
        platform, kVoidDataUpdateGoldRequest, kVoidDataUpdateGoldReply,
        [](Session& session, const CmdUpdateGoldRequest&, CmdUpdateGoldReply& reply)
        { reply.m_Value1 = session.isLoggedIn() ? goldOf(session.getAccount()) : 0; });
    answer<CmdLingyuangouBuyListRequest, CmdLingyuangouBuyListReply>(
        platform, kVoidDataLingyuangouBuyListRequest, kVoidDataLingyuangouBuyListReply,
        [](Session& session, const CmdLingyuangouBuyListRequest&, CmdLingyuangouBuyListReply& reply)
        {
            if (!session.isLoggedIn())
            {
                reply.m_Text1 = kNotIn;
                return;
            }
            const AccountLingYuanGouData& campaign = session.getAccount().m_LingYuanGouData;
            if (campaign.m_BuyText0.isEmpty())
                return;
            LingyuangouBuyEntry entry;
            entry.m_Text1 = campaign.m_BuyText0;
            entry.m_Value1 = campaign.m_BuyValue0;
            reply.m_Entries.push_back(entry);
        });
}

float bestTrainingScore(const CAccount& records)
{
    float best = FGameTraining::kNotPlayed;
    for (const auto& [id, game] : records.m_Account.m_TrainingMap)
        best = std::max(best, game.m_BestScore);
    return best;
}

void installGames(Platform& platform)
{
    change<CmdUnlockGameRequest, CmdUnlockGameReply>(
        platform, kVoidDataUnlockGameRequest, kVoidDataUnlockGameReply, &CmdUnlockGameReply::m_Text1,
        [](CAccount& records, const CmdUnlockGameRequest& request, CmdUnlockGameReply& reply)
        {
            reply.m_Value1 = request.m_Value1;
            return unlock(records, request);
        });
    change<CmdCancelCDRequest, CmdCancelCDReply>(
        platform, kVoidDataCancelCDRequest, kVoidDataCancelCDReply, &CmdCancelCDReply::m_Text1,
        [](CAccount& records, const CmdCancelCDRequest& request, CmdCancelCDReply& reply)
        {
            reply.m_Value1 = request.m_Value1;
            return cancelCoolDown(records, request);
        });
    // A VIP keeps the scores. The flag of the reply says whether they are gone.
    answer<CmdDropScoreNotVIPRequest, CmdDropScoreNotVIPReply>(
        platform, kVoidDataDropScoreNotVIPRequest, kVoidDataDropScoreNotVIPReply,
        [](Session& session, const CmdDropScoreNotVIPRequest&, CmdDropScoreNotVIPReply& reply)
        {
            if (!session.isLoggedIn())
                return;
            CAccount& records = session.getAccount();
            if (records.m_GlobalData.m_VIPLevel <= 0)
            {
                records.m_Account.DropVisitorScore();
                reply.m_Flag1 = session.save();
            }
            if (session.isLoggedIn())
                reply.m_TrainingMap = session.getAccount().m_Account.m_TrainingMap;
        });
    answer<RequestFor<CmdUpdateTrainGameMapReply>, CmdUpdateTrainGameMapReply>(
        platform, kVoidDataUpdateTrainGameMapRequest, kVoidDataUpdateTrainGameMapReply,
        [](Session& session, const auto&, CmdUpdateTrainGameMapReply& reply)
        {
            if (session.isLoggedIn())
                reply.m_TrainingMap = session.getAccount().m_Account.m_TrainingMap;
        });
    answer<RequestFor<CmdUpdateKinectGameReply>, CmdUpdateKinectGameReply>(
        platform, kVoidDataUpdateKinectGameRequest, kVoidDataUpdateKinectGameReply,
        [](Session& session, const auto&, CmdUpdateKinectGameReply& reply)
        {
            if (session.isLoggedIn())
                reply.m_GameKinect = session.getAccount().m_Account.m_KinectGame;
        });
    // The place among the players who are at this platform; 0 without a login.
    answer<RequestFor<CmdTrainGameScoreRankReply>, CmdTrainGameScoreRankReply>(
        platform, kVoidDataTrainGameScoreRankRequest, kVoidDataTrainGameScoreRankReply,
        [&platform](Session& session, const auto&, CmdTrainGameScoreRankReply& reply)
        {
            if (!session.isLoggedIn())
                return;
            const float score = bestTrainingScore(session.getAccount());
            reply.m_Float1 = 1;
            platform.forEachPlayer(
                [&](Session& player)
                {
                    if (bestTrainingScore(player.getAccount()) > score)
                        ++reply.m_Float1;
                    return true;
                });
        });
    // The players who are at this platform.
    answer<CmdMatchPlayerRequest, CmdMatchPlayerReply>(
        platform, kVoidDataMatchPlayerRequest, kVoidDataMatchPlayerReply,
        [&platform](Session& session, const CmdMatchPlayerRequest&, CmdMatchPlayerReply& reply)
        {
            if (session.isLoggedIn())
                platform.forEachPlayer(
                    [&](Session& player)
                    {
                        MatchPlayerInfo info;
                        info.m_Text1 = player.getStored().m_Name;
                        info.m_Text2 = player.getAccount().m_GlobalData.m_GlobalText0;
                        if (&player != &session)
                            reply.m_MatchPlayerInfos.push_back(info);
                        return static_cast<int>(reply.m_MatchPlayerInfos.size()) < kMostPlayers;
                    });
        });
}

void installPerson(Platform& platform)
{
    answer<CmdServerDateRequest, CmdServerDateReply>(
        platform, kVoidDataServerDateRequest, kVoidDataServerDateReply,
        [](Session&, const CmdServerDateRequest&, CmdServerDateReply& reply)
        { reply.m_Text1 = zet::Time::getCurrent().convertToString(false); });
    answer<CmdRandomNickRequest, CmdRandomNickReply>(
        platform, kVoidDataRandomNickRequest, kVoidDataRandomNickReply,
        [](Session&, const CmdRandomNickRequest&, CmdRandomNickReply& reply)
        {
            zet::Uuid id;
            zet::uuid_create(id);
            reply.m_Text1 = zet::formatText(L"swift-%04x", id.m_Data1 & 0xFFFF);
            reply.m_Text2 = zet::formatText(L"brave-%04x", id.m_Data2 & 0xFFFF);
        });
    // m_Text1: the nickname. A player has one character.
    change<CmdCreateCharactorRequest, CmdCreateCharactorReply>(
        platform, kVoidDataCreateCharactorRequest, kVoidDataCreateCharactorReply, &CmdCreateCharactorReply::m_Text1,
        [](CAccount& records, const CmdCreateCharactorRequest& request, CmdCreateCharactorReply& reply)
        {
            Text& nick = records.m_GlobalData.m_GlobalText0;
            if (!nick.isEmpty())
                return L"there is a character already";
            if (request.m_Text1.isEmpty() || request.m_Text1.getLength() > kNickLimit)
                return L"a nickname has 1 to 20 characters";
            nick = request.m_Text1;
            reply.m_Text2 = nick;
            return L"";
        });
    answer<CmdGetV5UserDataRequest, CmdGetV5UserDataReply>(
        platform, kVoidDataGetV5UserDataRequest, kVoidDataGetV5UserDataReply,
        [](Session& session, const CmdGetV5UserDataRequest&, CmdGetV5UserDataReply& reply)
        {
            if (session.isLoggedIn())
                copyAccount(session.getAccount().m_Account, reply.m_Account);
        });
    change<CmdCommitQuestionnaireRequest, CmdCommitQuestionnaireReply>(
        platform, kVoidDataCommitQuestionnaireRequest, kVoidDataCommitQuestionnaireReply,
        &CmdCommitQuestionnaireReply::m_Text1,
        [](CAccount& records, const CmdCommitQuestionnaireRequest&, CmdCommitQuestionnaireReply& reply)
        {
            if (records.m_GlobalData.m_GlobalFlag)
                return L"the questionnaire is answered already";
            records.m_GlobalData.m_GlobalFlag = true;
            goldOf(records) += kQuestionnaireGold;
            reply.m_Value1 = kQuestionnaireGold;
            return L"";
        });
    // A little gold, once a day.
    change<CmdActivityRequest, CmdActivityReply>(
        platform, kVoidDataActivityRequest, kVoidDataActivityReply, &CmdActivityReply::m_Text1,
        [](CAccount& records, const CmdActivityRequest& request, CmdActivityReply& reply)
        {
            const int today = getDay();
            reply.m_Value1 = request.m_Value1;
            if (records.m_Account.m_Value7 >= today)
                return L"it is done for today";
            records.m_Account.m_Value7 = today;
            goldOf(records) += kActivityGold;
            reply.m_Value2 = kActivityGold;
            return L"";
        });
    answer<CmdUserAddressRequest, CmdUserAddressReply>(
        platform, kVoidDataUserAddressRequest, kVoidDataUserAddressReply,
        [](Session& session, const CmdUserAddressRequest&, CmdUserAddressReply& reply)
        {
            if (!session.isLoggedIn())
                return;
            const AccountGlobalData& global = session.getAccount().m_GlobalData;
            reply.m_Text1 = global.m_GlobalText1;
            reply.m_Text2 = global.m_GlobalText2;
            reply.m_Text3 = global.m_GlobalText3;
            reply.m_Text4 = global.m_GlobalText4;
        });
    VoidData& router = platform.getVoidData();
    router.number<CmdGetUserDataReply>(kVoidDataGetUserDataReply);
    // Without a reply of its own: the player's data follow.
    router.on<CmdCommitPhoneRequest>(kVoidDataCommitPhoneRequest,
                                     [&router](CCommandSocket& socket, const CmdCommitPhoneRequest& request)
                                     {
                                         Session& session = static_cast<Session&>(socket);
                                         CmdGetUserDataReply reply;
                                         if (!session.isLoggedIn() || request.m_Text1.isEmpty() ||
                                             request.m_Text1.getLength() > kNickLimit)
                                             reply.m_Text1 = L"the phone is not taken";
                                         else
                                         {
                                             session.getAccount().m_GlobalData.m_GlobalText5 = request.m_Text1;
                                             reply.m_Text1 = session.save() ? L"" : kNoSave;
                                         }
                                         if (session.isLoggedIn())
                                         {
                                             copyAccount(session.getAccount().m_Account, reply.m_Account);
                                             reply.m_GlobalData = session.getAccount().m_GlobalData;
                                         }
                                         router.send(socket, reply);
                                     });
}

} // namespace

void installVoidData(Platform& platform)
{
    installShop(platform);
    installGames(platform);
    installPerson(platform);
}

} // namespace arena::platform
