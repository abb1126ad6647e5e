#include "examples/arena/player/binding_script.h"
#include "commands/account_access.h"
#include "commands/account_binding.h"
#include "commands/login.h"
#include "examples/arena/player/answers.h"
#include "examples/arena/player/line.h"
#include "examples/arena/player/players.h"
#include "examples/arena/protocol/platform_codes.h"

namespace arena::player
{

namespace
{

using namespace protocol;
using Text = zet::String_T<wchar_t>;

constexpr wchar_t kOld[] = L"old secret";
constexpr wchar_t kNew[] = L"new secret";

} // namespace

bool installBinding(Players& players)
{
    return players.getQuestions()
        .expect<CCmdBindPhoneSuccess, CCmdBindPhoneFail, CCmdQueryPhoneReply, CCmdUnBindPhoneReply,
                CCmdBindThirdAccountReply, CCmdUnBindUserReply, CCmdFindPasswordSuccess, CCmdFindPasswordFail,
                CCmdUpdatePasswordSuccess, CCmdUpdatePasswordFail, CCmdSwitchAccountSuccess, CCmdSwitchAccountFail>();
}

host::Task playBinding(Player& player)
{
    constexpr auto kPatience = Player::kPatience;
    const Line line(player);
    CCmdBaseLogin login;
    // Two new accounts: those of a play that was interrupted may have phones and other passwords.
    zet::Uuid id;
    zet::uuid_create(id);
    const Text play = player.getName() + L"-" + idText(id).getSubString(0, 8);
    for (const wchar_t* ending : {L"-3", L"-4"})
    {
        login.m_Texts[kLoginName] = play + ending;
        login.m_Texts[kLoginPassword] = kOld;
        const auto entered = co_await host::ask<CCmdLoginSuccess, CCmdLoginFail>(*line, login, kPatience);
        if (!expectAnswer<CCmdLoginSuccess>(player, entered, "CCmdBaseLogin -> CCmdLoginSuccess"))
            co_return;
    }
    // The connection is that of the last account from here on.
    const Text& name = login.m_Texts[kLoginName];

    // A password can be found once there is a phone.
    CCmdFindPassword find;
    find.m_Text1 = name;
    const auto notFound = co_await host::ask<CCmdFindPasswordSuccess, CCmdFindPasswordFail>(*line, find, kPatience);
    if (!expectAnswer<CCmdFindPasswordFail>(player, notFound, "CCmdFindPassword -> CCmdFindPasswordFail"))
        co_return;
    CCmdBindPhone bind;
    bind.m_Text1 = name + L"-5678";
    bind.m_Text2 = L"none";
    const auto noCode = co_await host::ask<CCmdBindPhoneSuccess, CCmdBindPhoneFail>(*line, bind, kPatience);
    if (!expectAnswer<CCmdBindPhoneFail>(player, noCode, "CCmdBindPhone -> CCmdBindPhoneFail"))
        co_return;
    bind.m_Text2 = getPhoneCode(bind.m_Text1);
    const auto bound = co_await host::ask<CCmdBindPhoneSuccess, CCmdBindPhoneFail>(*line, bind, kPatience);
    if (!expectAnswer<CCmdBindPhoneSuccess>(player, bound, "CCmdBindPhone -> CCmdBindPhoneSuccess"))
        co_return;
    const auto twice = co_await host::ask<CCmdBindPhoneSuccess, CCmdBindPhoneFail>(*line, bind, kPatience);
    if (!expectAnswer<CCmdBindPhoneFail>(player, twice, "CCmdBindPhone again -> CCmdBindPhoneFail"))
        co_return;
    CCmdQueryPhoneRequest query;
    query.m_Text1 = bind.m_Text1;
    const auto queried = co_await host::ask<CCmdQueryPhoneReply>(*line, query, kPatience);
    const auto* const known =
        expectAnswer<CCmdQueryPhoneReply>(player, queried, "CCmdQueryPhoneRequest -> CCmdQueryPhoneReply");
    if (!known || !expectThat(player, known->m_Flag1 && known->m_Text2 == name, "the phone is the player's"))
        co_return;
    const auto found = co_await host::ask<CCmdFindPasswordSuccess, CCmdFindPasswordFail>(*line, find, kPatience);
    if (!expectAnswer<CCmdFindPasswordSuccess>(player, found, "CCmdFindPassword -> CCmdFindPasswordSuccess"))
        co_return;
    const auto unbound = co_await host::ask<CCmdUnBindPhoneReply>(*line, CCmdUnBindPhoneRequest(), kPatience);
    const auto* const free =
        expectAnswer<CCmdUnBindPhoneReply>(player, unbound, "CCmdUnBindPhoneRequest -> CCmdUnBindPhoneReply");
    if (!free || !expectThat(player, free->m_Text1.isEmpty(), "the phone is free"))
        co_return;
    const auto nothing = co_await host::ask<CCmdUnBindPhoneReply>(*line, CCmdUnBindPhoneRequest(), kPatience);
    const auto* const already = expectAnswer<CCmdUnBindPhoneReply>(player, nothing, "CCmdUnBindPhoneRequest again");
    if (!already || !expectThat(player, !already->m_Text1.isEmpty(), "nothing is bound any more"))
        co_return;

    CCmdBindThirdAccountRequest outside;
    outside.m_Text1 = name;
    outside.m_Value1 = 2;
    const auto forged = co_await host::ask<CCmdBindThirdAccountReply>(*line, outside, kPatience);
    const auto* const refused =
        expectAnswer<CCmdBindThirdAccountReply>(player, forged, "CCmdBindThirdAccountRequest forged");
    if (!refused || !expectThat(player, !refused->m_Flag1, "a forged token is refused"))
        co_return;
    outside.m_Text2 = getOutsideToken(name);
    const auto joined = co_await host::ask<CCmdBindThirdAccountReply>(*line, outside, kPatience);
    const auto* const accepted = expectAnswer<CCmdBindThirdAccountReply>(
        player, joined, "CCmdBindThirdAccountRequest -> CCmdBindThirdAccountReply");
    if (!accepted || !expectThat(player, accepted->m_Flag1, "the outside account is bound"))
        co_return;
    const auto parted = co_await host::ask<CCmdUnBindUserReply>(*line, CCmdUnBindUserRequest(), kPatience);
    const auto* const apart =
        expectAnswer<CCmdUnBindUserReply>(player, parted, "CCmdUnBindUserRequest -> CCmdUnBindUserReply");
    if (!apart || !expectThat(player, apart->m_Text1.isEmpty(), "the outside account is free"))
        co_return;

    CCmdUpdatePassword update;
    update.m_Text1 = L"a guess";
    update.m_Text2 = kNew;
    const auto guessed =
        co_await host::ask<CCmdUpdatePasswordSuccess, CCmdUpdatePasswordFail>(*line, update, kPatience);
    if (!expectAnswer<CCmdUpdatePasswordFail>(player, guessed, "CCmdUpdatePassword -> CCmdUpdatePasswordFail"))
        co_return;
    update.m_Text1 = kOld;
    const auto updated =
        co_await host::ask<CCmdUpdatePasswordSuccess, CCmdUpdatePasswordFail>(*line, update, kPatience);
    if (!expectAnswer<CCmdUpdatePasswordSuccess>(player, updated, "CCmdUpdatePassword -> CCmdUpdatePasswordSuccess"))
        co_return;
    update.m_Text1 = kNew;
    update.m_Text2 = kOld;
    const auto restored =
        co_await host::ask<CCmdUpdatePasswordSuccess, CCmdUpdatePasswordFail>(*line, update, kPatience);
    if (!expectAnswer<CCmdUpdatePasswordSuccess>(player, restored, "CCmdUpdatePassword back"))
        co_return;

    CCmdFetchAccountRequest fetch;
    fetch.m_Text1 = play + L"-3";
    const auto foreign = co_await host::ask<CCmdFetchAccountReply>(*line, fetch, kPatience);
    const auto* const hidden =
        expectAnswer<CCmdFetchAccountReply>(player, foreign, "CCmdFetchAccountRequest of another -> refused");
    if (!hidden || !expectThat(player, hidden->m_Value1 == kNotAllowed, "a foreign account is not delivered"))
        co_return;
    CCmdSwitchAccount change;
    change.m_Text1 = fetch.m_Text1;
    change.m_Text2 = L"a guess";
    const auto stayed = co_await host::ask<CCmdSwitchAccountSuccess, CCmdSwitchAccountFail>(*line, change, kPatience);
    if (!expectAnswer<CCmdSwitchAccountFail>(player, stayed, "CCmdSwitchAccount -> CCmdSwitchAccountFail"))
        co_return;
    change.m_Text2 = kOld;
    const auto changed = co_await host::ask<CCmdSwitchAccountSuccess, CCmdSwitchAccountFail>(*line, change, kPatience);
    if (!expectAnswer<CCmdSwitchAccountSuccess>(player, changed, "CCmdSwitchAccount -> CCmdSwitchAccountSuccess"))
        co_return;
    const auto fetched = co_await host::ask<CCmdFetchAccountReply>(*line, fetch, kPatience);
    const auto* const own =
        expectAnswer<CCmdFetchAccountReply>(player, fetched, "CCmdFetchAccountRequest -> CCmdFetchAccountReply");
    if (!own || !expectThat(player, own->m_Account.m_AccountName == fetch.m_Text1, "the own account is delivered"))
        co_return;
    player.note("bindings done");
}

} // namespace arena::player
