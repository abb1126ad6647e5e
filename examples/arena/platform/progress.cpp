// Games, missions and energy of a player. What the records' own rules decide (a game's validity, locks, cool-downs,
// grades) is asked of them; prices and rewards are the platform's.
#include "commands/progress.h"
#include "commands/billing.h"
#include "examples/arena/platform/catalogue.h"
#include "examples/arena/platform/database.h"
#include "examples/arena/platform/platform.h"
#include "examples/arena/platform/renewal.h"
#include "examples/arena/platform/scores.h"
#include "examples/arena/protocol/platform_codes.h"
#include "examples/arena/text.h"
#include "framework/time.h"
#include "playerdata/game_kinds.h"
#include "playerdata/rule_constants.h"

#include <algorithm>

namespace arena::platform
{

namespace
{

using namespace protocol;
using Text = zet::String_T<wchar_t>;

constexpr int kMissions = 30;
constexpr int kMissionGold = 15;
constexpr int kGoldPerStar = 2;
constexpr int kEnergyPortion = 50;
constexpr float kMostScore = 100.0f;
constexpr float kMostCalories = 2000.0f;

// From 0 to most; 0 for what is not a number.
float limit(float value, float most)
{
    return value > 0.0f ? std::min(value, most) : 0.0f;
}

template <class Reply>
void sendWithAccount(Session& session, Reply& reply)
{
    if (session.isLoggedIn())
        copyAccount(session.getAccount().m_Account, reply.m_Account);
    session.send(reply);
}

// 0 for a kind of game that the platform does not start.
int energyCost(int type)
{
    switch (type)
    {
    case 1:
        return g_SingleTrainCostEnergy;
    case 2:
        return g_MissionCostEnergy;
    case 10:
        return g_RushCostEnergy;
    case 11:
    case 12:
    case 14:
        return g_MatchCostEnergy;
    default:
        return 0;
    }
}

bool isValidGame(int type, int id)
{
    FGameMusic music;
    FGameObject other;
    FGameObject& game = type == 11 ? music : other;
    game.m_GameId = id;
    return game.IsValid();
}

// Notes a play of a game with a cool-down, which begins now.
template <class Game>
void countPlay(Game& game)
{
    ++game.m_PlayTimes;
    game.m_LastPlayTime = zet::Time::getCurrent().convertToString(false);
    game.SetCDTimeByPlayTimes();
}

Result startGame(Session& session, int type, int id)
{
    if (!session.isLoggedIn())
        return kNotLoggedIn;
    CAccount& records = session.getAccount();
    AccountData& account = records.m_Account;
    const int cost = energyCost(type);
    if (cost == 0 || !isValidGame(type, id))
        return kUnknownThing;
    if (type == 1)
    {
        const auto found = account.m_TrainingMap.find(id);
        if (found == account.m_TrainingMap.end())
            return kUnknownThing;
        FGameTraining& game = found->second;
        if (game.m_Locked)
            return kLocked;
        renewPlays(game);
        game.SetCDTimeByPlayTimes();
        if (game.m_CDTime > 0.0f)
            return kCoolingDown;
    }
    const auto camera = type == 14 ? account.m_KinectMap.find(id) : account.m_KinectMap.end();
    if (camera != account.m_KinectMap.end())
    {
        renewPlays(camera->second);
        camera->second.SetCDTimeByPlayTimes();
        if (camera->second.m_CDTime > 0.0f)
            return kCoolingDown;
    }
    refillEnergy(records);
    if (energyOf(records) < cost)
        return kTooTired;
    energyOf(records) -= cost;
    if (type == 1)
        countPlay(account.m_TrainingMap[id]);
    if (type == 14)
    {
        FGameKinect& game = account.m_KinectMap[id];
        game.m_GameId = id;
        countPlay(game);
    }
    if (!session.save())
        return kNotSaved;
    session.m_GameType = type;
    session.m_GameId = id;
    return kDone;
}

const wchar_t* wordsOf(Result result)
{
    switch (result)
    {
    case kDone:
        return L"";
    case kNotLoggedIn:
        return L"no player is logged in";
    case kUnknownThing:
        return L"there is no such game";
    case kLocked:
        return L"the game is locked";
    case kCoolingDown:
        return L"the game cools down";
    case kTooTired:
        return L"there is too little energy";
    case kTooPoor:
        return L"there is too little money";
    case kAlreadyDone:
        return L"it is done already";
    case kNotSaved:
        return L"the change was not saved";
    default:
        return L"it is not allowed";
    }
}

// m_Value1: the kind of the game, m_Value2: its number, m_Float1: the score, m_Float2: kilocalories.
void endGame(Session& session, const CCmdRequestEndGame& request)
{
    CCmdReplyEndGame reply;
    const auto answer = [&](Result result)
    {
        reply.m_Value1 = result;
        reply.m_Text1 = wordsOf(result);
        if (session.isLoggedIn())
        {
            reply.m_MatchData3 = session.getAccount().m_MatchData3;
            reply.m_GlobalData = session.getAccount().m_GlobalData;
        }
        sendWithAccount(session, reply);
    };
    if (!session.isLoggedIn())
        return answer(kNotLoggedIn);
    if (session.m_GameType == 0 || request.m_Value1 != session.m_GameType || request.m_Value2 != session.m_GameId)
        return answer(kUnknownThing);
    const int type = session.m_GameType;
    const int id = session.m_GameId;
    CAccount& records = session.getAccount();
    const float score = limit(request.m_Float1, kMostScore);
    FGameMusic music;
    FGameObject other;
    const int stars = (type == 11 ? music : other).EvaluateGameScore(score);
    if (type == 1)
    {
        FGameTraining& game = records.m_Account.m_TrainingMap[id];
        reply.m_Flag1 = score > game.m_BestScore;
        game.m_BestScore = std::max(game.m_BestScore, score);
    }
    const int gold = stars * kGoldPerStar;
    const int calories = static_cast<int>(limit(request.m_Float2, kMostCalories));
    goldOf(records) += gold;
    caloriesOf(records) += calories;
    const bool isSaved =
        session.save([&](soci::session& sql)
                     { return storeScores(sql, session.getStored(), type, id, static_cast<int>(score), calories); });
    if (!isSaved)
        return answer(kNotSaved);
    session.m_GameType = 0;
    session.m_GameId = 0;
    reply.m_Value2 = type;
    reply.m_Value3 = id;
    reply.m_Value4 = stars;
    reply.m_Value5 = gold;
    answer(kDone);
}

// m_Value1: the mission, from 1.
void finishMission(Session& session, const CCmdRequestFinishMission& request)
{
    CCmdReplyFinishMission reply;
    reply.m_Value1 = request.m_Value1;
    Result result = kDone;
    if (!session.isLoggedIn())
        result = kNotLoggedIn;
    else if (request.m_Value1 < 1 || request.m_Value1 > kMissions)
        result = kUnknownThing;
    else if ((missionsOf(session.getAccount()) & 1 << (request.m_Value1 - 1)) != 0)
        result = kAlreadyDone;
    else
    {
        missionsOf(session.getAccount()) |= 1 << (request.m_Value1 - 1);
        goldOf(session.getAccount()) += kMissionGold;
        result = session.save() ? kDone : kNotSaved;
    }
    reply.m_Flag1 = result == kDone;
    reply.m_Value2 = result;
    reply.m_Text1 = wordsOf(result);
    sendWithAccount(session, reply);
    if (result != kDone)
        return;
    CCmdCurrencyAdd added;
    added.m_Value1 = kGold;
    added.m_Value2 = kMissionGold;
    session.send(added);
}

// The text of today's mission belongs to the client; the platform keeps it.
void saveTodayMission(Session& session, const CCmdRequestSaveTodayMission& request)
{
    CCmdReplySaveTodayMission reply;
    Result result = kDone;
    if (!session.isLoggedIn())
        result = kNotLoggedIn;
    else if (request.m_Text1.getLength() > kTextLimit)
        result = kNotAllowed;
    else
    {
        session.getAccount().m_GlobalData.m_GlobalText7 = request.m_Text1;
        result = session.save() ? kDone : kNotSaved;
    }
    reply.m_Text1 = wordsOf(result);
    sendWithAccount(session, reply);
}

// m_Value1: whether energy is bought, with diamonds.
void energy(Session& session, const CCmdEnergyRequest& request)
{
    CCmdEnergyReply reply;
    Result result = session.isLoggedIn() ? kDone : kNotLoggedIn;
    if (result == kDone)
        refillEnergy(session.getAccount());
    if (result == kDone && request.m_Value1 == kBuyEnergy)
    {
        CAccount& records = session.getAccount();
        const int most = getMostEnergy(records);
        if (energyOf(records) >= most)
            result = kAlreadyDone;
        else if (diamondsOf(records) < g_EnergyPay_MaxPrice)
            result = kTooPoor;
        else
        {
            diamondsOf(records) -= g_EnergyPay_MaxPrice;
            energyOf(records) = std::min(most, energyOf(records) + kEnergyPortion);
            result = session.save() ? kDone : kNotSaved;
        }
    }
    reply.m_Value1 = result;
    reply.m_Text1 = wordsOf(result);
    if (session.isLoggedIn())
    {
        reply.m_Value2 = energyOf(session.getAccount());
        reply.m_Value3 = diamondsOf(session.getAccount());
    }
    session.send(reply);
}

// The records that the client has, and back those that are saved: with them it knows what was taken over.
void saveAccount(Session& session, const CCmdSaveAccount& request)
{
    if (!session.isLoggedIn() || request.m_Account.m_AccountNote.getLength() > kTextLimit)
        return;
    takeClientFields(request.m_Account, session.getAccount().m_Account);
    session.save();
    CCmdSaveAccount saved;
    sendWithAccount(session, saved);
}

} // namespace

void installProgress(Platform& platform)
{
    // m_Value1: the kind of the game, m_Value2: its number.
    platform.on<CCmdRequestStartGame>(
        [](Session& session, const CCmdRequestStartGame& request)
        {
            CCmdReplyStartGame reply;
            const Result result = startGame(session, request.m_Value1, request.m_Value2);
            reply.m_Value1 = result;
            reply.m_Text1 = wordsOf(result);
            reply.m_Value2 = request.m_Value1;
            reply.m_Value3 = request.m_Value2;
            sendWithAccount(session, reply);
        });
    platform.on<CCmdRequestEndGame>([](Session& session, const CCmdRequestEndGame& request)
                                    { endGame(session, request); });
    platform.on<CCmdRequestFinishMission>([](Session& session, const CCmdRequestFinishMission& request)
                                          { finishMission(session, request); });
    platform.on<CCmdRequestSaveTodayMission>([](Session& session, const CCmdRequestSaveTodayMission& request)
                                             { saveTodayMission(session, request); });
    platform.on<CCmdEnergyRequest>([](Session& session, const CCmdEnergyRequest& request)
                                   { energy(session, request); });
    platform.on<CCmdSaveAccount>([](Session& session, const CCmdSaveAccount& request)
                                 { saveAccount(session, request); });
}

} // namespace arena::platform
