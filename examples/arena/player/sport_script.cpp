#include "examples/arena/player/sport_script.h"

#include "examples/arena/player/listener.h"
#include "examples/arena/sport/sport.h"

namespace arena::player
{

namespace
{

using namespace std::chrono_literals;

constexpr std::chrono::milliseconds kStep = 5ms;

struct SportOptions
{
    HostPort m_Server;
    // The players of the room, this one among them; the first one opens the room, as a platform, and starts the
    // session.
    std::vector<zet::String_T<wchar_t>> m_Players;
    zet::String_T<wchar_t> m_Room;
    int m_Number = 0;
    // The last player leaves during the session.
    bool m_LeavesEarly = false;
};

class SportPlayer;

// What the players of a process share.
class SportClient
{
public:
    explicit SportClient(zet::System& system);

    CCmdAnalyserSocket m_Analyser;
    sport::Packs m_Packs;
    // The server matches all players who wait, so one group after the other.
    Groups m_Groups{true};

private:
    host::Handlers m_Handlers;

public:
    host::Questions m_Questions;
};

class SportPlayer : public Listener
{
public:
    SportPlayer(Player& player, Place& place, const SportOptions& options)
        : Listener(player, &place), m_Options(options), m_Client(Shared<SportClient>::of(player)),
          m_Tasks(m_Client.m_Questions)
    {
    }
    ~SportPlayer()
    {
        ListenerSocket::end(m_Socket);
        ListenerSocket::end(m_Platform);
    }

    // Sends an action; the result is awaited by hasResult().
    template <class Action>
    void act(const char* kind, const Action& action)
    {
        m_Action = kind;
        ++m_Asked;
        beginWait();
        m_Client.m_Packs.send(*m_Socket, action);
    }
    bool isWaitingForResult() { return isWaiting("CmdSportCommonResult", m_Asked); }
    void expectResult(sport::Result result)
    {
        note(m_Action + (result == sport::kGood ? ": good" : ": refused"));
        expect(m_Result == result, m_Action.c_str());
    }

    const SportOptions m_Options;
    SportClient& m_Client;
    zet::Unknown::Handle_T<ListenerSocket> m_Socket;
    // The first player's second connection, as the platform.
    zet::Unknown::Handle_T<ListenerSocket> m_Platform;

