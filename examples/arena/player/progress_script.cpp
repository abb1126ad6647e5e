#include "examples/arena/player/progress_script.h"
#include "commands/account_access.h"
#include "commands/billing.h"
#include "commands/progress.h"
#include "commands/rank.h"
#include "examples/arena/player/answers.h"
#include "examples/arena/player/players.h"
#include "examples/arena/protocol/platform_codes.h"
#include "framework/log.h"

namespace arena::player
{

namespace
{

using namespace protocol;

// Games of the kinds with a cool-down, with a board, and one that is locked.
struct Game
{
    int m_Type;
    int m_Id;
    float m_Score;
};
constexpr Game kGames[] = {{1, 1, 85.5f}, {10, 4, 61.0f}, {11, 1000, 5.0f}, {12, 6, 70.0f}, {14, 7, 90.0f}};
constexpr Game kLockedGame = {1, 12, 0.0f};

} // namespace

bool installProgress(Players& players)
{
    return players.getHandlers().on<CCmdCurrencyAdd>([](CCommandSocket&, const CCmdCurrencyAdd& added)
                                                     { zet::Log::message(L"CCmdCurrencyAdd %d", added.m_Value2); }) &&
           players.getQuestions()
               .expect<CCmdReplyStartGame, CCmdReplyEndGame, CCmdReplyFinishMission, CCmdReplySaveTodayMission,
                       CCmdEnergyReply, CCmdSaveAccount, CCmdReplySortAccount, CCmdReplySortBrain, CCmdReplySortCalorie,
                       CCmdReplySortMusic, CCmdReplySortKinect, CCmdReplySortTupoCalorie, CCmdReplySortRush>();
}

host::Task playProgress(Player& player)
{
    constexpr auto kPatience = Player::kPatience;
    CCommandSocket& socket = player.getSocket();
    CCmdRequestStartGame start;
    start.m_Value1 = kLockedGame.m_Type;
    start.m_Value2 = kLockedGame.m_Id;
    const auto locked = co_await host::ask<CCmdReplyStartGame>(socket, start, kPatience);
    const auto* const closed = expectAnswer<CCmdReplyStartGame>(player, locked, "CCmdRequestStartGame -> refused");
    if (!closed || !expectThat(player, closed->m_Value1 == kLocked, "a locked game does not start"))
        co_return;
    // A game that cools down may have been started by a login that ended before the game did.
    bool hasScored = false;
    for (const Game& game : kGames)
    {
        start.m_Value1 = game.m_Type;
        start.m_Value2 = game.m_Id;
        const auto starting = co_await host::ask<CCmdReplyStartGame>(socket, start, kPatience);
        const auto* const started =
            expectAnswer<CCmdReplyStartGame>(player, starting, "CCmdRequestStartGame -> CCmdReplyStartGame");
        if (!started)
            co_return;
        if (started->m_Value1 == kCoolingDown || started->m_Value1 == kTooTired)
            continue;
        if (!expectThat(player, started->m_Value1 == kDone, "the game starts"))
            co_return;
        CCmdRequestEndGame end;
        end.m_Value1 = game.m_Type;
        end.m_Value2 = game.m_Id;
        end.m_Float1 = game.m_Score;
        end.m_Float2 = 12.0f;
        const auto ending = co_await host::ask<CCmdReplyEndGame>(socket, end, kPatience);
        const auto* const ended =
            expectAnswer<CCmdReplyEndGame>(player, ending, "CCmdRequestEndGame -> CCmdReplyEndGame");
        if (!ended || !expectThat(player, ended->m_Value1 == kDone, "the game ends"))
            co_return;
        player.confirm(ended->m_Account);
        hasScored = game.m_Id == kGames[4].m_Id;
    }
    CCmdRequestEndGame unstarted;
    unstarted.m_Value1 = kGames[0].m_Type;
    unstarted.m_Value2 = kGames[0].m_Id;
    const auto notEnded = co_await host::ask<CCmdReplyEndGame>(socket, unstarted, kPatience);
    const auto* const idle = expectAnswer<CCmdReplyEndGame>(player, notEnded, "CCmdRequestEndGame -> refused");
    if (!idle || !expectThat(player, idle->m_Value1 == kUnknownThing, "a game that did not start does not end"))
        co_return;
    start.m_Value1 = kGames[0].m_Type;
    start.m_Value2 = kGames[0].m_Id;
    const auto hot = co_await host::ask<CCmdReplyStartGame>(socket, start, kPatience);
    const auto* const cooling = expectAnswer<CCmdReplyStartGame>(player, hot, "CCmdRequestStartGame again");
    if (!cooling || !expectThat(player, cooling->m_Value1 == kCoolingDown, "the game cools down"))
        co_return;

    CCmdRequestFinishMission mission;
    mission.m_Value1 = 5;
    const auto finishing = co_await host::ask<CCmdReplyFinishMission>(socket, mission, kPatience);
    if (!expectAnswer<CCmdReplyFinishMission>(player, finishing, "CCmdRequestFinishMission -> CCmdReplyFinishMission"))
        co_return;
    const auto twice = co_await host::ask<CCmdReplyFinishMission>(socket, mission, kPatience);
    const auto* const done = expectAnswer<CCmdReplyFinishMission>(player, twice, "CCmdRequestFinishMission again");
    if (!done || !expectThat(player, !done->m_Flag1 && done->m_Value2 == kAlreadyDone, "a mission is done once"))
        co_return;
    CCmdRequestSaveTodayMission today;
    today.m_Text1 = L"run 3 km";
    const auto noted = co_await host::ask<CCmdReplySaveTodayMission>(socket, today, kPatience);
    const auto* const kept = expectAnswer<CCmdReplySaveTodayMission>(
        player, noted, "CCmdRequestSaveTodayMission -> CCmdReplySaveTodayMission");
    if (!kept || !expectThat(player, kept->m_Text1.isEmpty(), "today's mission is saved"))
        co_return;
    CCmdEnergyRequest energy;
    energy.m_Value1 = kBuyEnergy;
    const auto buying = co_await host::ask<CCmdEnergyReply>(socket, energy, kPatience);
    if (!expectAnswer<CCmdEnergyReply>(player, buying, "CCmdEnergyRequest -> CCmdEnergyReply"))
        co_return;
    CCmdSaveAccount save;
    save.m_Account = player.getAccount().m_Account;
    save.m_Account.AddNewbieFlag(4);
    save.m_Account.m_Value0 = 1000000; // the gold is the platform's to decide
    const auto saving = co_await host::ask<CCmdSaveAccount>(socket, save, kPatience);
    const auto* const saved = expectAnswer<CCmdSaveAccount>(player, saving, "CCmdSaveAccount -> CCmdSaveAccount");
    if (!saved || !expectThat(player, saved->m_Account.HasNewbieFlag(4), "the newbie's step is saved") ||
        !expectThat(player, saved->m_Account.m_Value0 < 1000000, "a client does not make gold"))
        co_return;

    // Boards, each with the player's row.
    const auto accounts = co_await host::ask<CCmdReplySortAccount>(socket, CCmdRequestSortAccount(), kPatience);
    const auto* const stars =
        expectAnswer<CCmdReplySortAccount>(player, accounts, "CCmdRequestSortAccount -> CCmdReplySortAccount");
    if (!stars || !expectThat(player, stars->m_SortInfo.m_Rank > 0, "the player has a rank") ||
        !expectThat(player, !stars->m_SortInfos.empty() && stars->m_SortInfos[0].m_Rank == 1, "the board has a first"))
        co_return;
    const auto calories = co_await host::ask<CCmdReplySortCalorie>(socket, CCmdRequestSortCalorie(), kPatience);
    expectAnswer<CCmdReplySortCalorie>(player, calories, "CCmdRequestSortCalorie -> CCmdReplySortCalorie");
    const auto most = co_await host::ask<CCmdReplySortTupoCalorie>(socket, CCmdRequestSortTupoCalorie(), kPatience);
    expectAnswer<CCmdReplySortTupoCalorie>(player, most, "CCmdRequestSortTupoCalorie -> CCmdReplySortTupoCalorie");
    CCmdRequestSortRush rush;
    rush.m_Value1 = kGames[1].m_Id;
    const auto rushes = co_await host::ask<CCmdReplySortRush>(socket, rush, kPatience);
    expectAnswer<CCmdReplySortRush>(player, rushes, "CCmdRequestSortRush -> CCmdReplySortRush");
    CCmdRequestSortMusic music;
    music.m_Value1 = kGames[2].m_Id;
    const auto songs = co_await host::ask<CCmdReplySortMusic>(socket, music, kPatience);
    expectAnswer<CCmdReplySortMusic>(player, songs, "CCmdRequestSortMusic -> CCmdReplySortMusic");
    CCmdRequestSortBrain brain;
    brain.m_Value1 = kGames[3].m_Id;
    const auto brains = co_await host::ask<CCmdReplySortBrain>(socket, brain, kPatience);
    expectAnswer<CCmdReplySortBrain>(player, brains, "CCmdRequestSortBrain -> CCmdReplySortBrain");
    CCmdRequestSortKinect kinect;
    kinect.m_Value1 = kGames[4].m_Id;
    const auto cameras = co_await host::ask<CCmdReplySortKinect>(socket, kinect, kPatience);
    const auto* const camera =
        expectAnswer<CCmdReplySortKinect>(player, cameras, "CCmdRequestSortKinect -> CCmdReplySortKinect");
    if (!camera ||
        (hasScored && !expectThat(player, camera->m_GameKinectSortInfo.m_SortKey == 90, "the score is on its board")))
        co_return;
    CCmdFetchAccountRequest fetch;
    fetch.m_Text1 = player.getName();
    const auto latest = co_await host::ask<CCmdFetchAccountReply>(socket, fetch, kPatience);
    const auto* const records =
        expectAnswer<CCmdFetchAccountReply>(player, latest, "CCmdFetchAccountRequest -> CCmdFetchAccountReply");
    if (!records)
        co_return;
    player.confirm(records->m_Account);
    player.note("progress done");
}

} // namespace arena::player
