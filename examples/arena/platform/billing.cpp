// Purchases, from the order to the bill, and the currencies. The road of a purchase:
//
//   CCmdOrderRequest -> CCmdOrderReturn         the order, in the database before the answer
//   CCmdPayOrderQuery -> CCmdPayOrderReply      what the phone shows
//   CCmdRequestPaytoKen -> CCmdReplayPaytoKen   what the phone pays with
//   CCmdPayPrice                                the player confirms the price; the made-up payment service is paid
//   CCmdBillReusltNotify, then CCmdBillSuccess or CCmdBillFail
//
// A client that got no answer repeats the order with the same reference, and confirms the price again: the bill is
// applied once whatever is repeated.
#include "commands/billing.h"
#include "commands/payment.h"
#include "examples/arena/platform/catalogue.h"
#include "examples/arena/platform/database.h"
#include "examples/arena/platform/orders.h"
#include "examples/arena/platform/platform.h"
#include "examples/arena/protocol/platform_codes.h"
#include "framework/log.h"
#include "framework/time.h"

#include <chrono>

using namespace std::chrono_literals;

namespace arena::platform
{

namespace
{

using namespace protocol;
using Text = zet::String_T<wchar_t>;

constexpr int kReferenceLimit = 64;
constexpr int kCodeGold = 50;
constexpr int kCardGold = 30;
constexpr auto kExpiryTime = 60s;
constexpr auto kSettleTime = 1s;
constexpr wchar_t kCard[] = L"treasure-card";

// m_Text1: the offer, m_Text2: the client's reference of the order.
void order(Platform& platform, Session& session, const CCmdOrderRequest& request)
{
    CCmdOrderReturn reply;
    const auto refuse = [&](Result result, const wchar_t* reason)
    {
        reply.m_Value1 = result;
        reply.m_Text3 = reason;
        session.send(reply);
    };
    if (!session.isLoggedIn())
        return refuse(kNotLoggedIn, L"no player is logged in");
    FGameShop shop = getShop();
    const FInPurchaseGameTrade* const trade = shop.GetInPurchaseGameTradeByName(request.m_Text1);
    if (!trade)
        return refuse(kUnknownThing, L"the shop has no such offer");
    if (request.m_Text2.isEmpty() || request.m_Text2.getLength() > kReferenceLimit)
        return refuse(kBadName, L"an order needs a reference of 1 to 64 characters");
    Order order;
    if (!Orders(platform.getAccounts())
             .open(session.getStored().m_Id, request.m_Text2, trade->m_TradeName, trade->m_Cost0, order))
        return refuse(kNotSaved, L"the order was not saved");
    session.m_Order = order.m_Number;
    reply.m_Text1 = fromUtf8(order.m_Number);
    reply.m_Value2 = order.m_Price;
    reply.m_Value3 = static_cast<int>(order.m_State);
    reply.m_Text2 = fromUtf8(order.m_Trade);
    session.send(reply);
}

// The order that the session speaks of: the one that it opened last.
bool findOrder(Platform& platform, Session& session, Order& order)
{
    return session.isLoggedIn() && !session.m_Order.empty() &&
           Orders(platform.getAccounts()).find(session.m_Order, order);
}

void queryOrder(Platform& platform, Session& session)
{
    CCmdPayOrderReply reply;
    Order order;
    if (findOrder(platform, session, order))
    {
        reply.m_Value1 = order.m_Price;
        reply.m_Text1 = fromUtf8(order.m_Number);
        reply.m_Text2 = fromUtf8(order.m_Trade);
    }
    else
    {
        reply.m_Text3 = L"there is no order";
    }
    session.send(reply);
}

// The token of a made-up payment service is the order's number. m_Text2 has the reason if there is none.
void giveToken(Platform& platform, Session& session)
{
    CCmdReplayPaytoKen reply;
    Order order;
    if (findOrder(platform, session, order) && order.m_State == OrderState::kOpen)
        reply.m_Text1 = getOutsideToken(fromUtf8(order.m_Number));
    else
        reply.m_Text2 = L"there is no open order";
    session.send(reply);
}

void notify(Session& session, const Order& order, Result result)
{
    CCmdBillReusltNotify notice;
    notice.m_Text1 = fromUtf8(order.m_Number);
    notice.m_Text2 = fromUtf8(order.m_Trade);
    notice.m_Value1 = result;
    session.send(notice);
}

void failBill(Session& session, const Order& order, Result result, const wchar_t* reason)
{
    notify(session, order, result);
    CCmdBillFail fail;
    fail.m_Value1 = result;
    fail.m_Text1 = fromUtf8(order.m_Number);
    fail.m_Text2 = fromUtf8(order.m_Trade);
    fail.m_Text3 = reason;
    session.send(fail);
}

// Applies the bill, if the order is paid, once the database answers again.
void settleLater(Platform& platform, const std::string& number)
{
    platform.getTasks().after(kSettleTime,
                              [&platform, number]
                              {
                                  const Applied applied = Orders(platform.getAccounts()).apply(number);
                                  if (applied == Applied::kFailed && platform.hasFailed())
                                      settleLater(platform, number);
                              });
}

// The player confirms the price on the phone: it pays, and the bill is applied.
void pay(Platform& platform, Session& session, const CCmdPayPrice& price)
{
    Order order;
    if (!findOrder(platform, session, order))
        return !session.m_Order.empty() && platform.hasFailed()
                   ? failBill(session, order, kNotSaved, L"the database does not answer")
                   : failBill(session, order, kUnknownThing, L"there is no order");
    Orders orders(platform.getAccounts());
    const bool isApplied = order.m_State == OrderState::kApplied;
    if (isApplied ? price.m_Value1 != order.m_Price : !orders.pay(order.m_Number, price.m_Value1))
    {
        if (isApplied || !platform.hasFailed())
            return failBill(session, order, kNotAllowed, L"the payment service has refused the payment");
        // The payment may have been entered all the same.
        settleLater(platform, order.m_Number);
        return failBill(session, order, kNotSaved, L"the database does not answer");
    }
    // From here on the money is taken. If the process ends now, the bill is applied at its next start.
    if (orders.apply(order.m_Number) != Applied::kDone)
    {
        settleLater(platform, order.m_Number);
        return failBill(session, order, kNotSaved, L"the bill is applied later");
    }
    session.undo(); // the bill has changed the records in the database
    if (session.isKickedOut())
        return;
    notify(session, order, kDone);
    CCmdBillSuccess success;
    success.m_Text1 = fromUtf8(order.m_Number);
    success.m_Text2 = fromUtf8(order.m_Trade);
    success.m_Value1 = order.m_Price;
    success.m_GlobalData = session.getAccount().m_GlobalData;
    copyAccount(session.getAccount().m_Account, success.m_Account);
    FGameShop shop = getShop();
    success.m_GameTrade = *shop.GetInPurchaseGameTradeByName(fromUtf8(order.m_Trade));
    session.send(success);
}

// m_Value1: the currency.
void queryCurrency(Session& session, const CCmdCurrencyQuery& request)
{
    CCmdCurrencyReply reply;
    reply.m_Flag1 = session.isLoggedIn() && (request.m_Value1 == kGold || request.m_Value1 == kDiamonds);
    if (reply.m_Flag1)
    {
        CAccount& records = session.getAccount();
        reply.m_Value1 = request.m_Value1 == kGold ? goldOf(records) : diamondsOf(records);
        reply.m_GlobalData = records.m_GlobalData;
        copyAccount(records.m_Account, reply.m_Account);
    }
    else
    {
        reply.m_Text1 = session.isLoggedIn() ? L"there is no such currency" : L"no player is logged in";
    }
    session.send(reply);
}

// Stands for the list of codes that were issued: "CODE-" and a number that 7 divides.
bool isIssued(const Text& code)
{
    constexpr int kStart = 5;
    long long number = 0;
    for (int i = kStart; i < code.getLength() && i < kStart + 9; ++i)
    {
        if (code[i] < L'0' || code[i] > L'9')
            return false;
        number = 10 * number + (code[i] - L'0');
    }
    return code.getSubString(0, kStart) == L"CODE-" && code.getLength() > kStart && code.getLength() < kStart + 9 &&
           number % 7 == 0;
}

// m_Text1: the code. A code works once, whoever has it: the key of the table decides.
void exchangeCode(Session& session, const CCmdBillExchangeCodeRequest& request)
{
    CCmdBillExchangeCodeReply reply;
    reply.m_Text1 = request.m_Text1;
    reply.m_Value1 = request.m_Value1;
    reply.m_Value2 = request.m_Value2;
    reply.m_Text2 = request.m_Text2;
    reply.m_Text3 = request.m_Text3;
    reply.m_Text4 = request.m_Text4;
    reply.m_Text5 = request.m_Text5;
    reply.m_Text6 = request.m_Text6;
    reply.m_Text7 = request.m_Text7;
    const auto answer = [&](Result result, const wchar_t* words)
    {
        reply.m_Value3 = result;
        reply.m_Text8 = words;
        session.send(reply);
    };
    if (!session.isLoggedIn())
        return answer(kNotLoggedIn, L"no player is logged in");
    if (!isIssued(request.m_Text1))
        return answer(kWrongCode, L"there is no such code");
    bool isUsed = false;
    goldOf(session.getAccount()) += kCodeGold;
    const bool isSaved = session.save(
        [&](soci::session& sql)
        {
            const std::string code = toUtf8(request.m_Text1);
            const int id = session.getStored().m_Id;
            int owner = 0;
            sql << "INSERT INTO used_codes (code, account) VALUES (:code, :account) ON CONFLICT DO NOTHING RETURNING "
                   "account",
                soci::use(code), soci::use(id), soci::into(owner);
            isUsed = !sql.got_data();
            return !isUsed;
        });
    answer(isSaved  ? kDone
           : isUsed ? kAlreadyDone
                    : kNotSaved,
           isSaved  ? L""
           : isUsed ? L"the code is used"
                    : L"the change was not saved");
}

// Turns a treasure card of the bag into gold.
void useCard(Session& session)
{
    CCmdTrovCardReply reply;
    const auto answer = [&](Result result, const wchar_t* words)
    {
        reply.m_Value1 = result;
        reply.m_Text1 = words;
        if (session.isLoggedIn())
        {
            copyAccount(session.getAccount().m_Account, reply.m_Account);
            reply.m_GlobalData = session.getAccount().m_GlobalData;
        }
        session.send(reply);
    };
    if (!session.isLoggedIn())
        return answer(kNotLoggedIn, L"no player is logged in");
    CAccount& records = session.getAccount();
    int index = 0;
    for (const FGameItem& item : records.m_Account.m_ItemList)
    {
        if (item.m_Name == kCard)
            break;
        ++index;
    }
    if (!records.m_Account.UseItem(index, 1))
        return answer(kUnknownThing, L"there is no card in the bag");
    goldOf(records) += kCardGold;
    if (!session.save())
        return answer(kNotSaved, L"the change was not saved");
    reply.m_Value2 = kCardGold;
    answer(kDone, L"");
}

void expireOrders(Platform& platform)
{
    Orders(platform.getAccounts()).expire(zet::time(nullptr));
    platform.getTasks().after(kExpiryTime, [&platform] { expireOrders(platform); });
}

} // namespace

void installBilling(Platform& platform)
{
    // What a platform that ended between payment and bill has left.
    Orders orders(platform.getAccounts());
    for (const std::string& number : orders.findPaid())
    {
        zet::Log::message(L"The bill of order %s is applied now", fromUtf8(number));
        orders.apply(number);
    }
    expireOrders(platform);
    platform.on<CCmdOrderRequest>([&platform](Session& session, const CCmdOrderRequest& request)
                                  { order(platform, session, request); });
    platform.on<CCmdPayOrderQuery>([&platform](Session& session, const CCmdPayOrderQuery&)
                                   { queryOrder(platform, session); });
    platform.on<CCmdRequestPaytoKen>([&platform](Session& session, const CCmdRequestPaytoKen&)
                                     { giveToken(platform, session); });
    platform.on<CCmdPayPrice>([&platform](Session& session, const CCmdPayPrice& price)
                              { pay(platform, session, price); });
    platform.on<CCmdCurrencyQuery>([](Session& session, const CCmdCurrencyQuery& request)
                                   { queryCurrency(session, request); });
    platform.on<CCmdBillExchangeCodeRequest>([](Session& session, const CCmdBillExchangeCodeRequest& request)
                                             { exchangeCode(session, request); });
    platform.on<CCmdTrovCardRequest>([](Session& session, const CCmdTrovCardRequest&) { useCard(session); });
}

} // namespace arena::platform
