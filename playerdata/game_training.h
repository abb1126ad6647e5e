// The two kinds of game that an account keeps and that cool down between plays: training and camera games.
//
// A cool-down grows with the plays of the day and is in seconds. The host counts the plays and ticks the cool-down;
// nothing here clears m_PlayTimes. m_CDTime means a cool-down only if it is above 0.0.
#pragma once

#include "packaging/wire_interface.h"
#include "playerdata/game_object.h"

COMMONGROUND_NO_VIRTUAL_DESTRUCTOR_BEGIN

// A training game.
class COMMONGROUND_API FGameTraining : public FGameObject
{
public:
    static constexpr int kGameType = 1;

    FGameTraining() { m_GameType = kGameType; }
    FGameTraining(const FGameTraining&) = default;
    FGameTraining(FGameTraining&&) = default;
    FGameTraining& operator=(const FGameTraining&) = default;
    FGameTraining& operator=(FGameTraining&&) = default;
    // Copies the base, then resets all its own fields except m_Group.
    FGameTraining& operator=(const FGameObject& object);

    WIRE_INTERFACE_BOTH_OVERRIDE

    // Subtracts seconds from a running m_CDTime. The last step may leave it below 0, where it stays.
    void TickCD(float seconds);
    // Sets m_CDDuration from m_PlayTimes (none, 300, 900, 1800, 3600, 14400, 28800, then 86400 seconds) and m_CDTime
    // to its rest, counted from m_LastPlayTime. With no plays m_CDTime does not change; an invalid date counts as long
    // past.
    void SetCDTimeByPlayTimes();

    int m_Group = 1; // carried
    // The slot in the account's list of play dates, from 0 to 19; -1 for none.
    int m_DateSlot = -1;
    int m_Param0 = 0;    // carried
    int m_Param1 = 0;    // carried
    int m_Param2 = 0;    // carried
    bool m_Flag = false; // carried
    int m_Link = -1;     // carried
    int m_Param3 = 0;    // carried
    // True if the player may not play it; cleared by a new VIP state.
    bool m_Locked = true;
    // Date of the last play.
    zet::String_T<wchar_t> m_LastPlayTime = L"2013-1-1 00:00:00";
    // Plays of the day.
    int m_PlayTimes = 0;
    // Total seconds of the current cool-down.
    int m_CDDuration = 0;
    // Remaining seconds of it.
    float m_CDTime = 0.0f;
};

// A game for the camera.
class COMMONGROUND_API FGameKinect : public FGameObject
{
public:
    static constexpr int kGameType = 14;

    FGameKinect() { m_GameType = kGameType; }
    FGameKinect(const FGameKinect&) = default;
    FGameKinect(FGameKinect&&) = default;
    FGameKinect& operator=(const FGameKinect&) = default;
    FGameKinect& operator=(FGameKinect&&) = default;
    // Copies the base, then resets its own fields.
    FGameKinect& operator=(const FGameObject& object);

    WIRE_INTERFACE_BOTH_OVERRIDE

    // Resets its own four fields; those of FGameObject do not change.
    void Reset();
    // As in FGameTraining.
    void TickCD(float seconds);
    void SetCDTimeByPlayTimes();

    // As in FGameTraining.
    zet::String_T<wchar_t> m_LastPlayTime = L"2013-1-1 00:00:00";
    int m_PlayTimes = 0;
    int m_CDDuration = 0;
    float m_CDTime = 0.0f;
};

COMMONGROUND_NO_VIRTUAL_DESTRUCTOR_END
