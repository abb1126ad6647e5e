// The two later seasons. Combat: a player enrolls, picks a group, and trades diamonds and tickets. BS4: a player gets a
// group, and timed phases are opened and end. The combat record is the account's; the rest is kept in memory and ends
// with the process.
#include "examples/arena/platform/calendar.h"
#include "examples/arena/platform/packs/match_features.h"

#include <algorithm>

namespace arena::platform
{

namespace
{

using Text = zet::String_T<wchar_t>;

constexpr wchar_t kEnrolledBefore[] = L"enrolled before";
constexpr wchar_t kNotEnrolled[] = L"not enrolled";
constexpr wchar_t kNoSuchGroup[] = L"no such group";
constexpr wchar_t kGroupBefore[] = L"in a group";
constexpr wchar_t kNoSuchGood[] = L"no such good";
constexpr wchar_t kTooFewTickets[] = L"too few tickets";

constexpr int kGroups = 6;
constexpr int kEnrollPrice = 10;
constexpr int kTicketsOfDiamond = 2;
constexpr int kMostDiamonds = 1000;
constexpr int kSeason = 4;
// The phases of BS4 in seconds.
constexpr int kGoldenTime = 600;
constexpr int kLastStand = 60;
constexpr size_t kMostOrders = 20;

// What the platform keeps in the carried values of the record: whether the player is enrolled, the group from 1 on, 0
// for none, and the tickets.
int& enrolment(AccountCombatData& data)
{
    return data.m_CombatValue0;
}
int& groupOf(AccountCombatData& data)
{
    return data.m_CombatValue1;
}
int& ticketsOf(AccountCombatData& data)
{
    return data.m_CombatValue2;
}

CombatShopGood makeGood(int id, const wchar_t* name, int tickets)
{
    CombatShopGood good;
    good.m_GoodId = id;
    good.m_Text1 = name;
    good.m_Value1 = tickets;
    return good;
}

class Seasons
{
public:
    void add(MatchPacks& packs)
    {
        m_Packs = &packs;
        on<CombatPack_Enroll_Request, CombatPack_Enroll_Reply>(&Seasons::enroll);
        on<RequestFor<CombatPack_QueryEnroll_Reply>, CombatPack_QueryEnroll_Reply>(&Seasons::tellEnrolment);
        on<RequestFor<CombatPack_QueryGroup_Reply>, CombatPack_QueryGroup_Reply>(&Seasons::tellGroup);
        on<CombatPack_PlayerSelectGroup_Request, CombatPack_PlayerSelectGroup_Reply>(&Seasons::selectGroup);
        on<CombatPack_BuyShopGood_Request, CombatPack_BuyShopGood_Reply>(&Seasons::buy);
        on<RequestFor<CombatPack_TicketGoodConfig_Reply>, CombatPack_TicketGoodConfig_Reply>(&Seasons::tellGoods);
        on<RequestFor<CombatPack_OrderRecord_Reply>, CombatPack_OrderRecord_Reply>(&Seasons::tellOrders);
        on<RequestFor<CombatRankData_Pack_Reply>, CombatRankData_Pack_Reply>(&Seasons::rankCombat);
        on<RequestFor<BS4Pack_GameSeason_Reply>, BS4Pack_GameSeason_Reply>(&Seasons::tellSeason);
        on<RequestFor<BS4Pack_SelectGroup_Reply>, BS4Pack_SelectGroup_Reply>(&Seasons::selectGroupOfBS4);
        on<RequestFor<BS4Pack_GoldenTime_Reply>, BS4Pack_GoldenTime_Reply>(&Seasons::openGoldenTime);
        on<RequestFor<BS4Pack_LastStand_Reply>, BS4Pack_LastStand_Reply>(&Seasons::openLastStand);
        on<RequestFor<BS4RankData_Pack_Reply>, BS4RankData_Pack_Reply>(&Seasons::rankBS4);
        // Both the request and the reply, which has what was changed.
        packs.on<CombatPack_Change_Diamond>(
            [this](CCommandSocket& socket, const CombatPack_Change_Diamond& request, const auto& envelope)
            { changeDiamonds(static_cast<Session&>(socket), request, envelope); });
    }

private:
    template <class Request, class Reply>
    void on(void (Seasons::*work)(Session&, const Request&, Reply&))
    {
        serve<Request, Reply>(*m_Packs, [this, work](Session& session, const Request& request, Reply& reply)
                              { (this->*work)(session, request, reply); });
    }
    static const Text& nameOf(Session& session) { return session.getAccount().m_Account.m_AccountName; }
    static AccountCombatData& combatOf(Session& session) { return session.getAccount().m_CombatData; }

