// Buying within a game: an order is saved, the payment is reported, and the good is in the bag, once for each order. An
// F-code is a good that its owner gives away: whoever uses it first gets it. Orders and codes are kept in memory and
// end with the process; goods are in the account.
#include "examples/arena/platform/packs/packs.h"
#include "examples/arena/platform/packs/serving.h"
#include "examples/arena/platform/platform.h"
#include "examples/arena/protocol/pack_numbers.h"

#include <algorithm>
#include <deque>
#include <map>
#include <random>

namespace arena::platform
{

namespace
{

using Text = zet::String_T<wchar_t>;

constexpr wchar_t kNoSuchGood[] = L"no such good";
constexpr wchar_t kNoOrder[] = L"no such order";
constexpr wchar_t kOrderKnown[] = L"the order is known";
constexpr wchar_t kTooMany[] = L"too many open orders";
constexpr wchar_t kNoCode[] = L"no such code";
constexpr wchar_t kCodeUsed[] = L"the code is used";

// What CheckResult says of an order.
constexpr wchar_t kOpen[] = L"open";
constexpr wchar_t kPaid[] = L"paid";

constexpr const wchar_t* kGoods[] = {L"golden-shoes", L"second-wind"};
constexpr int kMostOpen = 10;
// The orders of a player that are kept, more than kMostOpen.
constexpr size_t kMostKept = 50;
// The length of an order's name in UTF-16 units.
constexpr int kMostId = 64;
constexpr int kMostCodes = 10;

bool isGood(const Text& name)
{
    return std::any_of(std::begin(kGoods), std::end(kGoods), [&](const wchar_t* good) { return name == good; });
}
bool give(Session& session, const Text& good)
{
    FGameItem item;
    item.m_Name = good;
    item.m_Num = 1;
    return session.getAccount().m_Account.AddItem(item) && session.save();
}
const Text& nameOf(Session& session)
{
    return session.getAccount().m_Account.m_AccountName;
}

class InPurchase
{
public:
    bool install(host::Handlers& handlers)
    {
        numberInPurchase(m_Packs);
        on<InPurchasePack_CheckIfOpenInPurchase_Request, InPurchasePack_CheckIfOpenInPurchase_Reply>(
            &InPurchase::tellGoods);
        on<InPurchasePack_SaveOrderId_Request, InPurchasePack_SaveOrderId_Reply>(&InPurchase::saveOrder);
        on<InPurchasePack_GetCheckResult_Request, InPurchasePack_GetCheckResult_Reply>(&InPurchase::tellOrder);
        on<InPurchasePack_CheckAuthorizationCode_Request, InPurchasePack_CheckAuthorizationCode_Reply>(
            &InPurchase::checkCode);
        on<InPurchasePack_CreateAndSaveFCode_Request, InPurchasePack_CreateAndSaveFCode_Reply>(&InPurchase::createCode);
        on<RequestFor<InPurchasePack_GetFCodeList_Reply>, InPurchasePack_GetFCodeList_Reply>(&InPurchase::listCodes);
        on<InPurchasePack_UseFCode_Request, InPurchasePack_UseFCode_Reply>(&InPurchase::useCode);
        serveSilently<InPurchasePack_SendBuySuccessMessage_Request>(
            m_Packs, [this](Session& session, const InPurchasePack_SendBuySuccessMessage_Request& request)
            { finishOrder(session, request.m_Text1); });
        return m_Packs.install(handlers);
    }

private:
    struct Order
    {
        Text m_Account;
        Text m_Good;
        bool m_IsPaid = false;
    };
    struct Code
    {
        Text m_Owner;
        Text m_Good;
        bool m_IsUsed = false;
    };

    template <class Request, class Reply>
    void on(void (InPurchase::*work)(Session&, const Request&, Reply&))
    {
        serve<Request, Reply>(m_Packs, [this, work](Session& session, const Request& request, Reply& reply)
                              { (this->*work)(session, request, reply); });
    }
    // Null for another player's order, too.
    Order* findOrder(Session& session, const Text& id)
    {
        const auto order = m_Orders.find(id);
        return order == m_Orders.end() || !(order->second.m_Account == nameOf(session)) ? nullptr : &order->second;
    }

