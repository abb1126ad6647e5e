#include "examples/arena/sport/sport.h"

#include "examples/arena/roles.h"
#include "examples/arena/server_role.h"
#include "framework/log.h"
#include "host/metrics.h"

#include <algorithm>

namespace arena::sport
{

void numberPacks(Packs& packs)
{
    packs.number<CmdStartSessionAction>(kStartSession);
    packs.number<CmdEnterLobbyAction>(kEnterLobby);
    packs.number<CmdEnterRoomAction>(kEnterRoom);
    packs.number<CmdAutoMatchAction>(kAutoMatch);
    packs.number<CmdPrepareGameAction>(kPrepareGame);
    packs.number<CmdSetReadyAction>(kSetReady);
    packs.number<CmdEndGameAction>(kEndGame);
    packs.number<CmdSubmitActEffectDataAction>(kSubmitEffect);
    packs.number<CmdSportCommonResult>(kCommonResult);
    packs.number<CmdSessionStartedNotify>(kSessionStarted);
    packs.number<CmdCreateRoomNotify>(kRoomCreated);
    packs.number<CmdEnterRoomNotify>(kRoomEntered);
    packs.number<CmdActEffectNotify>(kEffect);
    packs.number<CmdGameOverNotify>(kGameOver);
    packs.number<CmdSportCommonNotify>(kCommonNotice);
}

void Peer::onEnd(const zet::EndCause& cause)
{
    CFrameworkClientSocket::onEnd(cause);
    m_Server.lose(*this);
}

Server::Server(host::Handlers& handlers)
{
    handlers.on<CCmdSport_AskServerInfoRequest>(
        [this](CCommandSocket& socket, CCmdSport_AskServerInfoRequest&)
        {
            CCmdSport_AskServerInfoReply reply;
            reply.m_Byte1 = kGood;
            reply.m_SportGameServerInfo = m_Info;
            reply.m_SportGameServerInfo.m_Value1 = static_cast<int>(m_Rooms.size());
            reply.m_SportGameServerInfo.m_Value2 = static_cast<int>(m_Lobby.size());
            socket.send(reply);
        });
    handlers.on<CCmdSport_StartSessionRequest>([this](CCommandSocket& socket, CCmdSport_StartSessionRequest& command)
                                               { openRoom(static_cast<Peer&>(socket), command); });
    numberPacks(m_Packs);
    onAction(kEnterLobby, &Server::enterLobby);
    onAction(kEnterRoom, &Server::enterRoom);
    onAction(kAutoMatch, &Server::autoMatch);
    onAction(kPrepareGame, &Server::prepare);
    onAction(kSetReady, &Server::setReady);
    onAction(kStartSession, &Server::startSession);
    onAction(kSubmitEffect, &Server::submit);
    onAction(kEndGame, &Server::endGame);
    m_Packs.install(handlers);
}

template <class Action>
void Server::onAction(Number number, const wchar_t* (Server::*act)(Peer&, Action&))
{
    m_Packs.on<Action>(number,
                       [this, act](CCommandSocket& socket, Action& action, CCmdSportPackRequest& envelope)
                       {
                           const wchar_t* const refusal = (this->*act)(static_cast<Peer&>(socket), action);
                           CmdSportCommonResult result;
                           result.m_Byte1 = refusal ? kRefused : kGood;
                           result.m_Text1 = refusal ? refusal : L"";
                           m_Packs.reply(socket, envelope, result);
                       });
}

template <class Message>
void Server::notify(Room& room, const Message& message, const Peer* except)
{
    for (const auto& [name, seat] : room.m_Seats)
        if (seat.m_Peer != except)
            m_Packs.send(*seat.m_Peer, message);
}

Room* Server::findRoom(const zet::String_T<wchar_t>& name)
{
    const auto found = m_Rooms.find(name);
    return found == m_Rooms.end() ? nullptr : &found->second;
}

Seat* Server::findSeat(Peer& peer)
{
    Room* const room = findRoom(peer.m_Room);
    const auto found = room ? room->m_Seats.find(peer.m_Name) : std::map<zet::String_T<wchar_t>, Seat>::iterator();
    return room && found != room->m_Seats.end() ? &found->second : nullptr;
}

void Server::openRoom(Peer& platform, CCmdSport_StartSessionRequest& command)
{
    CCmdSport_StartSessionReply reply;
    const zet::String_T<wchar_t>& name = command.m_SportRoomData.m_Text1;
    const int players = static_cast<int>(command.m_SportPlayerDatas.size());
    if (name.isEmpty() || findRoom(name) || m_Rooms.size() >= kMostRooms || players < 1 || players > kMostPlayers)
    {
        reply.m_Byte1 = kRefused;
        platform.send(reply);
        return;
    }
    Room& room = m_Rooms[name];
    room.m_Name = name;
    room.m_Id = command.m_SportRoomData.m_Id1;
    room.m_Platform = &platform;
    zet::uuid_create(room.m_Session);
    for (const CSportPlayerData& player : command.m_SportPlayerDatas)
        room.m_Invited.push_back(player.m_Text1);
    reply.m_Byte1 = kGood;
    reply.m_Id1 = room.m_Id;
    reply.m_Id2 = room.m_Session;
    platform.send(reply);
}

const wchar_t* Server::enterLobby(Peer& peer, CmdEnterLobbyAction& action)
{
    if (!peer.m_Name.isEmpty())
        return L"You are in the lobby already.";
    if (action.m_Text1.isEmpty() || !m_Lobby.emplace(action.m_Text1, &peer).second)
        return L"The name is empty or taken.";
    peer.m_Name = action.m_Text1;
    return nullptr;
}

const wchar_t* Server::enterRoom(Peer& peer, CmdEnterRoomAction& action)
{
    Room* const room = findRoom(action.m_Text1);
    if (peer.m_Name.isEmpty() || findSeat(peer))
        return L"Enter the lobby first, and one room at a time.";
    if (!room || room->m_IsRunning || std::count(room->m_Invited.begin(), room->m_Invited.end(), peer.m_Name) == 0)
        return L"There is no open room of this name for you.";
    peer.m_Room = room->m_Name;
    room->m_Seats[peer.m_Name].m_Peer = &peer;
    CmdEnterRoomNotify entered;
    entered.m_Text1 = room->m_Name;
    entered.m_Text2 = peer.m_Name;
    entered.m_Text3 = room->m_Invited.front();
    notify(*room, entered, &peer);
    return nullptr;
}

const wchar_t* Server::autoMatch(Peer& peer, CmdAutoMatchAction& action)
{
    if (peer.m_Name.isEmpty() || findSeat(peer))
        return L"Enter the lobby first, and leave your room.";
    if (action.m_Word1 < 2 || action.m_Word1 > kMostPlayers)
        return L"A match has 2 to 8 players.";
    if (m_Rooms.size() >= kMostRooms)
        return L"There are too many rooms.";
    peer.m_Match = action.m_Word1;
    std::vector<Peer*> waiting;
    for (const auto& [name, each] : m_Lobby)
        if (each->m_Match == peer.m_Match)
            waiting.push_back(each);
    if (static_cast<int>(waiting.size()) < peer.m_Match)
        return nullptr;
    CmdCreateRoomNotify created;
    created.m_Text1.format(L"match %d", ++m_Matches);
    Room& room = m_Rooms[created.m_Text1];
    room.m_Name = created.m_Text1;
    zet::uuid_create(room.m_Id);
    zet::uuid_create(room.m_Session);
    for (Peer* each : waiting)
    {
        each->m_Match = 0;
        room.m_Invited.push_back(each->m_Name);
        m_Packs.send(*each, created);
    }
    return nullptr;
}

const wchar_t* Server::prepare(Peer& peer, CmdPrepareGameAction& action)
{
    Seat* const seat = findSeat(peer);
    // The id is the room's, which its players know from their platform, or zero in an automatic match.
    if (!seat || (!action.m_Id1.isNull() && action.m_Id1 != findRoom(peer.m_Room)->m_Id))
        return L"This is not your room.";
    seat->m_IsPrepared = true;
    return nullptr;
}

const wchar_t* Server::setReady(Peer& peer, CmdSetReadyAction& action)
{
    Seat* const seat = findSeat(peer);
    if (!seat || !seat->m_IsPrepared || findRoom(peer.m_Room)->m_IsRunning)
        return L"Prepare the game first.";
    seat->m_IsReady = action.m_Flag1;
    return nullptr;
}

const wchar_t* Server::startSession(Peer& peer, CmdStartSessionAction& action)
{
    Room* const room = findSeat(peer) ? findRoom(action.m_Text1) : nullptr;
    if (!room || room->m_Name != peer.m_Room || room->m_IsRunning || room->m_Invited.front() != peer.m_Name)
        return L"The first player of the room starts its session.";
    const bool areReady =
        std::all_of(room->m_Seats.begin(), room->m_Seats.end(), [](const auto& each) { return each.second.m_IsReady; });
    if (!areReady || room->m_Seats.size() < room->m_Invited.size())
        return L"Not all players are ready.";
    room->m_IsRunning = true;
    CmdSessionStartedNotify started;
    started.m_Text1 = room->m_Name;
    started.m_Word1 = static_cast<unsigned short>(room->m_Seats.size());
    started.m_Id1 = room->m_Session;
    notify(*room, started);
    return nullptr;
}

const wchar_t* Server::submit(Peer& peer, CmdSubmitActEffectDataAction& action)
{
    const Seat* const seat = findSeat(peer);
    if (!seat || seat->m_HasEnded || !findRoom(peer.m_Room)->m_IsRunning)
        return L"No session of yours is running.";
    CmdActEffectNotify effect;
    effect.m_Text1 = peer.m_Name;
    effect.m_SportActEffectData = action.m_SportActEffectData;
    notify(*findRoom(peer.m_Room), effect, &peer);
    return nullptr;
}

const wchar_t* Server::endGame(Peer& peer, CmdEndGameAction& action)
{
    Seat* const seat = findSeat(peer);
    if (!seat || seat->m_HasEnded || !findRoom(peer.m_Room)->m_IsRunning)
        return L"No session of yours is running.";
    seat->m_HasEnded = true;
    seat->m_Score = action.m_SportScore;
    endIfAllHave(*findRoom(peer.m_Room));
    return nullptr;
}

void Server::endIfAllHave(Room& room)
{
    const bool haveEnded =
        std::all_of(room.m_Seats.begin(), room.m_Seats.end(), [](const auto& each) { return each.second.m_HasEnded; });
    if (!room.m_IsRunning || !haveEnded)
        return;
    CmdGameOverNotify over;
    CCmdSport_GameOverMessage message;
    message.m_Id1 = room.m_Session;
    for (const auto& [name, seat] : room.m_Seats)
    {
        over.m_Entries[name] = seat.m_Score.getTotalScore();
        message.m_Entries[name] = seat.m_Score;
        seat.m_Peer->m_Room.clear();
    }
    notify(room, over);
    if (room.m_Platform)
        room.m_Platform->send(message);
    m_Rooms.erase(zet::String_T<wchar_t>(room.m_Name));
}

bool Server::isDeserted(const Room& room) const
{
    return !room.m_Platform && room.m_Seats.empty() &&
           std::none_of(room.m_Invited.begin(), room.m_Invited.end(),
                        [this](const auto& name) { return m_Lobby.count(name) > 0; });
}

void Server::lose(Peer& peer)
{
    for (auto& [name, room] : m_Rooms)
        if (room.m_Platform == &peer)
            room.m_Platform = nullptr;
    if (!peer.m_Name.isEmpty())
    {
        m_Lobby.erase(peer.m_Name);
        leaveRoom(peer);
    }
    std::erase_if(m_Rooms, [this](const auto& each) { return isDeserted(each.second); });
}

void Server::leaveRoom(Peer& peer)
{
    Room* const room = findSeat(peer) ? findRoom(peer.m_Room) : nullptr;
    if (!room)
        return;
    room->m_Seats.erase(peer.m_Name);
    CmdSportCommonNotify left;
    left.m_Text1 = peer.m_Name + L" has left";
    notify(*room, left);
    CCmdSport_UserDisconnectNotify lost;
    lost.m_Text1 = peer.m_Name;
    if (room->m_Platform)
        room->m_Platform->send(lost);
    endIfAllHave(*room);
    // It was not started, and no player or platform is left.
    if (const Room* const empty = findRoom(peer.m_Room); empty && empty->m_Seats.empty() && !empty->m_Platform)
        m_Rooms.erase(peer.m_Room);
}

} // namespace arena::sport

namespace arena
{

int runSport(int count, char** words)
{
    host::Service service(L"arena_sport", "Runs sport sessions.", static_cast<unsigned char>(ServerType::Sport));
    ServerRole role(service, ServerType::Sport, L"sport");
    static CCmdAnalyserSocket analyser;
    host::Handlers handlers(analyser);
    sport::Server server(handlers);
    role.acceptGreetings(handlers);
    const zet::Unknown::Handle_T<sport::Port> port(new sport::Port(analyser, server));
    service.serve(*port);
    service.onStart(
        [&]
        {
            service.getMetrics().watch(analyser);
            service.getMetrics().watch("sport", *port);
            role.reportOpen("rooms", [&] { return server.getRoomCount(); });
            if (!role.serve(*port))
                return false;
            // The flag: it is open. The third number: the most players of a room.
            CSportGameServerInfo info;
            info.m_Flag1 = true;
            info.m_Value3 = sport::Server::kMostPlayers;
            info.m_Text1 = role.getServed().m_Host;
            info.m_Word1 = role.getServed().m_Port;
            info.m_Text2 = role.getName();
            server.setInfo(info);
            return true;
        });
    return service.run(count, words);
}

} // namespace arena
