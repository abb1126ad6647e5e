#include "examples/arena/player/pack_account.h"

#include "examples/arena/player/players.h"
#include "examples/arena/text.h"

#include <cstdarg>
#include <cstdio>

namespace arena::player
{

PackAccount::PackAccount(Player& player, const zet::String_T<wchar_t>& name)
    : m_Player(player), m_Name(name), m_Account(CAccount::createInstance()), m_Line(player),
      m_Tasks(player.getPlayers().getQuestions())
{
}

bool PackAccount::isInterrupted() const
{
    return m_Line.isLost() || m_Player.isInterrupted();
}

void PackAccount::note(const char* format, ...)
{
    char line[256];
    std::va_list arguments;
    va_start(arguments, format);
    std::vsnprintf(line, sizeof line, format, arguments);
    va_end(arguments);
    m_Player.note("as %s: %s", shown(m_Name).getBuffer(), static_cast<const char*>(line));
}

void PackAccount::fail(const char* format, ...)
{
    char line[256];
    std::va_list arguments;
    va_start(arguments, format);
    std::vsnprintf(line, sizeof line, format, arguments);
    va_end(arguments);
    if (isInterrupted())
        note("interrupted: %s", static_cast<const char*>(line));
    else
        m_Player.fail("as %s: %s", shown(m_Name).getBuffer(), static_cast<const char*>(line));
}

} // namespace arena::player