    std::string m_Action;
    int m_Asked = 0;
    unsigned char m_Result = sport::kGood;
    zet::String_T<wchar_t> m_Created;
    std::map<zet::String_T<wchar_t>, int> m_Scores;
    std::map<zet::String_T<wchar_t>, CSportScore> m_PlatformScores;
    // Last, so that it is destroyed first.
    host::Tasks m_Tasks;
};

// Counts the messages of a class, and keeps what the callable takes from them.
template <class Message, class Keep>
void countPack(sport::Packs& packs, sport::Number number, const char* kind, Keep keep)
{
    packs.on<Message>(number,
                      [kind, keep](CCommandSocket& socket, Message& message)
                      {
                          keep(static_cast<SportPlayer&>(listenerOf(socket)), message);
                          listenerOf(socket).received(kind);
                      });
}

constexpr auto kNothing = [](SportPlayer&, auto&) {};

SportClient::SportClient(zet::System& system) : m_Handlers(m_Analyser), m_Questions(m_Handlers, system)
{
    m_Questions.expect<CCmdSport_AskServerInfoReply, CCmdSport_StartSessionReply>();
    count<CCmdSport_GameOverMessage, SportPlayer>(m_Handlers, "CCmdSport_GameOverMessage",
                                                  [](SportPlayer& player, CCmdSport_GameOverMessage& message)
                                                  { player.m_PlatformScores = message.m_Entries; });
    count<CCmdSport_UserDisconnectNotify>(m_Handlers, "CCmdSport_UserDisconnectNotify");
    sport::numberPacks(m_Packs);
    countPack<CmdSportCommonResult>(m_Packs, sport::kCommonResult, "CmdSportCommonResult",
                                    [](SportPlayer& player, CmdSportCommonResult& result)
                                    { player.m_Result = result.m_Byte1; });
    countPack<CmdCreateRoomNotify>(m_Packs, sport::kRoomCreated, "CmdCreateRoomNotify",
                                   [](SportPlayer& player, CmdCreateRoomNotify& notice)
                                   { player.m_Created = notice.m_Text1; });
    countPack<CmdGameOverNotify>(m_Packs, sport::kGameOver, "CmdGameOverNotify",
                                 [](SportPlayer& player, CmdGameOverNotify& notice)
                                 { player.m_Scores = notice.m_Entries; });
    countPack<CmdSessionStartedNotify>(m_Packs, sport::kSessionStarted, "CmdSessionStartedNotify", kNothing);
    countPack<CmdEnterRoomNotify>(m_Packs, sport::kRoomEntered, "CmdEnterRoomNotify", kNothing);
    countPack<CmdActEffectNotify>(m_Packs, sport::kEffect, "CmdActEffectNotify", kNothing);
    countPack<CmdSportCommonNotify>(m_Packs, sport::kCommonNotice, "CmdSportCommonNotify", kNothing);
    m_Packs.install(m_Handlers);
}

// The first player opens the room, as its platform does.
host::Task openRoom(SportPlayer& player)
{
    player.m_Platform = ListenerSocket::open(player.m_Client.m_Analyser, player, player.m_Options.m_Server);
    if (!player.m_Platform)
        co_return;
    const CCmdSport_AskServerInfoRequest askInfo;
    const auto info =
        co_await host::ask<CCmdSport_AskServerInfoReply>(*player.m_Platform, askInfo, Listener::kPatience);
    if (player.isFirst("CCmdSport_AskServerInfoRequest", info, {"CCmdSport_AskServerInfoReply"}))
        player.expect(std::get<0>(info).m_SportGameServerInfo.m_Flag1, "an open sport server");
    CCmdSport_StartSessionRequest open;
    open.m_SportRoomData.m_Text1 = player.m_Options.m_Room;
    zet::uuid_create(open.m_SportRoomData.m_Id1);
    for (const auto& name : player.m_Options.m_Players)
    {
        open.m_SportPlayerDatas.emplace_back();
        open.m_SportPlayerDatas.back().m_Text1 = name;
    }
    // The second room of this name is refused.
    for (const sport::Result result : {sport::kGood, sport::kRefused})
    {
        const auto opened =
            co_await host::ask<CCmdSport_StartSessionReply>(*player.m_Platform, open, Listener::kPatience);
        if (player.isFirst("CCmdSport_StartSessionRequest", opened, {"CCmdSport_StartSessionReply"}))
            player.expect(std::get<0>(opened).m_Byte1 == result, "the result of the room");
    }
}

// A session in a room: from entering it to the scores of those who stay.
host::Task playSession(SportPlayer& player, zet::String_T<wchar_t> room, int remaining, bool leavesEarly)
{
    const int number = player.m_Options.m_Number;
    const bool isFirst = number == 0;
    const int sessions = player.getCount("CmdSessionStartedNotify");
    const int effects = player.getCount("CmdActEffectNotify");
    const int games = player.getCount("CmdGameOverNotify");
    // The others wait until the first one has opened the room.
    CmdEnterRoomAction enter;
    enter.m_Text1 = room;
    bool isIn = false;
    for (auto left = Listener::kPatience; left > 0ms && !isIn && !player.m_Player.isInterrupted(); left -= 20ms)
    {
        player.act("CmdEnterRoomAction", enter);
        while (player.isWaitingForResult())
            co_await host::sleep(kStep);
        isIn = player.m_Result == sport::kGood;
        if (!isIn)
            co_await host::sleep(20ms);
    }
    player.expectResult(sport::kGood);
    CmdSetReadyAction ready;
    ready.m_Flag1 = true;
    player.act("CmdSetReadyAction", ready);
    while (player.isWaitingForResult())
        co_await host::sleep(kStep);
    player.expectResult(sport::kRefused); // not prepared
    const CmdPrepareGameAction prepare;
    player.act("CmdPrepareGameAction", prepare);
    while (player.isWaitingForResult())
        co_await host::sleep(kStep);
    player.expectResult(sport::kGood);
    player.act("CmdSetReadyAction", ready);
    while (player.isWaitingForResult())
        co_await host::sleep(kStep);
    player.expectResult(sport::kGood);
    CmdStartSessionAction start;
    start.m_Text1 = room;
    if (!isFirst)
    {
        player.act("CmdStartSessionAction", start);
        while (player.isWaitingForResult())
            co_await host::sleep(kStep);
        player.expectResult(sport::kRefused); // not the first player
    }
    // The first one until all are ready.
    for (auto left = Listener::kPatience; isFirst && left > 0ms; left -= 20ms)
    {
        player.act("CmdStartSessionAction", start);
        while (player.isWaitingForResult())
            co_await host::sleep(kStep);
        if (player.m_Result == sport::kGood || player.m_Player.isInterrupted())
            break;
        co_await host::sleep(20ms);
    }
    player.beginWait();
    while (player.isWaiting("CmdSessionStartedNotify", sessions + 1))
        co_await host::sleep(kStep);
    if (leavesEarly)
        co_return;
    CmdSubmitActEffectDataAction effect;
    effect.m_SportActEffectData.m_Value1 = number;
    player.act("CmdSubmitActEffectDataAction", effect);
    while (player.isWaitingForResult())
        co_await host::sleep(kStep);
    player.expectResult(sport::kGood);
    player.beginWait();
    while (player.isWaiting("CmdActEffectNotify", effects + remaining - 1))
        co_await host::sleep(kStep);
    CmdEndGameAction end;
    end.m_SportScore.m_Values = {10, number};
    player.act("CmdEndGameAction", end);
    while (player.isWaitingForResult())
        co_await host::sleep(kStep);
    player.expectResult(sport::kGood);
    player.beginWait();
    while (player.isWaiting("CmdGameOverNotify", games + 1))
        co_await host::sleep(kStep);
    player.expect(static_cast<int>(player.m_Scores.size()) == remaining, "the scores of all");
    player.expect(player.m_Scores[player.m_Player.getName()] == 10 + number, "the own score");
}

host::Task enterLobby(SportPlayer& player)
{
    player.m_Socket = ListenerSocket::open(player.m_Client.m_Analyser, player, player.m_Options.m_Server);
    if (!player.m_Socket)
        co_return;
    const CmdEndGameAction tooEarly;
    player.act("CmdEndGameAction", tooEarly);
    while (player.isWaitingForResult())
        co_await host::sleep(kStep);
    player.expectResult(sport::kRefused);
    CmdEnterLobbyAction lobby;
    lobby.m_Text1 = player.m_Player.getName();
    for (const sport::Result result : {sport::kGood, sport::kRefused})
    {
        player.act("CmdEnterLobbyAction", lobby);
        while (player.isWaitingForResult())
            co_await host::sleep(kStep);
        player.expectResult(result);
    }
}

host::Task findMatch(SportPlayer& player)
{
    CmdAutoMatchAction match;
    match.m_Word1 = 1;
    player.act("CmdAutoMatchAction", match);
    while (player.isWaitingForResult())
        co_await host::sleep(kStep);
    player.expectResult(sport::kRefused); // a match of one
    match.m_Word1 = static_cast<unsigned short>(player.m_Options.m_Players.size());
    player.act("CmdAutoMatchAction", match);
    while (player.isWaitingForResult() || player.isWaiting("CmdCreateRoomNotify"))
        co_await host::sleep(kStep);
    player.expectResult(sport::kGood);
}

host::Task playSessions(SportPlayer& player)
{
    const SportOptions& options = player.m_Options;
    const bool isFirst = options.m_Number == 0;
    const int players = static_cast<int>(options.m_Players.size());
    const bool leaves = options.m_LeavesEarly && options.m_Number == players - 1;
    const auto isBusy = [&player] { return player.m_Tasks.getCount() > 1; };
    player.m_Tasks.start(enterLobby(player));
    while (isBusy())
        co_await host::sleep(kStep);
    if (!player.m_Socket)
        co_return;
    // In a match the players' order decides who is the first.
    player.m_Tasks.start(findMatch(player));
    while (isBusy())
        co_await host::sleep(kStep);
    player.m_Tasks.start(playSession(player, player.m_Created, players, false));
    while (isBusy())
        co_await host::sleep(kStep);
    if (isFirst)
        player.m_Tasks.start(openRoom(player));
    while (isBusy())
        co_await host::sleep(kStep);
    player.m_Tasks.start(playSession(player, options.m_Room, options.m_LeavesEarly ? players - 1 : players, leaves));
    while (isBusy())
        co_await host::sleep(kStep);
    if (!isFirst)
        co_return;
    player.beginWait();
    while (player.isWaiting("CCmdSport_GameOverMessage"))
        co_await host::sleep(kStep);
    player.expect(player.m_PlatformScores.size() == player.m_Scores.size(), "the scores at the platform");
}

} // namespace

bool installSport(Players& players)
{
    players.share<Shared<SportClient>>().install(players);
    return true;
}

host::Task playSport(Player& player)
{
    const PlayerOptions& all = player.getPlayers().getOptions();
    Place place(player, Shared<SportClient>::of(player).m_Groups);
    while (place.isWaiting())
        co_await host::sleep(kStep);
    if (place.getSize() < 2)
    {
        player.note("no other player for a sport session");
        co_return;
    }
    SportOptions options;
    options.m_Server = all.m_Servers.at("sport");
    options.m_Players = place.getGroup().m_Names;
    options.m_Room = L"court of " + options.m_Players.front();
    options.m_Number = place.getNumber();
    options.m_LeavesEarly = all.m_IsUntilLost;
    SportPlayer session(player, place, options);
    session.m_Tasks.start(playSessions(session));
    while (session.m_Tasks.getCount() > 0)
        co_await host::sleep(kStep);
}

} // namespace arena::player
