// The sports meet: a player enters, looks for a mate, plays for energy and tickets, and buys for tickets. All of it is
// in the record of the meet, and the energy in that of the account; orders and history are kept in memory.
#include "examples/arena/platform/calendar.h"
#include "examples/arena/platform/packs/match_features.h"
#include "examples/arena/text.h"
#include "framework/time.h"
#include "playerdata/rule_constants.h"

#include <algorithm>
#include <deque>

namespace arena::platform
{

namespace
{

using Text = zet::String_T<wchar_t>;

constexpr wchar_t kNotInTheMeet[] = L"not in the meet";
constexpr wchar_t kInTheMeet[] = L"in the meet";
constexpr wchar_t kTooLittleEnergy[] = L"too little energy";
constexpr wchar_t kNoGame[] = L"no game was paid for";
constexpr wchar_t kNoSuchGood[] = L"no such good";
constexpr wchar_t kTooFewTickets[] = L"too few tickets";
constexpr wchar_t kNoMate[] = L"no mate";
constexpr wchar_t kRaised[] = L"a save cannot raise the rating or the tickets";
constexpr wchar_t kTooLong[] = L"the text is too long";
constexpr wchar_t kNoSuchPlayer[] = L"no such player";

constexpr int kTicketsOfGame = 5;
constexpr int kRatingOfGame = 10;
constexpr size_t kMostRecords = 20;
constexpr int kSaturday = 6;

// What the platform keeps in the carried values of the record: whether the player is in the meet, the tickets, the
// games that are paid for and not ended, and the last state of the client.
bool& isInMeet(AccountMatchData4& data)
{
    return data.m_Match4Flag;
}
int& ticketsOf(AccountMatchData4& data)
{
    return data.m_Match4Value0;
}
int& openGames(AccountMatchData4& data)
{
    return data.m_Match4Value1;
}
int& stateOf(AccountMatchData4& data)
{
    return data.m_Match4Value2;
}

Match4ShopGood makeGood(int id, const wchar_t* name, int tickets)
{
    Match4ShopGood good;
    good.m_GoodId = id;
    good.m_Text1 = name;
    good.m_Value1 = tickets;
    return good;
}

class Meet
{
public:
    void add(MatchPacks& packs)
    {
        m_Packs = &packs;
        on<Match4Pack_EnterYundonghui_Request, Match4Pack_EnterYundonghui_Reply>(&Meet::enter);
        on<Match4Pack_ExitYundonghui_Request, Match4Pack_ExitYundonghui_Reply>(&Meet::leave);
        on<Match4Pack_GetAccuntInfo_Request, Match4Pack_GetAccuntInfo_Reply>(&Meet::tellRecord);
        on<Match4Pack_SaveMatchData_Request, Match4Pack_SaveMatchData_Reply>(&Meet::saveRecord);
        on<Match4Pack_DeductEnergy_Request, Match4Pack_DeductEnergy_Reply>(&Meet::payGame);
        on<RequestFor<Match4Pack_EndGameCalculate_Reply>, Match4Pack_EndGameCalculate_Reply>(&Meet::endGame);
        on<Match4Pack_FindMate_Request, Match4Pack_FindMate_Reply>(&Meet::findMate);
        on<Match4Pack_CheckHstryRec_Request, Match4Pack_CheckHstryRec_Reply>(&Meet::tellHistory);
        on<RequestFor<Match4Pack_CheckBeWeekend_Reply>, Match4Pack_CheckBeWeekend_Reply>(&Meet::tellWeekend);
        on<RequestFor<Match4Pack_SportRank_Reply>, Match4Pack_SportRank_Reply>(&Meet::rank);
        on<Match4Pack_BuyShopGood_Request, Match4Pack_BuyShopGood_Reply>(&Meet::buy);
        on<RequestFor<Match4Pack_TicketGoodConfig_Reply>, Match4Pack_TicketGoodConfig_Reply>(&Meet::tellGoods);
        on<RequestFor<Match4Pack_OrderRecord_Reply>, Match4Pack_OrderRecord_Reply>(&Meet::tellOrders);
        serveSilently<Match4Pack_RememberStateIn_Request>(
            packs,
            [](Session& session, const Match4Pack_RememberStateIn_Request& request)
            {
                stateOf(session.getAccount().m_MatchData4) = request.m_Value1;
                session.save();
            });
    }

private:
    struct Entry
    {
        int m_Rating = 0;
        // The latest ones first.
        std::deque<Match4HistoryRec> m_History;
        std::deque<CLetter> m_Orders;
    };

    template <class Request, class Reply>
    void on(void (Meet::*work)(Session&, const Request&, Reply&))
    {
        serve<Request, Reply>(*m_Packs, [this, work](Session& session, const Request& request, Reply& reply)
                              { (this->*work)(session, request, reply); });
    }
    static const Text& nameOf(Session& session) { return session.getAccount().m_Account.m_AccountName; }

