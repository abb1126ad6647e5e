// The scripts that players know. Each has a file of its own.
#pragma once

#include "host/tasks.h"

#include <string_view>
#include <vector>

namespace arena::player
{

class Player;
class Players;

struct Script
{
    const char* m_Name;
    const char* m_Help;
    // At start: expects the answers and installs the handlers. False, and logged, if something is installed already.
    bool (*m_Install)(Players& players);
    host::Task (*m_Play)(Player& player);
    // Whether it is for players of the platform; the others need a server only.
    bool m_IsForPlatform;
    // The role of the server to which it connects; null for none but the platform.
    const char* m_Server = nullptr;
    // Whether it logs in, so that it needs a LoginTurn.
    bool m_LogsIn = false;
};

// All of them, in the order in which a player plays them.
const std::vector<Script>& getScripts();
// The script of the login, which is played after each connect to a platform.
const Script& getEntry();
// Null for another name.
const Script* findScript(std::string_view name);

} // namespace arena::player
