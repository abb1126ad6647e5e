#include "examples/arena/zone/centre.h"

#include <algorithm>

namespace arena::zone
{

void Centre::addOwn(const GameZoneInfo& zone)
{
    m_Entries.push_back({nullptr, zone});
}

bool Centre::add(CCommandSocket& socket, const GameZoneInfo& zone)
{
    const bool isTaken = std::any_of(m_Entries.begin(), m_Entries.end(),
                                     [&](const Entry& entry)
                                     { return entry.m_Socket != &socket && entry.m_Zone.m_Text1 == zone.m_Text1; });
    if (zone.m_Text1.isEmpty() || zone.m_Text2.isEmpty() || isTaken)
        return false;
    remove(socket);
    m_Entries.push_back({&socket, zone});
    return true;
}

void Centre::remove(CCommandSocket& socket)
{
    std::erase_if(m_Entries, [&](const Entry& entry) { return entry.m_Socket == &socket; });
}

void Centre::fillList(CCmdGC_gameZoneListResponse& list) const
{
    for (const Entry& entry : m_Entries)
        list.m_GameZoneInfos.push_back(entry.m_Zone);
}

} // namespace arena::zone