    void enroll(Session& session, const CombatPack_Enroll_Request&, CombatPack_Enroll_Reply& reply)
    {
        if (enrolment(combatOf(session)) != 0)
            refuse(reply, kEnrolledBefore);
        else if (pay(session, kEnrollPrice, reply))
        {
            enrolment(combatOf(session)) = 1;
            save(session, reply);
        }
        reply.m_GlobalData = session.getAccount().m_GlobalData;
    }
    void tellEnrolment(Session& session, const RequestFor<CombatPack_QueryEnroll_Reply>&,
                       CombatPack_QueryEnroll_Reply& reply)
    {
        reply.m_Value1 = enrolment(combatOf(session));
    }
    void tellGroup(Session& session, const RequestFor<CombatPack_QueryGroup_Reply>&, CombatPack_QueryGroup_Reply& reply)
    {
        reply.m_Value1 = groupOf(combatOf(session));
    }
    // m_Value1: the group, 1 to 6.
    void selectGroup(Session& session, const CombatPack_PlayerSelectGroup_Request& request,
                     CombatPack_PlayerSelectGroup_Reply& reply)
    {
        AccountCombatData& data = combatOf(session);
        if (enrolment(data) == 0)
            return refuse(reply, kNotEnrolled);
        if (request.m_Value1 < 1 || request.m_Value1 > kGroups)
            return refuse(reply, kNoSuchGroup);
        if (groupOf(data) != 0)
            return refuse(reply, kGroupBefore);
        groupOf(data) = request.m_Value1;
        if (save(session, reply))
            m_Ranks[nameOf(session)] = data;
    }
    // m_Value1: how many diamonds become tickets; 0 in the reply is a refusal.
    template <class Envelope>
    void changeDiamonds(Session& session, const CombatPack_Change_Diamond& request, const Envelope& envelope)
    {
        CombatPack_Change_Diamond reply;
        if (session.isLoggedIn())
        {
            CAccount& account = session.getAccount();
            const bool isEnough = request.m_Value1 > 0 && request.m_Value1 <= kMostDiamonds &&
                                  enrolment(account.m_CombatData) != 0 && diamondsOf(account) >= request.m_Value1;
            if (isEnough)
            {
                diamondsOf(account) -= request.m_Value1;
                ticketsOf(account.m_CombatData) += request.m_Value1 * kTicketsOfDiamond;
                if (session.save())
                    reply.m_Value1 = request.m_Value1;
            }
            reply.m_GlobalData = account.m_GlobalData;
        }
        m_Packs->reply<CCmdMatchPackReply>(session, envelope, reply);
    }
    // m_Good.m_GoodId: the good. In the reply, the tickets left.
    void buy(Session& session, const CombatPack_BuyShopGood_Request& request, CombatPack_BuyShopGood_Reply& reply)
    {
        CAccount& account = session.getAccount();
        int& tickets = ticketsOf(account.m_CombatData);
        const auto good =
            std::find_if(m_Goods.begin(), m_Goods.end(),
                         [&](const CombatShopGood& each) { return each.m_GoodId == request.m_Good.m_GoodId; });
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
                addOrder(session, *good);
        }
        reply.m_Value1 = tickets;
        reply.m_CombatData = account.m_CombatData;
        copyAccount(account.m_Account, reply.m_Account);
        reply.m_GlobalData = account.m_GlobalData;
    }
    void addOrder(Session& session, const CombatShopGood& good)
    {
        CLetter order;
        order.m_LetterId = ++m_LastOrder;
        order.m_Text1 = good.m_Text1;
        order.m_Text2 = getToday();
        std::vector<CLetter>& orders = m_Orders[nameOf(session)];
        orders.insert(orders.begin(), order);
        orders.resize(std::min(orders.size(), kMostOrders));
    }
    void tellGoods(Session&, const RequestFor<CombatPack_TicketGoodConfig_Reply>&,
                   CombatPack_TicketGoodConfig_Reply& reply)
    {
        reply.m_Goods1 = m_Goods;
    }
    void tellOrders(Session& session, const RequestFor<CombatPack_OrderRecord_Reply>&,
                    CombatPack_OrderRecord_Reply& reply)
    {
        reply.m_Orders = m_Orders[nameOf(session)];
    }
    // The first table has a row for each group.
    void rankCombat(Session& session, const RequestFor<CombatRankData_Pack_Reply>&, CombatRankData_Pack_Reply& reply)
    {
        int used[kGroups] = {};
        for (auto& [name, data] : m_Ranks)
        {
            const int group = std::clamp(groupOf(data), 1, kGroups) - 1;
            if (used[group] == CombatRankData_Pack_Reply::kColumns)
                continue;
            CombatRankData& row = reply.m_CombatRankDatas1[group][used[group]++];
            row.m_Name = name;
            row.m_Value1 = data.m_CombatRating;
        }
        reply.m_Self[0].m_Name = nameOf(session);
        reply.m_Self[0].m_Value1 = combatOf(session).m_CombatRating;
        reply.m_Value1 = groupOf(combatOf(session));
    }

