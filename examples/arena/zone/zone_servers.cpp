// What game servers report to their zone.
#include "examples/arena/protocol/race_numbers.h"
#include "examples/arena/zone/zone.h"
#include "framework/log.h"

#include <algorithm>

namespace arena::zone
{

namespace
{

constexpr wchar_t kServerLost[] = L"The game server was lost.";

} // namespace

void Zone::installServers(host::Handlers& handlers)
{
    handlers.on<CCmdGZ_regGameServer>([this](CCommandSocket& socket, CCmdGZ_regGameServer& command)
                                      { registerServer(peerOf(socket), command); });
    onServer<CCmdGZ_createGameOk>(handlers, &Zone::created);
    onServer<CCmdGZ_createGameFail>(handlers, &Zone::notCreated);
    onServer<CCmdGZ_serverToClient>(handlers, &Zone::toClient);
    onServer<CCmdGZ_SaveResultData>(handlers, &Zone::saveResult);
    onServer<CCmdGZ_gameOver>(handlers, &Zone::over);
    onServer<CCmdGZ_destroyGameOk>(handlers, &Zone::destroyed);
}

void Zone::registerServer(Peer& peer, CCmdGZ_regGameServer& command)
{
    // This command has an answer for success only.
    if (peer.m_Player || peer.m_Server || command.m_GameSvrInfo.m_Port == 0 || command.m_GameSvrInfo.m_Text != m_Key)
    {
        zet::Log::warning(L"Refused '%s' as a game server", command.m_GameSvrInfo.m_Name);
        return;
    }
    peer.m_Server = std::make_unique<GameServer>(GameServer{peer, command.m_GameSvrInfo});
    m_Servers.push_back(peer.m_Server.get());
    zet::Log::message(L"Game server %s registers", command.m_GameSvrInfo.m_Name);
    peer.send(CCmdGZ_regGameServerOk());
}

Game* Zone::findGame(GameServer& server, const zet::Uuid& id)
{
    const auto found = m_Games.find(id);
    return found == m_Games.end() || &found->second->m_Server != &server ? nullptr : found->second.get();
}

void Zone::created(GameServer& server, CCmdGZ_createGameOk& command)
{
    Game* const game = findGame(server, command.m_Id1);
    if (!game || game->m_State != Game::kCreating)
        return;
    game->m_State = Game::kGathering;
    Player* const creator = findPlayer(game->m_Creator);
    if (!creator)
        return remove(*game);
    command.m_Text1 = game->m_Name;
    creator->m_Socket.send(command);
}

void Zone::notCreated(GameServer& server, CCmdGZ_createGameFail& command)
{
    // The refusal does not name the game: the head names the player who asked for it.
    const auto found = std::find_if(m_Games.begin(), m_Games.end(),
                                    [&](const auto& each)
                                    {
                                        const Game& game = *each.second;
                                        return &game.m_Server == &server && game.m_State == Game::kCreating &&
                                               game.m_Creator == command.m_AccountName;
                                    });
    if (found == m_Games.end())
        return;
    m_Games.erase(found);
    --server.m_Games;
    if (Player* const creator = findPlayer(command.m_AccountName))
        creator->m_Socket.send(command);
}

void Zone::toClient(GameServer& server, CCmdGZ_serverToClient& command)
{
    Player* const player = findPlayer(command.m_AccountName);
    if (player && player->m_Game && &player->m_Game->m_Server == &server)
        player->m_Socket.send(command);
}

void Zone::saveResult(GameServer& server, CCmdGZ_SaveResultData& command)
{
    Player* const player = findPlayer(command.m_AccountName);
    CCmdGZ_SaveResultReply reply;
    reply.m_AccountName = command.m_AccountName;
    // A player who has left the zone meanwhile has no result.
    if (player && player->m_Game && &player->m_Game->m_Server == &server && player->m_Game->m_State == Game::kRacing)
    {
        const Game& game = *player->m_Game;
        m_Season.addRace(player->getName(), command.m_Value1, game.m_Pawns, game.m_IsCombat);
        reply.m_BS4Data = m_Season.getRecord(player->getName());
        FGameItem coins;
        coins.m_Name = race::kCoin;
        coins.m_Num = race::coinsOf(command.m_Value1);
        // Without a place there are no coins, which is no valid item.
        if (coins.m_Num > 0 && !player->m_Account.AddItem(coins))
            zet::Log::warning(L"The bag of %s takes no coins", player->getName());
    }
    server.m_Socket.send(reply);
}

void Zone::over(GameServer& server, CCmdGZ_gameOver& command)
{
    Game* const game = findGame(server, command.m_Id1);
    if (game && game->m_State != Game::kEnding)
        remove(*game);
}

void Zone::remove(Game& game)
{
    CCmdGZ_gameOver over;
    over.m_Id1 = game.m_Id;
    for (Player* player : std::exchange(game.m_Players, {}))
    {
        player->m_Game = nullptr;
        player->m_Socket.send(over);
    }
    game.m_State = Game::kEnding;
    CCmdGZ_destroyGame destroy;
    destroy.m_Id1 = game.m_Id;
    game.m_Server.m_Socket.send(destroy);
}

void Zone::destroyed(GameServer& server, CCmdGZ_destroyGameOk& command)
{
    const Game* const game = findGame(server, command.m_Id1);
    if (!game || game->m_State != Game::kEnding)
        return;
    zet::Log::message(L"Game %s is removed", game->m_Name);
    m_Games.erase(command.m_Id1);
    --server.m_Games;
}

void Zone::loseServer(GameServer& server)
{
    zet::Log::warning(L"Game server %s is lost", server.m_Info.m_Name);
    std::erase(m_Servers, &server);
    for (auto each = m_Games.begin(); each != m_Games.end();)
    {
        Game& game = *each->second;
        if (&game.m_Server != &server)
        {
            ++each;
            continue;
        }
        Player* const creator = findPlayer(game.m_Creator);
        if (game.m_State == Game::kCreating && creator)
        {
            CCmdGZ_createGameFail refusal;
            refusal.m_Text1 = kServerLost;
            creator->m_Socket.send(refusal);
        }
        // The players are back in the zone, with the records that they had entered with.
        CCmdGZ_gameOver over;
        over.m_Id1 = game.m_Id;
        for (Player* player : game.m_Players)
        {
            player->m_Game = nullptr;
            player->m_Socket.send(over);
        }
        each = m_Games.erase(each);
    }
}

} // namespace arena::zone
