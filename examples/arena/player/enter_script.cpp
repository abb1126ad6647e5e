#include "examples/arena/player/enter_script.h"

#include "commands/account_access.h"
#include "commands/login.h"
#include "commands/server_choice.h"
#include "examples/arena/player/players.h"
#include "examples/arena/text.h"

#include <iterator>

namespace arena::player
{

namespace
{

// Where CCmdBaseLogin has the name and the password.
constexpr int kName = 0;
constexpr int kPassword = 1;

} // namespace

bool installEnter(Players& players)
{
    // Scripts ask for these too.
    return players.getQuestions()
        .expect<CCmdLoginSuccess, CCmdLoginFail, CCmdFetchAccountReply, CCmdServerListReply, CCmdSelectServerReply>();
}

host::Task playEnter(Player& player)
{
    if (player.getPlayers().getOptions().m_ChoosesServer)
    {
        const CCmdServerListRequest ask;
        const auto list = co_await host::ask<CCmdServerListReply>(player.getSocket(), ask, Player::kPatience);
        const auto* const servers = std::get_if<CCmdServerListReply>(&list);
        if (!servers || servers->m_PlatformServerInfos.empty())
        {
            player.fail("CCmdServerListRequest: no list of servers");
            co_return;
        }
        // The players take the servers in turn.
        const auto turn = static_cast<size_t>(player.getNumber()) % servers->m_PlatformServerInfos.size();
        const auto chosen = std::next(servers->m_PlatformServerInfos.begin(), static_cast<std::ptrdiff_t>(turn));
        CCmdSelectServerRequest select;
        select.m_Value1 = chosen->second.m_Value1;
        const auto choice = co_await host::ask<CCmdSelectServerReply>(player.getSocket(), select, Player::kPatience);
        const auto* const where = std::get_if<CCmdSelectServerReply>(&choice);
        if (!where || where->m_Value2 != 0)
        {
            player.fail("CCmdSelectServerRequest: the server is not to be chosen");
            co_return;
        }
        player.moveTo({where->m_Text1, static_cast<unsigned short>(where->m_Value1)});
        if (!player.isConnected())
            co_return;
    }
    CCmdBaseLogin login;
    login.m_Texts[kName] = player.getName();
    login.m_Texts[kPassword] = zet::String_T<wchar_t>(L"password of ") + player.getName();
    const auto reply =
        co_await host::ask<CCmdLoginSuccess, CCmdLoginFail>(player.getSocket(), login, Player::kPatience);
    if (const auto* const success = std::get_if<CCmdLoginSuccess>(&reply))
    {
        player.note("CCmdBaseLogin -> CCmdLoginSuccess");
        CAccount& account = player.getAccount();
        account.m_GlobalData = success->m_GlobalData;
        account.m_LingYuanGouData = success->m_LingYuanGouData;
        player.confirm(success->m_Account);
    }
    else if (const auto* const refusal = std::get_if<CCmdLoginFail>(&reply))
        player.fail("CCmdBaseLogin -> CCmdLoginFail %d: %s", refusal->m_Value1, shown(refusal->m_Text1).getBuffer());
    else
        player.fail("CCmdBaseLogin: no answer");
}

} // namespace arena::player
