// The best family event: a player joins for the week, throws dice for lives and advances by stages. All of it is in the
// record of the event, and its weekly lives decide. A reply has its result in m_Text1 and what came out in m_Text2.
#include "examples/arena/platform/calendar.h"
#include "examples/arena/platform/packs/match_features.h"
#include "framework/time.h"
#include "playerdata/rule_constants.h"

#include <algorithm>
#include <iterator>
#include <random>

namespace arena::platform
{

namespace
{

constexpr wchar_t kNotJoined[] = L"not joined";
constexpr wchar_t kJoinedBefore[] = L"joined before";
constexpr wchar_t kNoLives[] = L"no lives this week";
constexpr wchar_t kNoSuchDie[] = L"a die has 1 to 6";
constexpr wchar_t kNoSuchTask[] = L"no such task";
constexpr wchar_t kTaskDone[] = L"the task is done";
constexpr wchar_t kNoSuchGame[] = L"no such game";
constexpr wchar_t kNotBetter[] = L"not better";
constexpr wchar_t kNoSuchGift[] = L"no such gift";
constexpr wchar_t kGiftTaken[] = L"the gift is taken";
constexpr wchar_t kNoFreePlays[] = L"no free plays";
constexpr wchar_t kNotSelected[] = L"no brain game is selected";
constexpr wchar_t kNoSuchTool[] = L"no such tool";

constexpr int kDie = 6;
constexpr int kTeams = 4;
constexpr int kLastStage = 5;
constexpr int kPointsOfStage = 20;
constexpr int kLivesOfSetDie = 2;
constexpr int kReels = 3;
constexpr int kToolPrice = 5;
constexpr int kMostTools = 10;
constexpr int kRetryPrice = 1;
constexpr int kDaysOfWeek = 7;
constexpr int kSecondsOfDay = 24 * 60 * 60;
// The Thursday with which days are counted is the fourth day of its week.
constexpr int kFirstMonday = 3;
constexpr wchar_t kTool[] = L"match-tool";
constexpr wchar_t kGift[] = L"match-gift";

// What the platform keeps in the carried values of the record.
int& selectedBrainGame(AccountMatchData3& data)
{
    return data.m_Match3Value11;
}
int& brainPlays(AccountMatchData3& data)
{
    return data.m_Match3Value12;
}

// The week of the last reset; -1 for a new record.
int& weekOf(AccountMatchData3& data)
{
    return data.m_Match3Value13;
}

// Weeks from Monday to Sunday, counted from the one of 1970-01-01.
int getWeek()
{
    return (getDay() + kFirstMonday) / kDaysOfWeek;
}

// The record at a request of the event: in a new week, lives, tasks, gift and free plays begin anew. It is saved with
// the next change.
AccountMatchData3& recordOf(Session& session)
{
    AccountMatchData3& data = session.getAccount().m_MatchData3;
    const int week = getWeek();
    if (weekOf(data) != week)
    {
        if (weekOf(data) >= 0)
        {
            data.WeekCleanData();
            std::fill(std::begin(data.m_Match3Row), std::end(data.m_Match3Row), -1);
            data.m_Match3Flag0 = false;
            brainPlays(data) = 0;
        }
        weekOf(data) = week;
    }
    return data;
}

int throwDie()
{
    static thread_local std::mt19937 random{std::random_device()()};
    return std::uniform_int_distribution<int>(1, kDie)(random);
}

// Takes lives of the week.
template <class Reply>
bool takeLives(AccountMatchData3& data, int lives, Reply& reply)
{
    if (!data.IsJoinMatch())
        refuse(reply, kNotJoined);
    else if (data.m_WeekLives < lives)
        refuse(reply, kNoLives);
    else
    {
        data.m_WeekLives -= lives;
        return true;
    }
    return false;
}

// Goes on by points; each kPointsOfStage lead to the next stage.
void advance(AccountMatchData3& data, int points)
{
    data.m_WeekValue0 += points;
    data.m_MatchStage = std::min(kLastStage, 1 + data.m_WeekValue0 / kPointsOfStage);
}

// A request of the event whose reply has the record. work takes (session, data, request, reply); the records are saved
// if it returns true.
template <class Request, class Reply, class Work>
void onEvent(MatchPacks& packs, Work work)
{
    serve<Request, Reply>(packs,
                          [work](Session& session, const Request& request, Reply& reply)
                          {
                              AccountMatchData3& data = recordOf(session);
                              if (work(session, data, request, reply))
                                  save(session, reply);
                              reply.m_MatchData3 = data;
                              if constexpr (requires { reply.m_Account; })
                                  copyAccount(session.getAccount().m_Account, reply.m_Account);
                          });
}

bool throwRandom(Session&, AccountMatchData3& data, const MatchPack_BestFamilyRandomDice_Request&,
                 MatchPack_BestFamilyRandomDice_Reply& reply)
{
    if (!takeLives(data, 1, reply))
        return false;
    const int points = throwDie();
    advance(data, points);
    reply.m_Text2.format(L"%d", points);
    return true;
}

bool startTask(AccountMatchData3& data, int task, MatchPack_BestFamilyTask_Reply& reply)
{
    if (task < 1 || task > AccountMatchData3::kRow)
        refuse(reply, kNoSuchTask);
    else if (data.m_Match3Row[task - 1] >= 0)
        refuse(reply, kTaskDone);
    else if (takeLives(data, 1, reply))
    {
        data.m_Match3Row[task - 1] = 0;
        return true;
    }
    return false;
}

bool setDie(Session&, AccountMatchData3& data, const MatchPack_BestFamilySetDice_Request& request,
            MatchPack_BestFamilySetDice_Reply& reply)
{
    if (request.m_Value1 < 1 || request.m_Value1 > kDie)
    {
        refuse(reply, kNoSuchDie);
        return false;
    }
    if (!takeLives(data, kLivesOfSetDie, reply))
        return false;
    advance(data, request.m_Value1);
    reply.m_Text2.format(L"%d", request.m_Value1);
    return true;
}

// Three equal reels give ten points, two give one.
bool playMachine(Session&, AccountMatchData3& data, const MatchPack_BestFamilyTigerMachine_Request&,
                 MatchPack_BestFamilyTigerMachine_Reply& reply)
{
    if (!takeLives(data, 1, reply))
        return false;
    int reels[kReels];
    std::generate(std::begin(reels), std::end(reels), throwDie);
    reply.m_Text2.format(L"%d-%d-%d", reels[0], reels[1], reels[2]);
    std::sort(std::begin(reels), std::end(reels));
    if (reels[0] == reels[1] || reels[1] == reels[2])
        advance(data, reels[0] == reels[2] ? 10 : 1);
    return true;
}

// m_Value2: the score, of which the lower one is better, down to 1.
bool checkResult(Session&, AccountMatchData3& data, const MatchPack_BestFamilyCheckGameResult_Request& request,
                 MatchPack_BestFamilyCheckGameResult_Reply& reply)
{
    const auto score = data.m_ScoreMap.find(request.m_Value1);
    if (!data.IsJoinMatch())
        refuse(reply, kNotJoined);
    else if (score == data.m_ScoreMap.end())
        refuse(reply, kNoSuchGame);
    else if (request.m_Value2 < 1 || request.m_Value2 >= score->second)
        refuse(reply, kNotBetter);
    else
    {
        score->second = request.m_Value2;
        reply.m_Text2.format(L"%d", data.GetTotalGameScore());
        return true;
    }
    return false;
}

// The seconds until the week ends, at midnight before a Monday.
zet::String_T<wchar_t> getWeekLeft()
{
    const int daysLeft = (getWeek() + 1) * kDaysOfWeek - kFirstMonday - getDay() - 1;
    zet::String_T<wchar_t> text;
    text.format(L"%d", daysLeft * kSecondsOfDay + getSecondsOfDayLeft());
    return text;
}

bool takeGift(Session& session, AccountMatchData3& data, const MatchPack_TakeGift_Request& request,
              MatchPack_TakeGift_Reply& reply)
{
    FGameItem gift;
    gift.m_Name = kGift;
    gift.m_Num = request.m_Value1;
    if (!data.IsJoinMatch())
        refuse(reply, kNotJoined);
    else if (data.m_Match3Flag0)
        refuse(reply, kGiftTaken);
    else if (request.m_Value1 > data.m_MatchStage || !session.getAccount().m_Account.AddItem(gift))
        refuse(reply, kNoSuchGift);
    else
    {
        data.m_Match3Flag0 = true;
        reply.m_Value1 = request.m_Value1;
        return true;
    }
    return false;
}

// m_Value1: how many.
bool buyTool(Session& session, AccountMatchData3&, const MatchPack_BuyTool_Request& request,
             MatchPack_BuyTool_Reply& reply)
{
    if (request.m_Value1 < 1 || request.m_Value1 > kMostTools)
    {
        refuse(reply, kNoSuchTool);
        return false;
    }
    if (!pay(session, request.m_Value1 * kToolPrice, reply))
        return false;
    AccountData& account = session.getAccount().m_Account;
    FGameItem tool;
    tool.m_Name = kTool;
    tool.m_Num = request.m_Value1;
    account.AddItem(tool);
    reply.m_Value1 = account.GetItemNum(kTool);
    reply.m_Value2 = diamondsOf(session.getAccount());
    return true;
}

int getFreePlays(Session& session)
{
    CAccount& account = session.getAccount();
    const int all = account.m_GlobalData.m_VIPLevel > 0 ? g_BrainFreeTimes_VIP_1 : g_BrainFreeTimes_VIP_0;
    return all - brainPlays(account.m_MatchData3);
}

void selectBrainGame(Session& session, const MatchPack_SelectBrainGame_Request& request,
                     MatchPack_SelectBrainGame_Reply& reply)
{
    if (request.m_Value1 <= 0)
        return refuse(reply, kNoSuchGame);
    selectedBrainGame(recordOf(session)) = request.m_Value1;
    if (!save(session, reply))
        return;
    reply.m_Value1 = request.m_Value1;
    reply.m_Value2 = getFreePlays(session);
}

void startBrainGame(Session& session, const MatchPack_StartBrainGame_Request& request,
                    MatchPack_StartBrainGame_Reply& reply)
{
    AccountMatchData3& data = recordOf(session);
    if (selectedBrainGame(data) == 0 || selectedBrainGame(data) != request.m_Value1)
        return refuse(reply, kNotSelected);
    if (getFreePlays(session) <= 0)
        return refuse(reply, kNoFreePlays);
    ++brainPlays(data);
    if (save(session, reply))
        reply.m_Value1 = request.m_Value1;
    reply.m_Value2 = getFreePlays(session);
}

void tryAgain(Session& session, const MatchPack_TryAgainGame_Request& request, MatchPack_TryAgainGame_Reply& reply)
{
    CAccount& account = session.getAccount();
    if (account.m_MatchData3.m_ScoreMap.count(request.m_Value1) == 0)
        refuse(reply, kNoSuchGame);
    else if (pay(session, kRetryPrice, reply) && save(session, reply))
        reply.m_Value1 = request.m_Value1;
    copyAccount(account.m_Account, reply.m_Account);
}

} // namespace

void addBestFamily(MatchPacks& packs)
{
    onEvent<MatchPack_EnterBestFamily_Request, MatchPack_EnterBestFamily_Reply>(
        packs,
        [](Session& session, AccountMatchData3& data, const auto&, MatchPack_EnterBestFamily_Reply& reply)
        {
            if (data.IsJoinMatch())
            {
                refuse(reply, kJoinedBefore);
                return false;
            }
            data.m_MatchStage = 1;
            data.m_MatchTeam = 1 + session.getAccount().m_Account.m_AccountId % kTeams;
            reply.m_Flag1 = true;
            return true;
        });
    onEvent<MatchPack_ExitBestFamily_Request, MatchPack_ExitBestFamily_Reply>(
        packs,
        [](Session&, AccountMatchData3& data, const auto&, MatchPack_ExitBestFamily_Reply& reply)
        {
            if (!data.IsJoinMatch())
            {
                refuse(reply, kNotJoined);
                return false;
            }
            data.m_MatchStage = 0;
            data.m_MatchTeam = 0;
            return true;
        });
    onEvent<MatchPack_BestFamilyRandomDice_Request, MatchPack_BestFamilyRandomDice_Reply>(packs, throwRandom);
    onEvent<MatchPack_BestFamilySetDice_Request, MatchPack_BestFamilySetDice_Reply>(packs, setDie);
    onEvent<MatchPack_BestFamilyTigerMachine_Request, MatchPack_BestFamilyTigerMachine_Reply>(packs, playMachine);
    onEvent<MatchPack_BestFamilyCheckGameResult_Request, MatchPack_BestFamilyCheckGameResult_Reply>(packs, checkResult);
    onEvent<MatchPack_BestFamilyCountDownTime_Request, MatchPack_BestFamilyCountDownTime_Reply>(
        packs,
        [](Session&, AccountMatchData3&, const auto&, MatchPack_BestFamilyCountDownTime_Reply& reply)
        {
            reply.m_Text2 = getWeekLeft();
            return false;
        });
    // m_Value1: the task, 1 to 6. The client's countdown begins anew once the task is saved.
    serve<MatchPack_BestFamilyTask_Request, MatchPack_BestFamilyTask_Reply>(
        packs,
        [&packs](Session& session, const MatchPack_BestFamilyTask_Request& request,
                 MatchPack_BestFamilyTask_Reply& reply)
        {
            AccountMatchData3& data = recordOf(session);
            if (startTask(data, request.m_Value1, reply) && save(session, reply))
            {
                MatchPack_ModifyCountDownTime_Reply countDown;
                countDown.m_Text2 = getWeekLeft();
                countDown.m_MatchData3 = data;
                packs.send(session, countDown);
            }
            reply.m_MatchData3 = data;
        });
    onEvent<MatchPack_TakeGift_Request, MatchPack_TakeGift_Reply>(packs, takeGift);
    onEvent<MatchPack_BuyTool_Request, MatchPack_BuyTool_Reply>(packs, buyTool);
    serve<MatchPack_SelectBrainGame_Request, MatchPack_SelectBrainGame_Reply>(packs, selectBrainGame);
    serve<MatchPack_StartBrainGame_Request, MatchPack_StartBrainGame_Reply>(packs, startBrainGame);
    serve<MatchPack_TryAgainGame_Request, MatchPack_TryAgainGame_Reply>(packs, tryAgain);
    serveSilently<MatchPack_UpdateBaodiTaskExecState_Request>(
        packs,
        [](Session& session, const MatchPack_UpdateBaodiTaskExecState_Request& request)
        {
            session.getAccount().m_MatchData3.m_Match3Flag2 = request.m_Flag1;
            session.save();
        });
}

} // namespace arena::platform
