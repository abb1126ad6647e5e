#include "playerdata/game_training.h"

#include "framework/time.h"
#include "packaging/wire/order.h"

#include <cstdint>
#include <iterator>

namespace
{

// The date of a game never played.
constexpr const wchar_t* kNeverPlayed = L"2013-1-1 00:00:00";

int coolDownOf(int playTimes)
{
    static constexpr int kSeconds[] = {0, 300, 900, 1800, 3600, 14400, 28800, 86400};
    constexpr int kLast = static_cast<int>(std::size(kSeconds)) - 1;
    return kSeconds[playTimes < 0 ? 0 : playTimes < kLast ? playTimes : kLast];
}

// The rule of both kinds of game, on their members of the same names.
template <class Game>
void setCoolDown(Game& game)
{
    game.m_CDDuration = coolDownOf(game.m_PlayTimes);
    if (game.m_CDDuration == 0)
        return;
    zet::Time lastPlay;
    lastPlay.convertFromString(game.m_LastPlayTime);
    const int32_t passed = static_cast<int32_t>(zet::Time::getCurrent() - lastPlay);
    const int64_t left = int64_t(game.m_CDDuration) - passed;
    game.m_CDTime = left > 0 ? static_cast<float>(left) : 0.0f;
}

template <class Game>
void tickCoolDown(Game& game, float seconds)
{
    if (game.m_CDTime > 0.0f)
        game.m_CDTime -= seconds;
}

} // namespace

WIRE_ORDER_BOTH(FGameTraining)
{
    return HEAD(FGameObject) &&
           FIELDS(r.m_Group, r.m_DateSlot, r.m_Param0, r.m_Param1, r.m_Param2, r.m_Flag, r.m_Link, r.m_Param3,
                  r.m_Locked, r.m_LastPlayTime, r.m_PlayTimes, r.m_CDDuration, r.m_CDTime);
}

WIRE_ORDER_BOTH(FGameKinect)
{
    return HEAD(FGameObject) && FIELDS(r.m_LastPlayTime, r.m_PlayTimes, r.m_CDDuration, r.m_CDTime);
}

FGameTraining& FGameTraining::operator=(const FGameObject& object)
{
    FGameObject::operator=(object);
    m_GameType = kGameType;
    m_DateSlot = -1;
    m_Param0 = 0;
    m_Param1 = 0;
    m_Param2 = 0;
    m_Flag = false;
    m_Link = -1;
    m_Param3 = 0;
    m_Locked = true;
    m_LastPlayTime = kNeverPlayed;
    m_PlayTimes = 0;
    m_CDDuration = 0;
    m_CDTime = 0.0f;
    return *this;
}

void FGameTraining::TickCD(float seconds)
{
    tickCoolDown(*this, seconds);
}

void FGameTraining::SetCDTimeByPlayTimes()
{
    setCoolDown(*this);
}

FGameKinect& FGameKinect::operator=(const FGameObject& object)
{
    FGameObject::operator=(object);
    m_GameType = kGameType;
    Reset();
    return *this;
}

void FGameKinect::Reset()
{
    m_LastPlayTime = kNeverPlayed;
    m_PlayTimes = 0;
    m_CDDuration = 0;
    m_CDTime = 0.0f;
}

void FGameKinect::TickCD(float seconds)
{
    tickCoolDown(*this, seconds);
}

void FGameKinect::SetCDTimeByPlayTimes()
{
    setCoolDown(*this);
}