    void tellSeason(Session&, const RequestFor<BS4Pack_GameSeason_Reply>&, BS4Pack_GameSeason_Reply& reply)
    {
        reply.m_Value1 = kSeason;
    }
    // The group of a player is that of its number; it is selected once.
    void selectGroupOfBS4(Session& session, const RequestFor<BS4Pack_SelectGroup_Reply>&,
                          BS4Pack_SelectGroup_Reply& reply)
    {
        const auto [player, isNew] = m_BS4.try_emplace(nameOf(session));
        if (isNew)
            player->second.m_Value1 = 1 + session.getAccount().m_Account.m_AccountId % kGroups;
        else
            refuse(reply, kGroupBefore);
        reply.m_BS4Data = player->second;
    }
    // Opens the golden time for a player in a group; 0 is a refusal. The notice of its end precedes a new one.
    void openGoldenTime(Session& session, const RequestFor<BS4Pack_GoldenTime_Reply>&, BS4Pack_GoldenTime_Reply& reply)
    {
        const auto player = m_BS4.find(nameOf(session));
        if (player == m_BS4.end())
            return;
        if (player->second.m_Value2++ > 0)
        {
            BS4Pack_GoldenTimeEnd_Notify end;
            end.m_Msg = L"the golden time is over";
            m_Packs->send(session, end);
        }
        reply.m_Value1 = kGoldenTime;
    }
    // The same for the last stand, which ends the match.
    void openLastStand(Session& session, const RequestFor<BS4Pack_LastStand_Reply>&, BS4Pack_LastStand_Reply& reply)
    {
        const auto player = m_BS4.find(nameOf(session));
        if (player == m_BS4.end())
            return;
        if (player->second.m_Value3++ > 0)
        {
            BS4Pack_LastStandEnd_Notify end;
            end.m_Value1 = player->second.m_Value3;
            m_Packs->send(session, end);
            BS4Pack_MatchEnd_Notify match;
            match.m_Value1 = kSeason;
            match.m_Value2 = player->second.m_Value1;
            m_Packs->send(session, match);
        }
        reply.m_Value1 = kLastStand;
    }
    // m_Value1: how many are in the board.
    void rankBS4(Session& session, const RequestFor<BS4RankData_Pack_Reply>&, BS4RankData_Pack_Reply& reply)
    {
        for (const auto& [name, data] : m_BS4)
        {
            if (reply.m_Value1 == BS4RankData_Pack_Reply::kRows)
                break;
            CombatRankData& row = reply.m_CombatRankDatas1[reply.m_Value1++];
            row.m_Name = name;
            row.m_Value1 = data.m_Value1;
        }
        reply.m_Self.m_Name = nameOf(session);
    }

    MatchPacks* m_Packs = nullptr;
    const std::vector<CombatShopGood> m_Goods = {makeGood(1, L"combat-belt", 4), makeGood(2, L"combat-crown", 100000)};
    // By the name of the account.
    std::map<Text, std::vector<CLetter>> m_Orders;
    std::map<Text, AccountCombatData> m_Ranks;
    std::map<Text, AccountBS4Data> m_BS4;
    int m_LastOrder = 0;
};

} // namespace

std::shared_ptr<void> addSeasons(MatchPacks& packs)
{
    auto seasons = std::make_shared<Seasons>();
    seasons->add(packs);
    return seasons;
}

} // namespace arena::platform
