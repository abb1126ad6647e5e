// A game zone: it holds game servers, hands players to them, and carries commands between the two. One zone of the
// platform is the game centre too, which lists the zones.
#pragma once

#include "commands/game_zone.h"
#include "commands/server_status.h"
#include "commands/zone_combat.h"
#include "commands/zone_players.h"
#include "commands/zone_tunnel.h"
#include "examples/arena/zone/centre.h"
#include "examples/arena/zone/season.h"
#include "host/handlers.h"
#include "transport/framework_server_socket.h"

#include <map>
#include <memory>
#include <vector>

namespace arena::zone
{

class Zone;
struct Game;

struct Player
{
    CCommandSocket& m_Socket;
    AccountData m_Account;
    AccountGlobalData m_GlobalData;
    // The game in which the player is ready or races.
    Game* m_Game = nullptr;
    bool m_WantsUdp = false;

    const zet::String_T<wchar_t>& getName() const { return m_Account.m_AccountName; }
};

struct GameServer
{
    CCommandSocket& m_Socket;
    GameSvrInfo m_Info;
    int m_Games = 0;
};

struct Game
{
    enum State
    {
        // The game server has not answered yet.
        kCreating,
        // Players get ready.
        kGathering,
        kRacing,
        // The game server is asked to remove it.
        kEnding
    };

    zet::Uuid m_Id;
    zet::String_T<wchar_t> m_Name;
    GameServer& m_Server;
    int m_Pawns;
    bool m_IsCombat;
    zet::String_T<wchar_t> m_Creator;
    State m_State = kCreating;
    std::vector<Player*> m_Players = {};
};

// One connection to the zone's port: of a player, of a game server, or of another zone that registers at the centre.
class Peer : public CFrameworkClientSocket
{
public:
    Peer(CCmdAnalyserSocket& analyser, Zone& zone) : CFrameworkClientSocket(&analyser), m_Zone(zone) {}
    void onEnd(const zet::EndCause& cause) override;

    // At most one of them, after the command with which the peer has entered or registered.
    std::unique_ptr<Player> m_Player;
    std::unique_ptr<GameServer> m_Server;

private:
    Zone& m_Zone;
};

class Port : public CFrameworkServerSocket
{
public:
    Port(CCmdAnalyserSocket& analyser, Zone& zone) : CFrameworkServerSocket(L"", 0), m_Analyser(analyser), m_Zone(zone)
    {
    }
    void onAccept() override { accept(zet::Unknown::Handle_T<Peer>(new Peer(m_Analyser, m_Zone))); }

private:
    CCmdAnalyserSocket& m_Analyser;
    Zone& m_Zone;
};

class Zone
{
public:
    static constexpr int kMostPlayers = 1000;
    static constexpr int kLongestName = 32;

    // Installs the commands of players, of game servers and of zones. The handlers are not owned.
    explicit Zone(host::Handlers& handlers);

    void setName(const zet::String_T<wchar_t>& name) { m_Name = name; }
    // What game servers of this zone know; players use the same port.
    void setKey(const zet::String_T<wchar_t>& key) { m_Key = key; }
    Centre& getCentre() { return m_Centre; }
    // A zone that is to end informs its players, and waits until they have raced and left.
    void announceEnd();
    size_t getPlayerCount() const { return m_Players.size(); }
    size_t getGameCount() const { return m_Games.size(); }
    // A connection has ended: a game server gives its players back, a player leaves the game.
    void lose(Peer& peer);

private:
    template <class Command>
    void onPlayer(host::Handlers& handlers, void (Zone::*handle)(Player&, Command&));
    template <class Command>
    void onServer(host::Handlers& handlers, void (Zone::*handle)(GameServer&, Command&));
    void installPlayers(host::Handlers& handlers);
    void installServers(host::Handlers& handlers);

    // zone_players.cpp
    void enter(Peer& peer, CCmdGZ_playerEnter& command);
    void exit(Peer& peer, CCmdGZ_playerExit& command);
    void create(Player& player, CCmdGZ_createGame& command);
    void ready(Player& player, CCmdGZ_gameReady& command);
    void unready(Player& player, CCmdGZ_gameUnready& command);
    void startGame(Player& player, CCmdGZ_StartGameRequest& command);
    void toServer(Player& player, CCmdGZ_clientToServer& command);
    void board(Player& player, CCmdGZ_CBRankDataPackRequest& command);
    void connectPlayers(Game& game);
    // The player is not in its game any more.
    void leaveGame(Player& player);
    Game* findOpenGame(const zet::String_T<wchar_t>& name);

    // zone_servers.cpp
    void registerServer(Peer& peer, CCmdGZ_regGameServer& command);
    void created(GameServer& server, CCmdGZ_createGameOk& command);
    void notCreated(GameServer& server, CCmdGZ_createGameFail& command);
    void toClient(GameServer& server, CCmdGZ_serverToClient& command);
    void saveResult(GameServer& server, CCmdGZ_SaveResultData& command);
    void over(GameServer& server, CCmdGZ_gameOver& command);
    void destroyed(GameServer& server, CCmdGZ_destroyGameOk& command);
    void loseServer(GameServer& server);
    void remove(Game& game);
    // Of this server; null for an unknown id.
    Game* findGame(GameServer& server, const zet::Uuid& id);

    Player* findPlayer(const zet::String_T<wchar_t>& name);

    zet::String_T<wchar_t> m_Name;
    zet::String_T<wchar_t> m_Key;
    Centre m_Centre;
    Season m_Season;
    // The players are their peers', the servers too.
    std::map<zet::String_T<wchar_t>, Player*> m_Players;
    std::vector<GameServer*> m_Servers;
    std::map<zet::Uuid, std::unique_ptr<Game>> m_Games;
};

// All connections of the zone's analyser are Peers.
inline Peer& peerOf(CCommandSocket& socket)
{
    return static_cast<Peer&>(socket);
}

// Commands of peers that are no players, or no game servers, are logged and dropped.
void reportStranger(CCommandSocket& socket, const wchar_t* kind);

template <class Command>
void Zone::onPlayer(host::Handlers& handlers, void (Zone::*handle)(Player&, Command&))
{
    handlers.on<Command>(
        [this, handle](CCommandSocket& socket, Command& command)
        {
            if (Player* const player = peerOf(socket).m_Player.get())
                (this->*handle)(*player, command);
            else
                reportStranger(socket, L"a player");
        });
}

template <class Command>
void Zone::onServer(host::Handlers& handlers, void (Zone::*handle)(GameServer&, Command&))
{
    handlers.on<Command>(
        [this, handle](CCommandSocket& socket, Command& command)
        {
            if (GameServer* const server = peerOf(socket).m_Server.get())
                (this->*handle)(*server, command);
            else
                reportStranger(socket, L"a game server");
        });
}

} // namespace arena::zone
