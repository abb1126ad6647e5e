// What players ask of their zone.
#include "commands/race.h"
#include "examples/arena/protocol/race_numbers.h"
#include "examples/arena/zone/zone.h"
#include "framework/log.h"

#include <algorithm>

namespace arena::zone
{

namespace
{

// The texts of CCmdGZ_createGameFail and CCmdGZ_StartGameReply; an empty one means success.
constexpr wchar_t kBadName[] = L"A game has a name of 1 to 32 characters that no other game has.";
constexpr wchar_t kBadPawns[] = L"A game has 1 to 8 pawns.";
constexpr wchar_t kOneGame[] = L"You have a game already.";
constexpr wchar_t kNoServer[] = L"No game server has space for a game.";
constexpr wchar_t kNotRacing[] = L"Your game has not been started.";
constexpr wchar_t kEnding[] = L"The zone is about to end.";
constexpr wchar_t kFull[] = L"The zone is full.";

// The assignment of the record leaves these two out, and a reply has all of it.
void copyAccount(const AccountData& from, AccountData& to)
{
    to = from;
    to.m_Value3 = from.m_Value3;
    std::copy(std::begin(from.m_Allowance), std::end(from.m_Allowance), to.m_Allowance);
}

} // namespace

void Zone::installPlayers(host::Handlers& handlers)
{
    handlers.on<CCmdGZ_playerEnter>([this](CCommandSocket& socket, CCmdGZ_playerEnter& command)
                                    { enter(peerOf(socket), command); });
    handlers.on<CCmdGZ_playerExit>([this](CCommandSocket& socket, CCmdGZ_playerExit& command)
                                   { exit(peerOf(socket), command); });
    onPlayer<CCmdGZ_createGame>(handlers, &Zone::create);
    onPlayer<CCmdGZ_gameReady>(handlers, &Zone::ready);
    onPlayer<CCmdGZ_gameUnready>(handlers, &Zone::unready);
    onPlayer<CCmdGZ_StartGameRequest>(handlers, &Zone::startGame);
    onPlayer<CCmdGZ_clientToServer>(handlers, &Zone::toServer);
    onPlayer<CCmdGZ_CBRankDataPackRequest>(handlers, &Zone::board);
    handlers.on<CCmdGZ_ZoneInfoRequest>(
        [this](CCommandSocket& socket, CCmdGZ_ZoneInfoRequest&)
        {
            CCmdGZ_ZoneInfoResponse response;
            response.m_Text1 = m_Name;
            response.m_Text2.format(L"%d game servers, %d games, %d players", static_cast<int>(m_Servers.size()),
                                    static_cast<int>(m_Games.size()), static_cast<int>(m_Players.size()));
            socket.send(response);
        });
    handlers.on<CCmdPlayerCountOnLineRequest>(
        [this](CCommandSocket& socket, CCmdPlayerCountOnLineRequest&)
        {
            CCmdPlayerCountOnLineResponse response;
            response.m_Value1 = static_cast<int>(m_Players.size());
            socket.send(response);
        });
    // The number of the request, which the zone does not use, and the players who race.
    handlers.on<CCmdInGamePlayerCountRequest>(
        [this](CCommandSocket& socket, CCmdInGamePlayerCountRequest& request)
        {
            CCmdInGamePlayerCountResponse response;
            response.m_Value1 = request.m_Value1;
            response.m_Value2 = static_cast<int>(std::count_if(
                m_Players.begin(), m_Players.end(),
                [](const auto& each) { return each.second->m_Game && each.second->m_Game->m_State == Game::kRacing; }));
            socket.send(response);
        });
}

Player* Zone::findPlayer(const zet::String_T<wchar_t>& name)
{
    const auto found = m_Players.find(name);
    return found == m_Players.end() ? nullptr : found->second;
}

void Zone::enter(Peer& peer, CCmdGZ_playerEnter& command)
{
    const zet::String_T<wchar_t>& name = command.m_Account.m_AccountName;
    if (static_cast<int>(m_Players.size()) >= kMostPlayers)
    {
        CCmdServerBusy busy;
        busy.m_Text1 = kFull;
        peer.send(busy);
        peer.send(CCmdGZ_playerEnterFail());
        return;
    }
    if (peer.m_Player || peer.m_Server || name.isEmpty() || name.getLength() > kLongestName || findPlayer(name))
    {
        peer.send(CCmdGZ_playerEnterFail());
        return;
    }
    peer.m_Player = std::make_unique<Player>(Player{peer, command.m_Account, command.m_GlobalData});
    m_Players[name] = peer.m_Player.get();
    zet::Log::message(L"%s has entered", name);
    CCmdGZ_playerEnterOk reply;
    reply.m_BS4Data = m_Season.getRecord(name);
    peer.send(reply);
}

void Zone::exit(Peer& peer, CCmdGZ_playerExit& command)
{
    Player* const player = peer.m_Player.get();
    // A player who races leaves the race first.
    if (!player || command.m_Text1 != player->getName() || (player->m_Game && player->m_Game->m_State == Game::kRacing))
    {
        peer.send(CCmdGZ_playerExitFail());
        return;
    }
    leaveGame(*player);
    CCmdGZ_playerExitOk reply;
    reply.m_GlobalData = player->m_GlobalData;
    copyAccount(player->m_Account, reply.m_Account);
    peer.send(reply);
    zet::Log::message(L"%s has left", player->getName());
    m_Players.erase(player->getName());
    peer.m_Player.reset();
}

void Zone::create(Player& player, CCmdGZ_createGame& command)
{
    const int pawns = command.m_Value1 & race::kPawnsMask;
    const auto isSame = [&](const auto& each) { return each.second->m_Name == command.m_Text1; };
    const auto isOwn = [&](const auto& each)
    { return each.second->m_Creator == player.getName() && each.second->m_State != Game::kEnding; };
    CCmdGZ_createGameFail refusal;
    if (command.m_Text1.isEmpty() || command.m_Text1.getLength() > kLongestName ||
        std::any_of(m_Games.begin(), m_Games.end(), isSame))
        refusal.m_Text1 = kBadName;
    else if (pawns < 1 || pawns > race::kMostPawns)
        refusal.m_Text1 = kBadPawns;
    else if (player.m_Game || std::any_of(m_Games.begin(), m_Games.end(), isOwn))
        refusal.m_Text1 = kOneGame;
    else
    {
        // The server with the fewest games.
        const auto server = std::min_element(m_Servers.begin(), m_Servers.end(),
                                             [](GameServer* a, GameServer* b) { return a->m_Games < b->m_Games; });
        if (server == m_Servers.end() || (*server)->m_Games >= (*server)->m_Info.m_Value1)
            refusal.m_Text1 = kNoServer;
        else
        {
            zet::uuid_create(command.m_Id1);
            m_Games[command.m_Id1] =
                std::make_unique<Game>(Game{command.m_Id1, command.m_Text1, **server, pawns,
                                            (command.m_Value1 & race::kCombatBit) != 0, player.getName()});
            ++(*server)->m_Games;
            command.m_AccountName = player.getName();
            (*server)->m_Socket.send(command);
            return;
        }
    }
    player.m_Socket.send(refusal);
}

Game* Zone::findOpenGame(const zet::String_T<wchar_t>& name)
{
    for (const auto& [id, game] : m_Games)
        if (game->m_State == Game::kGathering && (name.isEmpty() || game->m_Name == name))
            return game.get();
    return nullptr;
}

void Zone::ready(Player& player, CCmdGZ_gameReady& command)
{
    // An empty name is any open game.
    Game* const game = player.m_Game ? nullptr : findOpenGame(command.m_Text1);
    if (!game)
    {
        player.m_Socket.send(CCmdGZ_gameReadyFail());
        return;
    }
    player.m_Game = game;
    player.m_WantsUdp = command.m_Value1 == race::kPositionsByUdp;
    game->m_Players.push_back(&player);
    player.m_Socket.send(CCmdGZ_gameReadyOk());
    if (static_cast<int>(game->m_Players.size()) == game->m_Pawns)
        connectPlayers(*game);
}

void Zone::unready(Player& player, CCmdGZ_gameUnready& command)
{
    Game* const game = player.m_Game;
    if (!game || game->m_State != Game::kGathering || game->m_Name != command.m_Text1)
    {
        player.m_Socket.send(CCmdGZ_gameUnreadyFail());
        return;
    }
    player.m_Game = nullptr;
    std::erase(game->m_Players, &player);
    player.m_Socket.send(CCmdGZ_gameUnreadyOk());
    // The game stays for others, but not if its creator was the last who was ready.
    if (game->m_Players.empty() && game->m_Creator == player.getName())
        remove(*game);
}

void Zone::connectPlayers(Game& game)
{
    game.m_State = Game::kRacing;
    zet::Log::message(L"Game %s starts with %d pawns", game.m_Name, game.m_Pawns);
    CCmdGZ_SetGameUse use;
    use.m_Id1 = game.m_Id;
    for (Player* player : game.m_Players)
        use.m_Entries.push_back({player->m_GlobalData, player->m_Account, m_Season.getCombat(player->getName())});
    game.m_Server.m_Socket.send(use);
    CCmdGZ_CombatStart combat;
    combat.m_Flag1 = true;
    combat.m_Id1 = game.m_Id;
    if (game.m_IsCombat)
        game.m_Server.m_Socket.send(combat);
    for (Player* player : game.m_Players)
    {
        if (game.m_IsCombat)
            player->m_Socket.send(combat);
        CCmdGZ_ConnectGameSvr where;
        where.m_Text1 = game.m_Server.m_Info.m_IP;
        where.m_Word1 = game.m_Server.m_Info.m_Port;
        where.m_Id1 = game.m_Id;
        // The name under which to join.
        where.m_Text2 = player->getName();
        // Whether positions go over UDP, to the same port number.
        where.m_Flag1 = player->m_WantsUdp && game.m_Server.m_Info.m_Value2 != 0;
        where.m_CombatData = m_Season.getCombat(player->getName());
        player->m_Socket.send(where);
    }
}

void Zone::startGame(Player& player, CCmdGZ_StartGameRequest&)
{
    CCmdGZ_StartGameReply reply;
    if (!player.m_Game || player.m_Game->m_State != Game::kRacing)
        reply.m_Text1 = kNotRacing;
    copyAccount(player.m_Account, reply.m_Account);
    player.m_Socket.send(reply);
}

void Zone::toServer(Player& player, CCmdGZ_clientToServer& command)
{
    // The text names the game. The bytes are the game server's; who sends them, the zone says.
    Game* const game = player.m_Game;
    if (!game || game->m_State != Game::kRacing || command.m_Text1 != game->m_Name)
    {
        zet::Log::warning(L"%s has no game '%s' to send to", player.getName(), command.m_Text1);
        return;
    }
    command.m_AccountName = player.getName();
    game->m_Server.m_Socket.send(command);
}

void Zone::board(Player& player, CCmdGZ_CBRankDataPackRequest&)
{
    CCmdGZ_CBRankDataPackReply reply;
    m_Season.fillBoard(player.getName(), reply.m_BS4RankData_Pack_Reply);
    reply.m_BS4Data = m_Season.getRecord(player.getName());
    player.m_Socket.send(reply);
}

void Zone::leaveGame(Player& player)
{
    Game* const game = std::exchange(player.m_Game, nullptr);
    if (game)
        std::erase(game->m_Players, &player);
    // An open game is removed with the last of its players, its creator too.
    std::vector<Game*> empty;
    for (const auto& [id, each] : m_Games)
        if (each->m_State == Game::kGathering && each->m_Players.empty() &&
            (each.get() == game || each->m_Creator == player.getName()))
            empty.push_back(each.get());
    for (Game* each : empty)
        remove(*each);
}

void Zone::announceEnd()
{
    CCmdServerBusy busy;
    busy.m_Text1 = kEnding;
    for (const auto& [name, player] : m_Players)
        player->m_Socket.send(busy);
}

void Zone::lose(Peer& peer)
{
    m_Centre.remove(peer);
    if (peer.m_Server)
        loseServer(*peer.m_Server);
    peer.m_Server.reset();
    Player* const player = peer.m_Player.get();
    if (!player)
        return;
    zet::Log::message(L"%s is lost", player->getName());
    if (player->m_Game && player->m_Game->m_State == Game::kRacing)
    {
        // The game server may know this player by the tunnel only.
        CCmdGS_exitGame exitGame;
        exitGame.m_Text1 = player->getName();
        CCmdGZ_clientToServer tunnel;
        tunnel.m_AccountName = player->getName();
        tunnel.m_Text1 = player->m_Game->m_Name;
        if (toCCmdGZ_clientToServer(&exitGame, &tunnel))
            player->m_Game->m_Server.m_Socket.send(tunnel);
    }
    leaveGame(*player);
    m_Players.erase(player->getName());
    peer.m_Player.reset();
}

} // namespace arena::zone
