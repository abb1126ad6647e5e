// Stamps and what they buy; bets and praises; the lotteries of the match and the final. Stamps are in the record of the
// first match generation; stock, praises and codes are kept in memory and end with the process.
#include "examples/arena/platform/packs/match_features.h"

#include <algorithm>
#include <random>

namespace arena::platform
{

namespace
{

using Text = zet::String_T<wchar_t>;

constexpr wchar_t kTooFewPoints[] = L"too few points";
constexpr wchar_t kTooFewStamps[] = L"too few stamps";
constexpr wchar_t kNoSuchGood[] = L"no such good";
constexpr wchar_t kNoSuchTeam[] = L"no such team";
constexpr wchar_t kBetBefore[] = L"a bet is placed";
constexpr wchar_t kNoMorePraise[] = L"no further player can be praised";
constexpr wchar_t kNoSuchPlayer[] = L"no such player";
constexpr wchar_t kOneself[] = L"oneself";
constexpr wchar_t kNoSuchNumber[] = L"no such number";

constexpr int kPointsOfStamp = 10;
constexpr int kLotteryPrice = 1;
constexpr int kLotteryNumbers = 10;
constexpr int kTeams = 4;

struct Good
{
    const wchar_t* m_Name;
    int m_Stamps;
    int m_Stock;
};

// The stamps are a carried value of the record.
int& stampsOf(AccountMatchData& data)
{
    return data.m_MatchValue0;
}
// The bet is one of the event's record: the team, -1 for none, and the stamps.
int& teamOfBet(AccountMatchData3& data)
{
    return data.m_Match3Value7;
}

class Stamps
{
public:
    void add(MatchPacks& packs)
    {
        m_Packs = &packs;
        on<MatchPack_ExchangeStampRequest, MatchPack_ExchangeStampReply>(&Stamps::exchange);
        on<MatchPack_GiveBet_Request, MatchPack_GiveBet_Reply>(&Stamps::bet);
        on<MatchPack_GivePraise_Request, MatchPack_GivePraise_Reply>(&Stamps::praise);
        on<MatchPack_FinalLottery_Request, MatchPack_FinalLottery_Reply>(&Stamps::playFinal);
        on<MatchPack_FinalMatchInfo_Request, MatchPack_FinalMatchInfo_Reply>(&Stamps::tellFinal);
        on<MatchPack_LotteryReset_Request, MatchPackType_LotteryReset>(&Stamps::resetLottery);
        on<MatchPack_LotteryRevealer_Request, MatchPackType_LotteryRevealer>(&Stamps::reveal);
        on<RequestFor<MatchPackType_IsCanRevealer>, MatchPackType_IsCanRevealer>(&Stamps::tellRevealer);
        on<RequestFor<MatchPackType_LotteryBaseNum>, MatchPackType_LotteryBaseNum>(&Stamps::tellBaseNumbers);
        on<RequestFor<MatchPackType_LotteryAllNum>, MatchPackType_LotteryAllNum>(&Stamps::tellAllNumbers);
        // The reply is one of two classes.
        packs.on<MatchPack_StampChangeGoodsRequest>(
            [this](CCommandSocket& socket, const MatchPack_StampChangeGoodsRequest& request,
                   const CCmdMatchPackRequest& envelope)
            { changeGoods(static_cast<Session&>(socket), request, envelope); });
    }

private:
    template <class Request, class Reply>
    void on(void (Stamps::*work)(Session&, const Request&, Reply&))
    {
        serve<Request, Reply>(*m_Packs, [this, work](Session& session, const Request& request, Reply& reply)
                              { (this->*work)(session, request, reply); });
    }
    int drawNumber() { return std::uniform_int_distribution<int>(0, kLotteryNumbers - 1)(m_Random); }

