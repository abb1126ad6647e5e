// A sport server: rooms of players and their sessions. A platform hands rooms over with direct commands; the players'
// clients send their actions in packs.
#pragma once

#include "commands/sport.h"
#include "host/pack_router.h"
#include "transport/framework_server_socket.h"

#include <map>
#include <vector>

namespace arena::sport
{

// The numbers of the messages in the envelopes.
enum Number : int
{
    kStartSession = 1,
    kEnterLobby = 2,
    kEnterRoom = 3,
    kAutoMatch = 4,
    kPrepareGame = 5,
    kSetReady = 6,
    kEndGame = 7,
    kSubmitEffect = 8,
    kCommonResult = 9,
    kSessionStarted = 10,
    kRoomCreated = 11,
    kRoomEntered = 12,
    kEffect = 13,
    kGameOver = 14,
    kCommonNotice = 15
};
using Packs = host::PackRouter<CCmdSportPackRequest, CCmdSportPackReply, CCmdSportPackNotify>;
void numberPacks(Packs& packs);

// CmdSportCommonResult::m_Byte1, and the results of the direct commands. The text says why.
enum Result : unsigned char
{
    kGood = 0,
    kRefused = 1
};

class Server;

// One connection: of a player, or of a platform.
class Peer : public CFrameworkClientSocket
{
public:
    Peer(CCmdAnalyserSocket& analyser, Server& server) : CFrameworkClientSocket(&analyser), m_Server(server) {}
    void onEnd(const zet::EndCause& cause) override;

    // The player's name once it is in the lobby, and its room.
    zet::String_T<wchar_t> m_Name;
    zet::String_T<wchar_t> m_Room;
    // The number of players that it waits for, or 0.
    int m_Match = 0;

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

// A player in a room.
struct Seat
{
    Peer* m_Peer = nullptr;
    bool m_IsPrepared = false;
    bool m_IsReady = false;
    bool m_HasEnded = false;
    CSportScore m_Score;
};

struct Room
{
    zet::String_T<wchar_t> m_Name;
    zet::Uuid m_Id;
    zet::Uuid m_Session;
    // Who may enter, and how many; the first one starts the session.
    std::vector<zet::String_T<wchar_t>> m_Invited;
    std::map<zet::String_T<wchar_t>, Seat> m_Seats;
    bool m_IsRunning = false;
    // The platform that has handed the room over; null for a room of an automatic match.
    Peer* m_Platform = nullptr;
};

class Server
{
public:
    static constexpr int kMostPlayers = 8;
    static constexpr size_t kMostRooms = 1000;

    // Installs the direct commands and the packs. The handlers are not owned.
    explicit Server(host::Handlers& handlers);

    // What CCmdSport_AskServerInfoReply says.
    void setInfo(const CSportGameServerInfo& info) { m_Info = info; }
    void lose(Peer& peer);
    size_t getRoomCount() const { return m_Rooms.size(); }

private:
    // Answers an action with the text of the refusal; none means success.
    template <class Action>
    void onAction(Number number, const wchar_t* (Server::*act)(Peer&, Action&));
    const wchar_t* enterLobby(Peer& peer, CmdEnterLobbyAction& action);
    const wchar_t* enterRoom(Peer& peer, CmdEnterRoomAction& action);
    const wchar_t* autoMatch(Peer& peer, CmdAutoMatchAction& action);
    const wchar_t* prepare(Peer& peer, CmdPrepareGameAction& action);
    const wchar_t* setReady(Peer& peer, CmdSetReadyAction& action);
    const wchar_t* startSession(Peer& peer, CmdStartSessionAction& action);
    const wchar_t* submit(Peer& peer, CmdSubmitActEffectDataAction& action);
    const wchar_t* endGame(Peer& peer, CmdEndGameAction& action);

    void openRoom(Peer& platform, CCmdSport_StartSessionRequest& command);
    // The peer is lost: the others in its room go on without it.
    void leaveRoom(Peer& peer);
    // Whether a room has no platform and no seat, and none of its players is in the lobby.
    bool isDeserted(const Room& room) const;
    Room* findRoom(const zet::String_T<wchar_t>& name);
    // The seat of a peer that is in a room; null otherwise.
    Seat* findSeat(Peer& peer);
    void endIfAllHave(Room& room);
    // To all in the room but one, if it is not null.
    template <class Message>
    void notify(Room& room, const Message& message, const Peer* except = nullptr);

    Packs m_Packs;
    CSportGameServerInfo m_Info;
    std::map<zet::String_T<wchar_t>, Room> m_Rooms;
    std::map<zet::String_T<wchar_t>, Peer*> m_Lobby;
    int m_Matches = 0;
};

} // namespace arena::sport