    void enter(Session& session, const Match4Pack_EnterYundonghui_Request&, Match4Pack_EnterYundonghui_Reply& reply)
    {
        CAccount& account = session.getAccount();
        if (isInMeet(account.m_MatchData4))
            refuse(reply, kInTheMeet);
        else
        {
            isInMeet(account.m_MatchData4) = true;
            reply.m_Flag1 = save(session, reply);
            m_Entries[nameOf(session)].m_Rating = account.m_MatchData4.m_MatchRating;
        }
        copyAccount(account.m_Account, reply.m_Account);
        reply.m_MatchData4 = account.m_MatchData4;
        reply.m_GlobalData = account.m_GlobalData;
    }
    void leave(Session& session, const Match4Pack_ExitYundonghui_Request&, Match4Pack_ExitYundonghui_Reply& reply)
    {
        CAccount& account = session.getAccount();
        if (!isInMeet(account.m_MatchData4))
            refuse(reply, kNotInTheMeet);
        else
        {
            isInMeet(account.m_MatchData4) = false;
            save(session, reply);
        }
        copyAccount(account.m_Account, reply.m_Account);
        reply.m_MatchData4 = account.m_MatchData4;
    }
    void tellRecord(Session& session, const Match4Pack_GetAccuntInfo_Request&, Match4Pack_GetAccuntInfo_Reply& reply)
    {
        reply.m_MatchData4 = session.getAccount().m_MatchData4;
    }
    // A player saves what it shows, the two texts; nothing that is won.
    void saveRecord(Session& session, const Match4Pack_SaveMatchData_Request& request,
                    Match4Pack_SaveMatchData_Reply& reply)
    {
        AccountMatchData4& data = session.getAccount().m_MatchData4;
        AccountMatchData4 wanted = request.m_MatchData4;
        if (wanted.m_MatchRating > data.m_MatchRating || ticketsOf(wanted) > ticketsOf(data))
            return refuse(reply, kRaised);
        if (std::max(wanted.m_Match4Text0.getLength(), wanted.m_Match4Text1.getLength()) > kTextLimit)
            return refuse(reply, kTooLong);
        data.m_Match4Text0 = wanted.m_Match4Text0;
        data.m_Match4Text1 = wanted.m_Match4Text1;
        save(session, reply);
    }
    // m_Value1: how many games.
    void payGame(Session& session, const Match4Pack_DeductEnergy_Request& request, Match4Pack_DeductEnergy_Reply& reply)
    {
        CAccount& account = session.getAccount();
        int& energy = energyOf(account);
        if (!isInMeet(account.m_MatchData4))
            refuse(reply, kNotInTheMeet);
        else if (request.m_Value1 < 1 || request.m_Value1 > energy / g_MatchCostEnergy)
            refuse(reply, kTooLittleEnergy);
        else
        {
            energy -= request.m_Value1 * g_MatchCostEnergy;
            openGames(account.m_MatchData4) += request.m_Value1;
            save(session, reply);
        }
        copyAccount(account.m_Account, reply.m_Account);
    }
    // A game that was paid for gives tickets and rating.
    void endGame(Session& session, const RequestFor<Match4Pack_EndGameCalculate_Reply>&,
                 Match4Pack_EndGameCalculate_Reply& reply)
    {
        AccountMatchData4& data = session.getAccount().m_MatchData4;
        if (openGames(data) <= 0)
            refuse(reply, kNoGame);
        else
        {
            --openGames(data);
            ticketsOf(data) += kTicketsOfGame;
            data.m_MatchRating += kRatingOfGame;
            if (save(session, reply))
            {
                Entry& entry = m_Entries[nameOf(session)];
                entry.m_Rating = data.m_MatchRating;
                Match4HistoryRec record;
                record.m_Text1 = getToday();
                record.m_Flag1 = true;
                record.m_Value1 = data.m_MatchRating;
                entry.m_History.push_front(record);
                entry.m_History.resize(std::min(entry.m_History.size(), kMostRecords));
            }
        }
        reply.m_MatchData4 = data;
    }
    // The other player of the nearest rating.
    void findMate(Session& session, const Match4Pack_FindMate_Request&, Match4Pack_FindMate_Reply& reply)
    {
        AccountMatchData4& data = session.getAccount().m_MatchData4;
        reply.m_MatchData4 = data;
        if (!isInMeet(data))
            return refuse(reply, kNotInTheMeet);
        const Entry* nearest = nullptr;
        for (const auto& [name, entry] : m_Entries)
            if (!(name == nameOf(session)) && (!nearest || std::abs(entry.m_Rating - data.m_MatchRating) <
                                                               std::abs(nearest->m_Rating - data.m_MatchRating)))
            {
                nearest = &entry;
                reply.m_Text2 = name;
                reply.m_Value1 = entry.m_Rating;
            }
        if (!nearest)
            refuse(reply, kNoMate);
    }
    // m_Text1: whose.
    void tellHistory(Session&, const Match4Pack_CheckHstryRec_Request& request, Match4Pack_CheckHstryRec_Reply& reply)
    {
        const auto entry = m_Entries.find(request.m_Text1);
        if (entry == m_Entries.end())
            return refuse(reply, kNoSuchPlayer);
        reply.m_Text2 = request.m_Text1;
        reply.m_History1.assign(entry->second.m_History.begin(), entry->second.m_History.end());
    }
    // m_Value1: the day of the week, 0 for Sunday.
    void tellWeekend(Session&, const RequestFor<Match4Pack_CheckBeWeekend_Reply>&,
                     Match4Pack_CheckBeWeekend_Reply& reply)
    {
        // From 0, a Sunday.
        reply.m_Value1 = (getDay() + 4) % 7;
        reply.m_Flag1 = reply.m_Value1 == 0 || reply.m_Value1 == kSaturday;
    }
    // The first table has the best ratings in its first row.
    void rank(Session& session, const RequestFor<Match4Pack_SportRank_Reply>&, Match4Pack_SportRank_Reply& reply)
    {
        std::vector<MatchRankData> rows;
        for (const auto& [name, entry] : m_Entries)
        {
            MatchRankData row;
            row.m_RankName = name;
            row.m_RankValue0 = entry.m_Rating;
            rows.push_back(row);
        }
        std::stable_sort(rows.begin(), rows.end(),
                         [](const auto& a, const auto& b) { return a.m_RankValue0 > b.m_RankValue0; });
        for (size_t i = 0; i < rows.size() && i < std::size(reply.m_Table1[0]); ++i)
            reply.m_Table1[0][i] = rows[i];
        reply.m_Self[0].m_RankName = nameOf(session);
        reply.m_Self[0].m_RankValue0 = session.getAccount().m_MatchData4.m_MatchRating;
        reply.m_Value1 = static_cast<int>(rows.size());
    }
    // m_Good.m_GoodId: the good. In the reply, the tickets left.
    void buy(Session& session, const Match4Pack_BuyShopGood_Request& request, Match4Pack_BuyShopGood_Reply& reply)
    {
        CAccount& account = session.getAccount();
        int& tickets = ticketsOf(account.m_MatchData4);
        const auto good =
            std::find_if(m_Goods.begin(), m_Goods.end(),
                         [&](const Match4ShopGood& each) { return each.m_GoodId == request.m_Good.m_GoodId; });
        FGameItem item;
        item.m_Num = 1;
        if (good == m_Goods.end())
            refuse(reply, kNoSuchGood);
        else if (tickets < good->m_Value1)
            refuse(reply, kTooFewTickets);
        else if (item.m_Name = good->m_Text1; account.m_Account.AddItem(item))
        {
            tickets -= good->m_Value1;
            reply.m_Flag1 = save(session, reply);
            reply.m_Good = *good;
            if (reply.m_Flag1)
            {
                std::deque<CLetter>& orders = m_Entries[nameOf(session)].m_Orders;
                CLetter order;
                order.m_LetterId = ++m_LastOrder;
                order.m_Text1 = good->m_Text1;
                order.m_Text2 = getToday();
                orders.push_front(order);
                orders.resize(std::min(orders.size(), kMostRecords));
            }
        }
        reply.m_Value1 = tickets;
        reply.m_MatchData4 = account.m_MatchData4;
        copyAccount(account.m_Account, reply.m_Account);
    }
    void tellGoods(Session&, const RequestFor<Match4Pack_TicketGoodConfig_Reply>&,
                   Match4Pack_TicketGoodConfig_Reply& reply)
    {
        reply.m_Goods1 = m_Goods;
    }
    void tellOrders(Session& session, const RequestFor<Match4Pack_OrderRecord_Reply>&,
                    Match4Pack_OrderRecord_Reply& reply)
    {
        const std::deque<CLetter>& orders = m_Entries[nameOf(session)].m_Orders;
        reply.m_Orders.assign(orders.begin(), orders.end());
    }

    MatchPacks* m_Packs = nullptr;
    const std::vector<Match4ShopGood> m_Goods = {makeGood(1, L"meet-whistle", 3), makeGood(2, L"meet-flag", 1000)};
    // By the name of the account.
    std::map<Text, Entry> m_Entries;
    int m_LastOrder = 0;
};

} // namespace

std::shared_ptr<void> addMeet(MatchPacks& packs)
{
    auto meet = std::make_shared<Meet>();
    meet->add(packs);
    return meet;
}

} // namespace arena::platform
