#include "examples/arena/player/billing_script.h"
#include "commands/account_access.h"
#include "commands/billing.h"
#include "commands/payment.h"
#include "examples/arena/player/answers.h"
#include "examples/arena/player/line.h"
#include "examples/arena/player/players.h"
#include "examples/arena/protocol/platform_codes.h"
#include "framework/log.h"

namespace arena::player
{

namespace
{

using namespace protocol;
using Text = zet::String_T<wchar_t>;

struct Orders
{
    bool m_IsInstalled = false;
};

// A text that no earlier run of the script has used.
Text newReference()
{
    zet::Uuid id;
    zet::uuid_create(id);
    return idText(id);
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

host::Task playBilling(Player& player)
{
    constexpr auto kPatience = Player::kPatience;
    CCommandSocket& socket = player.getSocket();
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
    order.m_Text1 = L"diamonds-10";
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

} // namespace arena::player
