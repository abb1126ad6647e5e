// A game server: it runs the races that its zone creates. Players race over connections of their own, or through the
// tunnel of their zone.
#pragma once

#include "commands/game_zone.h"
#include "commands/zone_tunnel.h"
#include "examples/arena/game/race.h"
#include "host/handlers.h"
#include "host/tasks.h"
#include "transport/framework_server_socket.h"

#include <map>
#include <utility>

namespace arena::game
{

class Server;

// The race and the player of a connection, looked up with each command: races end while connections go on.
struct Seat
{
    zet::Uuid m_Race;
    zet::String_T<wchar_t> m_Name;
};

// A player's connection.
class Peer : public CFrameworkClientSocket
{
public:
    Peer(CCmdAnalyserSocket& analyser, Server& server) : CFrameworkClientSocket(&analyser), m_Server(server) {}
    void onEnd(const zet::EndCause& cause) override;

    Seat m_Seat;

private:
    Server& m_Server;
};

class Port : public CFrameworkServerSocket
{
public:
    Port(CCmdAnalyserSocket& analyser, Server& server)
        : CFrameworkServerSocket(L"", 0), m_Analyser(analyser), m_Server(server)
    {
    }
    void onAccept() override { accept(zet::Unknown::Handle_T<Peer>(new Peer(m_Analyser, m_Server))); }

private:
    CCmdAnalyserSocket& m_Analyser;
    Server& m_Server;
};

class Server
{
public:
    // A player has this time to join.
    static constexpr std::chrono::milliseconds kJoinTime{10000};
    // And this time to leave after the limit of the race.
    static constexpr std::chrono::milliseconds kExitTime{10000};
    static constexpr int kMostGames = 100;

    // Installs the commands of players, and those of the zone. The analyser and the handlers are not owned.
    Server(CCmdAnalyserSocket& players, host::Handlers& playerHandlers, host::Handlers& zoneHandlers,
           host::Tasks& tasks);

    // No further game is created, since the process is to end.
    void closeForNew() { m_IsOpen = false; }
    size_t getGameCount() const { return m_Games.size(); }
    void setRaceTime(std::chrono::milliseconds time) { m_RaceTime = time; }
    // The link is up. Everything below goes over it.
    void setZone(CCommandSocket* zone) { m_Zone = zone; }
    // The zone is gone, and nothing can be saved: all races end without results.
    void loseZone();

    // Calls visit with each race.
    template <class Visit>
    void forEachRace(Visit visit) const
    {
        for (const auto& [id, game] : m_Games)
            visit(std::as_const(*game.m_Race));
    }
    // The runner of a seat; null if there is none, or it has left.
    Runner* find(const Seat& seat);
    void leave(const Seat& seat);

private:
    template <class Command>
    void onRunner(void (Race::*handle)(Runner&, Command&));
    void join(CCommandSocket& socket, CCmdGS_joinGame& command);
    void exit(CCommandSocket& socket, CCmdGS_exitGame& command);
    // The seat of the connection, or of the player whose tunnel is being opened.
    Seat& seatOf(CCommandSocket& socket);
    // Over the connection, or through the tunnel that is being opened.
    void answer(CCommandSocket& socket, CCmdHead& command);

    void create(CCommandSocket& zone, CCmdGZ_createGame& command);
    void setUse(CCmdGZ_SetGameUse& command);
    void openTunnel(CCommandSocket& zone, CCmdGZ_clientToServer& command);
    void saved(CCmdGZ_SaveResultReply& command);
    void destroy(CCommandSocket& zone, CCmdGZ_destroyGame& command);
    void sendResult(Runner& runner);
    // The race is over when its runners have left and the zone has saved all results.
    void endIfOver(Race& race);

    struct Game
    {
        std::unique_ptr<Race> m_Race;
        int m_Unsaved = 0;
    };

    CCmdAnalyserSocket& m_PlayerAnalyser;
    host::Handlers& m_PlayerHandlers;
    host::Tasks& m_Tasks;
    CCommandSocket* m_Zone = nullptr;
    bool m_IsOpen = true;
    std::chrono::milliseconds m_RaceTime{60000};
    std::map<zet::Uuid, Game> m_Games;
    // Of the tunneled command that is being handled.
    Seat m_TunnelSeat;
};

} // namespace arena::game
