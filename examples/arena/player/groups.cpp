#include "examples/arena/player/groups.h"

#include "examples/arena/player/players.h"
#include "framework/time.h"

#include <algorithm>

namespace arena::player
{

bool Groups::isGathering() const
{
    return std::any_of(m_Groups.begin(), m_Groups.end(), [](const auto& group) { return !group->m_IsComplete; });
}

int Groups::getPending() const
{
    return static_cast<int>(
        std::count_if(m_Groups.begin(), m_Groups.end(), [](const auto& group) { return !group->m_IsDone; }));
}

Place::Place(Player& player, Groups& groups) : m_Player(player), m_Groups(groups)
{
    const auto hasSpace = [](const auto& group)
    { return !group->m_IsComplete && static_cast<int>(group->m_Names.size()) < Groups::kMost; };
    const auto found = std::find_if(groups.m_Groups.begin(), groups.m_Groups.end(), hasSpace);
    if (found != groups.m_Groups.end())
        m_Group = *found;
    else
    {
        m_Group = groups.m_Groups.emplace_back(std::make_shared<Group>());
        m_Group->m_Number = ++groups.m_Number;
        m_Group->m_Begin = zet::getTimeTick();
    }
    m_Group->m_Players.push_back(&player);
    auto& names = m_Group->m_Names;
    names.insert(std::upper_bound(names.begin(), names.end(), player.getName()), player.getName());
}

Place::~Place()
{
    std::erase(m_Group->m_Players, &m_Player);
    if (m_Group->m_Players.empty())
        m_Groups.m_Groups.remove(m_Group);
}

bool Place::isWaiting()
{
    if (m_Group->m_IsComplete)
        return false;
    const bool isFirst = m_Groups.m_Groups.front() == m_Group;
    const size_t most = std::min<size_t>(Groups::kMost, m_Player.getPlayers().getAll().size());
    m_Group->m_IsComplete =
        (isFirst || !m_Groups.m_IsSerial) &&
        (m_Group->m_Names.size() >= most || zet::getTimeTick() - m_Group->m_Begin >= Groups::kGatherTime);
    return !m_Group->m_IsComplete;
}

int Place::getNumber() const
{
    const auto& names = m_Group->m_Names;
    return static_cast<int>(std::lower_bound(names.begin(), names.end(), m_Player.getName()) - names.begin());
}

void Place::breakUp()
{
    for (Player* const player : m_Group->m_Players)
        player->interrupt();
}

} // namespace arena::player
