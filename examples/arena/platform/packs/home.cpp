// The home: a rush of stages, each for a life. A stage is won or lost; a day's first won stage gives a reward. Lives
// and prices are those of the player's record, and the records are the platform's: those in a request are not used,
// except for what a player may set.
#include "examples/arena/platform/calendar.h"
#include "examples/arena/platform/packs/packs.h"
#include "examples/arena/platform/packs/serving.h"
#include "examples/arena/platform/platform.h"
#include "examples/arena/protocol/pack_numbers.h"

#include <algorithm>
#include <iterator>

namespace arena::platform
{

namespace
{

constexpr wchar_t kNoLives[] = L"no lives";
constexpr wchar_t kNoSuchStage[] = L"no such stage";
constexpr wchar_t kPlaysAlready[] = L"a stage is being played";
constexpr wchar_t kPlaysNot[] = L"no stage is being played";
constexpr wchar_t kNothingWon[] = L"nothing won today";
constexpr wchar_t kRewardTaken[] = L"the reward is taken";
constexpr wchar_t kNotMissed[] = L"no life is missing";
constexpr wchar_t kClearedToday[] = L"cleared today";
constexpr wchar_t kRaised[] = L"a save cannot raise lives or lower counters";

constexpr int kStages = HomePack_GetPlayerList_Reply::kPlayers;
constexpr wchar_t kReward[] = L"rush-medal";

// What the platform keeps in the carried values of the record: the stage that is being played, 0 for none, and the
// highest one that was won.
int& playedStage(AccountHomeData& home)
{
    return home.m_HomeValue0;
}
int& bestStage(AccountHomeData& home)
{
    return home.m_HomeValue1;
}
// The stages won today, and the rewards taken.
int& winsOf(AccountHomeData& home)
{
    return home.m_DailyValue0;
}
int& rewardsOf(AccountHomeData& home)
{
    return home.m_DailyValue1;
}

class Home
{
public:
    bool install(host::Handlers& handlers)
    {
        numberHome(m_Packs);
        serve<HomePack_LoadData_Request, HomePack_LoadData_Reply>(m_Packs, load);
        serve<HomePack_SaveData_Request, HomePack_SaveData_Reply>(m_Packs, saveData);
        serve<HomePack_ClearDaily_Request, HomePack_ClearDaily_Reply>(m_Packs, clearDaily);
        serve<HomePack_StartGame_Request, HomePack_StartGame_Reply>(m_Packs, startGame);
        serve<HomePack_EndGame_Request, HomePack_EndGame_Reply>(
            m_Packs, [this](Session& session, const HomePack_EndGame_Request& request, HomePack_EndGame_Reply& reply)
            { endGame(session, request, reply); });
        serve<HomePack_CountdownTime_Request, HomePack_CountdownTime_Reply>(m_Packs, countDown);
        serve<HomePack_JumpOff_Request, HomePack_JumpOff_Reply>(m_Packs, jumpOff);
        serve<HomePack_DirectReWard_Request, HomePack_DirectReWard_Reply>(m_Packs, takeReward);
        serve<HomePack_UnlockGame_Request, HomePack_UnlockGame_Reply>(m_Packs, unlock);
        serve<HomePack_GetPlayerList_Request, HomePack_GetPlayerList_Reply>(
            m_Packs, [this](Session&, const HomePack_GetPlayerList_Request& request,
                            HomePack_GetPlayerList_Reply& reply) { list(request, reply); });
        serve<HomePack_PlayerNumList_Request, HomePack_PlayerNumList_Reply>(
            m_Packs, [this](Session&, const HomePack_PlayerNumList_Request&, HomePack_PlayerNumList_Reply& reply)
            { reply.m_PlayerNum = m_Winners; });
        return m_Packs.install(handlers);
    }

private:
    // m_Flag1: the daily reset is due.
    static void load(Session& session, const HomePack_LoadData_Request&, HomePack_LoadData_Reply& reply)
    {
        reply.m_HomeData = session.getAccount().m_HomeData;
        reply.m_Flag1 = !(reply.m_HomeData.m_HomeDate == getToday());
    }
    // A player may jump back on, and nothing else.
    static void saveData(Session& session, const HomePack_SaveData_Request& request, HomePack_SaveData_Reply& reply)
    {
        AccountHomeData& home = session.getAccount().m_HomeData;
        const AccountHomeData& wanted = request.m_HomeData;
        if (wanted.m_RushLife > home.m_RushLife || wanted.m_MaxRushLife != home.m_MaxRushLife ||
            wanted.m_JumpOffTimes < home.m_JumpOffTimes || wanted.m_RushUnlockTimes < home.m_RushUnlockTimes)
            return refuse(reply, kRaised);
        home.m_IsJumpOff = home.m_IsJumpOff && wanted.m_IsJumpOff;
        save(session, reply);
    }
    static void clearDaily(Session& session, const HomePack_ClearDaily_Request&, HomePack_ClearDaily_Reply& reply)
    {
        AccountHomeData& home = session.getAccount().m_HomeData;
        const zet::String_T<wchar_t> today = getToday();
        if (home.m_HomeDate == today)
            refuse(reply, kClearedToday);
        else
        {
            home.ResetHomData(session.getAccount().m_GlobalData.m_VIPLevel > 0 ? 1 : 0);
            home.m_HomeDate = today;
            home.m_IsHomeValid = true;
            save(session, reply);
        }
        reply.m_HomeData = home;
    }
    // m_Value1: the stage. In the reply, the stage and the lives left.
    static void startGame(Session& session, const HomePack_StartGame_Request& request, HomePack_StartGame_Reply& reply)
    {
        CAccount& account = session.getAccount();
        AccountHomeData& home = account.m_HomeData;
        if (request.m_Value1 <= 0 || request.m_Value1 >= kStages || request.m_Value1 > bestStage(home) + 1)
            refuse(reply, kNoSuchStage);
        else if (playedStage(home) != 0)
            refuse(reply, kPlaysAlready);
        else if (home.GetTotalRushLife() <= 0)
            refuse(reply, kNoLives);
        else
        {
            home.CostRushLife(1);
            playedStage(home) = request.m_Value1;
            if (save(session, reply))
                reply.m_Value1 = request.m_Value1;
        }
        reply.m_Value2 = home.GetTotalRushLife();
        copyAccount(account.m_Account, reply.m_Account);
        reply.m_HomeData = home;
    }
    // m_Value1: the stage; m_Flag1: whether it was won. In the reply, the stage and the stages won today.
    void endGame(Session& session, const HomePack_EndGame_Request& request, HomePack_EndGame_Reply& reply)
    {
        CAccount& account = session.getAccount();
        AccountHomeData& home = account.m_HomeData;
        if (playedStage(home) == 0 || request.m_Value1 != playedStage(home))
            refuse(reply, kPlaysNot);
        else
        {
            playedStage(home) = 0;
            if (request.m_Flag1)
            {
                ++winsOf(home);
                bestStage(home) = std::max(bestStage(home), request.m_Value1);
            }
            if (save(session, reply))
            {
                reply.m_Value1 = request.m_Value1;
                reply.m_Flag1 = request.m_Flag1;
                m_Winners[request.m_Value1] += request.m_Flag1 ? 1 : 0;
            }
        }
        reply.m_Value2 = winsOf(home);
        copyAccount(account.m_Account, reply.m_Account);
        reply.m_GlobalData = account.m_GlobalData;
        reply.m_HomeData = home;
    }
    // m_Value1: the seconds until the daily reset is due.
    static void countDown(Session& session, const HomePack_CountdownTime_Request&, HomePack_CountdownTime_Reply& reply)
    {
        reply.m_Value1 = getSecondsOfDayLeft();
        reply.m_HomeData = session.getAccount().m_HomeData;
    }
    // m_Value1 of the reply: the price. The same for the unlocking, which gives a life.
    static void jumpOff(Session& session, const HomePack_JumpOff_Request&, HomePack_JumpOff_Reply& reply)
    {
        CAccount& account = session.getAccount();
        AccountHomeData& home = account.m_HomeData;
        const int price = home.GetHomeJumpOffCostDiamond();
        if (pay(session, price, reply))
        {
            ++home.m_JumpOffTimes;
            home.m_IsJumpOff = true;
            reply.m_Flag1 = save(session, reply);
        }
        reply.m_Value1 = price;
        copyAccount(account.m_Account, reply.m_Account);
        reply.m_HomeData = home;
        reply.m_GlobalData = account.m_GlobalData;
    }
    static void unlock(Session& session, const HomePack_UnlockGame_Request&, HomePack_UnlockGame_Reply& reply)
    {
        CAccount& account = session.getAccount();
        AccountHomeData& home = account.m_HomeData;
        const int price = home.GetHomeRushUnlockPrice();
        if (home.GetTotalRushLife() >= home.m_MaxRushLife)
            refuse(reply, kNotMissed);
        else if (pay(session, price, reply))
        {
            ++home.m_RushUnlockTimes;
            ++home.m_RushLife;
            save(session, reply);
        }
        reply.m_Value1 = price;
        reply.m_Value2 = home.GetTotalRushLife();
        copyAccount(account.m_Account, reply.m_Account);
        reply.m_HomeData = home;
        reply.m_GlobalData = account.m_GlobalData;
    }
    // The reward goes into the bag. m_Value1 of the reply: how many of it the bag has now.
    static void takeReward(Session& session, const HomePack_DirectReWard_Request&, HomePack_DirectReWard_Reply& reply)
    {
        CAccount& account = session.getAccount();
        AccountHomeData& home = account.m_HomeData;
        FGameItem reward;
        reward.m_Name = kReward;
        reward.m_Num = 1;
        if (winsOf(home) == 0)
            refuse(reply, kNothingWon);
        else if (rewardsOf(home) > 0)
            refuse(reply, kRewardTaken);
        else if (account.m_Account.AddItem(reward))
        {
            ++rewardsOf(home);
            save(session, reply);
        }
        reply.m_Value1 = account.m_Account.GetItemNum(kReward);
        copyAccount(account.m_Account, reply.m_Account);
        reply.m_HomeData = home;
        reply.m_GlobalData = account.m_GlobalData;
    }
    // How often each stage was won since the platform was started. m_Value1: the stage that is asked for, 0 for all.
    void list(const HomePack_GetPlayerList_Request& request, HomePack_GetPlayerList_Reply& reply) const
    {
        if (request.m_Value1 < 0 || request.m_Value1 >= kStages)
            return refuse(reply, kNoSuchStage);
        for (const auto& [stage, winners] : m_Winners)
            if (request.m_Value1 == 0 || request.m_Value1 == stage)
            {
                reply.m_PlayerList[stage] = winners;
                ++reply.m_Value1;
            }
    }

    HomePacks m_Packs;
    // By stage, which is below kStages.
    std::map<int, int> m_Winners;
};

} // namespace

Feature serveHome(Platform& platform)
{
    auto home = std::make_shared<Home>();
    return home->install(platform.getHandlers()) ? home : nullptr;
}

} // namespace arena::platform