    // m_Value1: how many stamps. In the reply, the stamps and the points left.
    void exchange(Session& session, const MatchPack_ExchangeStampRequest& request, MatchPack_ExchangeStampReply& reply)
    {
        AccountMatchData& data = session.getAccount().m_MatchData;
        if (request.m_Value1 < 1 || request.m_Value1 > data.m_MatchScore / kPointsOfStamp)
            refuse(reply, kTooFewPoints);
        else
        {
            data.m_MatchScore -= request.m_Value1 * kPointsOfStamp;
            stampsOf(data) += request.m_Value1;
            save(session, reply);
        }
        reply.m_Value1 = stampsOf(data);
        reply.m_Value2 = data.m_MatchScore;
        reply.m_MatchData = data;
    }
    // m_Value1: the good, from 1 on.
    void changeGoods(Session& session, const MatchPack_StampChangeGoodsRequest& request,
                     const CCmdMatchPackRequest& envelope)
    {
        MatchPack_StampChangeGoodsReply reply;
        const int index = request.m_Value1 - 1;
        if (!session.isLoggedIn())
            refuse(reply, kNotLoggedIn);
        else if (index < 0 || index >= static_cast<int>(std::size(m_Goods)))
            refuse(reply, kNoSuchGood);
        else if (Good& good = m_Goods[index]; good.m_Stock == 0)
        {
            MatchPack_NotEnoughStockReply none;
            none.m_Value1 = request.m_Value1;
            m_Packs->reply(session, envelope, none);
            return;
        }
        else
            changeGood(session, good, reply);
        m_Packs->reply(session, envelope, reply);
    }
    void changeGood(Session& session, Good& good, MatchPack_StampChangeGoodsReply& reply)
    {
        CAccount& account = session.getAccount();
        int& stamps = stampsOf(account.m_MatchData);
        FGameItem item;
        item.m_Name = good.m_Name;
        item.m_Num = 1;
        if (stamps < good.m_Stamps)
            refuse(reply, kTooFewStamps);
        else if (account.m_Account.AddItem(item))
        {
            stamps -= good.m_Stamps;
            if (save(session, reply))
            {
                --good.m_Stock;
                reply.m_ShopAwards.m_Text1 = good.m_Name;
                reply.m_ShopAwards.m_Value2 = good.m_Stamps;
            }
        }
        reply.m_Value1 = stamps;
        reply.m_Value2 = good.m_Stock;
    }
    // m_Text1: the number of the team; m_Value1: the stamps. One bet for each player.
    void bet(Session& session, const MatchPack_GiveBet_Request& request, MatchPack_GiveBet_Reply& reply)
    {
        CAccount& account = session.getAccount();
        int& stamps = stampsOf(account.m_MatchData);
        int team = 0;
        for (int number = 1; number <= kTeams; ++number)
            team = request.m_Text1 == Text().format(L"%d", number) ? number : team;
        if (team == 0)
            refuse(reply, kNoSuchTeam);
        else if (teamOfBet(account.m_MatchData3) >= 0)
            refuse(reply, kBetBefore);
        else if (request.m_Value1 < 1 || request.m_Value1 > stamps)
            refuse(reply, kTooFewStamps);
        else
        {
            stamps -= request.m_Value1;
            teamOfBet(account.m_MatchData3) = team;
            if (save(session, reply))
                reply.m_Value1 = request.m_Value1;
        }
        reply.m_MatchData3 = account.m_MatchData3;
    }
    // m_Text1: whom. In the reply, how often, by all.
    void praise(Session& session, const MatchPack_GivePraise_Request& request, MatchPack_GivePraise_Reply& reply)
    {
        if (request.m_Text1.isEmpty() || request.m_Text1 == session.getAccount().m_Account.m_AccountName)
            return refuse(reply, kOneself);
        if (request.m_Text1.getLength() > kMostName)
            return refuse(reply, kNoSuchPlayer);
        if (m_Praises.size() >= kMostPraised && m_Praises.count(request.m_Text1) == 0)
            return refuse(reply, kNoMorePraise);
        reply.m_Value1 = ++m_Praises[request.m_Text1];
    }
    // m_Value1: a number from 0 to 9; one of three drawn ones wins.
    void playFinal(Session& session, const MatchPack_FinalLottery_Request& request, MatchPack_FinalLottery_Reply& reply)
    {
        CAccount& account = session.getAccount();
        if (request.m_Value1 < 0 || request.m_Value1 >= kLotteryNumbers)
            refuse(reply, kNoSuchNumber);
        else if (pay(session, kLotteryPrice, reply) && save(session, reply))
        {
            reply.m_Numbers = {drawNumber(), drawNumber(), drawNumber()};
            reply.m_Value1 =
                static_cast<int>(std::count(reply.m_Numbers.begin(), reply.m_Numbers.end(), request.m_Value1));
        }
        copyAccount(account.m_Account, reply.m_Account);
    }
    // The first finalist of each pair is the player.
    void tellFinal(Session& session, const MatchPack_FinalMatchInfo_Request&, MatchPack_FinalMatchInfo_Reply& reply)
    {
        const CAccount& account = session.getAccount();
        reply.m_Value1 = account.m_MatchData3.m_MatchStage;
        reply.m_Pair1 = {account.m_Account.m_AccountName, L"the champion"};
        reply.m_MatchData3.first = account.m_MatchData3;
    }
    // m_Value1: 0 for the next round. The numbers of the round before are gone. The lottery is that of all players, and
    // any of them may go on.
    void resetLottery(Session&, const MatchPack_LotteryReset_Request& request, MatchPackType_LotteryReset& reply)
    {
        if (request.m_Value1 != 0)
            return refuse(reply, kNoSuchNumber);
        m_Revealed.clear();
        reply.m_Value1 = ++m_Round;
    }
    // Draws one number more, up to five.
    void reveal(Session&, const MatchPack_LotteryRevealer_Request&, MatchPackType_LotteryRevealer& reply)
    {
        if (m_Revealed.size() < MatchPackType_LotteryAllNum::kSide)
            m_Revealed.push_back(drawNumber());
        reply.m_Numbers1 = m_Revealed;
        reply.m_Value1 = m_Round;
    }
    void tellRevealer(Session&, const RequestFor<MatchPackType_IsCanRevealer>&, MatchPackType_IsCanRevealer& reply)
    {
        reply.m_Value1 = m_Revealed.size() < MatchPackType_LotteryAllNum::kSide ? 1 : 0;
    }
    void tellBaseNumbers(Session&, const RequestFor<MatchPackType_LotteryBaseNum>&, MatchPackType_LotteryBaseNum& reply)
    {
        reply.m_Value1 = kLotteryNumbers;
        reply.m_Value2 = m_Round;
        reply.m_Value3 = kLotteryPrice;
    }
    void tellAllNumbers(Session&, const RequestFor<MatchPackType_LotteryAllNum>&, MatchPackType_LotteryAllNum& reply)
    {
        std::copy(m_Revealed.begin(), m_Revealed.end(), reply.m_Row1);
        reply.m_Value1 = m_Round;
    }

    static constexpr size_t kMostPraised = 10000;
    // The length of a name in UTF-16 units.
    static constexpr int kMostName = 64;

    MatchPacks* m_Packs = nullptr;
    Good m_Goods[2] = {{L"match-cap", 1, 1000000}, {L"match-cup", 1, 0}};
    std::map<Text, int> m_Praises;
    int m_Round = 0;
    std::vector<int> m_Revealed;
    std::mt19937 m_Random{std::random_device()()};
};

} // namespace

std::shared_ptr<void> addStamps(MatchPacks& packs)
{
    auto stamps = std::make_shared<Stamps>();
    stamps->add(packs);
    return stamps;
}

} // namespace arena::platform
