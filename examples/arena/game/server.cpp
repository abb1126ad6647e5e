#include "examples/arena/game/game.h"

#include "framework/log.h"

#include <algorithm>

namespace arena::game
{

namespace
{

// The texts of CCmdGS_joinGameFail, by race::JoinRefusal.
constexpr const wchar_t* kRefusals[] = {L"", L"There is no such game.", L"You are not a player of this game.",
                                        L"You have joined already.", L"The race has begun."};
// The text of CCmdGZ_createGameFail.
constexpr wchar_t kNoSpace[] = L"The game server is full or about to end.";

} // namespace

void Peer::onEnd(const zet::EndCause& cause)
{
    CFrameworkClientSocket::onEnd(cause);
    m_Server.leave(m_Seat);
}

Server::Server(CCmdAnalyserSocket& players, host::Handlers& playerHandlers, host::Handlers& zoneHandlers,
               host::Tasks& tasks)
    : m_PlayerAnalyser(players), m_PlayerHandlers(playerHandlers), m_Tasks(tasks)
{
    playerHandlers.on<CCmdGS_joinGame>([this](CCommandSocket& socket, CCmdGS_joinGame& command)
                                       { join(socket, command); });
    playerHandlers.on<CCmdGS_exitGame>([this](CCommandSocket& socket, CCmdGS_exitGame& command)
                                       { exit(socket, command); });
    onRunner(&Race::pawnReady);
    onRunner(&Race::runDown);
    onRunner(&Race::startRun);
    onRunner(&Race::running);
    onRunner(&Race::input);
    onRunner(&Race::powerTime);
    onRunner(&Race::chat);
    onRunner(&Race::equip);
    onRunner(&Race::balance);
    onRunner(&Race::test);
    onRunner(&Race::testPosition);

    zoneHandlers.on<CCmdGZ_regGameServerOk>([](CCommandSocket&, CCmdGZ_regGameServerOk&)
                                            { zet::Log::message(L"Registered at the zone"); });
    zoneHandlers.on<CCmdGZ_createGame>([this](CCommandSocket& zone, CCmdGZ_createGame& command)
                                       { create(zone, command); });
    zoneHandlers.on<CCmdGZ_SetGameUse>([this](CCommandSocket&, CCmdGZ_SetGameUse& command) { setUse(command); });
    zoneHandlers.on<CCmdGZ_CombatStart>(
        [this](CCommandSocket&, CCmdGZ_CombatStart& command)
        {
            if (const auto found = m_Games.find(command.m_Id1); found != m_Games.end())
                found->second.m_Race->setCombat(command.m_Flag1);
        });
    zoneHandlers.on<CCmdGZ_clientToServer>([this](CCommandSocket& zone, CCmdGZ_clientToServer& command)
                                           { openTunnel(zone, command); });
    zoneHandlers.on<CCmdGZ_SaveResultReply>([this](CCommandSocket&, CCmdGZ_SaveResultReply& command)
                                            { saved(command); });
    zoneHandlers.on<CCmdGZ_destroyGame>([this](CCommandSocket& zone, CCmdGZ_destroyGame& command)
                                        { destroy(zone, command); });
}

template <class Command>
void Server::onRunner(void (Race::*handle)(Runner&, Command&))
{
    m_PlayerHandlers.on<Command>(
        [this, handle](CCommandSocket& socket, Command& command)
        {
            if (Runner* const runner = find(seatOf(socket)))
                (runner->m_Race.*handle)(*runner, command);
            else
                zet::Log::warning(L"%s has no pawn", socket.getPeerName());
        });
}

Seat& Server::seatOf(CCommandSocket& socket)
{
    return &socket == m_Zone ? m_TunnelSeat : static_cast<Peer&>(socket).m_Seat;
}

Runner* Server::find(const Seat& seat)
{
    const auto found = m_Games.find(seat.m_Race);
    Runner* const runner = found == m_Games.end() ? nullptr : found->second.m_Race->find(seat.m_Name);
    return runner && runner->m_HasJoined && !runner->m_HasLeft ? runner : nullptr;
}

void Server::answer(CCommandSocket& socket, CCmdHead& command)
{
    if (&socket != m_Zone)
    {
        socket.send(command);
        return;
    }
    CCmdGZ_serverToClient tunnel;
    tunnel.m_AccountName = m_TunnelSeat.m_Name;
    if (toCCmdGZ_serverToClient(&command, &tunnel))
        socket.send(tunnel);
}

void Server::join(CCommandSocket& socket, CCmdGS_joinGame& command)
{
    const auto found = m_Games.find(command.m_Id1);
    Race* const race = found == m_Games.end() ? nullptr : found->second.m_Race.get();
    // A player in the tunnel is the one that the zone names.
    const bool isTunneled = &socket == m_Zone;
    const bool isSelf = !isTunneled || command.m_Text1 == m_TunnelSeat.m_Name;
    Runner* const runner = race && isSelf ? race->find(command.m_Text1) : nullptr;
    int refusal = 0;
    if (!race)
        refusal = race::kNoSuchGame;
    else if (!runner)
        refusal = race::kNotAPlayerOfIt;
    else if (find(seatOf(socket)))
        refusal = race::kJoinedAlready;
    else
        refusal = race->join(*runner, socket, isTunneled);
    if (refusal != 0)
    {
        CCmdGS_joinGameFail fail;
        fail.m_Value1 = refusal;
        fail.m_Text1 = kRefusals[refusal];
        return answer(socket, fail);
    }
    seatOf(socket) = {command.m_Id1, command.m_Text1};
}

void Server::exit(CCommandSocket& socket, CCmdGS_exitGame& command)
{
    const Seat seat = seatOf(socket);
    Runner* const runner = find(seat);
    if (!runner || command.m_Text1 != seat.m_Name)
    {
        CCmdGS_exitGameFail fail;
        return answer(socket, fail);
    }
    CCmdGS_exitGameOk ok;
    answer(socket, ok);
    leave(seat);
}

void Server::leave(const Seat& seat)
{
    if (Runner* const runner = find(seat))
        runner->m_Race.leave(*runner);
}

void Server::create(CCommandSocket& zone, CCmdGZ_createGame& command)
{
    // The zone finds the player who has asked by the head.
    if (!m_IsOpen || static_cast<int>(m_Games.size()) >= kMostGames || m_Games.count(command.m_Id1) > 0)
    {
        CCmdGZ_createGameFail fail;
        fail.m_AccountName = command.m_AccountName;
        fail.m_Text1 = kNoSpace;
        zone.send(fail);
        return;
    }
    m_Games[command.m_Id1].m_Race = std::make_unique<Race>(
        command.m_Id1, command.m_Text1, command.m_Value1 & race::kPawnsMask,
        [this](Runner& runner) { sendResult(runner); }, [this](Race& race) { endIfOver(race); });
    CCmdGZ_createGameOk ok;
    ok.m_AccountName = command.m_AccountName;
    ok.m_Text1 = command.m_Text1;
    ok.m_Id1 = command.m_Id1;
    zone.send(ok);
}

void Server::setUse(CCmdGZ_SetGameUse& command)
{
    const auto found = m_Games.find(command.m_Id1);
    if (found == m_Games.end() || command.m_Entries.size() > static_cast<size_t>(race::kMostPawns))
        return;
    found->second.m_Race->setPlayers(command.m_Entries);
    const auto withRace = [this, id = command.m_Id1](void (Race::*end)())
    {
        if (const auto game = m_Games.find(id); game != m_Games.end())
            (*game->second.m_Race.*end)();
    };
    m_Tasks.after(kJoinTime, [withRace] { withRace(&Race::endJoining); });
    m_Tasks.after(m_RaceTime, [withRace] { withRace(&Race::endRunning); });
    m_Tasks.after(m_RaceTime + kExitTime, [withRace] { withRace(&Race::endBalancing); });
}

void Server::openTunnel(CCommandSocket& zone, CCmdGZ_clientToServer& command)
{
    const auto found = std::find_if(m_Games.begin(), m_Games.end(),
                                    [&](const auto& each) { return each.second.m_Race->getName() == command.m_Text1; });
    CCmdPackager inner;
    if (found == m_Games.end() || !CCmdPackager_bufferToPackage(command.m_Data1, inner))
    {
        zet::Log::warning(L"A tunnel of %s to game '%s' leads nowhere", command.m_AccountName, command.m_Text1);
        return;
    }
    // The port of the players accepts greetings of servers too, which have nothing to do with the zone's connection.
    // Their ids follow those of races.
    if (inner.GetCmdID() > command_id::CCmdGS_PawnFouled)
    {
        zet::Log::warning(L"A tunnel of %s has a command that is not of a race", command.m_AccountName);
        return;
    }
    m_TunnelSeat = {found->first, command.m_AccountName};
    // The handlers are those of the players' own connections.
    m_PlayerAnalyser.Analyse(&zone, inner);
    m_TunnelSeat = {};
}

void Server::sendResult(Runner& runner)
{
    if (!m_Zone)
        return;
    CCmdGZ_SaveResultData result;
    result.m_AccountName = runner.getName();
    result.m_BS4Data.m_Text1 = runner.getName();
    result.m_Value1 = runner.m_Place;
    if (m_Zone->send(result))
        ++m_Games[runner.m_Race.getId()].m_Unsaved;
}

void Server::saved(CCmdGZ_SaveResultReply& command)
{
    // A player races in one game at a time, so the name finds the game.
    for (auto& [id, game] : m_Games)
        if (game.m_Unsaved > 0 && game.m_Race->find(command.m_AccountName))
        {
            --game.m_Unsaved;
            return endIfOver(*game.m_Race);
        }
}

void Server::endIfOver(Race& race)
{
    if (!m_Zone || race.getState() != Race::kOver || m_Games[race.getId()].m_Unsaved > 0)
        return;
    zet::Log::message(L"Race %s is over", race.getName());
    CCmdGZ_gameOver over;
    over.m_Id1 = race.getId();
    m_Zone->send(over);
}

void Server::destroy(CCommandSocket& zone, CCmdGZ_destroyGame& command)
{
    m_Games.erase(command.m_Id1);
    CCmdGZ_destroyGameOk ok;
    ok.m_Id1 = command.m_Id1;
    zone.send(ok);
}

void Server::loseZone()
{
    m_Zone = nullptr;
    zet::Log::warning(L"The zone is lost, and %d games with it", static_cast<int>(m_Games.size()));
    // The connections of the players are closed when no race holds them any more.
    std::vector<zet::Unknown::Handle_T<CCommandSocket>> sockets;
    for (const auto& [id, game] : m_Games)
        for (const auto& runner : game.m_Race->getRunners())
            if (runner->m_Socket && !runner->m_IsTunneled)
                sockets.emplace_back(runner->m_Socket);
    m_Games.clear();
    for (const auto& socket : sockets)
        socket->close();
}

} // namespace arena::game
