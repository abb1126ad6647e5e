#include "examples/arena/player/mail_script.h"
#include "commands/account_access.h"
#include "commands/logs.h"
#include "commands/mail.h"
#include "examples/arena/player/answers.h"
#include "examples/arena/player/line.h"
#include "examples/arena/player/players.h"
#include "examples/arena/protocol/platform_codes.h"
#include "examples/arena/text.h"

namespace arena::player
{

bool installMail(Players& players)
{
    return players.getQuestions().expect<CCmdMailSendReply, CCmdMailReceiveReply, CCmdMessageRecv, CCmdMaintainReply>();
}

host::Task playMail(Player& player)
{
    constexpr auto kPatience = Player::kPatience;
    CCommandSocket& socket = player.getSocket();
    CCmdMailSendRequest mail;
    mail.m_Letter.m_Text1 = L"nobody at all";
    mail.m_Letter.m_Text3 = L"a race";
    mail.m_Letter.m_Text4 = L"at eight";
    const auto lost = co_await host::ask<CCmdMailSendReply>(socket, mail, kPatience);
    const auto* const refused = expectAnswer<CCmdMailSendReply>(player, lost, "CCmdMailSendRequest -> refused");
    if (!refused || !expectThat(player, !refused->m_Text1.isEmpty(), "there is no such receiver"))
        co_return;
    // A subject that no other letter has.
    zet::Uuid id;
    zet::uuid_create(id);
    mail.m_Letter.m_Text1 = player.getName();
    mail.m_Letter.m_Text3 = L"race " + idText(id);
    const auto sending = co_await host::ask<CCmdMailSendReply>(socket, mail, kPatience);
    const auto* const sent =
        expectAnswer<CCmdMailSendReply>(player, sending, "CCmdMailSendRequest -> CCmdMailSendReply");
    if (!sent || !expectThat(player, sent->m_Text1.isEmpty(), "the letter is sent"))
        co_return;
    player.note("saved: letter %s", shown(mail.m_Letter.m_Text3).getBuffer());
    const auto arriving = co_await host::ask<CCmdMailReceiveReply>(socket, CCmdMailReceiveRequest(), kPatience);
    const auto* const received =
        expectAnswer<CCmdMailReceiveReply>(player, arriving, "CCmdMailReceiveRequest -> CCmdMailReceiveReply");
    if (!received || !expectThat(player, !received->m_Letters.empty(), "there is a letter") ||
        !expectThat(player, received->m_Letters.back().m_Text4 == mail.m_Letter.m_Text4,
                    "it is the one that was sent") ||
        !expectThat(player, received->m_Letters.back().m_LetterId > 0, "it has a number"))
        co_return;
    CCmdMessageSend message;
    message.m_Text1 = player.getName();
    message.m_Text3 = L"hello";
    const auto heard = co_await host::ask<CCmdMessageRecv>(socket, message, kPatience);
    const auto* const greeting = expectAnswer<CCmdMessageRecv>(player, heard, "CCmdMessageSend -> CCmdMessageRecv");
    if (!greeting || !expectThat(player, greeting->m_Text2 == player.getName(), "the sender is named"))
        co_return;
    // Log records have no answer.
    CCmdAddLog log;
    log.m_Text1 = L"script";
    socket.send(log);
    socket.send(CCmdLogLobby());
    socket.send(CCmdLogMatch());
    socket.send(CCmdLogPay());
    socket.send(CCmdLogLingYuanGou());
    socket.send(CCmdLogAccount());
    CCmdMaintainRequest maintain;
    maintain.m_Value1 = protocol::kShowAccount;
    maintain.m_Text1 = player.getName();
    const auto maintained = co_await host::ask<CCmdMaintainReply>(socket, maintain, kPatience);
    if (!expectAnswer<CCmdMaintainReply>(player, maintained, "CCmdMaintainRequest -> CCmdMaintainReply"))
        co_return;
    CCmdFetchAccountRequest fetch;
    fetch.m_Text1 = player.getName();
    const auto latest = co_await host::ask<CCmdFetchAccountReply>(socket, fetch, kPatience);
    const auto* const records =
        expectAnswer<CCmdFetchAccountReply>(player, latest, "CCmdFetchAccountRequest -> CCmdFetchAccountReply");
    if (!records)
        co_return;
    player.confirm(records->m_Account);
    player.note("mail done");
}

} // namespace arena::player
