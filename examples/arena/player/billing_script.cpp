#include "examples/arena/player/billing_script.h"
#include "commands/account_access.h"
#include "commands/billing.h"
#include "commands/payment.h"
#include "examples/arena/player/answers.h"
#include "examples/arena/player/line.h"
#include "examples/arena/player/players.h"
#include "examples/arena/protocol/platform_codes.h"
#include "examples/arena/text.h"
#include "framework/log.h"

#include <map>

namespace arena::player
{

namespace
{

using namespace protocol;
using Text = zet::String_T<wchar_t>;

struct Orders
{
    bool m_IsInstalled = false;
    // The references of the players' orders whose bills were not confirmed yet.
    std::map<const Player*, Text> m_Open;
};

constexpr wchar_t kOffer[] = L"diamonds-10";

// A text that no earlier run of the script has used.
Text newReference()
{
    zet::Uuid id;
    zet::uuid_create(id);
    return idText(id);
}

Text& getOpenOrder(Player& player)
{
    return player.getPlayers().share<Orders>().m_Open[&player];
}

} // namespace

bool installOrders(Players& players)
{
    bool& isInstalled = players.share<Orders>().m_IsInstalled;
    // The notice comes without a request of its own.
    if (!isInstalled)
        isInstalled = players.getHandlers().on<CCmdBillReusltNotify>([](CCommandSocket&, const CCmdBillReusltNotify&)
                                                                     { zet::Log::message(L"CCmdBillReusltNotify"); }) &&
                      players.getQuestions().expect<CCmdOrderReturn, CCmdBillSuccess, CCmdBillFail>();
    return isInstalled;
}

bool installBilling(Players& players)
{
    return installOrders(players) && players.getQuestions()
                                         .expect<CCmdPayOrderReply, CCmdReplayPaytoKen, CCmdCurrencyReply,
                                                 CCmdBillExchangeCodeReply, CCmdTrovCardReply>();
}

static host::Task playPurchases(Player& player)
{
    constexpr auto kPatience = Player::kPatience;
    CCommandSocket& socket = player.getSocket();
    Text& open = getOpenOrder(player);
    CCmdCurrencyQuery query;
    query.m_Value1 = 7;
    const auto unknown = co_await host::ask<CCmdCurrencyReply>(socket, query, kPatience);
    const auto* const none = expectAnswer<CCmdCurrencyReply>(player, unknown, "CCmdCurrencyQuery 7 -> refused");
    if (!none || !expectThat(player, !none->m_Flag1, "there is no such currency"))
        co_return;
    query.m_Value1 = kDiamonds;
    const auto before = co_await host::ask<CCmdCurrencyReply>(socket, query, kPatience);
    const auto* const purse = expectAnswer<CCmdCurrencyReply>(player, before, "CCmdCurrencyQuery -> CCmdCurrencyReply");
    if (!purse)
        co_return;

    CCmdOrderRequest order;
    order.m_Text1 = L"the moon";
    order.m_Text2 = newReference();
    const auto noOrder = co_await host::ask<CCmdOrderReturn>(socket, order, kPatience);
    const auto* const refused = expectAnswer<CCmdOrderReturn>(player, noOrder, "CCmdOrderRequest -> refused");
    if (!refused || !expectThat(player, refused->m_Value1 == kUnknownThing, "the moon is not for sale"))
        co_return;
    order.m_Text1 = kOffer;
    order.m_Text2 = open = newReference();
    const auto ordered = co_await host::ask<CCmdOrderReturn>(socket, order, kPatience);
    const auto* const opened = expectAnswer<CCmdOrderReturn>(player, ordered, "CCmdOrderRequest -> CCmdOrderReturn");
    if (!opened || !expectThat(player, opened->m_Value1 == kDone, "the order is open"))
        co_return;
    const auto repeated = co_await host::ask<CCmdOrderReturn>(socket, order, kPatience);
    const auto* const same = expectAnswer<CCmdOrderReturn>(player, repeated, "CCmdOrderRequest again");
    if (!same || !expectThat(player, same->m_Text1 == opened->m_Text1, "a repeated order is the same one"))
        co_return;
    const auto payable = co_await host::ask<CCmdPayOrderReply>(socket, CCmdPayOrderQuery(), kPatience);
    const auto* const bill = expectAnswer<CCmdPayOrderReply>(player, payable, "CCmdPayOrderQuery -> CCmdPayOrderReply");
    const auto given = co_await host::ask<CCmdReplayPaytoKen>(socket, CCmdRequestPaytoKen(), kPatience);
    const auto* const token =
        expectAnswer<CCmdReplayPaytoKen>(player, given, "CCmdRequestPaytoKen -> CCmdReplayPaytoKen");
    if (!bill || !token || !expectThat(player, bill->m_Text1 == opened->m_Text1, "the order is the one to pay") ||
        !expectThat(player, !token->m_Text1.isEmpty(), "there is a token"))
        co_return;
    CCmdPayPrice price;
    price.m_Value1 = opened->m_Value2 - 1;
    const auto cheap = co_await host::ask<CCmdBillSuccess, CCmdBillFail>(socket, price, kPatience);
    if (!expectAnswer<CCmdBillFail>(player, cheap, "CCmdPayPrice too low -> CCmdBillFail"))
        co_return;
    price.m_Value1 = opened->m_Value2;
    // The bill is applied once, however often the price is confirmed.
    for (const char* exchange : {"CCmdPayPrice -> CCmdBillSuccess", "CCmdPayPrice again -> CCmdBillSuccess"})
    {
        const auto paid = co_await host::ask<CCmdBillSuccess, CCmdBillFail>(socket, price, kPatience);
        const auto* const success = expectAnswer<CCmdBillSuccess>(player, paid, exchange);
        if (!success || !expectThat(player, success->m_GameTrade.m_TradeName == order.m_Text1, "it is the trade"))
            co_return;
        player.getAccount().m_GlobalData = success->m_GlobalData;
        player.confirm(success->m_Account);
        if (!open.isEmpty())
            player.note("saved: bill %s", shown(success->m_Text1).getBuffer());
        open = {};
    }
    const auto after = co_await host::ask<CCmdCurrencyReply>(socket, query, kPatience);
    const auto* const richer = expectAnswer<CCmdCurrencyReply>(player, after, "CCmdCurrencyQuery after the bill");
    if (!richer || !expectThat(player, richer->m_Value1 == purse->m_Value1 + 10, "the bill is applied once"))
        co_return;

    CCmdBillExchangeCodeRequest code;
    code.m_Text1 = L"CODE-8";
    const auto noCode = co_await host::ask<CCmdBillExchangeCodeReply>(socket, code, kPatience);
    const auto* const invalid =
        expectAnswer<CCmdBillExchangeCodeReply>(player, noCode, "CCmdBillExchangeCodeRequest -> refused");
    if (!invalid || !expectThat(player, invalid->m_Value3 == kWrongCode, "the code is not an issued one"))
        co_return;
    zet::Uuid random;
    zet::uuid_create(random);
    code.m_Text1 = Text(L"CODE-") + Text(static_cast<int>(random.m_Data1 % 10000000 * 7));
    for (const int result : {kDone, kAlreadyDone})
    {
        const auto exchanged = co_await host::ask<CCmdBillExchangeCodeReply>(socket, code, kPatience);
        const auto* const used = expectAnswer<CCmdBillExchangeCodeReply>(
            player, exchanged, "CCmdBillExchangeCodeRequest -> CCmdBillExchangeCodeReply");
        if (!used || !expectThat(player, used->m_Value3 == result, "a code works once"))
            co_return;
        if (result == kDone)
            player.note("saved: code %s", shown(code.m_Text1).getBuffer());
    }
    const auto card = co_await host::ask<CCmdTrovCardReply>(socket, CCmdTrovCardRequest(), kPatience);
    if (!expectAnswer<CCmdTrovCardReply>(player, card, "CCmdTrovCardRequest -> CCmdTrovCardReply"))
        co_return;
    CCmdFetchAccountRequest fetch;
    fetch.m_Text1 = player.getName();
    const auto latest = co_await host::ask<CCmdFetchAccountReply>(socket, fetch, kPatience);
    const auto* const records =
        expectAnswer<CCmdFetchAccountReply>(player, latest, "CCmdFetchAccountRequest -> CCmdFetchAccountReply");
    if (!records)
        co_return;
    player.confirm(records->m_Account);
    player.note("billing done");
}

// An earlier play of the script was interrupted between the order and the confirmed bill: the same reference gives the
// same order, and its bill is applied once, by the platform's own repetition or by this one.
static host::Task finishOrder(Player& player)
{
    constexpr auto kPatience = Player::kPatience;
    CCommandSocket& socket = player.getSocket();
    Text& open = getOpenOrder(player);
    CCmdOrderRequest order;
    order.m_Text1 = kOffer;
    order.m_Text2 = open;
    const auto ordered = co_await host::ask<CCmdOrderReturn>(socket, order, kPatience);
    const auto* const opened = expectAnswer<CCmdOrderReturn>(player, ordered, "CCmdOrderRequest after an interruption");
    if (!opened || !expectThat(player, opened->m_Value1 == kDone, "the order is open or paid"))
        co_return;
    CCmdPayPrice price;
    price.m_Value1 = opened->m_Value2;
    const auto paid = co_await host::ask<CCmdBillSuccess, CCmdBillFail>(socket, price, kPatience);
    const auto* const success = expectAnswer<CCmdBillSuccess>(player, paid, "CCmdPayPrice after an interruption");
    if (!success)
        co_return;
    player.note("saved: bill %s", shown(success->m_Text1).getBuffer());
    open = {};
    player.getTasks().start(playPurchases(player));
}

host::Task playBilling(Player& player)
{
    return getOpenOrder(player).isEmpty() ? playPurchases(player) : finishOrder(player);
}

} // namespace arena::player
