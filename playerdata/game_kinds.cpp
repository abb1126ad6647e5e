#include "playerdata/game_kinds.h"

#include "packaging/wire/order.h"

WIRE_ORDER_BOTH(FGameMission)
{
    return HEAD(FGameObject) && FIELDS(r.m_GoldenTarget, r.m_SilverTarget, r.m_CopperTarget, r.m_MissionState);
}

WIRE_ORDER_BOTH(FGameMatch)
{
    return HEAD(FGameObject) && FIELDS(r.m_MatchScore, r.m_MatchFlag, r.m_MatchValue, r.m_MatchKind);
}

WIRE_ORDER_BOTH(FGameRush)
{
    return HEAD(FGameObject) &&
           FIELDS(r.m_RushScore, r.m_RushLevel, r.m_RushStars, r.m_RushText, r.m_RushFlag0, r.m_RushFlag1,
                  r.m_RushFlag2, r.m_RushParam0, r.m_RushParam2, r.m_RushParam1, r.m_RushKind) &&
           NOT_SENT(r.m_RushNote, r.m_RushLocal0, r.m_RushLocal1, r.m_RushLocal2);
}

WIRE_ORDER_BOTH(FGameMusic)
{
    return HEAD(FGameObject) && FIELDS(r.m_MusicSlot, r.m_MusicParam, r.m_MusicRowA, r.m_MusicRowB, r.m_MusicRowC,
                                       r.m_MusicScore0, r.m_MusicScore1);
}

WIRE_ORDER_BOTH(FGameBrain)
{
    return HEAD(FGameObject) && FIELDS(r.m_BrainText, r.m_BrainFlag);
}

FGameMission& FGameMission::operator=(const FGameObject& object)
{
    FGameObject::operator=(object);
    m_GameType = kGameType;
    return *this;
}

zet::String_T<wchar_t> FGameMission::GetGoldenDescription() const
{
    return {};
}

zet::String_T<wchar_t> FGameMission::GetSilverDescription() const
{
    return {};
}

zet::String_T<wchar_t> FGameMission::GetCopperDescription() const
{
    return {};
}

int FGameMission::GetMissionCompleteState() const
{
    return 0;
}

FGameMatch& FGameMatch::operator=(const FGameObject& object)
{
    FGameObject::operator=(object);
    m_GameType = kGameType;
    return *this;
}

zet::String_T<wchar_t> FGameMatch::GetMatchDescription() const
{
    return {};
}

bool FGameMatch::IsMatchComplete() const
{
    return false;
}

FGameRush& FGameRush::operator=(const FGameRush& other)
{
    FGameObject::operator=(other);
    m_RushScore = other.m_RushScore;
    m_RushLevel = other.m_RushLevel;
    m_RushStars = other.m_RushStars;
    m_RushFlag0 = other.m_RushFlag0;
    m_RushFlag1 = other.m_RushFlag1;
    m_RushFlag2 = other.m_RushFlag2;
    m_RushParam0 = other.m_RushParam0;
    m_RushParam1 = other.m_RushParam1;
    m_RushParam2 = other.m_RushParam2;
    m_RushKind = other.m_RushKind;
    return *this;
}

FGameRush& FGameRush::operator=(const FGameObject& object)
{
    FGameObject::operator=(object);
    m_GameType = kGameType;
    return *this;
}

zet::String_T<wchar_t> FGameRush::GetRushDescription() const
{
    return {};
}

bool FGameRush::IsComplete() const
{
    return false;
}

FGameMusic& FGameMusic::operator=(const FGameObject& object)
{
    FGameObject::operator=(object);
    m_GameType = kGameType;
    return *this;
}

bool FGameMusic::IsValid()
{
    return m_GameId >= 1000;
}

// A limit belongs to the lower grade, unlike in the other games.
int FGameMusic::EvaluateGameScore(float score)
{
    if (score > 6.0f)
        return 3;
    if (score > 4.0f)
        return 2;
    return score > 2.0f ? 1 : 0;
}

FGameBrain& FGameBrain::operator=(const FGameObject& object)
{
    FGameObject::operator=(object);
    m_GameType = kGameType;
    return *this;
}
