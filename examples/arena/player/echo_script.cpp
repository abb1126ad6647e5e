#include "examples/arena/player/echo_script.h"

#include "commands/registry.h"
#include "examples/arena/player/players.h"

namespace arena::player
{

namespace
{

constexpr unsigned long kEchoes = 10;
constexpr std::chrono::milliseconds kPause{20};

} // namespace

bool installEcho(Players& players)
{
    return players.getQuestions().expect<CCmdServerEchoReply>();
}

host::Task playEcho(Player& player)
{
    CCmdServerEcho echo;
    for (echo.m_Data = 1; echo.m_Data <= kEchoes; ++echo.m_Data)
    {
        const auto reply = co_await host::ask<CCmdServerEchoReply>(player.getSocket(), echo, Player::kPatience);
        const auto* const answer = std::get_if<CCmdServerEchoReply>(&reply);
        if (!answer || answer->m_Data != echo.m_Data)
        {
            player.fail("no echo of %lu", echo.m_Data);
            co_return;
        }
        player.note("CCmdServerEcho %lu -> CCmdServerEchoReply", echo.m_Data);
        co_await host::sleep(kPause);
    }
}

} // namespace arena::player
