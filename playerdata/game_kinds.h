// The kinds of game that no other record contains, and the match game: missions, matches, rushes, music and brain
// games. The fields of all of them are carried.
#pragma once

#include "packaging/wire_interface.h"
#include "playerdata/game_object.h"

COMMONGROUND_NO_VIRTUAL_DESTRUCTOR_BEGIN

// A mission with three targets.
class COMMONGROUND_API FGameMission : public FGameObject
{
public:
    static constexpr int kGameType = 2;

    FGameMission() { m_GameType = kGameType; }
    FGameMission(const FGameMission&) = default;
    FGameMission(FGameMission&&) = default;
    FGameMission& operator=(const FGameMission&) = default;
    FGameMission& operator=(FGameMission&&) = default;
    // Copies the base and keeps its own fields.
    FGameMission& operator=(const FGameObject& object);

    WIRE_INTERFACE_BOTH_OVERRIDE

    // Empty texts, always.
    zet::String_T<wchar_t> GetGoldenDescription() const;
    zet::String_T<wchar_t> GetSilverDescription() const;
    zet::String_T<wchar_t> GetCopperDescription() const;
    // 0, always.
    int GetMissionCompleteState() const;

    float m_GoldenTarget = 0.0f;
    float m_SilverTarget = 0.0f;
    float m_CopperTarget = 0.0f;
    int m_MissionState = 0;
};

// A game of a match.
class COMMONGROUND_API FGameMatch : public FGameObject
{
public:
    static constexpr int kGameType = 3;

    FGameMatch() { m_GameType = kGameType; }
    FGameMatch(const FGameMatch&) = default;
    FGameMatch(FGameMatch&&) = default;
    FGameMatch& operator=(const FGameMatch&) = default;
    FGameMatch& operator=(FGameMatch&&) = default;
    // Copies the base and keeps its own fields.
    FGameMatch& operator=(const FGameObject& object);

    WIRE_INTERFACE_BOTH_OVERRIDE

    // The empty text, always.
    zet::String_T<wchar_t> GetMatchDescription() const;
    // False, always.
    bool IsMatchComplete() const;

    float m_MatchScore = 0.0f;
    bool m_MatchFlag = false;
    int m_MatchValue = 0;
    char m_MatchKind = 0;
};

// A stage of a rush.
class COMMONGROUND_API FGameRush : public FGameObject
{
public:
    static constexpr int kGameType = 10;

    FGameRush() { m_GameType = kGameType; }
    FGameRush(const FGameRush&) = default;
    FGameRush(FGameRush&&) = default;
    // Copies the description of the stage and its result; m_RushText and the four members that are never sent do not
    // change. There is no move assignment, so that assignment from a temporary follows the same rule.
    FGameRush& operator=(const FGameRush& other);
    // Copies the base and keeps its own fields.
    FGameRush& operator=(const FGameObject& object);

    WIRE_INTERFACE_BOTH_OVERRIDE

    // The empty text, always.
    zet::String_T<wchar_t> GetRushDescription() const;
    // False, always.
    bool IsComplete() const;

    float m_RushScore = 0.0f;
    int m_RushLevel = 0;
    int m_RushStars = 0;
    zet::String_T<wchar_t> m_RushText;
    bool m_RushFlag0 = false;
    bool m_RushFlag1 = false;
    bool m_RushFlag2 = false;
    // On the wire the third of these precedes the second.
    int m_RushParam0 = 0;
    int m_RushParam1 = 0;
    int m_RushParam2 = 0;
    zet::String_T<wchar_t> m_RushKind = L"sport";
    // These four are never sent.
    zet::String_T<wchar_t> m_RushNote;
    int m_RushLocal0 = 0;
    int m_RushLocal1 = 0;
    int m_RushLocal2 = 0;
};

// A music game. Music games are numbered from 1000 and have their own scale.
class COMMONGROUND_API FGameMusic : public FGameObject
{
public:
    static constexpr int kGameType = 11;
    static constexpr int kRowA = 4;
    static constexpr int kRowB = 4;
    static constexpr int kRowC = 2;

    FGameMusic() { m_GameType = kGameType; }
    FGameMusic(const FGameMusic&) = default;
    FGameMusic(FGameMusic&&) = default;
    FGameMusic& operator=(const FGameMusic&) = default;
    FGameMusic& operator=(FGameMusic&&) = default;
    // Copies the base and keeps its own fields.
    FGameMusic& operator=(const FGameObject& object);

    WIRE_INTERFACE_BOTH_OVERRIDE
    // Whether m_GameId is 1000 or more.
    bool IsValid() override;
    // The stars of a score, from 0 to 3: above 2 points one, above 4 two, above 6 three.
    int EvaluateGameScore(float score) override;

    int m_MusicSlot = -1;
    int m_MusicParam = 0;
    int m_MusicRowA[kRowA] = {};
    int m_MusicRowB[kRowB] = {};
    int m_MusicRowC[kRowC] = {};
    float m_MusicScore0 = 0.0f;
    float m_MusicScore1 = 0.0f;
};

// A brain game.
class COMMONGROUND_API FGameBrain : public FGameObject
{
public:
    static constexpr int kGameType = 12;

    FGameBrain() { m_GameType = kGameType; }
    FGameBrain(const FGameBrain&) = default;
    FGameBrain(FGameBrain&&) = default;
    FGameBrain& operator=(const FGameBrain&) = default;
    FGameBrain& operator=(FGameBrain&&) = default;
    // Copies the base and keeps its own fields.
    FGameBrain& operator=(const FGameObject& object);

    WIRE_INTERFACE_BOTH_OVERRIDE

    zet::String_T<wchar_t> m_BrainText;
    bool m_BrainFlag = true;
};

COMMONGROUND_NO_VIRTUAL_DESTRUCTOR_END
