// The state of one game for one player: the base of every kind of game.
//
// Game records are plain values owned by their container. Nothing here is locked. Scores are points, dates are texts
// for zet::Time::convertFromString, times are seconds. This library copies a field marked "carried" without
// interpreting it.
#pragma once

#include "framework/export.h"
#include "framework/string.h"
#include "packaging/wire_interface.h"

COMMONGROUND_NO_VIRTUAL_DESTRUCTOR_BEGIN

// The base of all kinds of game. The number and order of the virtual functions are part of the interface, so there is
// no virtual destructor: a game record is never destroyed through its base.
class COMMONGROUND_API FGameObject
{
public:
    static constexpr int kGameType = 0;
    // The best score of a game never played.
    static constexpr float kNotPlayed = -1.0f;

    // A derived class puts all fields of this class before its own.
    WIRE_INTERFACE_BOTH_VIRTUAL
    // Does nothing, for any kind of game.
    virtual void SetBetterScore(float score);
    // Whether m_GameId is valid: from 1 to 99, except 5, which does not exist.
    virtual bool IsValid();
    // 0, for any kind of game.
    virtual int CaculateGameScore(float score);
    // The stars of a score, from 0 to 3: above 0 points one, from 60 two, from 80 three.
    virtual int EvaluateGameScore(float score);

    // The kind of game: the kGameType of the record's class.
    int m_GameType = kGameType;
    // The game's number within its kind; the key of an account's maps.
    int m_GameId = 0;
    int m_Level = 1; // carried
    // Descriptions, carried.
    zet::String_T<wchar_t> m_Text0;
    zet::String_T<wchar_t> m_Text1;
    zet::String_T<wchar_t> m_Text2;
    zet::String_T<wchar_t> m_Text3;
    zet::String_T<wchar_t> m_Text4;
    zet::String_T<wchar_t> m_Text5;
    float m_BestScore = kNotPlayed;
    float m_SecondScore = 0.0f; // carried
};

// A game of the newcomer's course: only the base.
class COMMONGROUND_API FGameNewbie : public FGameObject
{
public:
    static constexpr int kGameType = 15;

    FGameNewbie() { m_GameType = kGameType; }
    FGameNewbie(const FGameNewbie&) = default;
    FGameNewbie(FGameNewbie&&) = default;
    FGameNewbie& operator=(const FGameNewbie&) = default;
    FGameNewbie& operator=(FGameNewbie&&) = default;
    // Copies the base including m_GameType: unlike the other kinds, this one does not set its own.
    FGameNewbie& operator=(const FGameObject& object);

    WIRE_INTERFACE_BOTH_OVERRIDE
};

COMMONGROUND_NO_VIRTUAL_DESTRUCTOR_END