    // m_Text1 of the reply: the result; m_Text2: the goods.
    void tellGoods(Session&, const InPurchasePack_CheckIfOpenInPurchase_Request&,
                   InPurchasePack_CheckIfOpenInPurchase_Reply& reply)
    {
        for (const wchar_t* const good : kGoods)
            reply.m_Text2 += Text(good) + L"|";
    }
    // m_Text1: the order; m_Text2: the good.
    void saveOrder(Session& session, const InPurchasePack_SaveOrderId_Request& request,
                   InPurchasePack_SaveOrderId_Reply& reply)
    {
        if (request.m_Text1.isEmpty() || request.m_Text1.getLength() > kMostId)
            return refuse(reply, kNoOrder);
        if (!isGood(request.m_Text2))
            return refuse(reply, kNoSuchGood);
        if (m_Orders.count(request.m_Text1) > 0)
            return refuse(reply, kOrderKnown);
        // Of each player, the latest ones are kept.
        std::deque<Text>& own = m_OrdersOf[nameOf(session)];
        const auto isOpen = [this](const Text& id) { return !m_Orders.at(id).m_IsPaid; };
        if (std::count_if(own.begin(), own.end(), isOpen) >= kMostOpen)
            return refuse(reply, kTooMany);
        if (own.size() >= kMostKept)
        {
            const auto paid = std::find_if_not(own.begin(), own.end(), isOpen);
            m_Orders.erase(*paid);
            own.erase(paid);
        }
        own.push_back(request.m_Text1);
        m_Orders[request.m_Text1] = {nameOf(session), request.m_Text2};
    }
    // Result, order, state and good.
    void tellOrder(Session& session, const InPurchasePack_GetCheckResult_Request& request,
                   InPurchasePack_GetCheckResult_Reply& reply)
    {
        const Order* const order = findOrder(session, request.m_Text1);
        if (!order)
            return refuse(reply, kNoOrder);
        reply.m_Text2 = request.m_Text1;
        reply.m_Text3 = order->m_IsPaid ? kPaid : kOpen;
        reply.m_Text4 = order->m_Good;
    }
    // The good is given with the change from open to paid: the message may come twice. Here the player's word is the
    // payment; a platform that sells for money asks the seller.
    void finishOrder(Session& session, const Text& id)
    {
        Order* const order = findOrder(session, id);
        if (order && !order->m_IsPaid)
            order->m_IsPaid = give(session, order->m_Good);
    }
    void checkCode(Session&, const InPurchasePack_CheckAuthorizationCode_Request& request,
                   InPurchasePack_CheckAuthorizationCode_Reply& reply)
    {
        const auto code = m_Codes.find(request.m_Text1);
        if (code == m_Codes.end())
            refuse(reply, kNoCode);
        else if (code->second.m_IsUsed)
            refuse(reply, kCodeUsed);
    }
    // m_Text1: the good, which is taken from the bag. Result, code, good and owner.
    void createCode(Session& session, const InPurchasePack_CreateAndSaveFCode_Request& request,
                    InPurchasePack_CreateAndSaveFCode_Reply& reply)
    {
        AccountData& account = session.getAccount().m_Account;
        const auto isOwned = [&](const auto& each) { return each.second.m_Owner == nameOf(session); };
        if (std::count_if(m_Codes.begin(), m_Codes.end(), isOwned) >= kMostCodes)
            return refuse(reply, kTooMany);
        const auto item = std::find_if(account.m_ItemList.begin(), account.m_ItemList.end(),
                                       [&](const FGameItem& each) { return each.m_Name == request.m_Text1; });
        if (!isGood(request.m_Text1) || item == account.m_ItemList.end() ||
            !account.UseItem(static_cast<int>(item - account.m_ItemList.begin()), 1))
            return refuse(reply, kNoSuchGood);
        if (!save(session, reply))
            return;
        // A code that cannot be guessed.
        std::random_device random;
        reply.m_Text2.format(L"%08x%08x%08x%08x", random(), random(), random(), random());
        reply.m_Text3 = request.m_Text1;
        reply.m_Text4 = nameOf(session);
        m_Codes[reply.m_Text2] = {nameOf(session), request.m_Text1};
    }
    // m_Value1 of a row: whether the code is used.
    void listCodes(Session& session, const RequestFor<InPurchasePack_GetFCodeList_Reply>&,
                   InPurchasePack_GetFCodeList_Reply& reply)
    {
        for (const auto& [id, code] : m_Codes)
            if (code.m_Owner == nameOf(session))
            {
                InPurchaseFCodeRow row;
                row.m_Text1 = id;
                row.m_Text2 = code.m_Good;
                row.m_Text3 = code.m_Owner;
                row.m_Value1 = code.m_IsUsed ? 1 : 0;
                reply.m_InPurchaseFCodeRows.push_back(row);
            }
    }
    void useCode(Session& session, const InPurchasePack_UseFCode_Request& request, InPurchasePack_UseFCode_Reply& reply)
    {
        const auto code = m_Codes.find(request.m_Text1);
        if (code == m_Codes.end())
            return refuse(reply, kNoCode);
        if (code->second.m_IsUsed)
            return refuse(reply, kCodeUsed);
        code->second.m_IsUsed = give(session, code->second.m_Good);
        if (!code->second.m_IsUsed)
            refuse(reply, kNotSaved);
    }

    InPurchasePacks m_Packs;
    // By their identifiers.
    std::map<Text, Order> m_Orders;
    // The identifiers by account, in the order in which they came.
    std::map<Text, std::deque<Text>> m_OrdersOf;
    std::map<Text, Code> m_Codes;
};

} // namespace

Feature serveInPurchase(Platform& platform)
{
    auto purchase = std::make_shared<InPurchase>();
    return purchase->install(platform.getHandlers()) ? purchase : nullptr;
}

} // namespace arena::platform
