// The achievements: a game is started, achievements are reached in it, and it is ended. Which ones a player has, and
// the game, are in the one achievement record of the account.
#include "examples/arena/platform/packs/packs.h"
#include "examples/arena/platform/packs/serving.h"
#include "examples/arena/platform/platform.h"
#include "examples/arena/protocol/pack_numbers.h"

namespace arena::platform
{

namespace
{

constexpr wchar_t kNoSuchGame[] = L"no such game";
constexpr wchar_t kPlaysNot[] = L"this game is not being played";
constexpr wchar_t kPlaysAlready[] = L"a game is being played";
constexpr wchar_t kNoSuchAchievement[] = L"no such achievement";
constexpr wchar_t kReachedBefore[] = L"reached before";
constexpr wchar_t kTooFew[] = L"not reached yet";

struct Goal
{
    const wchar_t* m_Name;
    int m_Points;
};
// The achievement of number i is element i - 1: it is reached with that many points.
constexpr Goal kGoals[] = {{L"first steps", 10}, {L"runner", 100}, {L"champion", 1000}};
constexpr int kGoalCount = static_cast<int>(std::size(kGoals));
constexpr int kMostGame = 100;

// What the platform keeps in the carried values of the record: a bit for each achievement, and the game, 0 for none.
int& reachedBits(AccountAchievementData& data)
{
    return data.m_AchieveValue3;
}
int& playedGame(AccountAchievementData& data)
{
    return data.m_AchieveValue8;
}
bool hasReached(AccountAchievementData& data, int number)
{
    return (reachedBits(data) >> (number - 1) & 1) != 0;
}

// m_AchieveValue1 is the number of the achievement, m_AchieveFlag0 whether it is reached.
void add(std::map<int, AccountAchievementData>& achievements, AccountAchievementData& data, int number)
{
    AccountAchievementData& achievement = achievements[number];
    achievement.m_AchieveValue1 = number;
    achievement.m_AchieveText0 = kGoals[number - 1].m_Name;
    achievement.m_AchieveValue2 = kGoals[number - 1].m_Points;
    achievement.m_AchieveFlag0 = hasReached(data, number);
}
void addAll(std::map<int, AccountAchievementData>& achievements, AccountAchievementData& data)
{
    for (int number = 1; number <= kGoalCount; ++number)
        add(achievements, data, number);
}

// m_Value1: the game.
void startGame(Session& session, const AchievementPack_StartGame_Request& request,
               AchievementPack_StartGame_Reply& reply)
{
    AccountAchievementData& data = session.getAccount().m_AchievementData;
    if (request.m_Value1 <= 0 || request.m_Value1 > kMostGame)
        return refuse(reply, kNoSuchGame);
    if (playedGame(data) != 0)
        return refuse(reply, kPlaysAlready);
    playedGame(data) = request.m_Value1;
    if (!save(session, reply))
        return;
    addAll(reply.m_Achievements, data);
    AccountBehaviourData behaviour;
    behaviour.m_BehaviourValue0 = request.m_Value1;
    reply.m_Behaviours.push_back(behaviour);
}

void endGame(Session& session, const AchievementPack_EndGame_Request& request, AchievementPack_EndGame_Reply& reply)
{
    AccountAchievementData& data = session.getAccount().m_AchievementData;
    if (playedGame(data) == 0 || playedGame(data) != request.m_Value1)
        return refuse(reply, kPlaysNot);
    playedGame(data) = 0;
    save(session, reply);
}

// m_Numbers: the achievements that are asked for; all if it is empty.
void getAll(Session& session, const AchievementPack_GetAllAchievement_Request& request,
            AchievementPack_GetAllAchievement_Reply& reply)
{
    AccountAchievementData& data = session.getAccount().m_AchievementData;
    if (request.m_Numbers.empty())
        addAll(reply.m_Achievements, data);
    for (const int number : request.m_Numbers)
    {
        if (number <= 0 || number > kGoalCount)
            return refuse(reply, kNoSuchAchievement);
        add(reply.m_Achievements, data, number);
    }
}

} // namespace

Feature serveAchievements(Platform& platform)
{
    auto packs = std::make_shared<AchievementPacks>();
    numberAchievement(*packs);
    serve<AchievementPack_StartGame_Request, AchievementPack_StartGame_Reply>(*packs, startGame);
    serve<AchievementPack_EndGame_Request, AchievementPack_EndGame_Reply>(*packs, endGame);
    serve<AchievementPack_GetAllAchievement_Request, AchievementPack_GetAllAchievement_Reply>(*packs, getAll);
    // m_Value1: the achievement; m_Value2: the points of the game. The player's other screens get a notice.
    serve<AchievementPack_SendAchievement_Request, AchievementPack_SendAchievement_Reply>(
        *packs,
        [&packs = *packs](Session& session, const AchievementPack_SendAchievement_Request& request,
                          AchievementPack_SendAchievement_Reply& reply)
        {
            AccountAchievementData& data = session.getAccount().m_AchievementData;
            const int number = request.m_Value1;
            if (number <= 0 || number > kGoalCount)
                return refuse(reply, kNoSuchAchievement);
            if (playedGame(data) == 0)
                return refuse(reply, kPlaysNot);
            if (hasReached(data, number))
                return refuse(reply, kReachedBefore);
            if (request.m_Value2 < kGoals[number - 1].m_Points)
                return refuse(reply, kTooFew);
            reachedBits(data) |= 1 << (number - 1);
            if (!save(session, reply))
                return;
            add(reply.m_Achievements, data, number);
            AchievementPack_Notice_Reply notice;
            notice.m_Achievements = reply.m_Achievements;
            packs.send(session, notice);
        });
    return packs->install(platform.getHandlers()) ? packs : nullptr;
}

} // namespace arena::platform
