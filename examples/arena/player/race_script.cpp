#include "examples/arena/player/race_script.h"

#include "examples/arena/player/racer.h"

#include <algorithm>
#include <set>

namespace arena::player
{

namespace
{

using namespace std::chrono_literals;

constexpr std::chrono::milliseconds kPatience = Racer::kPatience;
constexpr std::chrono::milliseconds kStep = 5ms;
constexpr std::chrono::milliseconds kRetry = 100ms;
constexpr wchar_t kWarmUp[] = L"warm-up ";

int countCoins(const AccountData& account)
{
    return account.GetItemNum(race::kCoin);
}

void checkEntries(Racer& racer)
{
    const int others = racer.m_Options.m_Pawns - 1;
    for (const char* kind : {"CCmdGS_OtherJoin", "CCmdGS_PlayerEnter", "CCmdGS_GamePlayer"})
        racer.expect(racer.getCount(kind) == others, kind);
    racer.expect(racer.getCount("CCmdGS_PawnReady") + racer.m_ReadyBefore == others, "each other pawn ready once");
}

void checkRace(Racer& racer)
{
    const int pawns = racer.m_Options.m_Pawns;
    const bool isCreator = racer.m_Options.m_IsCreator;
    racer.expect(racer.getCount("CCmdGS_AllPlayerReady") == 1, "CCmdGS_AllPlayerReady once");
    racer.expect(racer.getCount("CCmdGS_AllRunDown") == 1, "CCmdGS_AllRunDown once");
    racer.expect(racer.getCount("CCmdGS_PawnCanRun") == 1, "CCmdGS_PawnCanRun once");
    racer.expect(static_cast<int>(racer.m_Started.size()) == pawns, "a CCmdGS_PawnStartRun of each pawn");
    racer.expect(racer.getCount("CCmdGS_PawnFouled") == 2, "both fouls of the creator");
    racer.expect(racer.getCount("CCmdGS_PlayersChat") == 1 && racer.m_Message.view().ends_with(L": hello"), "the chat");
    racer.expect(racer.getCount("CCmdGS_PlayerEquipAttribute") == (isCreator ? 0 : 1), "the creator's look");
    racer.expect(racer.getCount("CCmdGS_PowerTime") == (isCreator ? 0 : 1), "the creator's power");
    std::set<int> places;
    for (const auto& [name, place] : racer.m_Places)
    {
        places.insert(place);
        racer.expect(racer.m_Points[name] == race::pointsOf(place), "the points of each place");
    }
    racer.expect(static_cast<int>(places.size()) == pawns && *places.begin() == 1 && *places.rbegin() == pawns,
                 "each place once");
    const int positions = racer.getCount("CCmdGS_PlayerRaceData") + racer.getCount("CCmdGS_PlayerRaceData over UDP");
    // The last report of each other pawn may be under way over UDP when the race is decided.
    racer.expect(positions >= pawns - 1, "positions of the others");
    racer.expect(!racer.m_Positions || pawns == 1 || racer.getCount("CCmdGS_PlayerRaceData over UDP") > 0,
                 "positions over UDP");
}

void checkBoard(Racer& racer, const CCmdGZ_CBRankDataPackReply& reply)
{
    const BS4RankData_Pack_Reply& board = reply.m_BS4RankData_Pack_Reply;
    // The best of the zone; with more players not all are on it.
    const bool hasAll = board.m_Value1 <= BS4RankData_Pack_Reply::kRows;
    for (const auto& [name, place] : racer.m_Places)
    {
        const auto isLine = [&name = name](const CombatRankData& line) { return line.m_Name == name; };
        racer.expect(!hasAll ||
                         std::any_of(std::begin(board.m_CombatRankDatas1), std::end(board.m_CombatRankDatas1), isLine),
                     "each pawn on the board");
    }
    const zet::String_T<wchar_t>& name = racer.m_Player.getName();
    racer.expect(board.m_Self.m_Name == name &&
                     reply.m_BS4Data.m_Value2 == racer.m_Season.m_Value2 + racer.m_Points[name],
                 "own points on the board");
}

} // namespace

// In the zone: what there is, entering, a game, getting ready.
static host::Task gather(Racer& racer, bool& isReady)
{
    Player& player = racer.m_Player;
    const RaceOptions& options = racer.m_Options;
    if (!racer.connectZone())
        co_return;
    CCommandSocket& zone = *racer.m_Zone;
    const CCmdGC_gameZoneListRequest askList;
    const auto list = co_await host::ask<CCmdGC_gameZoneListResponse>(zone, askList, kPatience);
    if (!racer.isFirst("CCmdGC_gameZoneListRequest", list, {"CCmdGC_gameZoneListResponse"}))
        co_return;
    racer.note(std::to_string(std::get<0>(list).m_GameZoneInfos.size()) + " zones");
    racer.expect(!std::get<0>(list).m_GameZoneInfos.empty(), "a zone in the list");
    const CCmdGZ_ZoneInfoRequest askInfo;
    const auto info = co_await host::ask<CCmdGZ_ZoneInfoResponse>(zone, askInfo, kPatience);
    racer.isFirst("CCmdGZ_ZoneInfoRequest", info, {"CCmdGZ_ZoneInfoResponse"});

    CCmdGZ_playerExit exit;
    exit.m_Text1 = player.getName();
    const auto early = co_await host::ask<CCmdGZ_playerExitOk, CCmdGZ_playerExitFail>(zone, exit, kPatience);
    racer.expect(!racer.isFirst("CCmdGZ_playerExit", early, {"CCmdGZ_playerExitOk", "CCmdGZ_playerExitFail"}),
                 "no exit before entering");
    CCmdGZ_playerEnter enter;
    enter.m_Account = player.getAccount().m_Account;
    // Without a platform there is no other record.
    enter.m_Account.m_AccountName = player.getName();
    enter.m_GlobalData = player.getAccount().m_GlobalData;
    for (const bool isFirst : {true, false})
    {
        const auto entered = co_await host::ask<CCmdGZ_playerEnterOk, CCmdGZ_playerEnterFail>(zone, enter, kPatience);
        racer.expect(racer.isFirst("CCmdGZ_playerEnter", entered, {"CCmdGZ_playerEnterOk", "CCmdGZ_playerEnterFail"}) ==
                         isFirst,
                     "entering once");
        if (const auto* const ok = std::get_if<CCmdGZ_playerEnterOk>(&entered))
            racer.m_Season = ok->m_BS4Data;
        else if (isFirst)
            co_return;
    }
    const CCmdPlayerCountOnLineRequest askCount;
    const auto online = co_await host::ask<CCmdPlayerCountOnLineResponse>(zone, askCount, kPatience);
    racer.isFirst("CCmdPlayerCountOnLineRequest", online, {"CCmdPlayerCountOnLineResponse"});
    const CCmdGZ_StartGameRequest startEarly;
    const auto notStarted = co_await host::ask<CCmdGZ_StartGameReply>(zone, startEarly, kPatience);
    if (racer.isFirst("CCmdGZ_StartGameRequest", notStarted, {"CCmdGZ_StartGameReply"}))
        racer.expect(!std::get<0>(notStarted).m_Text1.isEmpty(), "no start without a game");

    CCmdGZ_gameReady ready;
    ready.m_Text1 = L"no such game";
    const auto unknown = co_await host::ask<CCmdGZ_gameReadyOk, CCmdGZ_gameReadyFail>(zone, ready, kPatience);
    racer.expect(!racer.isFirst("CCmdGZ_gameReady", unknown, {"CCmdGZ_gameReadyOk", "CCmdGZ_gameReadyFail"}),
                 "no game of that name");
    // The creator: too many pawns, a game that it leaves again, and the game of the race.
    struct Try
    {
        zet::String_T<wchar_t> m_Name;
        int m_Value;
        bool m_IsGood;
        bool m_IsLeft;
    };
    const int value = options.m_Pawns | (options.m_IsCombat ? race::kCombatBit : 0);
    std::vector<Try> tries = {{options.m_Game, race::kMostPawns + 1, false, false},
                              {kWarmUp + options.m_Game, race::kMostPawns, true, true},
                              {options.m_Game, value, true, false},
                              {options.m_Game + L" again", value, false, false}};
    if (!options.m_IsCreator)
        tries.clear();
    for (const Try& each : tries)
    {
        CCmdGZ_createGame create;
        create.m_Text1 = each.m_Name;
        create.m_Value1 = each.m_Value;
        // The zone may have no game server for a while.
        bool isCreated = false;
        for (auto left = kPatience; left > 0ms; left -= kRetry)
        {
            const auto created =
                co_await host::ask<CCmdGZ_createGameOk, CCmdGZ_createGameFail>(zone, create, kPatience);
            isCreated = racer.isFirst("CCmdGZ_createGame", created, {"CCmdGZ_createGameOk", "CCmdGZ_createGameFail"});
            if (isCreated || !each.m_IsGood || player.isInterrupted())
                break;
            co_await host::sleep(kRetry);
        }
        racer.expect(isCreated == each.m_IsGood, "creating a game");
        if (!each.m_IsLeft)
            continue;
        ready.m_Text1 = each.m_Name;
        const auto isIn = co_await host::ask<CCmdGZ_gameReadyOk, CCmdGZ_gameReadyFail>(zone, ready, kPatience);
        racer.expect(racer.isFirst("CCmdGZ_gameReady", isIn, {"CCmdGZ_gameReadyOk", "CCmdGZ_gameReadyFail"}),
                     "ready in the warm-up");
        CCmdGZ_gameUnready unready;
        unready.m_Text1 = each.m_Name;
        for (const bool isFirst : {true, false})
        {
            const auto out = co_await host::ask<CCmdGZ_gameUnreadyOk, CCmdGZ_gameUnreadyFail>(zone, unready, kPatience);
            racer.expect(racer.isFirst("CCmdGZ_gameUnready", out, {"CCmdGZ_gameUnreadyOk", "CCmdGZ_gameUnreadyFail"}) ==
                             isFirst,
                         "unready once");
        }
    }
    ready.m_Text1 = options.m_Game;
    ready.m_Value1 = options.m_WantsUdp ? race::kPositionsByUdp : race::kPositionsByTcp;
    // The others wait until the creator has created it.
    for (auto left = 2 * kPatience; left > 0ms && !isReady && !player.isInterrupted(); left -= 20ms)
    {
        const auto isIn = co_await host::ask<CCmdGZ_gameReadyOk, CCmdGZ_gameReadyFail>(zone, ready, kPatience);
        if (std::get_if<host::Unanswered>(&isIn))
            break;
        isReady = racer.isFirst("CCmdGZ_gameReady", isIn, {"CCmdGZ_gameReadyOk", "CCmdGZ_gameReadyFail"});
        if (!isReady)
            co_await host::sleep(20ms);
    }
    racer.expect(isReady, "ready in the game");
}

// On the game server: from joining to the start of the pawn.
static host::Task lineUp(Racer& racer, bool& isRunning)
{
    const RaceOptions& options = racer.m_Options;
    const auto wait = [&racer](const char* kind, int count = 1) { return racer.isWaiting(kind, count); };
    racer.beginWait();
    while (wait("CCmdGZ_ConnectGameSvr"))
        co_await host::sleep(kStep);
    if (racer.getCount("CCmdGZ_ConnectGameSvr") == 0 || !racer.connectGame())
        co_return;
    racer.expect(racer.getCount("CCmdGZ_CombatStart") == (options.m_IsCombat ? 1 : 0), "CCmdGZ_CombatStart");
    const CCmdGZ_StartGameRequest start;
    const auto started = co_await host::ask<CCmdGZ_StartGameReply>(*racer.m_Zone, start, kPatience);
    if (racer.isFirst("CCmdGZ_StartGameRequest", started, {"CCmdGZ_StartGameReply"}))
        racer.expect(std::get<0>(started).m_Text1.isEmpty(), "the start of the game");

    CCmdGS_joinGame join;
    join.m_Text1 = racer.m_Player.getName();
    zet::uuid_create(join.m_Id1);
    racer.sendToGame(join);
    racer.beginWait();
    while (wait("CCmdGS_joinGameFail"))
        co_await host::sleep(kStep);
    racer.expect(racer.m_Refusal == race::kNoSuchGame, "no game of that id");
    join.m_Id1 = racer.m_Where.m_Id1;
    join.m_Text1 = racer.m_Where.m_Text2;
    racer.sendToGame(join);
    racer.beginWait();
    while (wait("CCmdGS_joinGameOk"))
        co_await host::sleep(kStep);
    if (options.m_WantsUdp)
    {
        racer.expect(racer.m_Where.m_Flag1, "a game server with UDP");
        CCmdGS_joinGame stranger = join;
        zet::uuid_create(stranger.m_Id1);
        racer.beginWait();
        if (racer.m_Where.m_Flag1 && racer.connectPositions())
        {
            racer.m_Positions->send(stranger);
            racer.m_Positions->send(join);
        }
        while (wait("CCmdUdpServerConnectFail") || wait("CCmdUdpServerConnectOk"))
            co_await host::sleep(kStep);
    }
    CCmdGS_test test;
    test.m_Value1 = 42;
    racer.sendToGame(test);
    CCmdGS_testSyncPos position;
    racer.sendPosition(position);
    racer.beginWait();
    while (wait("CCmdGS_test") || wait(racer.m_Positions ? "CCmdGS_testSyncPos over UDP" : "CCmdGS_testSyncPos"))
        co_await host::sleep(kStep);

    CCmdGS_PawnReady ready;
    ready.m_Text1 = racer.m_Player.getName();
    racer.sendToGame(ready);
    racer.beginWait();
    while (wait("CCmdGS_AllPlayerReady"))
        co_await host::sleep(kStep);
    checkEntries(racer);
    CCmdGS_PawnStartRun startRun;
    if (options.m_IsCreator)
    {
        racer.sendToGame(startRun); // before the pawns are released: a foul
        CCmdGS_PlayersChat chat;
        chat.m_Text1 = L"hello";
        racer.sendToGame(chat);
        CCmdGS_PlayerEquipAttribute equip;
        racer.sendToGame(equip);
    }
    CCmdGS_RunDown down;
    racer.sendToGame(down);
    racer.beginWait();
    while (wait("CCmdGS_AllRunDown") || wait("CCmdGS_PawnCanRun"))
        co_await host::sleep(kStep);
    racer.sendToGame(startRun);
    racer.beginWait();
    while (racer.m_Started.count(racer.m_Player.getName()) == 0 && wait("CCmdGS_PawnStartRun", options.m_Pawns))
        co_await host::sleep(kStep);
    isRunning = racer.m_Started.count(racer.m_Player.getName()) > 0;
    racer.expect(isRunning, "the start of the own pawn");
}

// From the start of the pawn to the exit from the game.
static host::Task run(Racer& racer)
{
    const RaceOptions& options = racer.m_Options;
    const auto wait = [&racer](const char* kind, int count = 1) { return racer.isWaiting(kind, count); };
    CCmdGZ_playerExit exitZone;
    exitZone.m_Text1 = racer.m_Player.getName();
    const auto stay =
        co_await host::ask<CCmdGZ_playerExitOk, CCmdGZ_playerExitFail>(*racer.m_Zone, exitZone, kPatience);
    racer.expect(!racer.isFirst("CCmdGZ_playerExit", stay, {"CCmdGZ_playerExitOk", "CCmdGZ_playerExitFail"}),
                 "no exit during a race");
    const CCmdInGamePlayerCountRequest askCount;
    const auto racing = co_await host::ask<CCmdInGamePlayerCountResponse>(*racer.m_Zone, askCount, kPatience);
    if (racer.isFirst("CCmdInGamePlayerCountRequest", racing, {"CCmdInGamePlayerCountResponse"}))
        racer.expect(std::get<0>(racing).m_Value2 >= 1, "players in games");
    CCmdGS_PawnRunning running;
    running.m_Values = {0, 0};
    if (options.m_IsCreator)
    {
        CCmdGS_PowerTime power;
        power.m_Float1 = 1.5f;
        racer.sendToGame(power);
        running.m_Float1 = 2 * race::kLongestStride; // a foul, and it does not count
        racer.sendPosition(running);
        running.m_Float1 = 0.0f;
    }
    if (options.m_IsUntilLost)
    {
        racer.beginWait();
        while (wait("CCmdGZ_gameOver"))
        {
            racer.sendPosition(running);
            co_await host::sleep(20ms);
        }
        co_return;
    }
    while (running.m_Float1 < race::kTrackLength)
    {
        running.m_Values[0] = static_cast<short>(running.m_Values[0] + 1);
        running.m_Float1 += race::kLongestStride / 2;
        racer.sendPosition(running);
        co_await host::sleep(options.m_Pause);
    }
    // One step with the controller, which is of no effect after the finish.
    CCmdGS_PawnInput input;
    racer.sendToGame(input);
    racer.beginWait();
    while (wait("CCmdGS_PawnScore", options.m_Pawns) || wait("CCmdGS_PlayerReward", options.m_Pawns))
        co_await host::sleep(kStep);
    checkRace(racer);
    CCmdGS_RaceBalanceRequest balance;
    balance.m_Text1 = racer.m_Player.getName();
    balance.m_Value1 = racer.m_Places[racer.m_Player.getName()];
    racer.sendToGame(balance);
    racer.beginWait();
    while (wait("CCmdGS_RaceBalanceOK"))
        co_await host::sleep(kStep);
    CCmdGS_exitGame exit;
    racer.sendToGame(exit); // without the name
    exit.m_Text1 = racer.m_Player.getName();
    racer.sendToGame(exit);
    racer.beginWait();
    while (wait("CCmdGS_exitGameFail") || wait("CCmdGS_exitGameOk"))
        co_await host::sleep(kStep);
}

// Back in the zone: the board, and the records.
static host::Task goHome(Racer& racer)
{
    const bool hasRaced = !racer.m_Options.m_IsUntilLost;
    racer.beginWait();
    while (racer.isWaiting("CCmdGZ_gameOver"))
        co_await host::sleep(kStep);
    const CCmdGZ_CBRankDataPackRequest askBoard;
    const auto board = co_await host::ask<CCmdGZ_CBRankDataPackReply>(*racer.m_Zone, askBoard, kPatience);
    if (racer.isFirst("CCmdGZ_CBRankDataPackRequest", board, {"CCmdGZ_CBRankDataPackReply"}) && hasRaced)
        checkBoard(racer, std::get<0>(board));
    CCmdGZ_playerExit exit;
    exit.m_Text1 = racer.m_Player.getName();
    const auto gone = co_await host::ask<CCmdGZ_playerExitOk, CCmdGZ_playerExitFail>(*racer.m_Zone, exit, kPatience);
    if (!racer.isFirst("CCmdGZ_playerExit", gone, {"CCmdGZ_playerExitOk", "CCmdGZ_playerExitFail"}))
    {
        racer.fail("no exit from the zone");
        co_return;
    }
    racer.m_IsHome = true;
    const CCmdGZ_playerExitOk& home = std::get<0>(gone);
    const AccountData& account = racer.m_Player.getAccount().m_Account;
    const int won = hasRaced ? race::coinsOf(racer.m_Places[racer.m_Player.getName()]) : 0;
    racer.expect(home.m_Account.m_AccountName == racer.m_Player.getName(), "the own records");
    racer.expect(countCoins(home.m_Account) == countCoins(account) + won, "the coins of the race");
    // The zone keeps the results; the records of the account are the platform's.
    racer.note("back with " + std::to_string(countCoins(home.m_Account)) + " coins");
}

// One race of a complete group.
static host::Task race(Racer& racer, bool& hasRaced)
{
    bool isReady = false;
    bool isRunning = false;
    const auto isBusy = [&racer] { return racer.m_Tasks.getCount() > 1; };
    racer.m_Tasks.start(gather(racer, isReady));
    while (isBusy())
        co_await host::sleep(kStep);
    if (!isReady)
        co_return;
    racer.m_Tasks.start(lineUp(racer, isRunning));
    while (isBusy())
        co_await host::sleep(kStep);
    if (!isRunning)
        co_return;
    racer.m_Tasks.start(run(racer));
    while (isBusy())
        co_await host::sleep(kStep);
    racer.m_Tasks.start(goHome(racer));
    while (isBusy())
        co_await host::sleep(kStep);
    hasRaced = racer.m_IsHome && !racer.m_Options.m_IsUntilLost && !racer.m_Player.isInterrupted();
}

bool installRace(Players& players)
{
    players.share<Shared<RaceClient>>().install(players);
    return true;
}

host::Task playRace(Player& player)
{
    Players& players = player.getPlayers();
    const PlayerOptions& all = players.getOptions();
    Groups& groups = Shared<RaceClient>::of(player).m_Groups;
    bool isWanted = true;
    while (isWanted)
    {
        Place place(player, groups);
        while (place.isWaiting())
            co_await host::sleep(kStep);
        RaceOptions options;
        options.m_Zone = all.m_Servers.at("zone");
        options.m_Game = zet::formatText(L"%s %d", place.getGroup().m_Names.front(), place.getGroup().m_Number);
        options.m_Pawns = place.getSize();
        options.m_IsCombat = place.getGroup().m_Number % 2 == 1;
        options.m_IsCreator = place.getNumber() == 0;
        // 3 of 8.
        options.m_IsTunneled = place.getNumber() >= place.getSize() - place.getSize() * 3 / 8;
        options.m_WantsUdp = all.m_WantsUdp && !options.m_IsTunneled;
        options.m_Pause = all.m_RacePause;
        options.m_IsUntilLost = all.m_IsUntilLost;
        bool hasRaced = false;
        Racer racer(player, place, options);
        racer.m_Tasks.start(race(racer, hasRaced));
        while (racer.m_Tasks.getCount() > 0)
            co_await host::sleep(kStep);
        if (hasRaced && options.m_IsCreator)
        {
            place.getGroup().m_IsDone = true;
            players.addRace();
        }
        isWanted = hasRaced && (groups.isGathering() || players.getRaces() + groups.getPending() < all.m_Races);
    }
}

} // namespace arena::player
