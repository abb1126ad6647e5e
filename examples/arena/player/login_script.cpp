#include "examples/arena/player/login_script.h"
#include "commands/login.h"
#include "commands/server_choice.h"
#include "examples/arena/player/answers.h"
#include "examples/arena/player/line.h"
#include "examples/arena/player/players.h"
#include "examples/arena/protocol/platform_codes.h"

namespace arena::player
{

namespace
{

using namespace protocol;
using namespace std::chrono_literals;
using Text = zet::String_T<wchar_t>;

constexpr wchar_t kPassword[] = L"correct horse";
constexpr std::chrono::milliseconds kPoll{10};

// Sets the texts that all variants share.
template <class Login>
Login makeLogin(const Text& name, const Text& password, const Text& device)
{
    Login login;
    login.m_Texts[kLoginName] = name;
    login.m_Texts[kLoginPassword] = password;
    login.m_Texts[kLoginDevice] = device;
    return login;
}

bool hasRecords(Player& player, const CCmdLoginSuccess& success)
{
    return expectThat(player, success.m_Account.m_AccountId > 0, "the account has a number") &&
           expectThat(player, !success.m_Account.m_TrainingMap.empty(), "the account has training games") &&
           expectThat(player, !success.m_GameShop.m_InPurchaseTrades.empty(), "the shop has offers");
}

} // namespace

bool installLogin(Players& players)
{
    return players.getQuestions().expect<CCmdHpwdLoginSuccess, CCmdHpwdLoginCancel, CCmdLoginStateReply>();
}

host::Task playLogin(Player& player)
{
    constexpr auto kPatience = Player::kPatience;
    const Text name = player.getName() + L"-2";
    const Line line(player);

    // The servers, and a choice.
    const auto list = co_await host::ask<CCmdServerListReply>(*line, CCmdServerListRequest(), kPatience);
    const auto* const servers =
        expectAnswer<CCmdServerListReply>(player, list, "CCmdServerListRequest -> CCmdServerListReply");
    if (!servers || !expectThat(player, !servers->m_PlatformServerInfos.empty(), "there is a server"))
        co_return;
    CCmdSelectServerRequest select;
    select.m_Value1 = servers->m_PlatformServerInfos.begin()->second.m_Value1;
    const auto choice = co_await host::ask<CCmdSelectServerReply>(*line, select, kPatience);
    const auto* const chosen =
        expectAnswer<CCmdSelectServerReply>(player, choice, "CCmdSelectServerRequest -> CCmdSelectServerReply");
    if (!chosen || !expectThat(player, chosen->m_Value2 == kDone, "the server can be chosen"))
        co_return;
    select.m_Value1 = 1000;
    const auto noChoice = co_await host::ask<CCmdSelectServerReply>(*line, select, kPatience);
    const auto* const none =
        expectAnswer<CCmdSelectServerReply>(player, noChoice, "CCmdSelectServerRequest 1000 -> refused");
    if (!none || !expectThat(player, none->m_Value2 != kDone, "a server that is not there is refused"))
        co_return;

    // A first login by name makes the account, later ones need its password.
    const auto first = co_await host::ask<CCmdLoginSuccess, CCmdLoginFail>(
        *line, makeLogin<CCmdBaseLogin>(name, kPassword, L""), kPatience);
    const auto* const entered = expectAnswer<CCmdLoginSuccess>(player, first, "CCmdBaseLogin -> CCmdLoginSuccess");
    if (!entered || !hasRecords(player, *entered) ||
        !expectThat(player, entered->m_GlobalData.GetLastServerID() == chosen->m_Value3, "the server is remembered"))
        co_return;
    const auto state = co_await host::ask<CCmdLoginStateReply>(*line, CCmdLoginStateRequest(), kPatience);
    const auto* const in =
        expectAnswer<CCmdLoginStateReply>(player, state, "CCmdLoginStateRequest -> CCmdLoginStateReply");
    if (!in || !expectThat(player, in->m_Value1 == kIn, "the player is logged in"))
        co_return;
    CCmdLogout logout;
    logout.m_Account.m_AccountNote = L"until tomorrow";
    line->send(logout);
    const auto after = co_await host::ask<CCmdLoginStateReply>(*line, CCmdLoginStateRequest(), kPatience);
    const auto* const out = expectAnswer<CCmdLoginStateReply>(player, after, "CCmdLogout");
    if (!out || !expectThat(player, out->m_Value1 == kOut, "the player is logged out"))
        co_return;
    CCmdLogin login;
    login.m_Text1 = name;
    login.m_Text2 = L"wrong horse";
    const auto refused = co_await host::ask<CCmdLoginSuccess, CCmdLoginFail>(*line, login, kPatience);
    if (!expectAnswer<CCmdLoginFail>(player, refused, "CCmdLogin with a wrong password -> CCmdLoginFail"))
        co_return;
    login.m_Text2 = kPassword;
    const auto again = co_await host::ask<CCmdLoginSuccess, CCmdLoginFail>(*line, login, kPatience);
    const auto* const returned = expectAnswer<CCmdLoginSuccess>(player, again, "CCmdLogin -> CCmdLoginSuccess");
    if (!returned || !expectThat(player, returned->m_Account.m_AccountNote == logout.m_Account.m_AccountNote,
                                 "what the logout brought is saved"))
        co_return;

    // A second login ends the first one; the ticket of the second one ends that, and is renewed.
    const Line second(player);
    const auto kicking = co_await host::ask<CCmdLoginSuccess, CCmdLoginFail>(*second, login, kPatience);
    if (!expectAnswer<CCmdLoginSuccess>(player, kicking, "CCmdLogin again -> CCmdLoginSuccess"))
        co_return;
    const auto isKickedOut = [&line] { return line->getEndCause().m_Code != zet::EndCause::kNone; };
    for (auto left = kPatience; left > 0ms && !isKickedOut(); left -= kPoll)
        co_await host::sleep(kPoll);
    if (!expectThat(player, isKickedOut(), "CCmdAccountKickOut ends the first connection"))
        co_return;
    const Line third(player);
    CCmdLoginHPWD byTicket;
    byTicket.m_Text1 = idText(std::get<CCmdLoginSuccess>(kicking).m_Id1);
    const auto resumed = co_await host::ask<CCmdHpwdLoginSuccess, CCmdHpwdLoginCancel>(*third, byTicket, kPatience);
    const auto* const renewed =
        expectAnswer<CCmdHpwdLoginSuccess>(player, resumed, "CCmdLoginHPWD -> CCmdHpwdLoginSuccess");
    if (!renewed || !expectThat(player, renewed->m_Text1 == name, "the ticket is the player's"))
        co_return;
    CCmdLoginCheck check;
    check.m_Text1 = renewed->m_Text2;
    const auto checked = co_await host::ask<CCmdHpwdLoginSuccess, CCmdHpwdLoginCancel>(*third, check, kPatience);
    if (!expectAnswer<CCmdHpwdLoginSuccess>(player, checked, "CCmdLoginCheck -> CCmdHpwdLoginSuccess"))
        co_return;
    const auto stale = co_await host::ask<CCmdHpwdLoginSuccess, CCmdHpwdLoginCancel>(*third, byTicket, kPatience);
    if (!expectAnswer<CCmdHpwdLoginCancel>(player, stale, "CCmdLoginHPWD with an old ticket -> CCmdHpwdLoginCancel"))
        co_return;

    // The variants without a password. Each logs the connection in as another account.
    const auto guest = co_await host::ask<CCmdLoginSuccess, CCmdLoginFail>(
        *third, makeLogin<CCmdGuestLogin>(L"", L"", name + L"-device"), kPatience);
    const auto* const asGuest = expectAnswer<CCmdLoginSuccess>(player, guest, "CCmdGuestLogin -> CCmdLoginSuccess");
    if (!asGuest || !hasRecords(player, *asGuest))
        co_return;
    const auto sameGuest = co_await host::ask<CCmdLoginSuccess, CCmdLoginFail>(
        *third, makeLogin<CCmdGuestLogin>(L"", L"", name + L"-device"), kPatience);
    const auto* const same = expectAnswer<CCmdLoginSuccess>(player, sameGuest, "CCmdGuestLogin again");
    if (!same ||
        !expectThat(player, same->m_Account.m_AccountId == asGuest->m_Account.m_AccountId, "a device has one guest"))
        co_return;
    const auto noGuest = co_await host::ask<CCmdLoginSuccess, CCmdLoginFail>(
        *third, makeLogin<CCmdGuestLogin>(L"", L"", L""), kPatience);
    if (!expectAnswer<CCmdLoginFail>(player, noGuest, "CCmdGuestLogin without a device -> CCmdLoginFail"))
        co_return;
    const auto mac = co_await host::ask<CCmdLoginSuccess, CCmdLoginFail>(
        *third, makeLogin<CCmdMacLogin>(L"", L"", name + L"-02:00:00"), kPatience);
    if (!expectAnswer<CCmdLoginSuccess>(player, mac, "CCmdMacLogin -> CCmdLoginSuccess"))
        co_return;
    CCmdMobileLogin mobile;
    mobile.m_Text1 = name + L"-4711";
    mobile.m_Text2 = L"none";
    const auto noCode = co_await host::ask<CCmdLoginSuccess, CCmdLoginFail>(*third, mobile, kPatience);
    if (!expectAnswer<CCmdLoginFail>(player, noCode, "CCmdMobileLogin with a wrong code -> CCmdLoginFail"))
        co_return;
    mobile.m_Text2 = getPhoneCode(mobile.m_Text1);
    const auto phone = co_await host::ask<CCmdLoginSuccess, CCmdLoginFail>(*third, mobile, kPatience);
    if (!expectAnswer<CCmdLoginSuccess>(player, phone, "CCmdMobileLogin -> CCmdLoginSuccess"))
        co_return;
    auto outside = makeLogin<CCmdThirdAccountLogin>(L"", getOutsideToken(name), L"");
    outside.m_Text1 = name;
    outside.m_Value1 = 3;
    const auto third3 = co_await host::ask<CCmdLoginSuccess, CCmdLoginFail>(*third, outside, kPatience);
    if (!expectAnswer<CCmdLoginSuccess>(player, third3, "CCmdThirdAccountLogin -> CCmdLoginSuccess"))
        co_return;
    CCmdWechatdAccountLogin chat;
    chat.m_Text1 = name;
    chat.m_Text2 = getOutsideToken(name);
    const auto chatted = co_await host::ask<CCmdLoginSuccess, CCmdLoginFail>(*third, chat, kPatience);
    if (!expectAnswer<CCmdLoginSuccess>(player, chatted, "CCmdWechatdAccountLogin -> CCmdLoginSuccess"))
        co_return;
    chat.m_Text2 = L"forged";
    const auto forged = co_await host::ask<CCmdLoginSuccess, CCmdLoginFail>(*third, chat, kPatience);
    if (!expectAnswer<CCmdLoginFail>(player, forged, "CCmdWechatdAccountLogin forged -> CCmdLoginFail"))
        co_return;
    player.note("logins done");
}

} // namespace arena::player
