// A player of a race: its connections, and what it has received.
#pragma once

#include "commands/game_centre.h"
#include "commands/game_zone.h"
#include "commands/race.h"
#include "commands/race_pawn.h"
#include "commands/server_status.h"
#include "commands/zone_combat.h"
#include "commands/zone_players.h"
#include "commands/zone_tunnel.h"
#include "examples/arena/player/listener.h"
#include "examples/arena/protocol/race_numbers.h"
#include "transport/udp_client_socket.h"

#include <map>
#include <string>

namespace arena::player
{

struct RaceOptions
{
    HostPort m_Zone;
    zet::String_T<wchar_t> m_Game;
    // The pawns of the game, and whether it is of the combat mode.
    int m_Pawns = 1;
    bool m_IsCombat = false;
    // This player creates the game, and plays what is refused; the others wait for it.
    bool m_IsCreator = false;
    // Race through the tunnel of the zone instead of an own connection.
    bool m_IsTunneled = false;
    // Send and receive positions over UDP.
    bool m_WantsUdp = false;
    // Between two positions.
    std::chrono::milliseconds m_Pause{5};
    // Run until the game server is lost, and expect to be back in the zone.
    bool m_IsUntilLost = false;
};

class Racer;

// The connection for positions.
class PositionSocket : public UdpClientSocket
{
public:
    explicit PositionSocket(Racer& racer);
    void onTick(unsigned int tick) override;

private:
    Racer& m_Racer;
    static Racer* s_Current;
};

// What the racers of a process share: analysers, which are large, and the UDP port.
class RaceClient
{
public:
    explicit RaceClient(zet::System& system);
    // Null if it cannot be opened.
    zet::UdpServer* getUdpPort();

    CCmdAnalyserSocket m_ZoneAnalyser;
    CCmdAnalyserSocket m_GameAnalyser;
    Groups m_Groups;

private:
    zet::System& m_System;
    host::Handlers m_ZoneHandlers;
    host::Handlers m_GameHandlers;
    zet::Unknown::Handle_T<zet::UdpServer> m_UdpPort;

public:
    host::Questions m_Questions;
};

class Racer : public Listener
{
public:
    Racer(Player& player, Place& place, const RaceOptions& options);
    ~Racer();
    Racer(const Racer&) = delete;
    Racer& operator=(const Racer&) = delete;

    void onLost(const ListenerSocket& socket) override;

    bool connectZone();
    // To the server of m_Where, unless the race goes through the tunnel.
    bool connectGame();
    bool connectPositions();
    // Over the own connection, or through the tunnel.
    void sendToGame(CCmdHead& command);
    // Over UDP, if that is open.
    void sendPosition(CCmdHead& command);

    const RaceOptions m_Options;
    RaceClient& m_Client;
    zet::Unknown::Handle_T<ListenerSocket> m_Zone;
    zet::Unknown::Handle_T<ListenerSocket> m_Game;
    zet::Unknown::Handle_T<PositionSocket> m_Positions;

    AccountBS4Data m_Season;
    bool m_IsHome = false;
    // What it knows by commands that arrived.
    CCmdGZ_ConnectGameSvr m_Where;
    zet::String_T<wchar_t> m_Message;
    int m_Refusal = 0;
    std::map<zet::String_T<wchar_t>, int> m_Places;
    std::map<zet::String_T<wchar_t>, int> m_Points;
    std::map<zet::String_T<wchar_t>, int> m_Started;
    // The other pawns that were ready when this one joined.
    int m_ReadyBefore = 0;

    // Last, so that it is destroyed first.
    host::Tasks m_Tasks;
};

} // namespace arena::player
