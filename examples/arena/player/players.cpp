#include "examples/arena/player/players.h"

#include "commands/login.h"
#include "examples/arena/text.h"

#include <algorithm>

namespace arena::player
{

Players::Players(zet::System& system, PlayerOptions options)
    : m_System(system), m_Options(std::move(options)), m_Handlers(*m_Analyser), m_Questions(m_Handlers, system)
{
    m_Questions.setObserver(m_Counters);
}

bool Players::install()
{
    const auto kick = [this](CCommandSocket& socket, const CCmdAccountKickOut&)
    {
        for (Player& player : m_Players)
            player.onKick(socket);
    };
    return m_Handlers.on<CCmdAccountKickOut>(kick) && (!m_Options.m_Entry || m_Options.m_Entry->m_Install(*this)) &&
           std::all_of(m_Options.m_Scripts.begin(), m_Options.m_Scripts.end(),
                       [this](const Script* script) { return script->m_Install(*this); });
}

void Players::watch(host::Questions& questions)
{
    questions.setObserver(m_Counters);
    m_OtherQuestions.push_back(&questions);
}

void Players::add(const zet::String_T<wchar_t>& name)
{
    m_Players.emplace_back(*this, name, static_cast<int>(m_Players.size()));
}

void Players::start()
{
    for (Player& player : m_Players)
        player.start();
}

bool Players::takeLoginTurn()
{
    if (m_LoginTurns >= LoginTurn::kMost)
        return false;
    ++m_LoginTurns;
    return true;
}

bool Players::areDone() const
{
    return std::all_of(m_Players.begin(), m_Players.end(), [](const Player& player) { return player.isDone(); });
}

std::vector<std::string> Players::findFaults() const
{
    std::vector<std::string> faults;
    int failures = 0;
    int interruptions = 0;
    for (const Player& player : m_Players)
    {
        failures += player.getFailures();
        interruptions += player.getReconnects() + player.getInterruptions();
        if (!player.isDone())
            faults.push_back(std::string(shown(player.getName()).getBuffer()) + " has not ended");
        else if (player.getPlayed() == 0 && !m_Options.m_Scripts.empty())
            faults.push_back(std::string(shown(player.getName()).getBuffer()) + " has played nothing");
    }
    if (failures > 0)
        faults.push_back(std::to_string(failures) + " expectations were not met");
    for (const auto& [name, kind] : m_Counters.getKinds())
    {
        if (kind.m_Unanswered > 0)
            faults.push_back(name + ": " + std::to_string(kind.m_Unanswered) + " were not answered");
        if (kind.m_Interrupted > 0 && interruptions == 0)
            faults.push_back(name + ": " + std::to_string(kind.m_Interrupted) + " had no connection");
    }
    int open = m_Questions.getOpenCount();
    for (const host::Questions* const questions : m_OtherQuestions)
        open += questions->getOpenCount();
    if (open > 0)
        faults.push_back(std::to_string(open) + " commands are still open");
    return faults;
}

} // namespace arena::player
