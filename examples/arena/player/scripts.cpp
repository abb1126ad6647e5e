#include "examples/arena/player/scripts.h"

#include "examples/arena/player/billing_script.h"
#include "examples/arena/player/binding_script.h"
#include "examples/arena/player/device_script.h"
#include "examples/arena/player/echo_script.h"
#include "examples/arena/player/enter_script.h"
#include "examples/arena/player/lesson_script.h"
#include "examples/arena/player/login_script.h"
#include "examples/arena/player/mail_script.h"
#include "examples/arena/player/pack_script.h"
#include "examples/arena/player/progress_script.h"
#include "examples/arena/player/race_script.h"
#include "examples/arena/player/sport_script.h"
#include "examples/arena/player/void_data_script.h"

namespace arena::player
{

const std::vector<Script>& getScripts()
{
    static const std::vector<Script> scripts = {
        {"echo", "sends echoes", installEcho, playEcho, false},
        {"race", "a race of up to 8 pawns: zone, game server, result", installRace, playRace, false, "zone"},
        {"sport", "a sport session of 2 to 8 players", installSport, playSport, false, "sport"},
        {"lesson", "a dance lesson of up to 8 users", installLesson, playLesson, false, "lesson"},
        {"device", "a phone that drives a game, and a camera", installDevice, playDevice, false, "device"},
        {"login", "all variants of the login, tickets, a kick by a second login", installLogin, playLogin, true,
         nullptr, true},
        {"binding", "phones, outside accounts, passwords", installBinding, playBinding, true, nullptr, true},
        {"billing", "orders, bills, currencies, codes", installBilling, playBilling, true},
        {"progress", "games, missions, boards", installProgress, playProgress, true},
        {"void-data", "the payloads of void data: shop, games, person", installVoidData, playVoidData, true, nullptr,
         true},
        {"mail", "letters, messages, log records", installMail, playMail, true},
        {"packs", "all features of pack envelopes, with new accounts", installPacks, playPacks, true, nullptr, true},
    };
    return scripts;
}

const Script& getEntry()
{
    static const Script entry = {"enter", "logs in", installEnter, playEnter, true, nullptr, true};
    return entry;
}

const Script* findScript(std::string_view name)
{
    for (const Script& script : getScripts())
        if (name == script.m_Name)
            return &script;
    return nullptr;
}

} // namespace arena::player
