// The game centre: the zones that are registered, for the clients that choose one.
#pragma once

#include "commands/game_centre.h"
#include "transport/command_socket.h"

#include <vector>

namespace arena::zone
{

// GameZoneInfo: m_Text1 is the zone's name, m_Text2 its address as HOST:PORT.
class Centre
{
public:
    // The zone of this process.
    void addOwn(const GameZoneInfo& zone);
    // False if the name or the address is empty or the name is taken by another connection. A zone that registers again
    // on its connection replaces what it had.
    bool add(CCommandSocket& socket, const GameZoneInfo& zone);
    // The connection has ended.
    void remove(CCommandSocket& socket);
    void fillList(CCmdGC_gameZoneListResponse& list) const;

private:
    struct Entry
    {
        // Null for the own zone.
        const CCommandSocket* m_Socket;
        GameZoneInfo m_Zone;
    };

    std::vector<Entry> m_Entries;
};

} // namespace arena::zone
